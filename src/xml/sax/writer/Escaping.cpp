#include "xml/sax/writer/EscapingInternal.h"

#include "xml/sax/IllegalCharacterException.h"

namespace Quillon::Xml::Sax {

namespace {

using Runtime::Kernels::EscapeSet;

/// What becomes of a unit.
enum class Decision : unsigned char { Keep, EndLine, Quot, Amp, Apos, Lt, Gt, Drop, Refuse };

struct EscapeRules {
    XmlWriter::EscapeContext context;
    std::uint16_t unwritableMask;
    bool canonical;

    constexpr bool escapesQuotes() const {
        return context == XmlWriter::EntityValue || context == XmlWriter::AttributeValue;
    }
    constexpr bool escapesMarkup() const {
        return context == XmlWriter::AttributeValue || context == XmlWriter::CharacterData;
    }
};

constexpr unsigned short kLastLegal = 0xFFFD, kFirstPrintable = 0x20;

constexpr bool isIllegal(unsigned short c) {
    return c > kLastLegal || (c < kFirstPrintable && c != u'\t' && c != u'\r' && c != u'\n');
}

constexpr Decision decide(unsigned short c, const EscapeRules& rules) {
    switch (c) {
    case u'\n':
        return Decision::EndLine;
    case u'"':
        return rules.escapesQuotes() ? Decision::Quot : Decision::Keep;
    case u'&':
        return rules.escapesMarkup() ? Decision::Amp : Decision::Keep;
    case u'\'':
        return rules.escapesQuotes() && !rules.canonical ? Decision::Apos : Decision::Keep;
    case u'<':
        return rules.escapesMarkup() ? Decision::Lt : Decision::Keep;
    case u'>':
        return rules.escapesMarkup() ? Decision::Gt : Decision::Keep;
    default:
        if (isIllegal(c))
            return Decision::Refuse;
        if ((c & rules.unwritableMask) != 0)
            return rules.context == XmlWriter::UnescapedText ? Decision::Refuse : Decision::Drop;
        return Decision::Keep;
    }
}

constexpr EscapeSet setOf(const char* marks) {
    return EscapeSet(kFirstPrintable, kLastLegal, marks);
}

/// By context: the units that decide() does not keep, as far as that is not a matter of the encoding.
constexpr EscapeSet kEntityValue = setOf("\n\"'"), kAttributeValue = setOf("\n\"'&<>"),
                    kCharacterData = setOf("\n&<>"), kUnescapedText = setOf("\n");
constexpr EscapeSet kSets[] = {kEntityValue, kAttributeValue, kCharacterData, kUnescapedText};
constexpr EscapeSet kCanonicalSets[] = {setOf("\n\""), setOf("\n\"&<>"), kCharacterData, kUnescapedText};

/// EventOutput::putShort for a context. Canonical mode would keep more.
bool putShort(EventOutput& out, Units text, XmlWriter::EscapeContext context, std::string_view after) {
    switch (context) {
    case XmlWriter::EntityValue:
        return out.putShort<kEntityValue>("", text, after);
    case XmlWriter::AttributeValue:
        return out.putShort<kAttributeValue>("", text, after);
    case XmlWriter::CharacterData:
        return out.putShort<kCharacterData>("", text, after);
    case XmlWriter::UnescapedText:
        break;
    }
    return out.putShort<kUnescapedText>("", text, after);
}

void putEntity(EventOutput& out, std::string_view name) {
    out.put('&');
    out.put(name);
    out.put(';');
}

/// Puts what stands for a unit that could not stay.
void putReplacement(EventOutput& out, Decision decision) {
    switch (decision) {
    case Decision::EndLine:
        return out.put('\n');
    case Decision::Quot:
        return putEntity(out, "quot");
    case Decision::Amp:
        return putEntity(out, "amp");
    case Decision::Apos:
        return putEntity(out, "apos");
    case Decision::Lt:
        return putEntity(out, "lt");
    case Decision::Gt:
        return putEntity(out, "gt");
    case Decision::Drop:
        out.put('&');
        return out.put(';');
    case Decision::Keep:
    case Decision::Refuse:
        return;
    }
}

} // namespace

void putEscaped(EventOutput& out, Units text, XmlWriter::EscapeContext context) {
    while (!text.empty() && text.front() == u'\n') {
        out.put('\n');
        text = text.subspan(1);
    }
    if (text.empty() || putShort(out, text, context, ""))
        return;
    const EscapeRules rules{context, out.unwritableMask(), out.isCanonical()};
    const EscapeSet& set = (rules.canonical ? kCanonicalSets : kSets)[context];
    while (!text.empty()) {
        const EventOutput::Run run = out.runOf(text, set, rules.unwritableMask);
        if (run.length == text.size())
            return out.put(run);
        const unsigned short stop = text[run.length];
        const Decision decision = decide(stop, rules);
        if (decision == Decision::Refuse)
            IllegalCharacterException::doThrow(stop); // the run before it is not written
        out.put(run);
        putReplacement(out, decision);
        text = text.subspan(run.length + 1);
    }
}

void putQuoted(EventOutput& out, Units text, XmlWriter::EscapeContext context) {
    out.put('"');
    putQuotedRest(out, text, context);
}

void putQuotedRest(EventOutput& out, Units text, XmlWriter::EscapeContext context) {
    if (putShort(out, text, context, "\""))
        return;
    putEscaped(out, text, context);
    out.put('"');
}

} // namespace Quillon::Xml::Sax
