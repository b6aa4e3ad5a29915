// The exceptions of loaders and plug-ins: interfaces that callers catch, and what is really thrown.
#include "system/IllegalStateException.h"
#include "system/InternalException.h"
#include "system/MessageCatalogInternal.h"
#include "system/MessageCodeException.h"
#include "system/OutOfRangeException.h"
#include "system/PluginNotFoundException.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"

namespace Quillon::System {

namespace {

class SharedLibraryNotFoundExceptionImpl final : public SharedLibraryNotFoundException,
                                                 public InternalException {};

class SymbolNotFoundExceptionImpl final : public SymbolNotFoundException, public InternalException {};

class OutOfRangeExceptionImpl final : public OutOfRangeException, public InternalException {};

class IllegalStateExceptionImpl final : public IllegalStateException {};

class PluginNotFoundExceptionImpl final : public PluginNotFoundException, public CataloguedException {
public:
    explicit PluginNotFoundExceptionImpl(const char* name)
        : CataloguedException("KAVOLT:PluginNotFound", QVPI_PLUGIN_NOT_FOUND, name) {}
};

} // namespace

SharedLibraryNotFoundException::~SharedLibraryNotFoundException() = default;
SymbolNotFoundException::~SymbolNotFoundException() = default;
OutOfRangeException::~OutOfRangeException() = default;
IllegalStateException::~IllegalStateException() = default;
PluginNotFoundException::~PluginNotFoundException() = default;

void SharedLibraryNotFoundException::doThrow() {
    throw SharedLibraryNotFoundExceptionImpl();
}

void SymbolNotFoundException::doThrow() {
    throw SymbolNotFoundExceptionImpl();
}

void OutOfRangeException::doThrow() {
    throw OutOfRangeExceptionImpl();
}

void IllegalStateException::doThrow(const char*) {
    throw IllegalStateExceptionImpl();
}

void PluginNotFoundException::doThrow(const char* name) {
    registerMessageCatalog();
    throw PluginNotFoundExceptionImpl(name != nullptr ? name : "(null)");
}

} // namespace Quillon::System
