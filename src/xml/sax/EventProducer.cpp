#include "xml/sax/EventProducer.h"

namespace Quillon::Xml::Sax {

EventProducer::EventProducer() noexcept = default;
EventProducer::EventProducer(EventConsumer* next) noexcept : next_(next) {}
EventProducer::~EventProducer() = default;

EventConsumer* EventProducer::getNext() const noexcept {
    return next_;
}

void EventProducer::setNext(EventConsumer* next) noexcept {
    next_ = next;
}

} // namespace Quillon::Xml::Sax
