#include "TextPosition.h"

namespace Quillon::SaxEngine {

void TextPosition::advanceUtf8(const char* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        advance(static_cast<unsigned char>(bytes[i]), (bytes[i] & 0xC0) == 0x80);
}

void TextPosition::advanceUtf16(const char* bytes, std::size_t count, bool bigEndian) {
    for (std::size_t i = 0; i < count; i += 2) {
        const unsigned int high = static_cast<unsigned char>(bytes[bigEndian ? i : i + 1]);
        const unsigned int low = static_cast<unsigned char>(bytes[bigEndian ? i + 1 : i]);
        advance(high << 8 | low, (high & 0xFC) == 0xDC);
    }
}

void TextPosition::advance(unsigned int unit, bool continuesCharacter) {
    const bool endsLine = unit == '\r' || (unit == '\n' && !afterCarriageReturn_);
    if (endsLine)
        location_ = {location_.line + 1, 1};
    else if (unit != '\n' && !continuesCharacter)
        ++location_.column;
    afterCarriageReturn_ = unit == '\r';
}

} // namespace Quillon::SaxEngine
