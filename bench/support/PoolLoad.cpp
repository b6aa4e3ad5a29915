#include "support/PoolLoad.h"

#include "support/Random.h"
#include "support/Text.h"

#include <set>

namespace Quillon::Bench {

namespace {

constexpr std::size_t kNames = 10000;
constexpr std::size_t kLookups = 4096;

} // namespace

const std::vector<std::u16string>& poolNames() {
    static const std::vector<std::u16string> names = [] {
        Random random(6);
        std::set<std::u16string> seen;
        std::vector<std::u16string> result;
        while (result.size() < kNames) {
            const std::u16string name = asciiName(random.between(6, 20), random);
            if (seen.insert(name).second)
                result.push_back(name);
        }
        return result;
    }();
    return names;
}

const std::vector<std::u16string>& lookedUpNames() {
    static const std::vector<std::u16string> names = [] {
        Random random(7);
        std::vector<std::u16string> result;
        for (std::size_t i = 0; i < kLookups; ++i)
            result.push_back(poolNames()[random.below(kNames)]);
        return result;
    }();
    return names;
}

} // namespace Quillon::Bench
