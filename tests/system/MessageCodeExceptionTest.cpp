#include "system/MessageCodeException.h"

#include "support/HostFixture.h"
#include "system/HostOverride.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace Quillon::System {
namespace {

constexpr std::uint32_t kCode = 0x120001;
constexpr std::uint32_t kOtherCode = 0x120002;
constexpr std::uint32_t kCodes[] = {kCode, kOtherCode, 0xFFFFFFFF};
constexpr const char* kNames[] = {"TEST_TEXT_AND_NUMBER", "TEST_NOTHING"};
constexpr const char* kFormats[] = {"The text is [%s], the number %d.",
                                    "Nothing to fill in, but long enough."};
constexpr Runtime::MessageTable kTable = {2, 0x12, kCodes, kNames, kFormats, "", 0, 0};
constexpr char kIdentifier[] = "KAVOLT:AnIdentifierOfSomeLength";

class MessageCodeExceptionTest : public Testing::HostFixture {
protected:
    void warmUp() override { Runtime::hostServices().addMessageTable(nullptr, &kTable); }
};

TEST_F(MessageCodeExceptionTest, MessageIsTheFormattedTextOfTheCode) {
    const CataloguedException exception(kIdentifier, kCode, "some text", 7);
    EXPECT_EQ("The text is [some text], the number 7.", exception.getMessage());
    EXPECT_STREQ("The text is [some text], the number 7.", exception.what());
}

TEST_F(MessageCodeExceptionTest, KeepsTheIdentifierInBothForms) {
    char identifier[] = "KAVOLT:Changing";
    const CataloguedException exception(identifier, kOtherCode);
    identifier[0] = 'X';
    EXPECT_EQ("KAVOLT:Changing", exception.getIdentifier());
    EXPECT_STREQ("KAVOLT:Changing", exception.getIdentifierText());
}

TEST_F(MessageCodeExceptionTest, NullIdentifierCountsAsKavolt) {
    const CataloguedException exception(nullptr, kOtherCode);
    EXPECT_EQ("KAVOLT", exception.getIdentifier());
    EXPECT_STREQ("KAVOLT", exception.getIdentifierText());
}

std::string askedIdentifier;
std::uint32_t askedCode;

TEST_F(MessageCodeExceptionTest, AsksTheHostWithIdentifierAndCode) {
    const Testing::HostOverride host([](Runtime::HostServices& services) {
        services.formatMessage = [](const char* identifier, std::uint32_t code, std::va_list) -> char* {
            askedIdentifier = identifier;
            askedCode = code;
            char* text = static_cast<char*>(Runtime::hostServices().allocate(4));
            std::memcpy(text, "yes", 4);
            return text;
        };
    });
    EXPECT_EQ("yes", CataloguedException("Id", kCode).getMessage());
    EXPECT_EQ("Id", askedIdentifier);
    EXPECT_EQ(kCode, askedCode);
    const CataloguedException withoutIdentifier(nullptr, kOtherCode);
    EXPECT_EQ("KAVOLT", askedIdentifier);
    EXPECT_EQ(kOtherCode, askedCode);
}

TEST_F(MessageCodeExceptionTest, CopyIsDeep) {
    auto* const original = new CataloguedException(kIdentifier, kCode, "original", 1);
    const CataloguedException copy(*original);
    EXPECT_NE(original->getIdentifierText(), copy.getIdentifierText());
    original->setMessage("changed");
    delete original;
    EXPECT_EQ(kIdentifier, copy.getIdentifier());
    EXPECT_STREQ(kIdentifier, copy.getIdentifierText());
    EXPECT_EQ("The text is [original], the number 1.", copy.getMessage());
}

TEST_F(MessageCodeExceptionTest, AssignmentIsDeep) {
    CataloguedException target("Other", kOtherCode);
    {
        const CataloguedException source(kIdentifier, kCode, "source", 2);
        target = source;
    }
    EXPECT_EQ(kIdentifier, target.getIdentifier());
    EXPECT_STREQ(kIdentifier, target.getIdentifierText());
    EXPECT_EQ("The text is [source], the number 2.", target.getMessage());
}

TEST_F(MessageCodeExceptionTest, AssignmentToItselfChangesNothing) {
    CataloguedException exception(kIdentifier, kCode, "self", 3);
    const CataloguedException& same = exception;
    exception = same;
    EXPECT_STREQ(kIdentifier, exception.getIdentifierText());
    EXPECT_EQ("The text is [self], the number 3.", exception.getMessage());
}

TEST_F(MessageCodeExceptionTest, IsCaughtAsEachOfItsBases) {
    using Identified = IdentifiableException<UserException, std::string>;
    const auto raise = [] { throw CataloguedException(kIdentifier, kOtherCode); };
    EXPECT_THROW(raise(), Identified);
    EXPECT_THROW(raise(), UserException);
    EXPECT_THROW(raise(), Identifiable);
    EXPECT_THROW(raise(), Throwable);
    EXPECT_THROW(raise(), std::exception);
}

TEST_F(MessageCodeExceptionTest, LacksNothingWhenTheHostHasNoMemory) {
    Testing::everyAllocationFails([] { CataloguedException(kIdentifier, kCode, "text", 1); });
    Testing::everyNewFails([] { CataloguedException(kIdentifier, kCode, "text", 1); });
}

TEST_F(MessageCodeExceptionTest, CopyWithoutMemoryThrowsAndLeavesTheOriginal) {
    const CataloguedException original(kIdentifier, kCode, "a text of some length", 1);
    const auto copy = [&] { CataloguedException{original}; };
    const auto check = [&] { EXPECT_STREQ(kIdentifier, original.getIdentifierText()); };
    Testing::everyAllocationFails(copy, check);
    Testing::everyNewFails(copy, check);
}

TEST_F(MessageCodeExceptionTest, AssignmentWithoutMemoryKeepsTheIdentifierText) {
    const CataloguedException source(kIdentifier, kCode, "a text of some length", 1);
    const auto assign = [&] {
        CataloguedException target("Old", kOtherCode);
        try {
            target = source;
        } catch (...) {
            EXPECT_STREQ("Old", target.getIdentifierText());
            throw;
        }
    };
    Testing::everyAllocationFails(assign);
    Testing::everyNewFails(assign);
}

TEST_F(MessageCodeExceptionTest, ThrowingACopyWithoutMemoryThrowsWhatTheCopyThrows) {
    const CataloguedException original(kIdentifier, kCode, "text", 1);
    Testing::hostMemory().failRequest(1);
    EXPECT_THROW(throw CataloguedException(original), OutOfMemoryException);
}

} // namespace
} // namespace Quillon::System
