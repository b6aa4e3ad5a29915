#include "support/Contest.h"
#include "support/ConversionLoad.h"

#include <Poco/NumberFormatter.h>
#include <Poco/NumberParser.h>

namespace Quillon::Bench {

namespace {

template <class T, class Parse>
void enterFromText(const char* workload, const Numbers<T>& numbers, Parse parse) {
    enter(workload, "POCO", [&numbers, parse] {
        return Round(Load{numbers.texts.size()}, [&numbers, parse] {
            for (const std::string& text : numbers.texts)
                benchmark::DoNotOptimize(parse(text));
        });
    });
}

template <class T>
void enterToText(const char* workload, const Numbers<T>& numbers) {
    enter(workload, "POCO", [&numbers] {
        return Round(Load{numbers.values.size()}, [&numbers] {
            for (const T& value : numbers.values)
                benchmark::DoNotOptimize(Poco::NumberFormatter::format(static_cast<T>(value)));
        });
    });
}

const Entries entries([] {
    enterFromText("conversion.int32-from-text", int32Numbers(),
                  [](const std::string& text) { return Poco::NumberParser::parse(text); });
    enterFromText("conversion.uint64-from-text", uint64Numbers(),
                  [](const std::string& text) { return Poco::NumberParser::parseUnsigned64(text); });
    enterFromText("conversion.double-from-text", doubleNumbers(),
                  [](const std::string& text) { return Poco::NumberParser::parseFloat(text); });
    enterToText("conversion.int32-to-text", int32Numbers());
    enterToText("conversion.uint64-to-text", uint64Numbers());
    enterToText("conversion.double-to-text", doubleNumbers());
});

} // namespace

} // namespace Quillon::Bench
