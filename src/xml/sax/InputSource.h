#ifndef ZUTARNEX_XML_SAX_INPUTSOURCE_H
#define ZUTARNEX_XML_SAX_INPUTSOURCE_H

#include "xml/ReadableByteChannel.h"
#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {}

namespace Quillon::Xml::Sax {

/// Where a document or an entity comes from: a channel to read, or a system identifier for the reader to open.
///
/// Layout:    publicId, systemId, encoding, byteChannel (tests/abi/SaxAbiTest.cpp).
/// Ownership: the channel is not taken, never closed and never deleted; it must stay alive until the parse is over.
/// Throws:    System::OutOfMemoryException from the constructors; ImmutableObjectWriteError from a setter when the
///            same string was set to a literal before.
class ZUTARNEX_API InputSource {
public:
    InputSource(); ///< three empty strings, no channel
    InputSource(ReadableByteChannel* byteChannel);
    InputSource(XmlString systemId);
    InputSource(const InputSource& other);
    InputSource&
    operator=(const InputSource& other) noexcept; ///< takes over all values, whatever the old ones were
    virtual ~InputSource();

    XmlString getPublicId() const;
    XmlString getSystemId() const;
    /// The encoding, when it is known from outside: it goes before what the document declares.
    XmlString getEncoding() const;
    ReadableByteChannel* getByteChannel() const noexcept;

    void setPublicId(XmlString publicId);
    void setSystemId(XmlString systemId);
    void setEncoding(XmlString encoding);
    void setByteChannel(ReadableByteChannel* byteChannel) noexcept;

private:
    XmlString publicId_;
    XmlString systemId_;
    XmlString encoding_;
    ReadableByteChannel* byteChannel_ = nullptr;
};

} // namespace Quillon::Xml::Sax

#endif
