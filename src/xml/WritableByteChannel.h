#ifndef ZUTARNEX_XML_WRITABLEBYTECHANNEL_H
#define ZUTARNEX_XML_WRITABLEBYTECHANNEL_H

#include "xml/Channel.h"

namespace Quillon::Xml {

/// A sink of bytes.
class ZUTARNEX_API WritableByteChannel : public Channel {
public:
    ~WritableByteChannel() override = 0;

    /// Writes at most `length` bytes of `buffer` and returns how many. Throws: IOException.
    virtual unsigned int write(const unsigned char* buffer, unsigned int length) = 0;
};

} // namespace Quillon::Xml

#endif
