#include "xml/ReadableByteChannel.h"

namespace Quillon::Xml {

ReadableByteChannel::~ReadableByteChannel() = default;

} // namespace Quillon::Xml
