// Sizes, offsets and virtual slots that programs built against earlier builds rely on.
#include "abi/VirtualSlot.h"
#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/ByteChannel.h"
#include "xml/IOException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/NamespaceContext.h"
#include "xml/NullPointerException.h"
#include "xml/PowersOfTwo.h"
#include "xml/QName.h"
#include "xml/StringFields.h"
#include "xml/XmlString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace Quillon::Xml {
namespace {

using Testing::virtualSlotOf;

constexpr std::size_t kPointer = sizeof(void*);

class XmlAbiTest : public Testing::HostFixture {};

// Strings and names

static_assert(sizeof(XmlString) == (kPointer == 4 ? 16 : 24));
static_assert(alignof(XmlString) == kPointer);
static_assert(std::is_standard_layout_v<XmlString> && !std::is_polymorphic_v<XmlString>);
static_assert(sizeof(XmlStringFlags) == 1 && std::is_convertible_v<XmlStringFlags, unsigned char>);
static_assert(Immutable == 1 && Borrowed == 2 && Valid == 4 && Null == 8);

TEST_F(XmlAbiTest, StringFieldsStandInOrder) {
    unsigned short buffer[] = {'a', 'b', 'c', 'd', 'e', 0};
    XmlString string(Borrowed, buffer);
    string = XmlString(Borrowed, Testing::units(u"xy").data()); // in place: capacity and size differ
    const char* bytes = reinterpret_cast<const char*>(&string);
    const unsigned short* data = nullptr;
    std::uint32_t capacity = 0, size = 0;
    std::memcpy(&data, bytes, kPointer);
    std::memcpy(&capacity, bytes + kPointer, 4);
    std::memcpy(&size, bytes + kPointer + 4, 4);
    EXPECT_EQ(buffer, data);
    EXPECT_EQ(5u, capacity);
    EXPECT_EQ(2u, size);
    EXPECT_EQ(Borrowed | Valid, bytes[kPointer + 8]);
}

static_assert(sizeof(QName) == 3 * sizeof(XmlString) && !std::is_polymorphic_v<QName>);

TEST_F(XmlAbiTest, NamePartsStandInOrder) {
    const XmlString uri = Testing::text(u"urn:x"), local = Testing::text(u"a"), prefix = Testing::text(u"p");
    const QName name(uri, local, prefix);
    const auto* parts = reinterpret_cast<const XmlString*>(&name);
    EXPECT_EQ(Testing::fieldsOf(uri), Testing::fieldsOf(parts[0]));
    EXPECT_EQ(Testing::fieldsOf(local), Testing::fieldsOf(parts[1]));
    EXPECT_EQ(Testing::fieldsOf(prefix), Testing::fieldsOf(parts[2]));
}

static_assert(std::is_empty_v<PowersOfTwo> && std::is_trivial_v<PowersOfTwo>);

// Interfaces: no data, a virtual destructor in the first two entries

template <class Interface>
constexpr bool isInterface = std::is_abstract_v<Interface>&&
                                 std::has_virtual_destructor_v<Interface> && sizeof(Interface) == kPointer;

static_assert(isInterface<Closeable> && isInterface<Channel>);
static_assert(isInterface<ReadableByteChannel> && isInterface<WritableByteChannel>);
static_assert(std::is_abstract_v<ByteChannel> && sizeof(ByteChannel) == 2 * kPointer);
static_assert(std::is_base_of_v<Closeable, Channel> && std::is_base_of_v<Channel, ReadableByteChannel>);
static_assert(std::is_base_of_v<Channel, WritableByteChannel>);
static_assert(isInterface<NamespaceContext>);
static_assert(isInterface<IOException> && isInterface<NullPointerException>);
static_assert(isInterface<ImmutableObjectWriteError> && isInterface<IllegalArgumentException>);
static_assert(isInterface<ArrayIndexOutOfBoundsException>);

TEST_F(XmlAbiTest, ChannelOperationsStandInOrder) {
    EXPECT_EQ(2u, virtualSlotOf(&Closeable::close));
    EXPECT_EQ(2u, virtualSlotOf(&Channel::close));
    EXPECT_EQ(3u, virtualSlotOf(&Channel::isOpen));
    EXPECT_EQ(4u, virtualSlotOf(&ReadableByteChannel::read));
    EXPECT_EQ(4u, virtualSlotOf(&WritableByteChannel::write));
}

class ClosedChannel : public ByteChannel {
public:
    void close() override {}
    bool isOpen() const override { return false; }
    unsigned int read(unsigned char*, unsigned int) override { return 0; }
    unsigned int write(const unsigned char*, unsigned int) override { return 0; }
};

TEST_F(XmlAbiTest, ReadablePartStandsFirstInAByteChannel) {
    ClosedChannel channel;
    const char* whole = reinterpret_cast<const char*>(static_cast<ByteChannel*>(&channel));
    const ReadableByteChannel& readable = channel;
    const WritableByteChannel& writable = channel;
    EXPECT_EQ(whole, reinterpret_cast<const char*>(&readable));
    EXPECT_EQ(whole + kPointer, reinterpret_cast<const char*>(&writable));
}

TEST_F(XmlAbiTest, NamespaceContextOperationsStandInOrder) {
    EXPECT_EQ(2u, virtualSlotOf(&NamespaceContext::getNamespaceURI));
    EXPECT_EQ(3u, virtualSlotOf(&NamespaceContext::getPrefix));
    EXPECT_EQ(4u, virtualSlotOf(&NamespaceContext::getPrefixes));
}

} // namespace
} // namespace Quillon::Xml
