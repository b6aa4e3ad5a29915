#ifndef ZUTARNEX_SYSTEM_IDENTIFIABLEEXCEPTION_H
#define ZUTARNEX_SYSTEM_IDENTIFIABLEEXCEPTION_H

#include "system/Identifiable.h"
#include "system/UserException.h"

#include <string>

namespace Quillon::System {

/// An exception of kind `Base` with an identifier. The library holds one instance:
/// IdentifiableException<UserException, std::string>.
///
/// Layout: Base, Identifiable, the identifier, in this order (tests/abi/).
/// Throws: std::bad_alloc while it is made, copied or assigned.
template <class Base, class Identifier>
class ZUTARNEX_API IdentifiableException : public Base, public Identifiable {
public:
    explicit IdentifiableException(const Identifier& identifier);
    IdentifiableException(const IdentifiableException& other);
    IdentifiableException& operator=(const IdentifiableException& other);
    ~IdentifiableException() override;

    const std::string& getIdentifier() const noexcept override;

private:
    Identifier identifier_;
};

extern template class IdentifiableException<UserException, std::string>;

} // namespace Quillon::System

#endif
