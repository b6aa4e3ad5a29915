#ifndef ZUTARNEX_XML_CHANNEL_H
#define ZUTARNEX_XML_CHANNEL_H

#include "xml/Closeable.h"

namespace Quillon::Xml {

/// A source or sink of bytes that is open until it has been closed.
class ZUTARNEX_API Channel : public Closeable {
public:
    ~Channel() override = 0;

    virtual bool isOpen() const = 0;
};

} // namespace Quillon::Xml

#endif
