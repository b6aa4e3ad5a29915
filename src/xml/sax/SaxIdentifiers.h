#ifndef ZUTARNEX_XML_SAX_SAXIDENTIFIERS_H
#define ZUTARNEX_XML_SAX_SAXIDENTIFIERS_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// The standard names of features (http://xml.org/sax/features/...) and properties (http://xml.org/sax/properties/...),
/// as copies of immutable views on constant arrays: a string that is assigned one refuses the next assignment.
/// What a feature's default is, the reader says.

ZUTARNEX_API XmlString SC_Features_ExternalGeneralEntities();          ///< external-general-entities
ZUTARNEX_API XmlString SC_Features_ExternalParameterEntities();        ///< external-parameter-entities
ZUTARNEX_API XmlString SC_Features_IsStandalone();                     ///< is-standalone
ZUTARNEX_API XmlString SC_Features_LexicalHandler_ParameterEntities(); ///< lexical-handler/parameter-entities
ZUTARNEX_API XmlString SC_Features_NamespacePrefixes();                ///< namespace-prefixes
ZUTARNEX_API XmlString SC_Features_Namespaces();                       ///< namespaces
ZUTARNEX_API XmlString SC_Features_ResolveDtdUris();                   ///< resolve-dtd-uris
ZUTARNEX_API XmlString SC_Features_StringInterning();                  ///< string-interning
ZUTARNEX_API XmlString SC_Features_UnicodeNormalizationChecking();     ///< unicode-normalization-checking
ZUTARNEX_API XmlString SC_Features_UseAttributes2();                   ///< use-attributes2
ZUTARNEX_API XmlString SC_Features_UseEntityResolver2();               ///< use-entity-resolver2
ZUTARNEX_API XmlString SC_Features_UseLocator2();                      ///< use-locator2
ZUTARNEX_API XmlString SC_Features_Validation();                       ///< validation
ZUTARNEX_API XmlString SC_Features_Xml1_1();                           ///< xml-1.1
ZUTARNEX_API XmlString SC_Features_XmlNsUris();                        ///< xmlns-uris

ZUTARNEX_API XmlString SC_Properties_DeclarationHandler(); ///< declaration-handler: a DeclHandler*
ZUTARNEX_API XmlString SC_Properties_DocumentXmlVersion(); ///< document-xml-version
ZUTARNEX_API XmlString SC_Properties_DomNode();            ///< dom-node
ZUTARNEX_API XmlString SC_Properties_LexicalHandler();     ///< lexical-handler: a LexicalHandler*
ZUTARNEX_API XmlString SC_Properties_XmlString();          ///< xml-string

} // namespace Quillon::Xml::Sax

#endif
