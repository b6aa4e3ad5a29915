#ifndef ZUTARNEX_SAXENGINE_VOCABULARY_H
#define ZUTARNEX_SAXENGINE_VOCABULARY_H

#include "UnitSpan.h"
#include "xml/XmlString.h"

namespace Quillon::SaxEngine {

/// The strings that handlers get again and again, made once per reader. They own their text, so that whoever gets a
/// copy may assign to it and keep it.
class Vocabulary {
public:
    Vocabulary();

    const Xml::XmlString null;
    const Xml::XmlString empty;
    const Xml::XmlString xml, xmlns;               ///< prefixes
    const Xml::XmlString xmlUri, xmlnsUri;         ///< what they are bound to
    const Xml::XmlString implied, required, fixed; ///< modes of attribute declarations
    const Xml::XmlString externalSubset;           ///< [dtd]
    const Xml::XmlString version10;

    /// The type of an attribute as handlers get it, from the type as Expat spells it: an enumeration is NMTOKEN.
    const Xml::XmlString& attributeType(const XML_Char* declared) const;
    const Xml::XmlString& undeclaredType() const { return cdata_; }

private:
    const Xml::XmlString cdata_, nmtoken_, notation_;
    const Xml::XmlString id_, idref_, idrefs_, entity_, entities_, nmtokens_;
};

} // namespace Quillon::SaxEngine

#endif
