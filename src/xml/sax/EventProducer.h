#ifndef ZUTARNEX_XML_SAX_EVENTPRODUCER_H
#define ZUTARNEX_XML_SAX_EVENTPRODUCER_H

#include "xml/sax/EventConsumer.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// A stage that pushes events into the next one.
///
/// Layout:    next (tests/abi/SaxAbiTest.cpp).
/// Ownership: the consumer is not taken; it must stay alive as long as events flow.
class ZUTARNEX_API EventProducer {
public:
    EventProducer() noexcept;
    explicit EventProducer(EventConsumer* next) noexcept;
    virtual ~EventProducer();

    EventConsumer* getNext() const noexcept;
    void setNext(EventConsumer* next) noexcept;

private:
    EventConsumer* next_ = nullptr;
};

} // namespace Quillon::Xml::Sax

#endif
