#ifndef ZUTARNEX_SAXENGINE_READERSETTINGS_H
#define ZUTARNEX_SAXENGINE_READERSETTINGS_H

#include <cstdint>
#include <expat.h>

namespace Quillon::Xml::Sax {
class ContentHandler;
class DeclHandler;
class DTDHandler;
class EntityResolver;
class ErrorHandler;
class LexicalHandler;
} // namespace Quillon::Xml::Sax

namespace Quillon::SaxEngine {

/// The features that can be changed, with their defaults.
struct Features {
    bool namespaces = true;
    bool namespacePrefixes = false;
    bool xmlnsUris = false;
    bool externalGeneralEntities = false; ///< off: nothing is opened that the application did not name
    bool externalParameterEntities = false;
    bool parameterEntityEvents = true;
    bool resolveDtdUris = true;
    bool useEntityResolver2 = true;
};

/// Who gets the events. Read anew for each event, so that a change counts at once.
struct Handlers {
    Xml::Sax::ContentHandler* content = nullptr;
    Xml::Sax::DTDHandler* dtd = nullptr;
    Xml::Sax::LexicalHandler* lexical = nullptr;
    Xml::Sax::DeclHandler* declaration = nullptr;
    Xml::Sax::EntityResolver* resolver = nullptr;
    Xml::Sax::ErrorHandler* error = nullptr;
};

struct ReaderSettings {
    Features features;
    Handlers handlers;
    std::uint32_t maximumDepth = 10000;
    const XML_Memory_Handling_Suite* memory = nullptr; ///< null: the C library's
};

} // namespace Quillon::SaxEngine

#endif
