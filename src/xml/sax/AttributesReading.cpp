#include "xml/sax/AttributesReadingInternal.h"

#include "xml/sax/Attributes2Impl.h"

#include <typeinfo>

namespace Quillon::Xml::Sax {

// A virtual base can be left downwards only from the whole object, whose class is then known exactly. The addresses
// suffice: these classes have their tables, and so their type_info, in this library alone.
const AttributesImpl* AttributesReading::ownList(const Attributes& attributes) noexcept {
    const std::type_info* const type = &typeid(attributes);
    const void* const whole = dynamic_cast<const void*>(&attributes);
    if (type == &typeid(AttributesImpl))
        return static_cast<const AttributesImpl*>(whole);
    if (type == &typeid(Attributes2Impl))
        return static_cast<const Attributes2Impl*>(whole);
    return nullptr;
}

} // namespace Quillon::Xml::Sax
