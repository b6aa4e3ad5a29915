#include "Vocabulary.h"

#include "Text.h"

namespace Quillon::SaxEngine {

using Xml::XmlString;

Vocabulary::Vocabulary()
    : empty(ownedAscii("")), xml(ownedAscii("xml")), xmlns(ownedAscii("xmlns")),
      xmlUri(ownedAscii("http://www.w3.org/XML/1998/namespace")),
      xmlnsUri(ownedAscii("http://www.w3.org/2000/xmlns/")), implied(ownedAscii("#IMPLIED")),
      required(ownedAscii("#REQUIRED")), fixed(ownedAscii("#FIXED")), externalSubset(ownedAscii("[dtd]")),
      version10(ownedAscii("1.0")), cdata_(ownedAscii("CDATA")), nmtoken_(ownedAscii("NMTOKEN")),
      notation_(ownedAscii("NOTATION")), id_(ownedAscii("ID")), idref_(ownedAscii("IDREF")),
      idrefs_(ownedAscii("IDREFS")), entity_(ownedAscii("ENTITY")), entities_(ownedAscii("ENTITIES")),
      nmtokens_(ownedAscii("NMTOKENS")) {}

const XmlString& Vocabulary::attributeType(const XML_Char* declared) const {
    if (*declared == u'(')
        return nmtoken_;
    const UnitSpan type(declared);
    for (const XmlString* known :
         {&cdata_, &nmtoken_, &id_, &idref_, &idrefs_, &entity_, &entities_, &nmtokens_})
        if (UnitSpan(*known) == type)
            return *known;
    return notation_; // NOTATION(a|b)
}

} // namespace Quillon::SaxEngine
