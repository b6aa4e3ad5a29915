#include "ParseContext.h"

#include "Text.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/SaxParseException.h"

namespace Quillon::SaxEngine {

Location ParseContext::location() const {
    if (place)
        return *place;
    return entity ? entity->location() : Location{-1, -1};
}

void ParseContext::fatal(const std::string& message) {
    const Xml::Sax::SaxParseException exception(fromUtf8(message), locator);
    if (handlers.error)
        handlers.error->fatalError(exception);
    throw exception;
}

void ParseContext::warn(const std::string& message) {
    if (handlers.error)
        handlers.error->warning(Xml::Sax::SaxParseException(fromUtf8(message), locator));
}

} // namespace Quillon::SaxEngine
