#include "xml/sax/AttributesReadingInternal.h"

#include "xml/sax/Attributes2Impl.h"
#include "xml/sax/SourcedAttributesInternal.h"

#include <typeinfo>

namespace Quillon::Xml::Sax {

// A virtual base can be left downwards only from the whole object, whose class is then known exactly. The addresses
// suffice: these classes have their tables, and so their type_info, in this library alone.
AttributesReading::AttributesReading(const Attributes& attributes) noexcept {
    const std::type_info* const type = &typeid(attributes);
    const void* const whole = dynamic_cast<const void*>(&attributes);
    if (type == &typeid(SourcedAttributes)) {
        units_ = &static_cast<const SourcedAttributes*>(whole)->units();
        return;
    }
    if (type == &typeid(AttributesImpl))
        impl_.list = static_cast<const AttributesImpl*>(whole);
    else if (type == &typeid(Attributes2Impl))
        impl_.list = static_cast<const Attributes2Impl*>(whole);
    else
        return;
    units_ = &impl_;
}

} // namespace Quillon::Xml::Sax
