#include "xml/NullPointerException.h"

#include "system/InternalException.h"

namespace Quillon::Xml {

namespace {

class NullPointerExceptionImpl : public NullPointerException, public System::InternalException {};

} // namespace

NullPointerException::NullPointerException() noexcept = default;
NullPointerException::NullPointerException(const NullPointerException&) noexcept = default;
NullPointerException::~NullPointerException() = default;

void NullPointerException::doThrow() {
    throw NullPointerExceptionImpl();
}

void NullPointerException::doThrow(const XmlString&) {
    doThrow();
}

} // namespace Quillon::Xml
