#ifndef ZUTARNEX_TESTS_SUPPORT_FAKEREADER_H
#define ZUTARNEX_TESTS_SUPPORT_FAKEREADER_H

#include "xml/sax/XmlReader.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
class AttributesImpl;
class DeclHandler;
class LexicalHandler;
class Locator;
class SaxParseException;
} // namespace Quillon::Xml::Sax

namespace Quillon::Testing {

/// A reader without a parser: it remembers what is set on it and, at each parse, plays a script of events into its
/// handlers. An event for which there is no handler is dropped; an exception ends the parse and leaves it.
///
///     FakeReader reader;
///     reader.startDocument().startElement(u"urn:a", u"e", u"p:e").characters(u"text").endElement(u"urn:a", u"e",
///         u"p:e").endDocument();
class FakeReader : public Xml::Sax::XmlReader {
public:
    using Event = std::function<void(FakeReader&)>;

    FakeReader();
    ~FakeReader() override;

    /// The script. A null argument is a null string.
    FakeReader& add(Event event);
    FakeReader& setDocumentLocator(Xml::Sax::Locator* locator);
    FakeReader& startDocument();
    FakeReader& endDocument();
    FakeReader& startPrefixMapping(const char16_t* prefix, const char16_t* uri);
    FakeReader& endPrefixMapping(const char16_t* prefix);
    FakeReader& startElement(const char16_t* uri, const char16_t* localName, const char16_t* qName);
    FakeReader& startElement(const char16_t* uri, const char16_t* localName, const char16_t* qName,
                             const Xml::Sax::AttributesImpl& attributes);
    FakeReader& endElement(const char16_t* uri, const char16_t* localName, const char16_t* qName);
    FakeReader& characters(const char16_t* text);
    FakeReader& ignorableWhitespace(const char16_t* text);
    FakeReader& processingInstruction(const char16_t* target, const char16_t* data);
    FakeReader& skippedEntity(const char16_t* name);
    FakeReader& notationDecl(const char16_t* name, const char16_t* publicId, const char16_t* systemId);
    FakeReader& unparsedEntityDecl(const char16_t* name, const char16_t* publicId, const char16_t* systemId,
                                   const char16_t* notationName);
    FakeReader& startDTD(const char16_t* name, const char16_t* publicId, const char16_t* systemId);
    FakeReader& endDTD();
    FakeReader& startEntity(const char16_t* name);
    FakeReader& endEntity(const char16_t* name);
    FakeReader& startCDATA();
    FakeReader& endCDATA();
    FakeReader& comment(const char16_t* text);
    FakeReader& elementDecl(const char16_t* name, const char16_t* model);
    FakeReader& attributeDecl(const char16_t* eName, const char16_t* aName, const char16_t* type,
                              const char16_t* mode, const char16_t* value);
    FakeReader& internalEntityDecl(const char16_t* name, const char16_t* value);
    FakeReader& externalEntityDecl(const char16_t* name, const char16_t* publicId, const char16_t* systemId);
    FakeReader& warning(const Xml::Sax::SaxParseException& exception);
    FakeReader& error(const Xml::Sax::SaxParseException& exception);
    FakeReader& fatalError(const Xml::Sax::SaxParseException& exception);
    /// What the resolver answers is deleted and counted in resolvedCount().
    FakeReader& resolveEntity(const char16_t* publicId, const char16_t* systemId);
    void clearScript();

    /// What was called, in order, such as `setFeature("http://...", true)`, `setContentHandler(set)`,
    /// `parse("document.xml")`; `set` stands for any pointer but null. Reading handlers is not recorded.
    const std::vector<std::string>& calls() const { return calls_; }
    void clearCalls() { calls_.clear(); }
    /// Feature and property operations with this name throw SaxNotRecognizedException, the name being its message.
    void refuse(const Xml::XmlString& name);
    int resolvedCount() const { return resolvedCount_; }

    Xml::Sax::LexicalHandler* lexicalHandler() const;
    Xml::Sax::DeclHandler* declHandler() const;

    void setFeature(const Xml::XmlString& name, bool value) override;
    bool getFeature(const Xml::XmlString& name) const override; ///< as set, else false
    void setProperty(const Xml::XmlString& name, void* value) override;
    void* getProperty(const Xml::XmlString& name) const override; ///< as set, else null
    void setEntityResolver(Xml::Sax::EntityResolver* resolver) override;
    Xml::Sax::EntityResolver* getEntityResolver() const override;
    void setDTDHandler(Xml::Sax::DTDHandler* handler) override;
    Xml::Sax::DTDHandler* getDTDHandler() const override;
    void setContentHandler(Xml::Sax::ContentHandler* handler) override;
    Xml::Sax::ContentHandler* getContentHandler() const override;
    void setErrorHandler(Xml::Sax::ErrorHandler* handler) override;
    Xml::Sax::ErrorHandler* getErrorHandler() const override;
    void parse(Xml::Sax::InputSource& source) override;
    void parse(const Xml::XmlString& systemId) override;

private:
    void checkKnown(const Xml::XmlString& name) const;

    std::vector<Event> script_;
    mutable std::vector<std::string> calls_;
    std::map<std::string, bool> features_;
    std::map<std::string, void*> properties_;
    std::vector<std::string> refused_;
    int resolvedCount_ = 0;
    Xml::Sax::EntityResolver* entityResolver_ = nullptr;
    Xml::Sax::DTDHandler* dtdHandler_ = nullptr;
    Xml::Sax::ContentHandler* contentHandler_ = nullptr;
    Xml::Sax::ErrorHandler* errorHandler_ = nullptr;
};

} // namespace Quillon::Testing

#endif
