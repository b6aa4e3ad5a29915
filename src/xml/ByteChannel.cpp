#include "xml/ByteChannel.h"

namespace Quillon::Xml {

ByteChannel::~ByteChannel() = default;

} // namespace Quillon::Xml
