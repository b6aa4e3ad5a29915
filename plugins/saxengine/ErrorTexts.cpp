#include "ErrorTexts.h"

#include "OpenEntity.h"

#include <cstdio>
#include <string_view>

namespace Quillon::SaxEngine {

namespace {

/// The bytes from the place of the error on, as Expat has them.
std::string_view bytesAtError(XML_Parser parser) {
    int offset = 0, size = 0;
    const char* buffer = XML_GetInputContext(parser, &offset, &size);
    return buffer && offset < size
               ? std::string_view(buffer + offset, static_cast<std::size_t>(size - offset))
               : std::string_view();
}

/// The character at the beginning of text in UTF-8, or -1 when that is ill-formed.
long leadingCharacter(std::string_view text) {
    const auto at = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
    const unsigned int lead = at(0);
    const unsigned int length = lead < 0x80   ? 1
                                : lead < 0xC2 ? 0
                                : lead < 0xE0 ? 2
                                : lead < 0xF0 ? 3
                                : lead < 0xF5 ? 4
                                              : 0;
    if (length == 0)
        return -1;
    long character =
        length == 1 ? static_cast<long>(lead) : static_cast<long>(lead & (0xFFu >> (length + 1)));
    for (unsigned int i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80)
            return -1;
        character = character << 6 | static_cast<long>(at(i) & 0x3F);
    }
    const bool isTooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    return isTooLong || isSurrogate || character > 0x10FFFF ? -1 : character;
}

bool mayStandInDocuments(long character) {
    return (character >= 0x20 || character == '\t' || character == '\n' || character == '\r')
           && character != 0xFFFE && character != 0xFFFF;
}

std::string illFormed(const Encoding& encoding) {
    return "bytes that are ill-formed in the encoding \"" + encoding.name + "\"";
}

long unitAt(std::string_view bytes, bool isBigEndian) {
    const auto first = static_cast<unsigned char>(bytes[0]), second = static_cast<unsigned char>(bytes[1]);
    return isBigEndian ? first << 8 | second : second << 8 | first;
}

/// The character (in UTF-16, the unit) at the beginning of `bytes`, as Expat has them; -1 when they are ill-formed.
long leadingCharacter(std::string_view bytes, const Encoding& encoding) {
    if (encoding.isUtf16)
        return bytes.size() < 2 ? -1 : unitAt(bytes, encoding.isBigEndian);
    const long byte = static_cast<unsigned char>(bytes[0]);
    if (encoding.expatName[0] != u'U') // ISO-8859-1
        return byte;
    const bool isAscii = encoding.expatName[1] == u'S';
    return isAscii ? (byte < 0x80 ? byte : -1) : leadingCharacter(bytes);
}

/// Expat says only "invalid token", whatever is invalid about it.
std::string invalidToken(const OpenEntity& entity) {
    const std::string_view bytes = bytesAtError(entity.parser());
    if (bytes.empty())
        return "not well-formed";
    if (bytes.size() == sizeof(XML_Char) && !entity.input().unwidened().empty())
        return entity.input().unwidened();
    const long character = leadingCharacter(bytes, entity.input().encoding());
    if (character < 0)
        return illFormed(entity.input().encoding());
    if (mayStandInDocuments(character))
        return "not well-formed";
    char text[64];
    std::snprintf(text, sizeof text, "the character U+%04lX is not allowed", character);
    return text;
}

} // namespace

std::string errorText(const OpenEntity& entity) {
    const XML_Error code = XML_GetErrorCode(entity.parser());
    switch (code) {
    case XML_ERROR_INVALID_TOKEN:
        return invalidToken(entity);
    case XML_ERROR_PARTIAL_CHAR:
        return "the input ends inside a character of the encoding \"" + entity.input().encoding().name + "\"";
    case XML_ERROR_AMPLIFICATION_LIMIT_BREACH:
        return "the entities expand beyond the amplification limit: 100 times what was read, once that is "
               "more than "
               "8 MiB";
    default:
        return XML_ErrorString(code);
    }
}

} // namespace Quillon::SaxEngine
