#ifndef ZUTARNEX_XML_BYTECHANNEL_H
#define ZUTARNEX_XML_BYTECHANNEL_H

#include "xml/ReadableByteChannel.h"
#include "xml/WritableByteChannel.h"

namespace Quillon::Xml {

/// A source and a sink in one.
///
/// Layout: two Channel parts, one under each base; an implementation overrides close() and isOpen() once, for both.
class ZUTARNEX_API ByteChannel : public ReadableByteChannel, public WritableByteChannel {
public:
    ~ByteChannel() override = 0;
};

} // namespace Quillon::Xml

#endif
