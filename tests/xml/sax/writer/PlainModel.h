#ifndef ZUTARNEX_TESTS_XML_SAX_WRITER_PLAINMODEL_H
#define ZUTARNEX_TESTS_XML_SAX_WRITER_PLAINMODEL_H

#include "xml/sax/writer/XmlWriter.h"

#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "xml/IllegalArgumentException.h"
#include "xml/sax/Attributes.h"
#include "xml/sax/IllegalCharacterException.h"

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {

/// The writer as it is described: every fragment is converted alone and inserted at once, unit by unit and slowly.
/// Its operations are those of XmlWriter; the events let every exception out.
class PlainModel {
public:
    explicit PlainModel(std::ostream& out) : out_(out) {}

    void setEncoding(const char* name) {
        encoding_ = name;
        if (name == nullptr)
            return;
        if (std::strcmp(name, "UTF-8") == 0)
            last_ = 0xFFFF;
        if (std::strcmp(name, "US-ASCII") == 0)
            last_ = 0x7F;
        if (std::strcmp(name, "ISO-8859-1") == 0)
            last_ = 0xFF;
    }
    void setCanonical(bool on) { canonical_ = on; }

    void rawWrite(const unsigned short* ch, unsigned int start, unsigned int length) {
        char* const bytes = Runtime::utf16ToEncoding(encoding_, ch + start, length);
        const std::string text = bytes;
        Runtime::release(bytes);
        out_ << text.c_str();
    }
    void rawWrite(const XmlString& s) {
        if (!s.isNull())
            rawWrite(s.data(), 0, s.size());
    }
    void newLine() { fragment(u"\n"); }

    void escapeChars(const unsigned short* ch, unsigned int start, unsigned int length,
                     XmlWriter::EscapeContext context) {
        std::u16string run;
        const auto flush = [&] {
            if (!run.empty())
                fragment(run);
            run.clear();
        };
        for (unsigned int i = start; i < start + length; ++i) {
            const char16_t unit = ch[i];
            const std::u16string entity = entityFor(unit, context);
            const bool isUnwritable = unit > last_;
            if (isRefused(unit) || (isUnwritable && context == XmlWriter::UnescapedText))
                IllegalCharacterException::doThrow(unit);
            if (unit != u'\n' && entity.empty() && !isUnwritable) {
                run += unit;
                continue;
            }
            flush();
            if (unit == u'\n') {
                newLine();
            } else {
                fragment(u"&");
                if (!entity.empty())
                    fragment(entity);
                fragment(u";");
            }
        }
        flush();
    }
    void writeQuotedValue(const XmlString& value, XmlWriter::EscapeContext context) {
        fragment(u"\"");
        escapeString(value, context);
        fragment(u"\"");
    }
    void writeStartTag(const XmlString& qName, const Attributes& attributes) {
        fragment(u"<");
        rawWrite(qName);
        for (unsigned int i = 0; i < attributes.getLength(); ++i) {
            const XmlString name = attributes.getQName(i);
            if (name.isNull() || name.size() == 0)
                IllegalArgumentException::doThrow(XmlString());
            fragment(u" ");
            rawWrite(name);
            fragment(u"=");
            writeQuotedValue(attributes.getValue(i), XmlWriter::AttributeValue);
        }
        fragment(u">");
    }

    void startDocument() {
        if (canonical_ || last_ == 0x7F || encoding_ == nullptr)
            return;
        fragment(u"<?xml version=\"1.0\" encoding=\"");
        rawWrite(makeString(encoding_));
        fragment(u"\"");
        fragment(u"?>");
        newLine();
    }
    void endDocument() {
        if (canonical_)
            return;
        newLine();
        newLine();
    }
    void startElement(const XmlString&, const XmlString&, const XmlString& qName,
                      const Attributes& attributes) {
        writeStartTag(qName, attributes);
    }
    void endElement(const XmlString&, const XmlString&, const XmlString& qName) {
        fragment(u"</");
        rawWrite(qName);
        fragment(u">");
    }
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) {
        escapeChars(ch, start, length, XmlWriter::CharacterData);
    }
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) {
        fragment(u"<!--");
        escapeChars(ch, start, length, XmlWriter::UnescapedText);
        fragment(u"-->");
    }
    void processingInstruction(const XmlString& target, const XmlString& data) {
        fragment(u"<?");
        rawWrite(target);
        fragment(u" ");
        escapeString(data, XmlWriter::UnescapedText);
        fragment(u"?>");
    }
    void skippedEntity(const XmlString& name) {
        fragment(u"&");
        rawWrite(name);
        fragment(u";");
    }

private:
    static bool isRefused(char16_t unit) {
        return unit > 0xFFFD || (unit < 0x20 && unit != u'\t' && unit != u'\r' && unit != u'\n');
    }

    std::u16string entityFor(char16_t unit, XmlWriter::EscapeContext context) const {
        const bool isValue = context == XmlWriter::EntityValue || context == XmlWriter::AttributeValue;
        const bool isParsed = context == XmlWriter::AttributeValue || context == XmlWriter::CharacterData;
        if (unit == u'"' && isValue)
            return u"quot";
        if (unit == u'\'' && isValue && !canonical_)
            return u"apos";
        if (unit == u'&' && isParsed)
            return u"amp";
        if (unit == u'<' && isParsed)
            return u"lt";
        return unit == u'>' && isParsed ? u"gt" : u"";
    }

    void escapeString(const XmlString& s, XmlWriter::EscapeContext context) {
        if (!s.isNull())
            escapeChars(s.data(), 0, s.size(), context);
    }
    void fragment(const std::u16string& text) {
        const std::vector<unsigned short> units(text.begin(), text.end());
        rawWrite(units.data(), 0, static_cast<unsigned int>(units.size()));
    }

    std::ostream& out_;
    const char* encoding_ = "UTF-8";
    std::uint16_t last_ = 0xFFFF; ///< the highest unit that counts as writable
    bool canonical_ = false;
};

} // namespace Quillon::Xml::Sax

#endif
