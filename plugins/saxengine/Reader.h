#ifndef ZUTARNEX_SAXENGINE_READER_H
#define ZUTARNEX_SAXENGINE_READER_H

#include "ReaderSettings.h"
#include "Vocabulary.h"
#include "xml/sax/XmlReader.h"

namespace Quillon::SaxEngine {

class ParseSession;

/// The reader of the plug-in: features, properties and handlers; a ParseSession does the reading.
class Reader final : public Xml::Sax::XmlReader {
public:
    /// `memory` must outlive the reader; null: the C library's.
    explicit Reader(const XML_Memory_Handling_Suite* memory);
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() override;

    void setFeature(const Xml::XmlString& name, bool value) override;
    bool getFeature(const Xml::XmlString& name) const override;
    void setProperty(const Xml::XmlString& name, void* value) override;
    void* getProperty(const Xml::XmlString& name) const override;
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

    void setMaximumDepth(std::uint32_t depth) { settings_.maximumDepth = depth; }

private:
    ReaderSettings settings_;
    const Vocabulary words_;
    ParseSession* session_ = nullptr; ///< the parse that is running; null: none
};

} // namespace Quillon::SaxEngine

#endif
