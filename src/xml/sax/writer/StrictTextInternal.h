#ifndef ZUTARNEX_XML_SAX_WRITER_STRICTTEXTINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_STRICTTEXTINTERNAL_H

#include "xml/sax/writer/EventOutputInternal.h"
#include "xml/sax/writer/StrictRefusalInternal.h"

namespace Quillon::Xml::Sax {

/// Puts text that was checked before into the output of a writer, so that a parser gives it back unchanged.
class StrictText {
public:
    enum class Context { Content, AttributeValue, EntityValue };

    StrictText(EventOutput& out, char32_t lastCharacter) noexcept
        : out_(out), lastCharacter_(lastCharacter) {}

    void ascii(std::string_view text) const { out_.put(text); }
    void verbatim(Units units) const {
        if (!units.empty())
            out_.put(units);
    }
    /// A name that was found right, with what stands before and behind it.
    void name(std::string_view before, Units name, std::string_view after) const {
        out_.put(before, name, after);
    }
    /// With references for what the context or the encoding does not let stand.
    template <Context context>
    void escaped(Units units) const {
        if (!units.empty() && !out_.putShort<kSet<context>>(units))
            putEscaped(units, context);
    }
    template <Context context>
    void quoted(Units units) const {
        ascii("\"");
        quotedRest<context>(units);
    }
    /// What comes behind the first quotation mark.
    template <Context context>
    void quotedRest(Units units) const {
        if (out_.putShort<kSet<context>>("", units, "\""))
            return;
        putEscaped(units, context);
        ascii("\"");
    }
    /// The same as escaped content for text that has not been checked: looks at it and puts it in one go. What is to be
    /// refused is refused by `refusal()`, before anything is put.
    template <class MakeRefusal>
    void checkedContent(Units units, MakeRefusal refusal) const {
        if (!units.empty() && !out_.putShort<kCheckedContent>(units))
            checkAndPutContent(units, refusal());
    }
    /// In the quotation marks that it does not hold itself.
    void literal(Units units) const;
    /// ` PUBLIC "p" "s"` or ` SYSTEM "s"`; a null string is left out.
    void identifiers(const XmlString& publicId, const XmlString& systemId) const;
    /// Inside a CDATA section. `brackets` is how many `]` stand at its end so far, at most 2.
    void section(Units units, unsigned int& brackets) const;

private:
    using EscapeSet = Runtime::Kernels::EscapeSet;

    /// What a checked text may hold that cannot stay, as far as that is not a matter of the encoding.
    static constexpr EscapeSet setFor(Context context) noexcept {
        switch (context) {
        case Context::Content:
            return EscapeSet(1, 0xFFFF, "&<>\r");
        case Context::AttributeValue:
            return EscapeSet(1, 0xFFFF, "&<>\"\r\t\n");
        case Context::EntityValue:
            break;
        }
        return EscapeSet(1, 0xFFFF, "&\"%\r");
    }
    template <Context context>
    static constexpr EscapeSet kSet = setFor(context);
    static constexpr EscapeSet kCheckedContent{kFirstPrintable, kLastBeforeSurrogates, "&<>\r"};

    void putEscaped(Units units, Context context) const;
    void checkAndPutContent(Units units, const Refusal& refusal) const;
    void reference(char32_t c) const;
    static const char* replacementFor(char32_t c, Context context) noexcept;

    EventOutput& out_;
    char32_t lastCharacter_;
};

} // namespace Quillon::Xml::Sax

#endif
