#ifndef ZUTARNEX_SAXENGINE_EXTERNALENTITIES_H
#define ZUTARNEX_SAXENGINE_EXTERNALENTITIES_H

#include "InternTable.h"
#include "UnitSpan.h"
#include "xml/XmlString.h"

#include <map>
#include <memory>
#include <string>

namespace Quillon::Xml::Sax {
class EntityResolver2;
class InputSource;
} // namespace Quillon::Xml::Sax

namespace Quillon::SaxEngine {

struct ParseContext;
class OpenEntity;
class ParseSession;

/// `name`, or `%name` of a parameter entity.
Xml::XmlString entityNameForHandlers(const XML_Char* name, bool isParameter);

/// Finds out which entity Expat wants to have read, asks the application's resolver where it is, and has it read; or
/// passes it over when it is not to be read.
class ExternalEntities {
public:
    ExternalEntities(ParseContext& context, ParseSession& session);
    ~ExternalEntities();

    void declare(const XML_Char* name, bool isParameter, const XML_Char* systemId);

    /// Asks for an external subset for a document that names none. Its identifiers are stored; null: there is none.
    void supplySubset(const Xml::XmlString& rootName, Xml::XmlString& publicId, Xml::XmlString& systemId);

    /// A reference to an external entity, with Expat's arguments: no context for a parameter entity, no system
    /// identifier for the subset of a document that names none.
    void reference(const XML_Char* context, const XML_Char* base, const XML_Char* systemId,
                   const XML_Char* publicId);

private:
    struct General {
        Xml::XmlString text; ///< the name
        bool isOpen = false;
    };
    struct Reference {
        Xml::XmlString name; ///< as handlers get it
        const XML_Char* context;
        const XML_Char* base;
        const XML_Char* systemId;
        const XML_Char* publicId;
        bool isShown; ///< whether its boundaries are reported
    };

    Xml::Sax::EntityResolver2* resolver2() const;
    General* openedBy(const XML_Char* context) const;
    void generalReference(const Reference& reference);
    void parameterReference(Reference reference);
    void suppliedSubset(Reference reference);
    std::unique_ptr<Xml::Sax::InputSource> ask(const Reference& reference, const std::string& uri) const;
    void resolveAndRead(const Reference& reference);
    void read(const Reference& reference, const Xml::Sax::InputSource& source, const std::string& uri);

    ParseContext& context_;
    ParseSession& session_;
    InternTable<General> general_;
    /// By the address at which Expat keeps the system identifier: all that it tells of a parameter entity.
    std::map<const XML_Char*, Xml::XmlString> parameter_;
    std::unique_ptr<Xml::Sax::InputSource> subset_; ///< supplied, not read yet
    bool subsetWasAskedFor_ = false;
    unsigned int depth_ = 0;
};

} // namespace Quillon::SaxEngine

#endif
