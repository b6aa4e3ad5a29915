// Sizes, offsets and virtual slots of the conversions.
#include "abi/VirtualSlot.h"
#include "dataconv/AlreadyBoundException.h"
#include "dataconv/C99Conversions.h"
#include "dataconv/ConversionFunctor.h"
#include "dataconv/Converter.h"
#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/CvsnRootNamespace.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/IllegalConversionException.h"
#include "dataconv/NameIdMap.h"
#include "dataconv/NotBoundException.h"
#include "dataconv/NotFoundException.h"
#include "dataconv/RuntimeException.h"
#include "dataconv/StandardConversions.h"
#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <type_traits>
#include <typeinfo>

namespace Quillon::DataConv {
namespace {

using Testing::virtualSlotOf;

constexpr std::size_t kPointer = sizeof(void*);

class DataConvAbiTest : public Testing::HostFixture {};

template <class Interface>
constexpr bool isInterface = std::is_abstract_v<Interface>&&
                                 std::has_virtual_destructor_v<Interface> && sizeof(Interface) == kPointer;

static_assert(isInterface<NotFoundException> && isInterface<RuntimeException>);
static_assert(isInterface<IllegalArgumentException> && isInterface<NotBoundException>);
static_assert(isInterface<AlreadyBoundException> && isInterface<IllegalConversionException>);

// Functors: no data; destructor, _convert

static_assert(isInterface<AConversionFunctor>);
static_assert(isInterface<ConversionFunctor<char*, int>> && isInterface<ConversionFunctor<int, char*>>);
static_assert(std::is_base_of_v<AConversionFunctor, ConversionFunctor<char*, int>>);
static_assert(std::is_base_of_v<AConversionFunctor, ConversionFunctor<int, char*>>);
static_assert(sizeof(CStringToInt64) == kPointer && sizeof(DoubleToCString) == kPointer);

static_assert(std::is_same_v<decltype(&ConversionFunctor<char*, short>::_convert),
                             void (ConversionFunctor<char*, short>::*)(char*, short&) const>);
static_assert(std::is_same_v<decltype(&ConversionFunctor<short, char*>::_convert),
                             void (ConversionFunctor<short, char*>::*)(const short&, char*&) const>);

TEST_F(DataConvAbiTest, ConvertFollowsTheDestructor) {
    EXPECT_EQ(2u, virtualSlotOf(&ConversionFunctor<char*, int>::_convert));
    EXPECT_EQ(2u, virtualSlotOf(&ConversionFunctor<int, char*>::_convert));
    EXPECT_EQ(2u, virtualSlotOf(&CStringToFloat::_convert));
    EXPECT_EQ(2u, virtualSlotOf(&BoolToCString::_convert));
}

/// What the library's and this program's copies of a template agree on is the name of its type.
TEST_F(DataConvAbiTest, FunctorsOfTheLibraryAreCastHere) {
    const CStringToInt32 functor;
    const AConversionFunctor* root = &functor;
    EXPECT_NE(nullptr, (dynamic_cast<const ConversionFunctor<char*, int>*>(root)));
    EXPECT_EQ(nullptr, (dynamic_cast<const ConversionFunctor<char*, short>*>(root)));
    EXPECT_TRUE(typeid(*root) == typeid(CStringToInt32));
}

// Nodes: destructor, _bind, _lookup, _rebind, _unbind; bindings, parent

static_assert(isInterface<ACvsnRegistryNode>);
static_assert(
    std::is_base_of_v<ACvsnRegistryNode, CvsnRegistryNode> && !std::is_abstract_v<CvsnRegistryNode>);
static_assert(sizeof(CvsnRegistryNode)
              == kPointer + sizeof(std::map<std::uint32_t, void*>)
                     + sizeof(boost::shared_ptr<CvsnRegistryNode>));
static_assert(
    !std::is_copy_constructible_v<CvsnRegistryNode> && !std::is_copy_assignable_v<CvsnRegistryNode>);
static_assert(
    std::is_same_v<decltype(&ACvsnRegistryNode::_bind), void (ACvsnRegistryNode::*)(int, int, int*)>);
static_assert(
    std::is_same_v<decltype(&ACvsnRegistryNode::_lookup), int* (ACvsnRegistryNode::*)(int, int) const>);
static_assert(
    std::is_same_v<decltype(&ACvsnRegistryNode::_rebind), void (ACvsnRegistryNode::*)(int, int, int*)>);
static_assert(std::is_same_v<decltype(&ACvsnRegistryNode::_unbind), void (ACvsnRegistryNode::*)(int, int)>);

TEST_F(DataConvAbiTest, NodeOperationsStandInOrder) {
    EXPECT_EQ(2u, virtualSlotOf(&ACvsnRegistryNode::_bind));
    EXPECT_EQ(3u, virtualSlotOf(&ACvsnRegistryNode::_lookup));
    EXPECT_EQ(4u, virtualSlotOf(&ACvsnRegistryNode::_rebind));
    EXPECT_EQ(5u, virtualSlotOf(&ACvsnRegistryNode::_unbind));
    EXPECT_EQ(5u, virtualSlotOf(&CvsnRegistryNode::_unbind));
}

TEST_F(DataConvAbiTest, ParentStandsBehindTheBindings) {
    const boost::shared_ptr<CvsnRegistryNode> parent(new CvsnRegistryNode);
    const CvsnRegistryNode node(parent);
    const CvsnRegistryNode* held = nullptr;
    std::memcpy(&held,
                reinterpret_cast<const char*>(&node) + kPointer + sizeof(std::map<std::uint32_t, void*>),
                sizeof held);
    EXPECT_EQ(parent.get(), held);
}

// The map: one pointer, to the array of entries, the index, the capacity and the next id

static_assert(sizeof(NameIdMap) == kPointer && !std::is_polymorphic_v<NameIdMap>);
static_assert(!std::is_copy_constructible_v<NameIdMap> && !std::is_copy_assignable_v<NameIdMap>);

TEST_F(DataConvAbiTest, MapPointsAtItsFields) {
    static const char* const names[] = {"a", "b", "c"};
    NameIdMap map;
    for (const char* name : names)
        map.insert(name);
    const char* fields = nullptr;
    std::memcpy(&fields, &map, sizeof fields);
    std::uint32_t numbers[2] = {};
    std::memcpy(numbers, fields + kPointer + sizeof(std::map<const char*, void*>), sizeof numbers);
    EXPECT_EQ(7u, numbers[0]);
    EXPECT_EQ(4u, numbers[1]);
    const char* const* entries = nullptr;
    std::memcpy(&entries, fields, sizeof entries);
    EXPECT_EQ(nullptr, entries[0]);
    const char* name = nullptr;
    std::uint32_t id = 0;
    std::memcpy(&name, entries[2], sizeof name);
    std::memcpy(&id, entries[2] + kPointer, sizeof id);
    EXPECT_EQ(names[1], name);
    EXPECT_EQ(2u, id);
    EXPECT_EQ(nullptr, entries[6]);
}

static_assert(std::is_empty_v<CvsnRootNamespace> && std::is_empty_v<C99Conversions>);
static_assert(sizeof(Converter) == sizeof(boost::shared_ptr<CvsnRegistryNode>)
              && !std::is_polymorphic_v<Converter>);

} // namespace
} // namespace Quillon::DataConv
