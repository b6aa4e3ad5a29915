#include "xml/IOException.h"

#include "system/InternalException.h"

namespace Quillon::Xml {

namespace {

class IOExceptionImpl : public IOException, public System::InternalException {};

} // namespace

IOException::IOException() noexcept = default;
IOException::IOException(const IOException&) noexcept = default;
IOException::~IOException() = default;

void IOException::doThrow() {
    throw IOExceptionImpl();
}

void IOException::doThrow(const XmlString&) {
    doThrow();
}

} // namespace Quillon::Xml
