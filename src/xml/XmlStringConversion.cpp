#include "xml/XmlStringConversion.h"

#include "runtime/CStringInternal.h"
#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "xml/XmlString.h"

#include <cstring>

namespace Quillon::Xml {

namespace {

/// A converter returns nothing only when there was no memory.
template <class Unit>
Unit* converted(Unit* text) {
    if (text == nullptr)
        System::OutOfMemoryException::doThrow();
    return text;
}

} // namespace

unsigned short* XmlStringConversion::toUTF16(const XmlString& s) {
    if (s.isNull())
        return nullptr;
    const std::size_t byteCount = (Runtime::unitCountOf(s.data()) + 1) * sizeof(unsigned short);
    void* copy = converted(Runtime::hostServices().allocate(byteCount));
    std::memcpy(copy, s.data(), byteCount);
    return static_cast<unsigned short*>(copy);
}

char* XmlStringConversion::toUTF8(const XmlString& s) {
    if (s.isNull())
        return nullptr;
    return converted(Runtime::utf16ToUtf8(s.data(), Runtime::unitCountOf(s.data())));
}

char* XmlStringConversion::toNative(const XmlString& s) {
    if (s.isNull())
        return nullptr;
    return converted(Runtime::hostServices().utf16ToLocal(s.data()));
}

} // namespace Quillon::Xml
