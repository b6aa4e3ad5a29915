#ifndef ZUTARNEX_XML_NATIVETEXTINTERNAL_H
#define ZUTARNEX_XML_NATIVETEXTINTERNAL_H

#include "runtime/HostArrayInternal.h"
#include "xml/XmlStringConversion.h"

namespace Quillon::Xml {

using NativeText = Runtime::HostArray<char>;

/// `s` in the local code page; null for a null string.
inline NativeText nativeText(const XmlString& s) {
    return NativeText(XmlStringConversion::toNative(s));
}

} // namespace Quillon::Xml

#endif
