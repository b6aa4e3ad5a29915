#ifndef ZUTARNEX_XML_READABLEBYTECHANNEL_H
#define ZUTARNEX_XML_READABLEBYTECHANNEL_H

#include "xml/Channel.h"

namespace Quillon::Xml {

/// A source of bytes.
class ZUTARNEX_API ReadableByteChannel : public Channel {
public:
    ~ReadableByteChannel() override = 0;

    /// Reads at most `length` bytes into `buffer` and returns how many; 0 at the end. Throws: IOException.
    virtual unsigned int read(unsigned char* buffer, unsigned int length) = 0;
};

} // namespace Quillon::Xml

#endif
