#ifndef ZUTARNEX_SAXENGINE_ELEMENTDECLARATION_H
#define ZUTARNEX_SAXENGINE_ELEMENTDECLARATION_H

#include "xml/XmlString.h"

#include <unordered_map>

namespace Quillon::SaxEngine {

struct Name;

/// What the DTD declares about an element: its attributes' types, as handlers get them, and whether it holds elements
/// only. The first declaration of an attribute, or of an element's content, counts.
struct ElementDeclaration {
    bool isDeclared = false;
    bool hasElementContent = false;
    std::unordered_map<const Name*, Xml::XmlString> attributeTypes;
};

} // namespace Quillon::SaxEngine

#endif
