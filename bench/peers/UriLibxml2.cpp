// libxml2 resolves from text to text, parsing both operands; it has no normal form of a whole URI.

#include "support/Contest.h"
#include "support/UriLoad.h"

#include <libxml/uri.h>
#include <libxml/xmlmemory.h>

#include <memory>

namespace Quillon::Bench {

namespace {

struct FreeUri {
    void operator()(xmlURI* uri) const { xmlFreeURI(uri); }
};
using Uri = std::unique_ptr<xmlURI, FreeUri>;

const xmlChar* chars(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

void consume(xmlChar* text) {
    benchmark::DoNotOptimize(text);
    xmlFree(text);
}

const Entries entries([] {
    enter("uri.construct", "libxml2", [] {
        return Round(Load{uris().size()}, [] {
            for (const std::string& text : uris())
                benchmark::DoNotOptimize(Uri(xmlParseURI(text.c_str())));
        });
    });
    enter("uri.recompose", "libxml2", [] {
        std::vector<Uri> objects;
        for (const std::string& text : uris())
            objects.emplace_back(xmlParseURI(text.c_str()));
        return Round(Load{uris().size()}, [objects = std::move(objects)] {
            for (const Uri& uri : objects)
                consume(xmlSaveUri(uri.get()));
        });
    });
    enter("uri.resolve", "libxml2", [] {
        return Round(Load{relativeReferences().size()}, [] {
            for (const std::string& text : relativeReferences())
                consume(xmlBuildURI(chars(text), chars(baseUri())));
        });
    });
});

} // namespace

} // namespace Quillon::Bench
