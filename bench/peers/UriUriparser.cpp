// uriparser's objects are views on the text; uriMakeOwnerA gives them text of their own, as the library's have. It
// normalizes in place and has no copy, so that each round of that workload parses, too.

#include "support/Contest.h"
#include "support/UriLoad.h"

#include <uriparser/Uri.h>

#include <cstdlib>
#include <memory>

namespace Quillon::Bench {

namespace {

/// Cannot be moved: it may refer to itself.
struct Uri {
    Uri() = default;
    explicit Uri(const std::string& text) { uriParseSingleUriA(&value, text.c_str(), nullptr); }
    Uri(const Uri&) = delete;
    Uri& operator=(const Uri&) = delete;
    ~Uri() { uriFreeUriMembersA(&value); }

    UriUriA value{};
};

std::vector<std::unique_ptr<Uri>> allParsed(const std::vector<std::string>& texts) {
    std::vector<std::unique_ptr<Uri>> result;
    for (const std::string& text : texts)
        result.push_back(std::make_unique<Uri>(text));
    return result;
}

void recompose(const Uri& uri) {
    int length = 0;
    uriToStringCharsRequiredA(&uri.value, &length);
    auto* text = static_cast<char*>(std::malloc(static_cast<std::size_t>(length) + 1));
    uriToStringA(text, &uri.value, length + 1, nullptr);
    benchmark::DoNotOptimize(text);
    std::free(text);
}

const Entries entries([] {
    enter("uri.construct", "uriparser", [] {
        return Round(Load{uris().size()}, [] {
            for (const std::string& text : uris()) {
                Uri uri(text);
                uriMakeOwnerA(&uri.value);
                benchmark::DoNotOptimize(uri.value);
            }
        });
    });
    enter("uri.recompose", "uriparser", [] {
        return Round(Load{uris().size()}, [objects = allParsed(uris())] {
            for (const auto& uri : objects)
                recompose(*uri);
        });
    });
    enter("uri.resolve", "uriparser", [] {
        return Round(Load{relativeReferences().size()},
                     [objects = allParsed(relativeReferences()), base = std::make_unique<Uri>(baseUri())] {
                         for (const auto& uri : objects) {
                             Uri resolved;
                             uriAddBaseUriA(&resolved.value, &uri->value, &base->value);
                             uriMakeOwnerA(&resolved.value);
                             benchmark::DoNotOptimize(resolved.value);
                         }
                     });
    });
    enter("uri.normalize", "uriparser", [] {
        return Round(Load{looseUris().size()}, [] {
            for (const std::string& text : looseUris()) {
                Uri uri(text);
                uriNormalizeSyntaxA(&uri.value);
                benchmark::DoNotOptimize(uri.value);
            }
        });
    });
});

} // namespace

} // namespace Quillon::Bench
