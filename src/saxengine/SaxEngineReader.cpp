#include "saxengine/SaxEngineReader.h"

#include "system/OutOfMemoryException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/AttachedThread.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/ServiceFactory.h"

#include <cerrno>
#include <utility>

namespace Quillon::Xml::Sax {

namespace {

constexpr Utf16Literal
    kUnusableParser(u"The parser behind the plug-in \"saxengine\" does not use 16-bit characters.");
constexpr Utf16Literal kNoReader(u"The plug-in \"saxengine\" could not make a reader.");

/// The plug-in's statuses are error numbers: an exception could not cross its functions, which are C.
[[noreturn]] void throwStatus(int status) {
    if (status == ENOMEM)
        System::OutOfMemoryException::doThrow();
    throw SaxNotSupportedException(makeString(status == ENOTSUP ? kUnusableParser.units : kNoReader.units));
}

XmlReader* createReader(const boost::shared_ptr<ServiceFactory>& factory) {
    SaxSvc_* service = factory->getService();
    factory->validateInterface(service);
    const AttachedThread attached(factory);
    void* reader = nullptr;
    if (const int status = service->functions->createReader(service, &reader))
        throwStatus(status);
    return static_cast<XmlReader*>(reader);
}

} // namespace

SaxEngineReader::SaxEngineReader() : SaxEngineReader(ServiceFactory::create()) {}

SaxEngineReader::SaxEngineReader(boost::shared_ptr<ServiceFactory> factory)
    : factory_(std::move(factory)), reader_(createReader(factory_)) {}

SaxEngineReader::~SaxEngineReader() {
    const AttachedThread attached(factory_);
    SaxSvc_* service = factory_->getService();
    service->functions->destroyReader(service, reader_);
}

void SaxEngineReader::setFeature(const XmlString& name, bool value) {
    reader_->setFeature(name, value);
}
bool SaxEngineReader::getFeature(const XmlString& name) const {
    return reader_->getFeature(name);
}
void SaxEngineReader::setProperty(const XmlString& name, void* value) {
    reader_->setProperty(name, value);
}
void* SaxEngineReader::getProperty(const XmlString& name) const {
    return reader_->getProperty(name);
}
void SaxEngineReader::setEntityResolver(EntityResolver* resolver) {
    reader_->setEntityResolver(resolver);
}
EntityResolver* SaxEngineReader::getEntityResolver() const {
    return reader_->getEntityResolver();
}
void SaxEngineReader::setDTDHandler(DTDHandler* handler) {
    reader_->setDTDHandler(handler);
}
DTDHandler* SaxEngineReader::getDTDHandler() const {
    return reader_->getDTDHandler();
}
void SaxEngineReader::setContentHandler(ContentHandler* handler) {
    reader_->setContentHandler(handler);
}
ContentHandler* SaxEngineReader::getContentHandler() const {
    return reader_->getContentHandler();
}
void SaxEngineReader::setErrorHandler(ErrorHandler* handler) {
    reader_->setErrorHandler(handler);
}
ErrorHandler* SaxEngineReader::getErrorHandler() const {
    return reader_->getErrorHandler();
}

void SaxEngineReader::parse(InputSource& source) {
    const AttachedThread attached(factory_);
    reader_->parse(source);
}

void SaxEngineReader::parse(const XmlString& systemId) {
    InputSource source(systemId);
    parse(source);
}

unsigned int SaxEngineReader::maximumDepth() const noexcept {
    return maximumDepth_;
}

void SaxEngineReader::setMaximumDepth(unsigned int depth) {
    SaxSvc_* service = factory_->getService();
    service->functions->setMaximumDepth(service, reader_, depth);
    maximumDepth_ = depth;
}

const char* SaxEngineReader::engineName() const {
    SaxSvc_* service = factory_->getService();
    return service->functions->engineName(service);
}

} // namespace Quillon::Xml::Sax
