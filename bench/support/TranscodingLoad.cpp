#include "support/TranscodingLoad.h"

#include "support/Random.h"
#include "support/Text.h"

namespace Quillon::Bench {

namespace {

constexpr std::size_t kBytes = 65536;

/// The first `kBytes` bytes, less the character that is cut through.
std::string whole(std::string utf8) {
    std::size_t end = kBytes;
    while ((static_cast<unsigned char>(utf8[end]) & 0xC0U) == 0x80U)
        --end;
    utf8.resize(end);
    return utf8;
}

template <class Make>
TranscodingText text(const char* kind, Make make) {
    Random random(8);
    const std::u16string utf16 = make(kBytes + 2, random); // enough for 64 KiB of either
    return {kind, utf16.substr(0, kBytes / 2), whole(toUtf8(utf16))};
}

} // namespace

const std::vector<TranscodingText>& transcodingTexts() {
    static const std::vector<TranscodingText> texts = {text("ascii", asciiProse), text("latin", latinProse),
                                                       text("cjk", cjkProse), text("emoji", emoji)};
    return texts;
}

} // namespace Quillon::Bench
