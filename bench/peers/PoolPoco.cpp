#include "support/Contest.h"
#include "support/PoolLoad.h"
#include "support/Text.h"

#include <Poco/AutoPtr.h>
#include <Poco/XML/NamePool.h>

namespace Quillon::Bench {

namespace {

using Pool = Poco::AutoPtr<Poco::XML::NamePool>;

std::vector<std::string> strings(const std::vector<std::u16string>& texts) {
    std::vector<std::string> result;
    for (const std::u16string& text : texts)
        result.push_back(toUtf8(text));
    return result;
}

/// Twice the size: its pool of open addressing does not grow.
Pool filled(const std::vector<std::string>& names) {
    const std::string none;
    Pool pool(new Poco::XML::NamePool(static_cast<unsigned long>(2 * names.size())));
    for (const std::string& name : names)
        pool->insert(name, none, name);
    return pool;
}

const Entries entries([] {
    enter("pool.find", "POCO", [] {
        return Round(Load{lookedUpNames().size()}, [pool = filled(strings(poolNames())),
                                                    names = strings(lookedUpNames()), none = std::string()] {
            Poco::XML::NamePool& names10000 = const_cast<Poco::XML::NamePool&>(*pool);
            for (const std::string& name : names)
                benchmark::DoNotOptimize(&names10000.insert(name, none, name));
        });
    });
    enter("pool.fill", "POCO",
          [] { return Round(Load{poolNames().size()}, [names = strings(poolNames())] { filled(names); }); });
});

} // namespace

} // namespace Quillon::Bench
