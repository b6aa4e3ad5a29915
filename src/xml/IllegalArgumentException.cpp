#include "xml/IllegalArgumentException.h"

#include "system/MessageCatalogInternal.h"
#include "system/MessageCodeException.h"
#include "xml/NativeTextInternal.h"

namespace Quillon::Xml {

namespace {

class IllegalArgumentExceptionImpl : public IllegalArgumentException, public System::CataloguedException {
public:
    IllegalArgumentExceptionImpl(const char* what)
        : System::CataloguedException("KAVOLT:IllegalArgumentException", System::TARNEX_ILLEGAL_ARGUMENT,
                                      what) {}
};

} // namespace

IllegalArgumentException::IllegalArgumentException() noexcept = default;
IllegalArgumentException::IllegalArgumentException(const IllegalArgumentException&) noexcept = default;
IllegalArgumentException::~IllegalArgumentException() = default;

void IllegalArgumentException::doThrow(const XmlString& what) {
    System::registerMessageCatalog();
    throw IllegalArgumentExceptionImpl(nativeText(what).get());
}

} // namespace Quillon::Xml
