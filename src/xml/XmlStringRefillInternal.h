#ifndef ZUTARNEX_XML_XMLSTRINGREFILLINTERNAL_H
#define ZUTARNEX_XML_XMLSTRINGREFILLINTERNAL_H

#include "xml/XmlString.h"

#include <atomic>
#include <cstdint>

namespace Quillon::Xml {

/// What a producer of many short-lived strings does beyond the operations of XmlString.
struct XmlStringRefill {
    /// Whether `string` owns its block and is the only one that holds it: then nobody sees its units change.
    static bool isSoleOwner(const XmlString& string) noexcept {
        return string.flags_ == Valid
               && std::atomic_ref(*(reinterpret_cast<std::uint32_t*>(string.data_) - 1))
                          .load(std::memory_order_acquire)
                      == 1;
    }

    /// Makes the value `terminated`, up to its zero unit, in the block that `string` has already. False when it does
    /// not fit; the value is then undefined. REQUIRES: isSoleOwner().
    static bool refill(XmlString& string, const unsigned short* terminated) noexcept {
        for (std::uint32_t i = 0; i <= string.capacity_; ++i) { // the block has room for one unit more
            string.data_[i] = terminated[i];
            if (terminated[i] == 0) {
                while (string.size_ > i) // what is left of a longer value
                    string.data_[string.size_--] = 0;
                string.size_ = i;
                return true;
            }
        }
        return false;
    }
};

} // namespace Quillon::Xml

#endif
