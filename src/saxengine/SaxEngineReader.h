#ifndef ZUTARNEX_SAXENGINE_SAXENGINEREADER_H
#define ZUTARNEX_SAXENGINE_SAXENGINEREADER_H

#include "xml/sax/XmlReader.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::Xml::Sax {

class ServiceFactory;

/// Reads documents with the parser of the plug-in "saxengine": XML 1.0 and Namespaces, without validation.
///
///     SaxEngineReader reader;
///     reader.setContentHandler(&writer);
///     reader.parse(makeString("catalog.xml"));
///
/// A reader may read any number of documents, one after the other, also after one that failed. The system identifier
/// of a document is a path or a file: URI; no network is ever reached. What features and properties there are and
/// what they are at first, docs/reading.md lists.
///
/// Ownership: owns its parser and shares the plug-in; handlers and sources are not taken.
/// Threads:   one reader is used by one thread at a time; different readers may be used by different threads, but they
///            are made one at a time. The calling thread is attached to the plug-in while it makes, uses or destroys
///            the parser.
/// Throws:    `parse` throws the SaxParseException of a fatal error after it told the error handler, whether there is
///            one or not; SaxException for a source that cannot be opened (it names it and says why) and for a parse
///            inside a parse; System::OutOfMemoryException, std::bad_alloc; whatever a handler, a resolver or a
///            channel throws. No event follows any of them, and the reader can be used again.
class SaxEngineReader : public XmlReader {
public:
    /// Elements nested deeper than this are a fatal error, unless setMaximumDepth() says otherwise.
    static constexpr unsigned int kDefaultMaximumDepth = 10000;

    /// Throws: System::PluginNotFoundException when libsaxengine.so is not found, and everything else that
    ///         ServiceFactory::create throws; SaxNotSupportedException when the plug-in's parser was built with
    ///         characters of another width; System::OutOfMemoryException. A service of another interface version ends
    ///         the process (ServiceFactory::validateInterface).
    SaxEngineReader();
    /// A reader over a plug-in that is loaded already. The rest as above.
    explicit SaxEngineReader(boost::shared_ptr<ServiceFactory> factory);
    SaxEngineReader(const SaxEngineReader&) = delete;
    SaxEngineReader& operator=(const SaxEngineReader&) = delete;
    ~SaxEngineReader() override;

    void setFeature(const XmlString& name, bool value) override;
    bool getFeature(const XmlString& name) const override;
    void setProperty(const XmlString& name, void* value) override;
    void* getProperty(const XmlString& name) const override;
    void setEntityResolver(EntityResolver* resolver) override;
    EntityResolver* getEntityResolver() const override;
    void setDTDHandler(DTDHandler* handler) override;
    DTDHandler* getDTDHandler() const override;
    void setContentHandler(ContentHandler* handler) override;
    ContentHandler* getContentHandler() const override;
    void setErrorHandler(ErrorHandler* handler) override;
    ErrorHandler* getErrorHandler() const override;
    void parse(InputSource& source) override;
    void parse(const XmlString& systemId) override;

    /// How deep elements may be nested, from the next parse on; 0 lets no element through.
    unsigned int maximumDepth() const noexcept;
    void setMaximumDepth(unsigned int depth);

    /// The name and version of the parser behind the plug-in, for people to read.
    const char* engineName() const;

private:
    boost::shared_ptr<ServiceFactory> factory_;
    XmlReader* reader_; ///< the plug-in's; goes back to it
    unsigned int maximumDepth_ = kDefaultMaximumDepth;
};

} // namespace Quillon::Xml::Sax

#endif
