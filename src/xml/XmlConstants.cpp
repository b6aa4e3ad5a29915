#include "xml/XmlConstants.h"

#include "xml/Utf16LiteralInternal.h"

namespace Quillon::Xml {

namespace {

constexpr Utf16Literal kEmpty(u"");
constexpr Utf16Literal kXml(u"xml");
constexpr Utf16Literal kXmlns(u"xmlns");
constexpr Utf16Literal kXmlUri(u"http://www.w3.org/XML/1998/namespace");
constexpr Utf16Literal kXmlnsUri(u"http://www.w3.org/2000/xmlns/");
constexpr Utf16Literal kSchemaUri(u"http://www.w3.org/2001/XMLSchema");
constexpr Utf16Literal kSchemaInstanceUri(u"http://www.w3.org/2001/XMLSchema-instance");
constexpr Utf16Literal kXPathDatatypesUri(u"http://www.w3.org/2003/11/xpath-datatypes");
constexpr Utf16Literal kDtdUri(u"http://www.w3.org/TR/REC-xml");

template <std::size_t N>
XmlString viewOn(const Utf16Literal<N>& literal) {
    return XmlString(Immutable | Borrowed, literal.units);
}

} // namespace

XmlString XmlConstants::SC_Null_Ns_Uri() {
    static const XmlString value = viewOn(kEmpty);
    return value;
}

XmlString XmlConstants::SC_Default_Ns_Prefix() {
    static const XmlString value = viewOn(kEmpty);
    return value;
}

XmlString XmlConstants::SC_Xml_Ns_Prefix() {
    static const XmlString value = viewOn(kXml);
    return value;
}

XmlString XmlConstants::SC_XmlNs_Attribute() {
    static const XmlString value = viewOn(kXmlns);
    return value;
}

XmlString XmlConstants::SC_Xml_Ns_Uri() {
    static const XmlString value = viewOn(kXmlUri);
    return value;
}

XmlString XmlConstants::SC_XmlNs_Attribute_Ns_Uri() {
    static const XmlString value = viewOn(kXmlnsUri);
    return value;
}

XmlString XmlConstants::SC_W3C_Xml_Schema_Ns_Uri() {
    static const XmlString value = viewOn(kSchemaUri);
    return value;
}

XmlString XmlConstants::SC_W3C_Xml_Schema_Instance_Ns_Uri() {
    static const XmlString value = viewOn(kSchemaInstanceUri);
    return value;
}

XmlString XmlConstants::SC_W3C_XPath_Datatype_Ns_Uri() {
    static const XmlString value = viewOn(kXPathDatatypesUri);
    return value;
}

XmlString XmlConstants::SC_Xml_Dtd_Ns_Uri() {
    static const XmlString value = viewOn(kDtdUri);
    return value;
}

} // namespace Quillon::Xml
