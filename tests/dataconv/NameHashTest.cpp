// That the names which NameIdMapTest takes for colliding do collide.
#include "runtime/CStringInternal.h"

#include <gtest/gtest.h>

#include <cstring>

namespace Quillon::Runtime {
namespace {

TEST(NameHashTest, SomeNamesHaveEqualHashes) {
    const char* const pairs[][2] = {
        {"costarring", "liquid"}, {"declinate", "macallums"}, {"altarage", "zinke"}};
    for (const auto& [left, right] : pairs)
        EXPECT_EQ(hashBytes(left, std::strlen(left)), hashBytes(right, std::strlen(right))) << left;
}

} // namespace
} // namespace Quillon::Runtime
