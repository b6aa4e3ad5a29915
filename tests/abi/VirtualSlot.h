#ifndef ZUTARNEX_TESTS_ABI_VIRTUALSLOT_H
#define ZUTARNEX_TESTS_ABI_VIRTUALSLOT_H

#include <cstddef>
#include <cstring>

namespace Quillon::Testing {

/// Which entry of its class's virtual table an operation is called through. A virtual destructor takes two entries.
///
/// The Itanium C++ ABI, which GCC and Clang follow on Linux, represents a pointer to a virtual member function by the
/// offset of its entry in bytes, plus one.
template <class Member>
std::size_t virtualSlotOf(Member member) {
    std::size_t offsetPlusOne = 0;
    static_assert(sizeof member == 2 * sizeof offsetPlusOne);
    std::memcpy(&offsetPlusOne, &member, sizeof offsetPlusOne);
    return (offsetPlusOne - 1) / sizeof(void*);
}

} // namespace Quillon::Testing

#endif
