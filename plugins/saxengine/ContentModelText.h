#ifndef ZUTARNEX_SAXENGINE_CONTENTMODELTEXT_H
#define ZUTARNEX_SAXENGINE_CONTENTMODELTEXT_H

#include "UnitSpan.h"

#include <vector>

namespace Quillon::SaxEngine {

/// A content model as a declaration spells it, without white space: `EMPTY`, `ANY`, `(#PCDATA)`, `(#PCDATA|a)*`,
/// `(a,(b|c)+,d?)`. However deep the groups are nested, the stack is not.
std::vector<XML_Char> contentModelText(const XML_Content& model);

} // namespace Quillon::SaxEngine

#endif
