#include "xml/sax/IllegalCharacterException.h"

#include "support/HostFixture.h"
#include "system/HostOverride.h"
#include "system/Identifiable.h"
#include "system/InternalException.h"
#include "system/UserException.h"
#include "xml/sax/SaxException.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace Quillon::Xml::Sax {
namespace {

class IllegalCharacterExceptionTest : public Testing::HostFixture {
protected:
    void warmUp() override { // the first message of the catalog makes things that stay
        messageFor(1);
    }

    static std::string messageFor(int ch) {
        try {
            IllegalCharacterException::doThrow(ch);
        } catch (const IllegalCharacterException& exception) {
            return dynamic_cast<const System::UserException&>(exception).getMessage();
        }
    }
};

TEST_F(IllegalCharacterExceptionTest, MessageHoldsTheCodeInHexadecimal) {
    EXPECT_EQ("Illegal or non-writable character: U+0000.", messageFor(0));
    EXPECT_EQ("Illegal or non-writable character: U+0001.", messageFor(1));
    EXPECT_EQ("Illegal or non-writable character: U+00E9.", messageFor(0xE9));
    EXPECT_EQ("Illegal or non-writable character: U+FFFE.", messageFor(0xFFFE));
    EXPECT_EQ("Illegal or non-writable character: U+1F600.", messageFor(0x1F600));
    EXPECT_EQ("Illegal or non-writable character: U+FFFFFFFF.", messageFor(-1));
}

TEST_F(IllegalCharacterExceptionTest, HasItsIdentifier) {
    try {
        IllegalCharacterException::doThrow(1);
    } catch (const System::Identifiable& exception) {
        EXPECT_EQ("KAVOLT:IllegalCharacterException", exception.getIdentifier());
    }
}

TEST_F(IllegalCharacterExceptionTest, IsCaughtAsWhatItIs) {
    EXPECT_THROW(IllegalCharacterException::doThrow(1), IllegalCharacterException);
    EXPECT_THROW(IllegalCharacterException::doThrow(1), System::UserException);
    EXPECT_THROW(IllegalCharacterException::doThrow(1), System::Throwable);
    EXPECT_THROW(IllegalCharacterException::doThrow(1), std::exception);
    try {
        IllegalCharacterException::doThrow(1);
    } catch (const SaxException&) {
        FAIL() << "caught as SaxException";
    } catch (const System::InternalException&) {
        FAIL() << "caught as InternalException";
    } catch (const IllegalCharacterException&) {
    }
}

TEST_F(IllegalCharacterExceptionTest, WithoutMemoryThatIsReportedInstead) {
    const auto raise = [] {
        try {
            IllegalCharacterException::doThrow(0xFFFE);
        } catch (const IllegalCharacterException&) {
        }
    };
    Testing::everyAllocationFails(raise);
    Testing::everyNewFails(raise);
}

/// What the host's message service is asked, one letter per call, and whether the memory was untouched until then.
struct Asked {
    static inline std::string calls;
    static inline std::size_t requestsBefore;
    static inline bool isFirst = true;

    static void addTable(void* memoryContext, const Runtime::MessageTable* table) {
        calls += 'R';
        isFirst = isFirst && Testing::hostMemory().requests() == requestsBefore;
        Runtime::defaultHostServices().addMessageTable(memoryContext, table);
    }
    static char* format(const char* identifier, std::uint32_t code, std::va_list arguments) {
        const bool isRight = code == 0x4C0006 && identifier != nullptr
                             && std::string(identifier) == "KAVOLT:IllegalCharacterException";
        std::va_list copy;
        va_copy(copy, arguments);
        const bool hasCharacter = va_arg(copy, int) == 0xFFFE;
        va_end(copy);
        calls += isRight && hasCharacter ? 'F' : '?';
        return Runtime::defaultHostServices().formatMessage(identifier, code, arguments);
    }
};

/// In a process of its own, where the catalog is not registered yet.
TEST(FirstIllegalCharacterDeathTest, RegistersTheCatalogOnceAndFirst) {
    EXPECT_EXIT(
        {
            const Testing::HostOverride host([](Runtime::HostServices& services) {
                services.addMessageTable = Asked::addTable;
                services.formatMessage = Asked::format;
            });
            Asked::requestsBefore = Testing::hostMemory().requests();
            for (int i = 0; i < 3; ++i) {
                try {
                    IllegalCharacterException::doThrow(0xFFFE);
                } catch (const IllegalCharacterException&) {
                }
            }
            std::fprintf(stderr, "%s %s\n", Asked::calls.c_str(), Asked::isFirst ? "first" : "late");
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "^RFFF first\n$");
}

} // namespace
} // namespace Quillon::Xml::Sax
