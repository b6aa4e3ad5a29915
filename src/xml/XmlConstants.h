#ifndef ZUTARNEX_XML_XMLCONSTANTS_H
#define ZUTARNEX_XML_XMLCONSTANTS_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Names that the XML recommendations fix.
///
/// Ownership: immutable views on constant arrays, made once; a string that is assigned one refuses the next
///            assignment.
/// Threads:   any number at once, until the process runs its exit handlers.
/// Cost:      no allocation.
class ZUTARNEX_API XmlConstants {
public:
    static XmlString SC_Null_Ns_Uri();            ///< the empty string
    static XmlString SC_Default_Ns_Prefix();      ///< the empty string
    static XmlString SC_Xml_Ns_Prefix();          ///< "xml"
    static XmlString SC_XmlNs_Attribute();        ///< "xmlns"
    static XmlString SC_Xml_Ns_Uri();             ///< the namespace of the prefix "xml"
    static XmlString SC_XmlNs_Attribute_Ns_Uri(); ///< the namespace of "xmlns" attributes
    static XmlString SC_W3C_Xml_Schema_Ns_Uri();
    static XmlString SC_W3C_Xml_Schema_Instance_Ns_Uri();
    static XmlString SC_W3C_XPath_Datatype_Ns_Uri();
    static XmlString SC_Xml_Dtd_Ns_Uri(); ///< the identifier of the XML recommendation itself
};

} // namespace Quillon::Xml

#endif
