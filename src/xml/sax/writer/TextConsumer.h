#ifndef ZUTARNEX_XML_SAX_WRITER_TEXTCONSUMER_H
#define ZUTARNEX_XML_SAX_WRITER_TEXTCONSUMER_H

#include "xml/sax/EventConsumer.h"
#include "xml/sax/writer/XmlWriter.h"
#include "zutarnex/export.h"

#include <iosfwd>

namespace Quillon::Xml::Sax {

/// A writer that can be bound to a reader, or stand behind an EventFilter, as one consumer.
///
///     TextConsumer consumer(out);
///     EventFilter::bind(&reader, &consumer);
///     reader.parse(makeString("catalog.xml"));
///
/// Layout:    XmlWriter, then EventConsumer; no fields of its own.
/// Ownership: as XmlWriter; the handlers that it hands out are the consumer itself and live as long as it does.
/// Threads:   as XmlWriter.
/// Throws:    as XmlWriter.
class ZUTARNEX_API TextConsumer : public XmlWriter, public EventConsumer {
public:
    explicit TextConsumer(std::ostream& out);
    ~TextConsumer() override;

    ContentHandler* getContentHandler() const override; ///< the consumer itself
    DTDHandler* getDTDHandler() const override;         ///< the consumer itself

    /// For SC_Properties_LexicalHandler() the consumer's LexicalHandler part, for SC_Properties_DeclarationHandler()
    /// its DeclHandler part, each as a `void*` that may be cast straight back to that pointer type.
    ///
    /// Throws: SaxNotRecognizedException, "Property: " and the name, for any other name.
    void* getProperty(const XmlString& name) const override;

    void setErrorHandler(ErrorHandler* handler) override; ///< XmlWriter::setErrorHandler
};

} // namespace Quillon::Xml::Sax

#endif
