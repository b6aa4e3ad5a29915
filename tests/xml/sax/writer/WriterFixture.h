#ifndef ZUTARNEX_TESTS_XML_SAX_WRITER_WRITERFIXTURE_H
#define ZUTARNEX_TESTS_XML_SAX_WRITER_WRITERFIXTURE_H

#include "xml/sax/writer/XmlWriter.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/UserException.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/IllegalCharacterException.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>

namespace Quillon::Xml::Sax {

/// Keeps what is written in the object itself, so that it takes no part in the counting of memory.
class FixedSink : public std::streambuf {
public:
    FixedSink() { clear(); }

    std::string written() const { return std::string(pbase(), pptr()); }
    void clear() { setp(bytes_, bytes_ + sizeof bytes_); }
    void takeNothing() { setp(bytes_, bytes_); } ///< until clear()

private:
    char bytes_[4096];
};

/// A writer over a sink, with the calls that tests make again and again.
class WriterFixture : public Testing::HostFixture {
protected:
    /// A first message of the catalog and a first stream exception make things that stay.
    void warmUp() override {
        try {
            IllegalCharacterException::doThrow(1);
        } catch (const IllegalCharacterException&) {
        }
    }

    /// What has been written since the last call.
    std::string written() {
        std::string result = sink.written();
        sink.clear();
        return result;
    }

    void characters(const char16_t* literal) {
        const auto run = Testing::units(literal);
        writer.characters(run.data(), 0, lengthOf(run));
    }
    void ignorableWhitespace(const char16_t* literal) {
        const auto run = Testing::units(literal);
        writer.ignorableWhitespace(run.data(), 0, lengthOf(run));
    }
    void comment(const char16_t* literal) {
        const auto run = Testing::units(literal);
        writer.comment(run.data(), 0, lengthOf(run));
    }
    void escape(const char16_t* literal, XmlWriter::EscapeContext context) {
        const auto run = Testing::units(literal);
        writer.escapeChars(run.data(), 0, lengthOf(run), context);
    }
    /// What `literal` is written as in `context`.
    std::string escaped(const char16_t* literal, XmlWriter::EscapeContext context) {
        escape(literal, context);
        return written();
    }
    void rawWrite(const char16_t* literal) {
        const auto run = Testing::units(literal);
        writer.rawWrite(run.data(), 0, lengthOf(run));
    }
    void startElement(const char16_t* qName, const Attributes& attributes = AttributesImpl()) {
        writer.startElement(Testing::text(u""), Testing::text(u""), Testing::text(qName), attributes);
    }
    void endElement(const char16_t* qName) {
        writer.endElement(Testing::text(u""), Testing::text(u""), Testing::text(qName));
    }
    void processingInstruction(const char16_t* target, const char16_t* data) {
        writer.processingInstruction(Testing::text(target), Testing::text(data));
    }
    void startDTD(const char16_t* name = u"doc", const char16_t* publicId = nullptr,
                  const char16_t* systemId = nullptr) {
        writer.startDTD(Testing::text(name), Testing::text(publicId), Testing::text(systemId));
    }

    /// The message of the IllegalCharacterException that `call` ends with; another text when it does not.
    template <class Call>
    static std::string illegalCharacterIn(Call call) {
        try {
            call();
        } catch (const IllegalCharacterException& e) {
            return dynamic_cast<const System::UserException&>(e).getMessage();
        }
        return "nothing was thrown";
    }

    static unsigned int lengthOf(const std::vector<unsigned short>& terminated) {
        return static_cast<unsigned int>(terminated.size() - 1);
    }

    FixedSink sink;
    std::ostream out{&sink};
    XmlWriter writer{out};
};

using AttributePair = std::pair<const char16_t*, const char16_t*>;

/// A list of names and values.
inline AttributesImpl attributesOf(std::initializer_list<AttributePair> pairs) {
    AttributesImpl list;
    for (const auto& [name, value] : pairs)
        list.addAttribute(Testing::text(u""), Testing::text(name), Testing::text(name),
                          Testing::text(u"CDATA"), Testing::text(value));
    return list;
}

/// A list of an application's own: one attribute a="v" unless an operation is overridden.
class ForeignAttributes : public Attributes {
public:
    unsigned int getLength() const override { return 1; }
    XmlString getURI(unsigned int) const override { return XmlString(); }
    XmlString getLocalName(unsigned int) const override { return XmlString(); }
    XmlString getQName(unsigned int) const override { return Testing::text(u"a"); }
    XmlString getType(unsigned int) const override { return XmlString(); }
    XmlString getValue(unsigned int) const override { return Testing::text(u"v"); }
    int getIndex(const XmlString&, const XmlString&) const override { return -1; }
    int getIndex(const XmlString&) const override { return -1; }
    XmlString getType(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getType(const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&) const override { return XmlString(); }
};

} // namespace Quillon::Xml::Sax

#endif
