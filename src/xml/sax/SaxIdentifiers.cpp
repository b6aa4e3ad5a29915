#include "xml/sax/SaxIdentifiers.h"

#include "xml/Utf16LiteralInternal.h"

namespace Quillon::Xml::Sax {

namespace {

/// One immutable view per text, made on the first call.
template <Utf16Literal kText>
XmlString identifier() {
    static const XmlString value(Immutable | Borrowed, kText.units);
    return value;
}

} // namespace

XmlString SC_Features_ExternalGeneralEntities() {
    return identifier<u"http://xml.org/sax/features/external-general-entities">();
}

XmlString SC_Features_ExternalParameterEntities() {
    return identifier<u"http://xml.org/sax/features/external-parameter-entities">();
}

XmlString SC_Features_IsStandalone() {
    return identifier<u"http://xml.org/sax/features/is-standalone">();
}

XmlString SC_Features_LexicalHandler_ParameterEntities() {
    return identifier<u"http://xml.org/sax/features/lexical-handler/parameter-entities">();
}

XmlString SC_Features_NamespacePrefixes() {
    return identifier<u"http://xml.org/sax/features/namespace-prefixes">();
}

XmlString SC_Features_Namespaces() {
    return identifier<u"http://xml.org/sax/features/namespaces">();
}

XmlString SC_Features_ResolveDtdUris() {
    return identifier<u"http://xml.org/sax/features/resolve-dtd-uris">();
}

XmlString SC_Features_StringInterning() {
    return identifier<u"http://xml.org/sax/features/string-interning">();
}

XmlString SC_Features_UnicodeNormalizationChecking() {
    return identifier<u"http://xml.org/sax/features/unicode-normalization-checking">();
}

XmlString SC_Features_UseAttributes2() {
    return identifier<u"http://xml.org/sax/features/use-attributes2">();
}

XmlString SC_Features_UseEntityResolver2() {
    return identifier<u"http://xml.org/sax/features/use-entity-resolver2">();
}

XmlString SC_Features_UseLocator2() {
    return identifier<u"http://xml.org/sax/features/use-locator2">();
}

XmlString SC_Features_Validation() {
    return identifier<u"http://xml.org/sax/features/validation">();
}

XmlString SC_Features_Xml1_1() {
    return identifier<u"http://xml.org/sax/features/xml-1.1">();
}

XmlString SC_Features_XmlNsUris() {
    return identifier<u"http://xml.org/sax/features/xmlns-uris">();
}

XmlString SC_Properties_DeclarationHandler() {
    return identifier<u"http://xml.org/sax/properties/declaration-handler">();
}

XmlString SC_Properties_DocumentXmlVersion() {
    return identifier<u"http://xml.org/sax/properties/document-xml-version">();
}

XmlString SC_Properties_DomNode() {
    return identifier<u"http://xml.org/sax/properties/dom-node">();
}

XmlString SC_Properties_LexicalHandler() {
    return identifier<u"http://xml.org/sax/properties/lexical-handler">();
}

XmlString SC_Properties_XmlString() {
    return identifier<u"http://xml.org/sax/properties/xml-string">();
}

} // namespace Quillon::Xml::Sax
