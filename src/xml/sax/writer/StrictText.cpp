#include "xml/sax/writer/StrictTextInternal.h"

#include "runtime/CStringInternal.h"
#include "xml/sax/writer/XmlWriter.h"

#include <algorithm>
#include <cstring>

namespace Quillon::Xml::Sax {

namespace {

constexpr char kSectionStart[] = "<![CDATA[", kSectionEnd[] = "]]>";

} // namespace

void StrictText::ascii(const char* text) const {
    constexpr std::size_t kLongest = 64;
    unsigned short units[kLongest];
    const std::size_t length = std::min(std::strlen(text), kLongest);
    std::copy_n(text, length, units);
    out_.rawWrite(units, 0, static_cast<unsigned int>(length));
}

void StrictText::verbatim(Units units) const {
    if (!units.empty())
        out_.rawWrite(units.data(), 0, static_cast<unsigned int>(units.size()));
}

void StrictText::reference(char32_t c) const {
    char text[16];
    Runtime::printBounded(text, sizeof text, c < 0x80 ? "&#%u;" : "&#x%X;", static_cast<unsigned int>(c));
    ascii(text);
}

/// Null: as it is. Empty: a numeric reference.
const char* StrictText::replacementFor(char32_t c, Context context) const noexcept {
    const bool isEntityValue = context == Context::EntityValue;
    switch (c) {
    case '&': // in an entity value the reference would be one in the replacement text
        return isEntityValue ? "" : "&amp;";
    case '<':
        return isEntityValue ? nullptr : "&lt;";
    case '>':
        return isEntityValue ? nullptr : "&gt;";
    case '"':
        return isEntityValue ? "" : context == Context::AttributeValue ? "&quot;" : nullptr;
    case '%':
        return isEntityValue ? "" : nullptr;
    case '\r':
        return "";
    case '\t':
    case '\n':
        return context == Context::AttributeValue ? "" : nullptr;
    default:
        return c > lastCharacter_ ? "" : nullptr;
    }
}

void StrictText::escaped(Units units, Context context) const {
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < units.size();) {
        const std::size_t at = i;
        const char32_t c = nextCharacter(units, i);
        const char* replacement = replacementFor(c, context);
        if (!replacement)
            continue;
        verbatim(units.subspan(runStart, at - runStart));
        if (*replacement)
            ascii(replacement);
        else
            reference(c);
        runStart = i;
    }
    verbatim(units.subspan(runStart));
}

void StrictText::quoted(Units units, Context context) const {
    ascii("\"");
    escaped(units, context);
    ascii("\"");
}

void StrictText::literal(Units units) const {
    const char* mark = std::find(units.begin(), units.end(), '"') == units.end() ? "\"" : "'";
    ascii(mark);
    verbatim(units);
    ascii(mark);
}

void StrictText::identifiers(const XmlString& publicId, const XmlString& systemId) const {
    if (!publicId.isNull()) {
        ascii(" PUBLIC ");
        literal(unitsOf(publicId));
    } else if (!systemId.isNull()) {
        ascii(" SYSTEM");
    }
    if (!systemId.isNull()) {
        ascii(" ");
        literal(unitsOf(systemId));
    }
}

void StrictText::section(Units units, unsigned int& brackets) const {
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < units.size();) {
        const std::size_t at = i;
        const char32_t c = nextCharacter(units, i);
        const bool endsSection = c == '>' && brackets == 2;
        const bool needsReference = c == '\r' || c > lastCharacter_;
        brackets = c == ']' ? std::min(brackets + 1, 2u) : 0;
        if (!endsSection && !needsReference)
            continue;
        verbatim(units.subspan(runStart, at - runStart));
        runStart = needsReference ? i : at;
        ascii(kSectionEnd);
        if (needsReference)
            reference(c);
        ascii(kSectionStart);
    }
    verbatim(units.subspan(runStart));
}

} // namespace Quillon::Xml::Sax
