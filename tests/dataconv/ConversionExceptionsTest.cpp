#include "dataconv/AlreadyBoundException.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/IllegalConversionException.h"
#include "dataconv/NotBoundException.h"
#include "dataconv/NotFoundException.h"
#include "dataconv/RuntimeException.h"

#include "support/ExceptionInterface.h"
#include "support/HostFixture.h"
#include "system/InternalException.h"
#include "system/Throwable.h"
#include "system/UserException.h"

#include <gtest/gtest.h>

#include <exception>
#include <type_traits>
#include <typeinfo>

namespace Quillon::DataConv {
namespace {

template <class Exception>
class ConversionExceptionsTest : public Testing::HostFixture {};
using Exceptions = ::testing::Types<NotFoundException, RuntimeException, IllegalArgumentException,
                                    NotBoundException, AlreadyBoundException, IllegalConversionException>;
TYPED_TEST_SUITE(ConversionExceptionsTest, Exceptions);

TYPED_TEST(ConversionExceptionsTest, IsCaughtAsItself) {
    EXPECT_THROW(TypeParam::doThrow(), TypeParam);
}

TYPED_TEST(ConversionExceptionsTest, IsAnInternalException) {
    EXPECT_THROW(TypeParam::doThrow(), System::InternalException);
    EXPECT_THROW(TypeParam::doThrow(), System::Throwable);
    EXPECT_THROW(TypeParam::doThrow(), std::exception);
}

TYPED_TEST(ConversionExceptionsTest, IsNoUserException) {
    try {
        TypeParam::doThrow();
    } catch (const System::UserException&) {
        ADD_FAILURE() << "caught as a UserException";
    } catch (const System::InternalException&) {
    }
}

TYPED_TEST(ConversionExceptionsTest, IsNoneOfTheOthers) {
    int caughtAs = 0;
    try {
        TypeParam::doThrow();
    } catch (const System::Throwable& thrown) {
        caughtAs += dynamic_cast<const NotFoundException*>(&thrown) != nullptr;
        caughtAs += dynamic_cast<const RuntimeException*>(&thrown) != nullptr;
        caughtAs += dynamic_cast<const IllegalArgumentException*>(&thrown) != nullptr;
        caughtAs += dynamic_cast<const NotBoundException*>(&thrown) != nullptr;
        caughtAs += dynamic_cast<const AlreadyBoundException*>(&thrown) != nullptr;
        caughtAs += dynamic_cast<const IllegalConversionException*>(&thrown) != nullptr;
    }
    EXPECT_EQ(1, caughtAs);
}

TYPED_TEST(ConversionExceptionsTest, InterfaceHasNoData) {
    EXPECT_TRUE(std::is_abstract_v<TypeParam>);
    EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>);
    EXPECT_EQ(sizeof(void*), sizeof(TypeParam));
}

TYPED_TEST(ConversionExceptionsTest, InterfaceIsMadeAndCopiedWithNothing) {
    Testing::expectMadeAndCopiedWithNothing<TypeParam>();
}

} // namespace
} // namespace Quillon::DataConv
