#include "xml/sax/IllegalCharacterException.h"

#include "system/MessageCatalogInternal.h"
#include "system/MessageCodeException.h"

namespace Quillon::Xml::Sax {

namespace {

class IllegalCharacterExceptionImpl final : public IllegalCharacterException,
                                            public System::CataloguedException {
public:
    explicit IllegalCharacterExceptionImpl(int ch)
        : System::CataloguedException("KAVOLT:IllegalCharacterException", System::TARNEX_ILLEGAL_CHARACTER,
                                      ch) {}
};

} // namespace

IllegalCharacterException::IllegalCharacterException() noexcept = default;
IllegalCharacterException::IllegalCharacterException(const IllegalCharacterException&) noexcept = default;
IllegalCharacterException::~IllegalCharacterException() = default;

void IllegalCharacterException::doThrow(int ch) {
    System::registerMessageCatalog();
    throw IllegalCharacterExceptionImpl(ch);
}

} // namespace Quillon::Xml::Sax
