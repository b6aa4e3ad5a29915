#include "xml/Channel.h"

namespace Quillon::Xml {

Channel::~Channel() = default;

} // namespace Quillon::Xml
