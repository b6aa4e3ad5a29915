// Names to small ids: the pool of strings, and the map of names that conversions use.

#include "support/Contest.h"
#include "support/PoolLoad.h"
#include "support/Text.h"

#include "dataconv/NameIdMap.h"
#include "xml/XmlStringPool.h"

#include <string>
#include <unordered_map>

namespace Quillon::Bench {

namespace {

using Xml::XmlString;
using Xml::XmlStringPool;

std::vector<XmlString> xmlStrings(const std::vector<std::u16string>& texts) {
    std::vector<XmlString> result;
    for (const std::u16string& text : texts)
        result.push_back(toXmlString(text));
    return result;
}

std::vector<std::string> utf8Strings(const std::vector<std::u16string>& texts) {
    std::vector<std::string> result;
    for (const std::u16string& text : texts)
        result.push_back(toUtf8(text));
    return result;
}

class PoolLookup {
public:
    PoolLookup() {
        for (const XmlString& name : xmlStrings(poolNames()))
            pool_.insert(name);
    }
    void operator()() {
        for (const XmlString& name : names_)
            benchmark::DoNotOptimize(pool_.find(name));
    }
    Load load() const { return {names_.size()}; }

private:
    XmlStringPool pool_;
    std::vector<XmlString> names_ = xmlStrings(lookedUpNames());
};

class PoolFilling {
public:
    void operator()() {
        XmlStringPool pool;
        for (const XmlString& name : names_)
            benchmark::DoNotOptimize(pool.insert(name));
    }
    Load load() const { return {names_.size()}; }

private:
    std::vector<XmlString> names_ = xmlStrings(poolNames());
};

class MapLookup {
public:
    MapLookup() {
        for (const std::string& name : inserted_)
            map_.insert(name.c_str());
    }
    void operator()() {
        for (const std::string& name : names_)
            benchmark::DoNotOptimize(map_.find(name.c_str()));
    }
    Load load() const { return {names_.size()}; }

private:
    std::vector<std::string> inserted_ = utf8Strings(poolNames());
    std::vector<std::string> names_ = utf8Strings(lookedUpNames());
    DataConv::NameIdMap map_;
};

/// What a program would write without a library.
class StandardMapLookup {
public:
    StandardMapLookup() {
        for (const std::string& name : inserted_)
            map_.emplace(name, static_cast<unsigned>(map_.size()));
    }
    void operator()() {
        for (const std::string& name : names_)
            benchmark::DoNotOptimize(map_.find(name.c_str())->second);
    }
    Load load() const { return {names_.size()}; }

private:
    std::vector<std::string> inserted_ = utf8Strings(poolNames());
    std::vector<std::string> names_ = utf8Strings(lookedUpNames());
    std::unordered_map<std::string_view, unsigned> map_;
};

const Entries entries([] {
    enter("pool.find", kLibrary, [] { return PoolLookup(); });
    enter("pool.fill", kLibrary, [] { return PoolFilling(); });
    enter("map.find", kLibrary, [] { return MapLookup(); });
    enter("map.find", "std::unordered_map", [] { return StandardMapLookup(); });
});

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
