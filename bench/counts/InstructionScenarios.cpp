// Six fixed pieces of work whose instructions are counted: bench/README.md says how.
//
// usage: instruction_scenarios SCENARIO

#include "support/CodecLoad.h"
#include "support/ConversionLoad.h"
#include "support/DiscardingStream.h"
#include "support/Document.h"
#include "support/Player.h"
#include "support/PoolLoad.h"
#include "support/Text.h"
#include "support/UriLoad.h"

#include "dataconv/NameIdMap.h"
#include "dataconv/StandardConversions.h"
#include "net/URI.h"
#include "runtime/HostServices.h"
#include "saxengine/MemoryByteChannel.h"
#include "saxengine/SaxEngineReader.h"
#include "xml/XmlStringPool.h"
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/HexBinaryCodec.h"
#include "xml/sax/EventFilter.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/writer/StrictWriter.h"
#include "xml/sax/writer/XmlWriter.h"

#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <sstream>

using namespace Quillon;
using namespace Quillon::Bench;

/// What is counted: the collector starts when this function is entered and stops when it is left.
extern "C" [[gnu::noinline]] void countedRun(const std::function<void()>& run) {
    run();
    asm volatile("" ::: "memory"); // no tail call: that would leave the function too early
}

namespace {

using Run = std::function<void()>;

Run writing() {
    auto players = std::make_shared<std::vector<Player>>();
    for (const Document& document : writerDocuments())
        players->emplace_back(document);
    return [players] {
        DiscardingStream out;
        for (const Player& player : *players) {
            Xml::Sax::XmlWriter writer(out);
            player.play(writer);
        }
    };
}

std::string allDocumentsAsOne() {
    std::ostringstream out;
    out << "<all>";
    for (const Document& document : writerDocuments()) {
        std::ostringstream part;
        Xml::Sax::XmlWriter writer(part);
        Player(document).play(writer);
        out << part.str().substr(part.str().find("?>") + 2);
    }
    out << "</all>";
    return out.str();
}

Run formatting() {
    auto reader = std::make_shared<Xml::Sax::SaxEngineReader>();
    return [reader, text = allDocumentsAsOne()] {
        DiscardingStream out;
        Xml::Sax::StrictWriter writer(out);
        Xml::Sax::EventFilter::bind(reader.get(), &writer);
        Xml::MemoryByteChannel channel(text.data(), text.size());
        Xml::Sax::InputSource source(&channel);
        reader->parse(source);
    };
}

template <class Codec>
void thereAndBack(const std::vector<unsigned char>& binary, const std::string& text) {
    Codec codec;
    unsigned int length = 0;
    Xml::cteErrorCode error = Xml::cteNoError;
    delete[] codec.encode(binary.data(), static_cast<unsigned int>(binary.size()), &length, &error);
    delete[] codec.decode(reinterpret_cast<const unsigned char*>(text.data()),
                          static_cast<unsigned int>(text.size()), &length, &error);
}

Run coding() {
    return [] {
        thereAndBack<Xml::Base64BinaryCodec>(codecBinary(), base64Text());
        thereAndBack<Xml::HexBinaryCodec>(codecBinary(), hexText());
    };
}

std::unique_ptr<Net::URI> parsed(const std::string& text) {
    return std::unique_ptr<Net::URI>(
        Net::URI::construct(reinterpret_cast<const unsigned char*>(text.c_str())));
}

Run uriWork() {
    return [] {
        const auto base = parsed(baseUri());
        for (const std::string& text : uris())
            Runtime::release(parsed(text)->recompose());
        for (const std::string& text : relativeReferences())
            delete parsed(text)->resolve(*base, true);
        for (const std::string& text : looseUris())
            delete parsed(text)->normalize();
    };
}

Run naming() {
    std::vector<Xml::XmlString> names, lookedUp;
    std::vector<std::string> cNames, cLookedUp;
    for (const std::u16string& name : poolNames()) {
        names.push_back(toXmlString(name));
        cNames.push_back(toUtf8(name));
    }
    for (const std::u16string& name : lookedUpNames()) {
        lookedUp.push_back(toXmlString(name));
        cLookedUp.push_back(toUtf8(name));
    }
    return [names, lookedUp, cNames, cLookedUp] {
        Xml::XmlStringPool pool;
        for (const Xml::XmlString& name : names)
            pool.insert(name);
        for (const Xml::XmlString& name : lookedUp)
            pool.find(name);
        DataConv::NameIdMap map;
        for (const std::string& name : cNames)
            map.insert(name.c_str());
        for (const std::string& name : cLookedUp)
            map.find(name.c_str());
    };
}

template <class FromText, class ToText, class T>
void convert(const Numbers<T>& numbers) {
    const FromText fromText;
    const ToText toText;
    for (const std::string& text : numbers.texts) {
        T value{};
        fromText._convert(const_cast<char*>(text.c_str()), value);
    }
    for (const T& value : numbers.values) {
        char* text = nullptr;
        toText._convert(value, text);
        Runtime::release(text);
    }
}

Run converting() {
    return [] {
        using namespace DataConv;
        convert<CStringToInt32, Int32ToCString>(int32Numbers());
        convert<CStringToUInt64, UInt64ToCString>(uint64Numbers());
        convert<CStringToDouble, DoubleToCString>(doubleNumbers());
    };
}

struct Scenario {
    const char* name;
    Run (*prepare)();
};

constexpr Scenario kScenarios[] = {{"writer", writing}, {"format", formatting}, {"codecs", coding},
                                   {"uri", uriWork},    {"names", naming},      {"conversions", converting}};

int listScenarios() {
    for (const Scenario& scenario : kScenarios)
        std::puts(scenario.name);
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return listScenarios();
    for (const Scenario& scenario : kScenarios) {
        if (std::strcmp(arguments[1], scenario.name) != 0)
            continue;
        const Run run = scenario.prepare();
        run(); // what happens once only: symbols bound, tables made
        countedRun(run);
        return 0;
    }
    std::fprintf(stderr, "instruction_scenarios: no such scenario: %s\n", arguments[1]);
    return 2;
}
