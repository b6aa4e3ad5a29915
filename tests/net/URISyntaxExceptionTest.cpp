#include "net/URISyntaxException.h"

#include "net/UriFixture.h"

#include <exception>
#include <type_traits>

namespace Quillon::Testing {
namespace {

using Net::URI;
using Net::URISyntaxException;

class URISyntaxExceptionTest : public UriFixture {};

TEST_F(URISyntaxExceptionTest, KeepsTheThreeValuesAndCopiesNothing) {
    const unsigned char input[] = "input";
    const char reason[] = "reason";
    const URISyntaxException fault(input, reason, 7);
    EXPECT_EQ(input, fault.getInput());
    EXPECT_EQ(reason, fault.getReason());
    EXPECT_EQ(7u, fault.getIndex());
}

TEST_F(URISyntaxExceptionTest, TakesNullAndEveryIndex) {
    const URISyntaxException fault(nullptr, nullptr, 0xFFFFFFFFu);
    EXPECT_EQ(nullptr, fault.getInput());
    EXPECT_EQ(nullptr, fault.getReason());
    EXPECT_EQ(0xFFFFFFFFu, fault.getIndex());
}

TEST_F(URISyntaxExceptionTest, CopiesReferToTheSameTexts) {
    const unsigned char input[] = "input";
    const char reason[] = "reason";
    const URISyntaxException fault(input, reason, 7);
    const URISyntaxException copied(fault);
    URISyntaxException assigned(nullptr, nullptr, 0);
    assigned = fault;
    for (const URISyntaxException* copy : {&copied, static_cast<const URISyntaxException*>(&assigned)}) {
        EXPECT_EQ(input, copy->getInput());
        EXPECT_EQ(reason, copy->getReason());
        EXPECT_EQ(7u, copy->getIndex());
    }
}

TEST_F(URISyntaxExceptionTest, IsAClassOfItsOwn) {
    EXPECT_TRUE(std::has_virtual_destructor_v<URISyntaxException>);
    EXPECT_FALSE((std::is_base_of_v<std::exception, URISyntaxException>));
    EXPECT_FALSE((std::is_base_of_v<System::Throwable, URISyntaxException>));
}

TEST_F(URISyntaxExceptionTest, OfTheParserRefersToTheCallersText) {
    const unsigned char input[] = "a b";
    try {
        delete URI::construct(input);
        FAIL() << "accepted";
    } catch (const URISyntaxException& fault) {
        EXPECT_EQ(input, fault.getInput());
    }
}

TEST_F(URISyntaxExceptionTest, ReasonOutlivesTheText) {
    const char* reason = nullptr;
    {
        const std::string text = "a b";
        try {
            parsed(text);
        } catch (const URISyntaxException& fault) {
            reason = fault.getReason();
        }
    }
    for (const char* other : {"a%", "1:", "x://h:p"})
        EXPECT_THROW(parsed(other), URISyntaxException);
    EXPECT_STREQ("Illegal character in segment-nz-nc", reason);
}

} // namespace
} // namespace Quillon::Testing
