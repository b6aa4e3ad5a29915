#include "xml/WritableByteChannel.h"

namespace Quillon::Xml {

WritableByteChannel::~WritableByteChannel() = default;

} // namespace Quillon::Xml
