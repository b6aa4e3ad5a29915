#include "support/Contest.h"
#include "support/ConversionLoad.h"

#include <QByteArray>

namespace Quillon::Bench {

namespace {

template <class T, class Parse>
void enterFromText(const char* workload, const Numbers<T>& numbers, Parse parse) {
    enter(workload, "Qt", [&numbers, parse] {
        return Round(Load{numbers.texts.size()}, [&numbers, parse] {
            for (const std::string& text : numbers.texts)
                benchmark::DoNotOptimize(
                    parse(QByteArrayView(text.data(), static_cast<qsizetype>(text.size()))));
        });
    });
}

template <class T, class Format>
void enterToText(const char* workload, const Numbers<T>& numbers, Format format) {
    enter(workload, "Qt", [&numbers, format] {
        return Round(Load{numbers.values.size()}, [&numbers, format] {
            for (const T& value : numbers.values)
                benchmark::DoNotOptimize(format(value));
        });
    });
}

const Entries entries([] {
    enterFromText("conversion.int32-from-text", int32Numbers(),
                  [](QByteArrayView text) { return text.toInt(); });
    enterFromText("conversion.uint64-from-text", uint64Numbers(),
                  [](QByteArrayView text) { return text.toULongLong(); });
    enterFromText("conversion.double-from-text", doubleNumbers(),
                  [](QByteArrayView text) { return text.toDouble(); });
    enterToText("conversion.int32-to-text", int32Numbers(),
                [](int value) { return QByteArray::number(value); });
    enterToText("conversion.uint64-to-text", uint64Numbers(),
                [](unsigned long long value) { return QByteArray::number(value); });
    enterToText("conversion.double-to-text", doubleNumbers(),
                [](double value) { return QByteArray::number(value, 'g', 16); });
});

} // namespace

} // namespace Quillon::Bench
