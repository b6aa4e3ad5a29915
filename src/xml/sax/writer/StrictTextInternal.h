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
    void verbatim(Units units) const;
    /// With references for what the context or the encoding does not let stand.
    void escaped(Units units, Context context) const;
    void quoted(Units units, Context context) const;
    /// In the quotation marks that it does not hold itself.
    void literal(Units units) const;
    /// ` PUBLIC "p" "s"` or ` SYSTEM "s"`; a null string is left out.
    void identifiers(const XmlString& publicId, const XmlString& systemId) const;
    /// Inside a CDATA section. `brackets` is how many `]` stand at its end so far, at most 2.
    void section(Units units, unsigned int& brackets) const;

private:
    void reference(char32_t c) const;
    static const char* replacementFor(char32_t c, Context context) noexcept;

    EventOutput& out_;
    char32_t lastCharacter_;
};

} // namespace Quillon::Xml::Sax

#endif
