#ifndef ZUTARNEX_SAXENGINE_PARSECONTEXT_H
#define ZUTARNEX_SAXENGINE_PARSECONTEXT_H

#include "EventLocator.h"
#include "Location.h"
#include "NameTable.h"
#include "OpenEntity.h"
#include "ReaderSettings.h"
#include "Vocabulary.h"

#include <optional>
#include <string>

namespace Quillon::SaxEngine {

/// What all parts of a running parse share.
struct ParseContext {
    ParseContext(const ReaderSettings& readerSettings, const Vocabulary& vocabulary)
        : settings(readerSettings), handlers(readerSettings.handlers), words(vocabulary), locator(*this) {}
    ParseContext(const ParseContext&) = delete;
    ParseContext& operator=(const ParseContext&) = delete;

    /// Where the current event stands.
    Location location() const;

    /// Tells the error handler and throws, whatever the error handler does.
    [[noreturn]] void fatal(const std::string& message);
    void warn(const std::string& message);

    /// The name of an element or attribute. It is not well-formed: fatal.
    Name& name(const XML_Char* text) { return checked(names.name(UnitSpan(text))); }
    Name& elementName(const XML_Char* text) { return checked(names.elementName(text)); } ///< in a start tag
    Name& attributeName(const XML_Char* text) { return checked(names.attributeName(text)); }
    /// Checks any other name; with namespaces, such a name has no colon.
    void checkPlainName(UnitSpan name, const char* what);

    const ReaderSettings& settings;
    const Handlers& handlers;
    const Vocabulary& words;
    NameTable names;
    OpenEntity* entity = nullptr;  ///< the innermost one that is being read
    std::optional<Location> place; ///< of the event, where Expat has another one
    EventLocator locator;
    Xml::XmlString documentVersion;
    bool isStandalone = false;

private:
    Name& checked(Name& name) {
        if (name.form == NameForm::NotAName)
            failName(name);
        return name;
    }
    [[noreturn]] void failName(const Name& name);
};

/// While it lives, the current event stands at `place`.
class EventPlace {
public:
    EventPlace(ParseContext& context, Location place) : context_(context) { context_.place = place; }
    EventPlace(const EventPlace&) = delete;
    EventPlace& operator=(const EventPlace&) = delete;
    ~EventPlace() { context_.place.reset(); }

private:
    ParseContext& context_;
};

} // namespace Quillon::SaxEngine

#endif
