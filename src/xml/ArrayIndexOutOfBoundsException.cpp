#include "xml/ArrayIndexOutOfBoundsException.h"

#include "system/MessageCatalogInternal.h"
#include "system/MessageCodeException.h"
#include "xml/NativeTextInternal.h"

namespace Quillon::Xml {

namespace {

class ArrayIndexOutOfBoundsExceptionImpl : public ArrayIndexOutOfBoundsException,
                                           public System::CataloguedException {
public:
    ArrayIndexOutOfBoundsExceptionImpl(const char* what, unsigned int index)
        : System::CataloguedException("KAVOLT:ArrayIndexOutOfBoundsException",
                                      System::TARNEX_ARRAY_INDEX_OUT_OF_BOUNDS, what, index) {}
};

} // namespace

ArrayIndexOutOfBoundsException::ArrayIndexOutOfBoundsException() noexcept = default;
ArrayIndexOutOfBoundsException::ArrayIndexOutOfBoundsException(
    const ArrayIndexOutOfBoundsException&) noexcept = default;
ArrayIndexOutOfBoundsException::~ArrayIndexOutOfBoundsException() = default;

void ArrayIndexOutOfBoundsException::doThrow(const XmlString& what, unsigned int index) {
    System::registerMessageCatalog();
    throw ArrayIndexOutOfBoundsExceptionImpl(nativeText(what).get(), index);
}

} // namespace Quillon::Xml
