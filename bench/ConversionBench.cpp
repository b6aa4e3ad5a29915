// Numbers from text and to text.

#include "support/Contest.h"
#include "support/ConversionLoad.h"

#include "dataconv/StandardConversions.h"
#include "runtime/HostServices.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Quillon::Bench {

namespace {

using namespace DataConv;

template <class Functor, class T>
void enterFromText(const std::string& workload, const Numbers<T>& numbers) {
    enter(workload, kLibrary, [&numbers] {
        return Round(Load{numbers.texts.size()}, [texts = numbers.texts]() mutable {
            const Functor functor;
            const ConversionFunctor<char*, T>* byInterface = &functor;
            benchmark::DoNotOptimize(byInterface);
            for (std::string& text : texts) {
                T value{};
                byInterface->_convert(text.data(), value);
                benchmark::DoNotOptimize(value);
            }
        });
    });
}

template <class Functor, class T>
void enterToText(const std::string& workload, const Numbers<T>& numbers) {
    enter(workload, kLibrary, [&numbers] {
        return Round(Load{numbers.values.size()}, [&numbers] {
            const Functor functor;
            const ConversionFunctor<T, char*>* byInterface = &functor;
            benchmark::DoNotOptimize(byInterface);
            for (const T& value : numbers.values) {
                char* text = nullptr;
                byInterface->_convert(value, text);
                benchmark::DoNotOptimize(text);
                Runtime::release(text);
            }
        });
    });
}

/// The C library: sscanf, and the function that is made for the type.
template <class T, class Direct>
void enterCFromText(const std::string& workload, const char* format, const Numbers<T>& numbers,
                    Direct direct) {
    const Load load{numbers.texts.size()};
    enter(workload, "sscanf", [&numbers, load, format] {
        return Round(load, [&numbers, format] {
            for (const std::string& text : numbers.texts) {
                T value{};
                std::sscanf(text.c_str(), format, &value);
                benchmark::DoNotOptimize(value);
            }
        });
    });
    enter(workload, "strto*", [&numbers, load, direct] {
        return Round(load, [&numbers, direct] {
            for (const std::string& text : numbers.texts)
                benchmark::DoNotOptimize(direct(text.c_str()));
        });
    });
}

template <class T>
void enterCToText(const std::string& workload, const char* format, const Numbers<T>& numbers) {
    enter(workload, "snprintf", [&numbers, format] {
        return Round(Load{numbers.values.size()}, [&numbers, format] {
            for (const T& value : numbers.values) {
                char text[64];
                const int length = std::snprintf(text, sizeof text, format, value);
                auto* copy = static_cast<char*>(std::malloc(static_cast<std::size_t>(length) + 1));
                std::memcpy(copy, text, static_cast<std::size_t>(length) + 1);
                benchmark::DoNotOptimize(copy);
                std::free(copy);
            }
        });
    });
}

const Entries entries([] {
    enterFromText<CStringToInt32>("conversion.int32-from-text", int32Numbers());
    enterFromText<CStringToUInt64>("conversion.uint64-from-text", uint64Numbers());
    enterFromText<CStringToDouble>("conversion.double-from-text", doubleNumbers());
    enterToText<Int32ToCString>("conversion.int32-to-text", int32Numbers());
    enterToText<UInt64ToCString>("conversion.uint64-to-text", uint64Numbers());
    enterToText<DoubleToCString>("conversion.double-to-text", doubleNumbers());

    enterCFromText("conversion.int32-from-text", "%d", int32Numbers(),
                   [](const char* text) { return std::strtol(text, nullptr, 10); });
    enterCFromText("conversion.uint64-from-text", "%llu", uint64Numbers(),
                   [](const char* text) { return std::strtoull(text, nullptr, 10); });
    enterCFromText("conversion.double-from-text", "%lg", doubleNumbers(),
                   [](const char* text) { return std::strtod(text, nullptr); });
    enterCToText("conversion.int32-to-text", "%d", int32Numbers());
    enterCToText("conversion.uint64-to-text", "%llu", uint64Numbers());
    enterCToText("conversion.double-to-text", "%.16g", doubleNumbers());
});

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
