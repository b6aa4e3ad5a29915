#ifndef ZUTARNEX_XML_NATIVETEXTINTERNAL_H
#define ZUTARNEX_XML_NATIVETEXTINTERNAL_H

#include "runtime/HostServices.h"
#include "xml/XmlStringConversion.h"

#include <memory>

namespace Quillon::Xml {

struct HostRelease {
    void operator()(void* block) const noexcept { Runtime::release(block); }
};
/// Text from the host's allocator that frees itself.
using NativeText = std::unique_ptr<char, HostRelease>;

/// `s` in the local code page; null for a null string.
inline NativeText nativeText(const XmlString& s) {
    return NativeText(XmlStringConversion::toNative(s));
}

} // namespace Quillon::Xml

#endif
