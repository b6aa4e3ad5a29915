#include "support/Contest.h"
#include "support/PoolLoad.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/StringPool.hpp>

namespace Quillon::Bench {

namespace {

using xercesc::XMLStringPool;

constexpr unsigned int kModulus = 20011; // buckets: a prime beyond twice the names

void fill(XMLStringPool& pool) {
    for (const std::u16string& name : poolNames())
        benchmark::DoNotOptimize(pool.addOrFind(name.c_str()));
}

class Platform {
public:
    Platform() { xercesc::XMLPlatformUtils::Initialize(); }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    ~Platform() { xercesc::XMLPlatformUtils::Terminate(); }
};

class Lookup {
public:
    Lookup() : pool_(kModulus) { fill(pool_); }
    void operator()() {
        for (const std::u16string& name : lookedUpNames())
            benchmark::DoNotOptimize(pool_.getId(name.c_str()));
    }
    Load load() const { return {lookedUpNames().size()}; }

private:
    Platform platform_;
    XMLStringPool pool_;
};

class Filling {
public:
    void operator()() {
        XMLStringPool pool(kModulus);
        fill(pool);
    }
    Load load() const { return {poolNames().size()}; }

private:
    Platform platform_;
};

const Entries entries([] {
    enter("pool.find", "Xerces-C", [] { return Lookup(); });
    enter("pool.fill", "Xerces-C", [] { return Filling(); });
});

} // namespace

} // namespace Quillon::Bench
