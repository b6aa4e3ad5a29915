#include "xml/sax/writer/StrictRefusalInternal.h"

#include "runtime/CStringInternal.h"
#include "xml/NamesInternal.h"
#include "xml/sax/SaxParseException.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace Quillon::Xml::Sax {

namespace {

constexpr bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// PubidChar (production 13), apart from the line ends, which a parser makes spaces of.
constexpr bool isPublicCharacter(char32_t c) {
    constexpr std::u32string_view kMarks = U" -'()+,./:=?;!*#@$_%";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
           || kMarks.find(c) != std::u32string_view::npos;
}

constexpr Runtime::Kernels::EscapeSet kNotVerbatim(kFirstPrintable, kLastBeforeSurrogates, "\r");

XmlString fromAscii(const std::string& text) {
    return makeString(reinterpret_cast<const unsigned char*>(text.c_str()));
}

} // namespace

char32_t nextCharacter(Units units, std::size_t& index) noexcept {
    const char32_t unit = units[index++];
    if (!isHighSurrogate(unit) || index == units.size() || !isLowSurrogate(units[index]))
        return unit;
    return 0x10000 + ((unit - 0xD800) << 10) + (units[index++] - 0xDC00u);
}

void Refusal::refuse(const XmlString& message) const {
    if (locator_)
        throw SaxParseException(message, *locator_);
    throw SaxException(message);
}

void Refusal::because(const char* reason) const {
    refuse(fromAscii(std::string(event_) + ": " + reason));
}

void Refusal::because(const char* reason, Units name) const {
    XmlString message = fromAscii(std::string(event_) + ": " + reason + ' ');
    if (!name.empty())
        message += XmlString(0, name.data(), static_cast<unsigned int>(name.size()));
    refuse(message);
}

void Refusal::character(char32_t c, const char* place) const {
    char code[16];
    Runtime::printBounded(code, sizeof code, "U+%04X", static_cast<unsigned int>(c));
    refuse(fromAscii(std::string(event_) + ": " + code + " cannot stand in " + place));
}

void Refusal::unlessLongText(Units units, const char* place) const {
    for (std::size_t i = 0;;) {
        const Units rest = units.subspan(i);
        i += Runtime::Kernels::firstToEscape(rest.data(), rest.size(), kNotText, 0);
        if (i == units.size())
            return;
        const char32_t c = nextCharacter(units, i);
        if (!isXmlCharacter(c))
            character(c, place);
    }
}

void Refusal::unlessVerbatim(Units units, const char* place) const {
    for (std::size_t i = 0;;) {
        const Units rest = units.subspan(i);
        i += Runtime::Kernels::firstToEscape(rest.data(), rest.size(), kNotVerbatim,
                                             unwritableMaskFor(lastCharacter_));
        if (i == units.size())
            return;
        const char32_t c = nextCharacter(units, i);
        if (!isXmlCharacter(c) || c == 0xD || c > lastCharacter_)
            character(c, place);
    }
}

void Refusal::unlessName(Units units, const char* place) const {
    if (units.empty())
        because(std::string("nothing cannot be ").append(place).c_str());
    std::size_t end = endOfName(units.data(), units.size());
    if (end != units.size())
        character(nextCharacter(units, end), place);
    if (lastCharacter_ > 0xFFFF)
        return;
    const auto unwritable =
        std::find_if(units.begin(), units.end(), [&](unsigned short u) { return u > lastCharacter_; });
    if (unwritable != units.end())
        character(*unwritable, place);
}

void Refusal::unlessNameWithoutColon(Units units, const char* place) const {
    unlessName(units, place);
    if (std::find(units.begin(), units.end(), ':') != units.end())
        character(':', place);
}

void Refusal::unlessQualifiedName(Units units, const char* place) const {
    unlessName(units, place);
    unlessColonQualifies(units, place);
}

void Refusal::unlessColonQualifies(Units name, const char* place) const {
    const auto colon = std::find(name.begin(), name.end(), ':');
    if (colon == name.end())
        return;
    if (colon == name.begin())
        character(':', place);
    unlessNameWithoutColon(name.subspan(static_cast<std::size_t>(colon - name.begin()) + 1), "a local name");
}

void Refusal::unlessSystemLiteral(Units units) const {
    unlessVerbatim(units, "a system identifier");
    const bool hasBoth = std::find(units.begin(), units.end(), '"') != units.end()
                         && std::find(units.begin(), units.end(), '\'') != units.end();
    if (hasBoth)
        because("a system identifier cannot hold both U+0022 and U+0027");
}

void Refusal::unlessPublicLiteral(Units units) const {
    bool spaceBefore = true; // a parser takes away leading, trailing and double spaces
    for (std::size_t i = 0; i < units.size();) {
        const char32_t c = nextCharacter(units, i);
        if (!isPublicCharacter(c) || (c == ' ' && (spaceBefore || i == units.size())))
            character(c, "a public identifier here");
        spaceBefore = c == ' ';
    }
}

} // namespace Quillon::Xml::Sax
