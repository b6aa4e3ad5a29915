#include "support/Contest.h"
#include "support/PoolLoad.h"
#include "support/Text.h"

#include <libxml/xmlstring.h> // dict.h needs it, but does not say so

#include <libxml/dict.h>

#include <memory>

namespace Quillon::Bench {

namespace {

struct FreeDict {
    void operator()(xmlDict* dict) const { xmlDictFree(dict); }
};
using Dict = std::unique_ptr<xmlDict, FreeDict>;

std::vector<std::string> strings(const std::vector<std::u16string>& texts) {
    std::vector<std::string> result;
    for (const std::u16string& text : texts)
        result.push_back(toUtf8(text));
    return result;
}

void lookUp(const Dict& dict, const std::vector<std::string>& names) {
    for (const std::string& name : names)
        benchmark::DoNotOptimize(xmlDictLookup(dict.get(), reinterpret_cast<const xmlChar*>(name.c_str()),
                                               static_cast<int>(name.size())));
}

const Entries entries([] {
    enter("pool.find", "libxml2", [] {
        Dict dict(xmlDictCreate());
        lookUp(dict, strings(poolNames()));
        return Round(Load{lookedUpNames().size()},
                     [dict = std::move(dict), names = strings(lookedUpNames())] { lookUp(dict, names); });
    });
    enter("pool.fill", "libxml2", [] {
        return Round(Load{poolNames().size()}, [names = strings(poolNames())] {
            const Dict dict(xmlDictCreate());
            lookUp(dict, names);
        });
    });
});

} // namespace

} // namespace Quillon::Bench
