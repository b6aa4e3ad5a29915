// Inputs that double in one direction: the evaluation reports how the time grows per doubling. Names are
// "growth.<shape>/<size>". A control does something linear, or for names n log n, that needs about as much memory, without
// the library: "control.<shape>/<size>". Where its time jumps, too, a cache of the machine has become too small.

#include "support/DiscardingStream.h"
#include "support/Random.h"
#include "support/Text.h"

#include "dataconv/NameIdMap.h"
#include "net/URI.h"
#include "runtime/HostServices.h"
#include "saxengine/MemoryByteChannel.h"
#include "saxengine/SaxEngineReader.h"
#include "xml/XmlStringPool.h"
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/HexBinaryCodec.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/EventFilter.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/writer/StrictWriter.h"
#include "xml/sax/writer/XmlWriter.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <expat.h>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <malloc.h>

namespace Quillon::Bench {

namespace {

using Xml::XmlString;

/// What is measured for an input of `size` of whatever the shape counts. Making the input is not.
using Work = std::function<void()>;
using MakeWork = Work (*)(std::size_t size);

// Documents that are read and written again by the writer that checks everything.

void readAndWrite(const std::string& document) {
    DiscardingStream out;
    Xml::Sax::SaxEngineReader reader;
    reader.setMaximumDepth(~0U);
    Xml::Sax::StrictWriter writer(out);
    Xml::Sax::EventFilter::bind(&reader, &writer);
    Xml::MemoryByteChannel channel(document.data(), document.size());
    Xml::Sax::InputSource source(&channel);
    reader.parse(source);
}

Work reading(std::string document) {
    return [document = std::move(document)] { readAndWrite(document); };
}

/// `piece(i)` for every i below `count`.
template <class Piece>
std::string repeated(std::size_t count, Piece piece) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += piece(i);
    return text;
}

std::string numbered(const char* before, std::size_t number, const char* behind) {
    return before + std::to_string(number) + behind;
}

Work parsing(std::string document) {
    return [document = std::move(document)] {
        const XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetStartElementHandler(parser, [](void*, const XML_Char*, const XML_Char**) {});
        if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) != XML_STATUS_OK)
            std::abort();
        XML_ParserFree(parser);
    };
}

Work attributesPerElement(std::size_t size) {
    return reading("<a" + repeated(size, [](std::size_t i) { return numbered(" n", i, "='v'"); }) + "/>");
}

Work namespaceDeclarations(std::size_t size) {
    return reading("<a" + repeated(size, [](std::size_t i) { return numbered(" xmlns:n", i, "='urn:x'"); })
                   + "/>");
}

Work depth(std::size_t size) {
    return reading(repeated(size, [](std::size_t) { return "<abc>"; })
                   + repeated(size, [](std::size_t) { return "</abc>"; }));
}

std::string siblings(std::size_t size) {
    return "<a>" + repeated(size, [](std::size_t i) { return numbered("<n", i, "/>"); }) + "</a>";
}

std::string entities(std::size_t size) {
    return "<!DOCTYPE a ["
           + repeated(size, [](std::size_t i) { return numbered("<!ENTITY n", i, " 'text'>"); }) + "]><a>"
           + repeated(size, [](std::size_t i) { return numbered("&n", i, ";"); }) + "</a>";
}

std::string prologDeclarations(std::size_t size) {
    return "<!DOCTYPE a ["
           + repeated(size, [](std::size_t i) { return numbered("<!ATTLIST a n", i, " CDATA #IMPLIED>"); })
           + "]><a/>";
}

template <std::string (*document)(std::size_t)>
Work readingOf(std::size_t size) {
    return reading(document(size));
}

template <std::string (*document)(std::size_t)>
Work parsingOf(std::size_t size) {
    return parsing(document(size));
}

Work textLength(std::size_t size) {
    return reading("<a>" + std::string(size, 'x') + "</a>");
}

Work attributeLength(std::size_t size) {
    return reading("<a b='" + std::string(size, 'x') + "'/>");
}

// URIs.

std::unique_ptr<Net::URI> parsed(const std::string& text) {
    return std::unique_ptr<Net::URI>(
        Net::URI::construct(reinterpret_cast<const unsigned char*>(text.c_str())));
}

Work uriLength(std::size_t size) {
    return [text = "http://host/" + std::string(size, 'p') + "?q#f"] {
        Runtime::release(parsed(text)->recompose());
    };
}

Work dotSegments(std::size_t size) {
    return [uri = std::shared_ptr<Net::URI>(parsed("x:/" + repeated(size, [](std::size_t) {
                                                       return "a/./../b/";
                                                   })))] { delete uri->normalize(); };
}

Work stepsUp(std::size_t size) {
    const std::shared_ptr<Net::URI> base(parsed("x:/" + repeated(size, [](std::size_t) { return "a/"; })));
    const std::shared_ptr<Net::URI> up(parsed(repeated(size, [](std::size_t) { return "../"; }) + "b"));
    return [base, up] { delete up->resolve(*base, true); };
}

// Codecs.

template <class Codec>
void thereAndBack(const std::string& binary) {
    Codec codec;
    Xml::cteErrorCode error = Xml::cteNoError;
    unsigned int textLength = 0, length = 0;
    const std::unique_ptr<unsigned char[]> text(
        codec.encode(reinterpret_cast<const unsigned char*>(binary.data()),
                     static_cast<unsigned int>(binary.size()), &textLength, &error));
    const std::unique_ptr<unsigned char[]> back(codec.decode(text.get(), textLength, &length, &error));
    benchmark::DoNotOptimize(back.get());
}

Work base64Length(std::size_t size) {
    return [binary = std::string(size, 'x')] { thereAndBack<Xml::Base64BinaryCodec>(binary); };
}

Work hexLength(std::size_t size) {
    return [binary = std::string(size, 'x')] { thereAndBack<Xml::HexBinaryCodec>(binary); };
}

/// As much memory is written and read as by an encoding to twice the length and a decoding.
Work copying(std::size_t size) {
    return [binary = std::string(size, 'x')] {
        const std::string text = binary + binary;
        const std::string back(text, 0, binary.size());
        benchmark::DoNotOptimize(back.data());
    };
}

// Names.

/// Names in an order that has nothing to do with the alphabet's.
std::string scrambledName(std::size_t i) {
    return "name" + std::to_string(Random(i).next());
}

Work orderedNames(std::size_t size) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < size; ++i)
        names.push_back(scrambledName(i));
    return [names] {
        std::map<std::string, std::size_t> map;
        for (const std::string& name : names)
            map.emplace(name, map.size());
        for (const std::string& name : names)
            benchmark::DoNotOptimize(map.find(name));
    };
}

Work poolSize(std::size_t size) {
    std::vector<XmlString> names;
    for (std::size_t i = 0; i < size; ++i)
        names.push_back(Xml::makeString(scrambledName(i).c_str()));
    return [names] {
        Xml::XmlStringPool pool;
        for (const XmlString& name : names)
            pool.insert(name);
        for (const XmlString& name : names)
            benchmark::DoNotOptimize(pool.find(name));
    };
}

Work nameMapSize(std::size_t size) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < size; ++i)
        names.push_back(scrambledName(i));
    return [names] {
        DataConv::NameIdMap map;
        for (const std::string& name : names)
            map.insert(name.c_str());
        for (const std::string& name : names)
            benchmark::DoNotOptimize(map.find(name.c_str()));
    };
}

Work listLength(std::size_t size) {
    return [size, name = Xml::makeString("name")] {
        Xml::Sax::AttributesImpl list;
        for (std::size_t i = 0; i < size; ++i)
            list.addAttribute(name, name, name, name, name);
        benchmark::DoNotOptimize(list.getLength());
    };
}

struct Shape {
    const char* name;
    MakeWork make;
    std::size_t first;
    std::size_t last;
    MakeWork control = nullptr;
};

constexpr std::size_t kKi = 1024, kMi = 1024 * kKi;

constexpr Shape kShapes[] = {
    {"attributes-per-element", attributesPerElement, 1 * kKi, 256 * kKi},
    {"namespace-declarations", namespaceDeclarations, 1 * kKi, 256 * kKi},
    {"depth", depth, 1 * kKi, 512 * kKi},
    {"siblings", readingOf<siblings>, 1 * kKi, 1 * kMi, parsingOf<siblings>},
    {"entities", readingOf<entities>, 1 * kKi, 256 * kKi, parsingOf<entities>},
    {"prolog-declarations", readingOf<prologDeclarations>, 1 * kKi, 256 * kKi, parsingOf<prologDeclarations>},
    {"text-length", textLength, 64 * kKi, 64 * kMi},
    {"attribute-length", attributeLength, 64 * kKi, 64 * kMi},
    {"uri-length", uriLength, 64 * kKi, 64 * kMi},
    {"dot-segments", dotSegments, 1 * kKi, 4 * kMi},
    {"steps-up", stepsUp, 1 * kKi, 8 * kMi},
    {"base64-length", base64Length, 64 * kKi, 64 * kMi, copying},
    {"hex-length", hexLength, 64 * kKi, 64 * kMi, copying},
    {"pool-size", poolSize, 1 * kKi, 1 * kMi, orderedNames},
    {"name-map-size", nameMapSize, 1 * kKi, 1 * kMi, orderedNames},
    {"list-length", listLength, 1 * kKi, 1 * kMi},
};

/// A shape is not doubled any more when an input has taken longer than this.
std::chrono::duration<double> timeLimit() {
    const char* seconds = std::getenv("ZUTARNEX_BENCH_GROWTH_LIMIT");
    return std::chrono::duration<double>(seconds ? std::strtod(seconds, nullptr) : 1.0);
}

void measure(benchmark::State& state, MakeWork make, const Shape* shape) {
    const auto size = static_cast<std::size_t>(state.range(0));
    // Shapes run one after the other, sizes upwards, each several times: all of these or none.
    static std::pair<const Shape*, MakeWork> slowShape;
    static std::size_t slowSize;
    if (slowShape == std::make_pair(shape, make) && size > slowSize) {
        state.SkipWithError("a smaller size took too long");
        return;
    }
    const Work work = make(size);
    work();
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        if (std::chrono::steady_clock::now() - begin > timeLimit()) {
            slowShape = {shape, make};
            slowSize = size;
        }
    }
}

/// Blocks of every size come from the heap and stay in the process. Otherwise the largest ones alone would be mapped
/// anew, page by page, and what that costs is not this library's growth.
void keepMemory() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

void enter(const char* kind, const Shape& shape, MakeWork make) {
    benchmark::RegisterBenchmark((kind + std::string(shape.name)).c_str(), measure, make, &shape)
        ->RangeMultiplier(2)
        ->Range(static_cast<std::int64_t>(shape.first), static_cast<std::int64_t>(shape.last))
        ->Unit(benchmark::kMillisecond);
}

const int entered = [] {
    keepMemory();
    for (const Shape& shape : kShapes) {
        enter("growth.", shape, shape.make);
        if (shape.control)
            enter("control.", shape, shape.control);
    }
    return 0;
}();

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
