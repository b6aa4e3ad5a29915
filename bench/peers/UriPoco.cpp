// What changes an object in place works on a copy, because the next round needs the object.

#include "support/Contest.h"
#include "support/UriLoad.h"

#include <Poco/URI.h>

namespace Quillon::Bench {

namespace {

template <class Work>
void enterPoco(const char* workload, const std::vector<std::string>& texts, Work work) {
    enter(workload, "POCO", [&texts, work] {
        return Round(Load{texts.size()},
                     [work, objects = std::vector<Poco::URI>(texts.begin(), texts.end())] {
                         for (const Poco::URI& uri : objects)
                             work(uri);
                     });
    });
}

const Entries entries([] {
    enter("uri.construct", "POCO", [] {
        return Round(Load{uris().size()}, [] {
            for (const std::string& text : uris())
                benchmark::DoNotOptimize(Poco::URI(text));
        });
    });
    enterPoco("uri.recompose", uris(),
              [](const Poco::URI& uri) { benchmark::DoNotOptimize(uri.toString()); });
    enterPoco("uri.resolve", relativeReferences(), [base = Poco::URI(baseUri())](const Poco::URI& uri) {
        Poco::URI resolved(base);
        resolved.resolve(uri);
        benchmark::DoNotOptimize(resolved);
    });
    enterPoco("uri.normalize", looseUris(), [](const Poco::URI& uri) {
        Poco::URI normal(uri);
        normal.normalize();
        benchmark::DoNotOptimize(normal);
    });
});

} // namespace

} // namespace Quillon::Bench
