// Between UTF-8 and UTF-16: the kernels into a buffer that is there, and the operations that allocate their result.

#include "support/Contest.h"
#include "support/TranscodingLoad.h"

#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "runtime/kernels/TranscodeInternal.h"
#include "support/Text.h"

namespace Quillon::Bench {

namespace {

void enterToUtf8(const TranscodingText& text) {
    const Load load{1, text.utf16.size() * sizeof(char16_t)};
    const std::string name = std::string("transcoding.to-utf8.") + text.kind;
    enter(name, kLibrary, [load, &text] {
        return Round(load, [&text, room = std::vector<char>(3 * text.utf16.size())]() mutable {
            benchmark::DoNotOptimize(
                Runtime::Kernels::utf16ToUtf8(unitsOf(text.utf16), text.utf16.size(), room.data()));
            benchmark::ClobberMemory();
        });
    });
    enter(name + ".allocating", kLibrary, [load, &text] {
        return Round(load, [&text] {
            char* utf8 = Runtime::utf16ToUtf8(unitsOf(text.utf16), text.utf16.size());
            benchmark::DoNotOptimize(utf8);
            Runtime::release(utf8);
        });
    });
}

void enterToUtf16(const TranscodingText& text) {
    const Load load{1, text.utf8.size()};
    const std::string name = std::string("transcoding.to-utf16.") + text.kind;
    enter(name, kLibrary, [load, &text] {
        return Round(load, [&text, room = std::vector<unsigned short>(text.utf8.size())]() mutable {
            benchmark::DoNotOptimize(
                Runtime::Kernels::utf8ToUtf16(text.utf8.data(), text.utf8.size(), room.data()));
            benchmark::ClobberMemory();
        });
    });
    enter(name + ".allocating", kLibrary, [load, &text] {
        return Round(load, [&text] {
            unsigned short* utf16 =
                Runtime::utf8ToUtf16(text.utf8.data(), static_cast<std::ptrdiff_t>(text.utf8.size()));
            benchmark::DoNotOptimize(utf16);
            Runtime::release(utf16);
        });
    });
}

const Entries entries([] {
    for (const TranscodingText& text : transcodingTexts()) {
        enterToUtf8(text);
        enterToUtf16(text);
    }
});

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
