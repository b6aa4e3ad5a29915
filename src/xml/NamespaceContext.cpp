#include "xml/NamespaceContext.h"

namespace Quillon::Xml {

NamespaceContext::~NamespaceContext() = default;

} // namespace Quillon::Xml
