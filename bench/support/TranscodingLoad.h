#ifndef ZUTARNEX_BENCH_SUPPORT_TRANSCODINGLOAD_H
#define ZUTARNEX_BENCH_SUPPORT_TRANSCODINGLOAD_H

#include <cstddef>
#include <string>
#include <vector>

namespace Quillon::Bench {

/// Text in both encodings, each cut so that it has 64 KiB in the encoding that it is converted from. Figures count the
/// bytes of the input.
struct TranscodingText {
    const char* kind;
    std::u16string utf16;
    std::string utf8;
};

/// "ascii", "latin", "cjk" and "emoji".
const std::vector<TranscodingText>& transcodingTexts();

} // namespace Quillon::Bench

#endif
