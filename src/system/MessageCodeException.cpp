// Both templates are instantiated here and nowhere else: one vtable and one type_info, whichever module throws.
#include "system/MessageCodeException.h"

#include "runtime/CStringInternal.h"
#include "runtime/HostArrayInternal.h"
#include "runtime/HostServices.h"
#include "system/OutOfMemoryException.h"

#include <cstdarg>
#include <utility>

namespace Quillon::System {

namespace {

using HostText = Runtime::HostArray<char>;

const char* identifierOrDefault(const char* identifier) {
    return identifier != nullptr ? identifier : "KAVOLT";
}

HostText required(char* text) {
    if (text == nullptr) {
        OutOfMemoryException::doThrow();
    }
    return HostText(text);
}

HostText copyOf(const char* text) {
    return required(Runtime::duplicate(text));
}

} // namespace

template <class Base, class Identifier>
IdentifiableException<Base, Identifier>::IdentifiableException(const Identifier& identifier)
    : identifier_(identifier) {}

template <class Base, class Identifier>
IdentifiableException<Base, Identifier>::IdentifiableException(const IdentifiableException& other) = default;

template <class Base, class Identifier>
IdentifiableException<Base, Identifier>&
IdentifiableException<Base, Identifier>::operator=(const IdentifiableException& other) = default;

template <class Base, class Identifier>
IdentifiableException<Base, Identifier>::~IdentifiableException() = default;

template <class Base, class Identifier>
const std::string& IdentifiableException<Base, Identifier>::getIdentifier() const noexcept {
    return identifier_;
}

template <class Base>
MessageCodeException<Base>::MessageCodeException(const char* identifier, unsigned long code, ...)
    : Base(identifierOrDefault(identifier)), identifierText_(nullptr) {
    std::va_list arguments;
    va_start(arguments, code);
    char* const formatted = Runtime::hostServices().formatMessage(
        identifierOrDefault(identifier), static_cast<std::uint32_t>(code), arguments);
    va_end(arguments);
    const HostText message = required(formatted);
    this->setMessage(message.get());
    identifierText_ = copyOf(identifierOrDefault(identifier)).release();
}

template <class Base>
MessageCodeException<Base>::MessageCodeException(const MessageCodeException& other)
    : Base(other), identifierText_(copyOf(other.identifierText_).release()) {}

template <class Base>
MessageCodeException<Base>& MessageCodeException<Base>::operator=(const MessageCodeException& other) {
    HostText text = copyOf(other.identifierText_);
    Base::operator=(other);
    Runtime::release(std::exchange(identifierText_, text.release()));
    return *this;
}

template <class Base>
MessageCodeException<Base>::~MessageCodeException() {
    Runtime::release(identifierText_);
}

template <class Base>
const char* MessageCodeException<Base>::getIdentifierText() const noexcept {
    return identifierText_;
}

template class IdentifiableException<UserException, std::string>;
template class MessageCodeException<IdentifiableException<UserException, std::string>>;

} // namespace Quillon::System
