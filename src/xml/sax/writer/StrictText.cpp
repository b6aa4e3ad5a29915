#include "xml/sax/writer/StrictTextInternal.h"

#include "runtime/CStringInternal.h"

#include <algorithm>

namespace Quillon::Xml::Sax {

namespace {

/// What is to be looked at in a CDATA section.
constexpr Runtime::Kernels::EscapeSet kSectionSet(1, 0xFFFF, "]>\r");

constexpr char kSectionStart[] = "<![CDATA[", kSectionEnd[] = "]]>";

} // namespace

void StrictText::reference(char32_t c) const {
    char text[16];
    Runtime::printBounded(text, sizeof text, c < 0x80 ? "&#%u;" : "&#x%X;", static_cast<unsigned int>(c));
    ascii(text);
}

/// For what cannot stay. Empty: a numeric reference.
const char* StrictText::replacementFor(char32_t c, Context context) noexcept {
    if (context == Context::EntityValue) // "&amp;" would be a reference in the replacement text
        return "";
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return "";
    }
}

void StrictText::putEscaped(Units units, Context context) const {
    static constexpr EscapeSet kSets[] = {setFor(Context::Content), setFor(Context::AttributeValue),
                                          setFor(Context::EntityValue)};
    const EscapeSet& set = kSets[static_cast<std::size_t>(context)];
    while (!units.empty()) {
        const EventOutput::Run run = out_.runOf(units, set, unwritableMaskFor(lastCharacter_));
        out_.put(run);
        if (run.length == units.size())
            return;
        std::size_t end = run.length;
        const char32_t c = nextCharacter(units, end);
        const char* replacement = replacementFor(c, context);
        if (*replacement)
            ascii(replacement);
        else
            reference(c);
        units = units.subspan(end);
    }
}

/// A text that is all one run has been looked at by that; any other one once more.
void StrictText::checkAndPutContent(Units units, const Refusal& refusal) const {
    const EventOutput::Run run = out_.runOf(units, kCheckedContent, unwritableMaskFor(lastCharacter_));
    if (run.length == units.size())
        return out_.put(run);
    refusal.unlessText(units.subspan(run.length), "text");
    putEscaped(units, Context::Content);
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
    for (std::size_t i = 0;;) {
        const Units rest = units.subspan(i);
        const std::size_t plain = Runtime::Kernels::firstToEscape(rest.data(), rest.size(), kSectionSet,
                                                                  unwritableMaskFor(lastCharacter_));
        if (plain != 0)
            brackets = 0;
        if (plain == rest.size())
            break;
        const std::size_t at = i += plain;
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
