#ifndef ZUTARNEX_SYSTEM_MESSAGECODEEXCEPTION_H
#define ZUTARNEX_SYSTEM_MESSAGECODEEXCEPTION_H

#include "system/IdentifiableException.h"

namespace Quillon::System {

/// An exception whose message is the text of a code of the message catalog. The library holds one instance,
/// CataloguedException.
///
/// Layout:    Base, then a pointer to the identifier as a C string (tests/abi/).
/// Ownership: owns that C string, a block from the host's allocator; copies are deep.
/// Throws:    OutOfMemoryException when the host has no memory for a text, std::bad_alloc when `new` has none, while
///            the exception is made, copied or assigned; a failed assignment leaves the identifier's C string as it was.
template <class Base>
class ZUTARNEX_API MessageCodeException : public Base {
public:
    /// `identifier`: null counts as "KAVOLT". `code`: a code that was registered with the host's message service;
    /// the arguments behind it are those of its printf format.
    MessageCodeException(const char* identifier, unsigned long code, ...);
    MessageCodeException(const MessageCodeException& other);
    MessageCodeException& operator=(const MessageCodeException& other);
    ~MessageCodeException() override;

    const char*
    getIdentifierText() const noexcept; ///< what getIdentifier() holds; lives as long as the exception

private:
    char* identifierText_;
};

extern template class MessageCodeException<IdentifiableException<UserException, std::string>>;

/// The base of every exception of the message catalog, and the kind of an error that is raised by code alone.
using CataloguedException = MessageCodeException<IdentifiableException<UserException, std::string>>;

} // namespace Quillon::System

#endif
