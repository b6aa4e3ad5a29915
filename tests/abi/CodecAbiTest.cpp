// Sizes and virtual slots of the codecs.
#include "abi/VirtualSlot.h"
#include "support/HostFixture.h"
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/HexBinaryCodec.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace Quillon::Xml {
namespace {

using Testing::virtualSlotOf;

constexpr std::size_t kPointer = sizeof(void*);

class CodecAbiTest : public Testing::HostFixture {};

static_assert(sizeof(cteErrorCode) == 4 && !std::is_convertible_v<int, cteErrorCode>);
static_assert(std::is_convertible_v<cteErrorCode, int>);

// The table of virtual functions, a group of 4 and its count, a pending group of 5 with count and index, the groups of
// the line
static_assert(sizeof(Base64BinaryCodec) == kPointer + 12 + 4);
static_assert(std::has_virtual_destructor_v<Base64BinaryCodec> && !std::is_abstract_v<Base64BinaryCodec>);

// The table, 128 pending bytes with count and index, two digits and their count
static_assert(sizeof(HexBinaryCodec) == (kPointer + 133 + kPointer - 1) / kPointer * kPointer);
static_assert(std::has_virtual_destructor_v<HexBinaryCodec> && !std::is_abstract_v<HexBinaryCodec>);

// The tables are part of the interface, with their sizes.
static_assert(std::is_same_v<decltype(Base64BinaryCodec::Base64BinaryCodecAlphabet), const char[65]>);
static_assert(
    std::is_same_v<decltype(Base64BinaryCodec::Base64BinaryCodecInverse), const unsigned char[255]>);
static_assert(std::is_same_v<decltype(HexBinaryCodec::hexAlphabet), const char[17]>);

struct MoreBase64 : Base64BinaryCodec {
    virtual void next() {}
};
struct MoreHex : HexBinaryCodec {
    virtual void next() {}
};

TEST_F(CodecAbiTest, DestructorIsTheOnlyVirtualOperation) {
    EXPECT_EQ(2u, virtualSlotOf(&MoreBase64::next)); // a destructor takes two slots
    EXPECT_EQ(2u, virtualSlotOf(&MoreHex::next));
}

} // namespace
} // namespace Quillon::Xml
