#include "ParseContext.h"

#include "NameStart.h"
#include "Text.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/SaxParseException.h"

#include <algorithm>

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

void ParseContext::failName(const Name& name) {
    fatal("the name " + toUtf8(name.text) + " is not well-formed");
}

void ParseContext::checkPlainName(UnitSpan name, const char* what) {
    if (std::any_of(name.begin(), name.end(), isForeignToNames))
        fatal("the name " + toUtf8(name) + " is not well-formed");
    if (settings.features.namespaces && std::find(name.begin(), name.end(), u':') != name.end())
        fatal("the name " + toUtf8(name) + " of " + what + " has a colon");
}

} // namespace Quillon::SaxEngine
