#include "system/IllegalStateException.h"
#include "system/OutOfRangeException.h"
#include "system/PluginNotFoundException.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"

#include "support/ExceptionInterface.h"
#include "support/HostFixture.h"
#include "system/Identifiable.h"
#include "system/InternalException.h"
#include "system/MessageCodeException.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <typeinfo>

namespace Quillon::System {
namespace {

template <class Kind>
constexpr bool isInterface = std::is_abstract_v<Kind>&&
                                 std::has_virtual_destructor_v<Kind> && sizeof(Kind) == sizeof(void*);
static_assert(isInterface<SharedLibraryNotFoundException> && isInterface<SymbolNotFoundException>);
static_assert(isInterface<OutOfRangeException> && isInterface<IllegalStateException>);
static_assert(isInterface<PluginNotFoundException>);

/// The kinds that carry nothing and are thrown as an InternalException.
template <class Kind>
class PlainExceptionTest : public Testing::HostFixture {};
using PlainKinds =
    ::testing::Types<SharedLibraryNotFoundException, SymbolNotFoundException, OutOfRangeException>;
TYPED_TEST_SUITE(PlainExceptionTest, PlainKinds);

TYPED_TEST(PlainExceptionTest, IsCaughtByInterfaceAndBases) {
    EXPECT_THROW(TypeParam::doThrow(), TypeParam);
    EXPECT_THROW(TypeParam::doThrow(), InternalException);
    EXPECT_THROW(TypeParam::doThrow(), Throwable);
    EXPECT_THROW(TypeParam::doThrow(), std::exception);
}

TYPED_TEST(PlainExceptionTest, CarriesNothing) {
    try {
        TypeParam::doThrow();
    } catch (const InternalException& exception) {
        EXPECT_STREQ("internal error", exception.what());
        EXPECT_EQ(nullptr, dynamic_cast<const Identifiable*>(&exception));
        EXPECT_EQ(nullptr, dynamic_cast<const UserException*>(static_cast<const Throwable*>(&exception)));
    }
}

TYPED_TEST(PlainExceptionTest, InterfaceComesFirst) {
    try {
        TypeParam::doThrow();
    } catch (const TypeParam& exception) {
        EXPECT_EQ(dynamic_cast<const void*>(&exception), static_cast<const void*>(&exception));
    }
}

TYPED_TEST(PlainExceptionTest, NeedsNoMemory) {
    Testing::hostMemory().failRequest(1);
    Testing::newMemory().failRequest(1);
    bool caught = false;
    try {
        TypeParam::doThrow();
    } catch (const TypeParam&) {
        caught = true;
    }
    Testing::hostMemory().failRequest(0);
    Testing::newMemory().failRequest(0);
    EXPECT_TRUE(caught);
}

template <class Kind>
class SystemExceptionInterfaceTest : public Testing::HostFixture {};
using SystemExceptionInterfaces =
    ::testing::Types<SharedLibraryNotFoundException, SymbolNotFoundException, OutOfRangeException,
                     IllegalStateException, PluginNotFoundException>;
TYPED_TEST_SUITE(SystemExceptionInterfaceTest, SystemExceptionInterfaces);

TYPED_TEST(SystemExceptionInterfaceTest, IsMadeAndCopiedWithNothing) {
    Testing::expectMadeAndCopiedWithNothing<TypeParam>();
}

class SystemExceptionsTest : public Testing::HostFixture {
protected:
    void warmUp() override { EXPECT_THROW(PluginNotFoundException::doThrow("any"), PluginNotFoundException); }
};

TEST_F(SystemExceptionsTest, IllegalStateIsNoThrowable) {
    bool caught = false;
    try {
        IllegalStateException::doThrow("recursive invocation");
    } catch (const std::exception&) {
        ADD_FAILURE() << "it has no base but its interface";
    } catch (const IllegalStateException& exception) {
        caught = true;
        EXPECT_EQ(nullptr, dynamic_cast<const Throwable*>(&exception));
        EXPECT_EQ(nullptr, dynamic_cast<const std::exception*>(&exception));
    }
    EXPECT_TRUE(caught);
}

TEST_F(SystemExceptionsTest, IllegalStateTakesANullReason) {
    EXPECT_THROW(IllegalStateException::doThrow(nullptr), IllegalStateException);
}

TEST_F(SystemExceptionsTest, PluginNotFoundIsCaughtByInterfaceAndBases) {
    EXPECT_THROW(PluginNotFoundException::doThrow("abc"), PluginNotFoundException);
    EXPECT_THROW(PluginNotFoundException::doThrow("abc"), CataloguedException);
    EXPECT_THROW(PluginNotFoundException::doThrow("abc"), UserException);
    EXPECT_THROW(PluginNotFoundException::doThrow("abc"), Identifiable);
    EXPECT_THROW(PluginNotFoundException::doThrow("abc"), Throwable);
    EXPECT_THROW(PluginNotFoundException::doThrow("abc"), std::exception);
}

TEST_F(SystemExceptionsTest, PluginNotFoundIsNoInternalException) {
    try {
        PluginNotFoundException::doThrow("abc");
    } catch (const InternalException&) {
        ADD_FAILURE() << "it is the caller's error";
    } catch (const PluginNotFoundException&) {
    }
}

TEST_F(SystemExceptionsTest, PluginNotFoundNamesThePlugin) {
    try {
        PluginNotFoundException::doThrow("abc");
    } catch (const CataloguedException& exception) {
        EXPECT_EQ("Plug-in [abc] module not found.", exception.getMessage());
        EXPECT_EQ("KAVOLT:PluginNotFound", exception.getIdentifier());
        EXPECT_STREQ("KAVOLT:PluginNotFound", exception.getIdentifierText());
    }
}

TEST_F(SystemExceptionsTest, PluginNotFoundTakesANullName) {
    try {
        PluginNotFoundException::doThrow(nullptr);
    } catch (const UserException& exception) {
        EXPECT_EQ("Plug-in [(null)] module not found.", exception.getMessage());
    }
}

TEST_F(SystemExceptionsTest, PluginNotFoundInterfaceComesFirst) {
    try {
        PluginNotFoundException::doThrow("abc");
    } catch (const PluginNotFoundException& exception) {
        EXPECT_EQ(dynamic_cast<const void*>(&exception), static_cast<const void*>(&exception));
    }
}

/// The exception of the failure comes instead of the intended one.
TEST_F(SystemExceptionsTest, PluginNotFoundWithoutMemoryThrowsTheFailure) {
    const auto scenario = [] {
        try {
            PluginNotFoundException::doThrow("a plug-in with a name of some length");
        } catch (const PluginNotFoundException&) {
        }
    };
    Testing::everyAllocationFails(scenario);
    Testing::everyNewFails(scenario);
}

} // namespace
} // namespace Quillon::System
