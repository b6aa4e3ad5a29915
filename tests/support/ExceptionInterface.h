#ifndef ZUTARNEX_TESTS_SUPPORT_EXCEPTIONINTERFACE_H
#define ZUTARNEX_TESTS_SUPPORT_EXCEPTIONINTERFACE_H

#include "support/Allocations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <typeinfo>

namespace Quillon::Testing {

/// Somebody else's exception of a kind, which adds nothing to the interface.
template <class Kind>
class OwnException : public Kind {};

/// The interface of a kind of exceptions has a default and a copy constructor that take nothing.
template <class Kind>
void expectMadeAndCopiedWithNothing() {
    using Own = OwnException<Kind>;
    static_assert(std::is_nothrow_default_constructible_v<Own> && std::is_nothrow_copy_constructible_v<Own>);
    const std::size_t blocks = hostMemory().requests(), objects = newMemory().requests();
    const Own original;
    const Own copy(original);
    const Kind& asKind = copy;
    EXPECT_TRUE(typeid(asKind) == typeid(Own));
    EXPECT_EQ(blocks, hostMemory().requests());
    EXPECT_EQ(objects, newMemory().requests());
    EXPECT_THROW(throw copy, Kind);
}

} // namespace Quillon::Testing

#endif
