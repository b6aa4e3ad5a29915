// URIs: from text to components that the object owns, and what is done with such objects.

#include "support/Contest.h"

#include "net/URI.h"
#include "runtime/HostServices.h"
#include "support/UriLoad.h"

#include <memory>

namespace Quillon::Bench {

namespace {

using Net::URI;

std::unique_ptr<URI> parsed(const std::string& text) {
    return std::unique_ptr<URI>(URI::construct(reinterpret_cast<const unsigned char*>(text.c_str())));
}

std::vector<std::unique_ptr<URI>> allParsed(const std::vector<std::string>& texts) {
    std::vector<std::unique_ptr<URI>> result;
    for (const std::string& text : texts)
        result.push_back(parsed(text));
    return result;
}

/// Does `work` with each of the objects made of `texts`.
template <class Work>
void enterUri(const char* workload, const std::vector<std::string>& texts, Work work) {
    enter(workload, kLibrary, [&texts, work] {
        return Round(Load{texts.size()}, [work, objects = allParsed(texts)] {
            for (const auto& object : objects)
                work(*object);
        });
    });
}

const Entries entries([] {
    enter("uri.construct", kLibrary, [] {
        return Round(Load{uris().size()}, [] {
            for (const std::string& text : uris())
                benchmark::DoNotOptimize(parsed(text));
        });
    });
    enterUri("uri.recompose", uris(), [](const URI& uri) {
        unsigned char* text = uri.recompose();
        benchmark::DoNotOptimize(text);
        Runtime::release(text);
    });
    enterUri("uri.resolve", relativeReferences(),
             [base = std::shared_ptr<URI>(parsed(baseUri()))](const URI& uri) {
                 benchmark::DoNotOptimize(std::unique_ptr<URI>(uri.resolve(*base, true)));
             });
    enterUri("uri.normalize", looseUris(),
             [](const URI& uri) { benchmark::DoNotOptimize(std::unique_ptr<URI>(uri.normalize())); });
    enterUri("uri.relativize", uris(), [base = std::shared_ptr<URI>(parsed(baseUri()))](const URI& uri) {
        benchmark::DoNotOptimize(std::unique_ptr<URI>(uri.relativize(*base)));
    });
});

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
