#include "support/Contest.h"
#include "support/PoolLoad.h"

#include <QHash>
#include <QString>

namespace Quillon::Bench {

namespace {

std::vector<QString> strings(const std::vector<std::u16string>& texts) {
    std::vector<QString> result;
    for (const std::u16string& text : texts)
        result.push_back(QString::fromStdU16String(text));
    return result;
}

QHash<QString, unsigned> filled(const std::vector<QString>& names) {
    QHash<QString, unsigned> hash;
    for (const QString& name : names)
        hash.insert(name, static_cast<unsigned>(hash.size()) + 1);
    return hash;
}

const Entries entries([] {
    enter("pool.find", "Qt", [] {
        return Round(Load{lookedUpNames().size()},
                     [hash = filled(strings(poolNames())), names = strings(lookedUpNames())] {
                         for (const QString& name : names)
                             benchmark::DoNotOptimize(hash.value(name));
                     });
    });
    enter("pool.fill", "Qt",
          [] { return Round(Load{poolNames().size()}, [names = strings(poolNames())] { filled(names); }); });
});

} // namespace

} // namespace Quillon::Bench
