#ifndef ZUTARNEX_SYSTEM_SYSTEMERRORINTERNAL_H
#define ZUTARNEX_SYSTEM_SYSTEMERRORINTERNAL_H

#include "system/MessageCodeException.h"

#include <cstdint>

namespace Quillon::System {

/// Raises the error of a message code that has no exception kind of its own: a CataloguedException with the
/// identifier "KAVOLT". `arguments` are those of the code's format.
///
/// Deliberate: it does not register the message catalog (tests/system/PluginLoaderTest.cpp,
/// RaisingByCodeDoesNotRegisterTheCatalog).
template <class... Arguments>
[[noreturn]] void raiseSystemError(std::uint32_t code, Arguments... arguments) {
    throw CataloguedException(nullptr, code, arguments...);
}

} // namespace Quillon::System

#endif
