#ifndef ZUTARNEX_SAXENGINE_ROOTNAME_H
#define ZUTARNEX_SAXENGINE_ROOTNAME_H

#include "xml/XmlString.h"

namespace Quillon::SaxEngine {

class OpenEntity;

/// The name of the root element at whose `<` the document's parser stands, before Expat tells it. Reads ahead where the
/// name is cut.
Xml::XmlString rootName(OpenEntity& document);

} // namespace Quillon::SaxEngine

#endif
