// Boost.URL keeps the whole text of a URL: to recompose is to copy it. What changes an object works on a copy.

#include "support/Contest.h"
#include "support/UriLoad.h"

#include <boost/url.hpp>

namespace Quillon::Bench {

namespace {

namespace urls = boost::urls;

std::vector<urls::url> allParsed(const std::vector<std::string>& texts) {
    std::vector<urls::url> result;
    for (const std::string& text : texts)
        result.emplace_back(urls::parse_uri_reference(text).value());
    return result;
}

const Entries entries([] {
    enter("uri.construct", "Boost.URL", [] {
        return Round(Load{uris().size()}, [] {
            for (const std::string& text : uris()) {
                urls::url url(urls::parse_uri(text).value());
                benchmark::DoNotOptimize(url);
            }
        });
    });
    enter("uri.recompose", "Boost.URL", [] {
        return Round(Load{uris().size()}, [objects = allParsed(uris())] {
            for (const urls::url& url : objects)
                benchmark::DoNotOptimize(std::string(url.buffer()));
        });
    });
    enter("uri.resolve", "Boost.URL", [] {
        return Round(Load{relativeReferences().size()},
                     [objects = allParsed(relativeReferences()), base = urls::url(baseUri())] {
                         for (const urls::url& url : objects) {
                             urls::url resolved;
                             benchmark::DoNotOptimize(urls::resolve(base, url, resolved));
                             benchmark::DoNotOptimize(resolved);
                         }
                     });
    });
    enter("uri.normalize", "Boost.URL", [] {
        return Round(Load{looseUris().size()}, [objects = allParsed(looseUris())] {
            for (const urls::url& url : objects) {
                urls::url normal(url);
                normal.normalize();
                benchmark::DoNotOptimize(normal);
            }
        });
    });
});

} // namespace

} // namespace Quillon::Bench
