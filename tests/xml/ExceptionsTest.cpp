// The exceptions of Quillon::Xml, which are made by one pattern.
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IOException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/NullPointerException.h"

#include "runtime/HostServices.h"
#include "support/ExceptionInterface.h"
#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/Identifiable.h"
#include "system/InternalException.h"
#include "system/MessageCodeException.h"
#include "system/ObjectOutput.h"
#include "system/UserException.h"
#include "xml/XmlString.h"
#include "xml/sax/IllegalCharacterException.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace Quillon::Xml {
namespace {

using Testing::everyAllocationFails;
using Testing::everyNewFails;
using Testing::hostMemory;
using Testing::text;

class ExceptionsTest : public Testing::HostFixture {};

/// Replaces the host's table for as long as it lives.
class ChangedHost {
public:
    template <class Change>
    explicit ChangedHost(Change change) : saved_(Runtime::hostServices()) {
        Runtime::HostServices services = saved_;
        change(services);
        Runtime::setHostServices(services);
    }
    ~ChangedHost() { Runtime::setHostServices(saved_); }
    ChangedHost(const ChangedHost&) = delete;
    ChangedHost& operator=(const ChangedHost&) = delete;

private:
    Runtime::HostServices saved_;
};

class Collector : public System::ObjectOutput {
public:
    void write(const char* bytes, std::size_t count) override { collected.append(bytes, count); }
    std::string collected;
};

/// Whether a catch of `Kind` catches what `raise` throws.
template <class Kind, class Raise>
bool isCaughtAs(Raise raise) {
    try {
        raise();
    } catch (const Kind&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

/// The message of the UserException that `raise` throws.
template <class Raise>
std::string messageOf(Raise raise) {
    try {
        raise();
    } catch (const System::UserException& exception) {
        EXPECT_STREQ(exception.getMessage().c_str(), exception.what());
        return exception.getMessage();
    }
    return "nothing was thrown";
}

// The interfaces

template <class Kind>
class ExceptionInterfaceTest : public Testing::HostFixture {};
using ExceptionInterfaces =
    ::testing::Types<IOException, NullPointerException, ImmutableObjectWriteError, IllegalArgumentException,
                     ArrayIndexOutOfBoundsException, Sax::IllegalCharacterException>;
TYPED_TEST_SUITE(ExceptionInterfaceTest, ExceptionInterfaces);

TYPED_TEST(ExceptionInterfaceTest, IsMadeAndCopiedWithNothing) {
    Testing::expectMadeAndCopiedWithNothing<TypeParam>();
}

// The kinds without a message

template <class Kind>
class PlainExceptionTest : public ExceptionsTest {};

using PlainKinds = ::testing::Types<IOException, NullPointerException, ImmutableObjectWriteError>;
TYPED_TEST_SUITE(PlainExceptionTest, PlainKinds);

TYPED_TEST(PlainExceptionTest, IsCaughtAsItsKindAndItsBases) {
    const auto raise = [] { TypeParam::doThrow(); };
    EXPECT_TRUE(isCaughtAs<TypeParam>(raise));
    EXPECT_TRUE(isCaughtAs<System::InternalException>(raise));
    EXPECT_TRUE(isCaughtAs<System::Throwable>(raise));
    EXPECT_TRUE(isCaughtAs<std::exception>(raise));
}

TYPED_TEST(PlainExceptionTest, IsNoUserExceptionAndHasNoIdentifier) {
    const auto raise = [] { TypeParam::doThrow(); };
    EXPECT_FALSE(isCaughtAs<System::UserException>(raise));
    EXPECT_FALSE(isCaughtAs<System::Identifiable>(raise));
}

TYPED_TEST(PlainExceptionTest, IsNoOtherKind) {
    const auto raise = [] { TypeParam::doThrow(); };
    const int kinds = isCaughtAs<IOException>(raise) + isCaughtAs<NullPointerException>(raise)
                      + isCaughtAs<ImmutableObjectWriteError>(raise)
                      + isCaughtAs<IllegalArgumentException>(raise)
                      + isCaughtAs<ArrayIndexOutOfBoundsException>(raise);
    EXPECT_EQ(1, kinds);
}

TYPED_TEST(PlainExceptionTest, InterfaceIsTheFirstPart) {
    try {
        TypeParam::doThrow();
    } catch (const TypeParam& exception) {
        EXPECT_EQ(dynamic_cast<const void*>(&exception), static_cast<const void*>(&exception));
        EXPECT_NE(static_cast<const void*>(&dynamic_cast<const System::InternalException&>(exception)),
                  static_cast<const void*>(&exception));
    }
}

TYPED_TEST(PlainExceptionTest, NeedsNoMemoryOfTheHostNorOfNew) {
    const std::size_t host = hostMemory().requests(), objects = Testing::newMemory().requests();
    EXPECT_TRUE(isCaughtAs<TypeParam>([] { TypeParam::doThrow(); }));
    EXPECT_EQ(host, hostMemory().requests());
    EXPECT_EQ(objects, Testing::newMemory().requests());
}

/// Everything that can be told about what was thrown.
struct Description {
    std::string type, text, written, trace;
    bool operator==(const Description&) const = default;
};

template <class Kind, class Raise>
Description describe(Raise raise) {
    try {
        raise();
    } catch (const Kind& exception) {
        const auto& base = dynamic_cast<const System::InternalException&>(exception);
        Collector message, trace;
        base.writeLocalizedMsg(message);
        base.writeStackTrace(trace);
        return {typeid(exception).name(), base.what(), message.collected, trace.collected};
    }
    return {};
}

TEST_F(ExceptionsTest, IOExceptionIgnoresWhat) {
    const Description plain = describe<IOException>([] { IOException::doThrow(); });
    EXPECT_FALSE(plain.type.empty());
    EXPECT_EQ(plain, describe<IOException>([] { IOException::doThrow(text(u"x")); }));
    EXPECT_EQ(plain, describe<IOException>([] { IOException::doThrow(XmlString()); }));
}

TEST_F(ExceptionsTest, NullPointerExceptionIgnoresWhat) {
    const Description plain = describe<NullPointerException>([] { NullPointerException::doThrow(); });
    EXPECT_FALSE(plain.type.empty());
    EXPECT_EQ(plain, describe<NullPointerException>([] { NullPointerException::doThrow(text(u"x")); }));
    EXPECT_EQ(plain, describe<NullPointerException>([] { NullPointerException::doThrow(XmlString()); }));
}

TEST_F(ExceptionsTest, WhatIsNotConverted) {
    const XmlString what = text(u"x");
    const std::size_t before = hostMemory().requests();
    EXPECT_TRUE(isCaughtAs<IOException>([&] { IOException::doThrow(what); }));
    EXPECT_TRUE(isCaughtAs<NullPointerException>([&] { NullPointerException::doThrow(what); }));
    EXPECT_EQ(before, hostMemory().requests());
}

// The kinds of the message catalog

void raiseIllegalArgument() {
    IllegalArgumentException::doThrow(text(u"bad name"));
}
void raiseIndex() {
    ArrayIndexOutOfBoundsException::doThrow(text(u"index"), 7);
}

template <class Kind>
void expectCatalogued(void (*raise)(), const char* identifier, const char* message) {
    EXPECT_TRUE(isCaughtAs<Kind>(raise));
    EXPECT_TRUE(isCaughtAs<System::UserException>(raise));
    EXPECT_TRUE(isCaughtAs<System::CataloguedException>(raise));
    EXPECT_TRUE(isCaughtAs<System::Identifiable>(raise));
    EXPECT_TRUE(isCaughtAs<System::Throwable>(raise));
    EXPECT_TRUE(isCaughtAs<std::exception>(raise));
    EXPECT_FALSE(isCaughtAs<System::InternalException>(raise));
    EXPECT_EQ(message, messageOf(raise));
    try {
        raise();
    } catch (const Kind& exception) {
        EXPECT_EQ(dynamic_cast<const void*>(&exception), static_cast<const void*>(&exception));
        EXPECT_EQ(identifier, dynamic_cast<const System::Identifiable&>(exception).getIdentifier());
    }
}

TEST_F(ExceptionsTest, IllegalArgumentIsAUserExceptionWithItsMessage) {
    expectCatalogued<IllegalArgumentException>(raiseIllegalArgument, "KAVOLT:IllegalArgumentException",
                                               "Illegal argument provided: bad name.");
}

TEST_F(ExceptionsTest, ArrayIndexOutOfBoundsIsAUserExceptionWithItsMessage) {
    expectCatalogued<ArrayIndexOutOfBoundsException>(raiseIndex, "KAVOLT:ArrayIndexOutOfBoundsException",
                                                     "Array index out of bounds; index: 7.");
}

TEST_F(ExceptionsTest, CataloguedKindsDiffer) {
    EXPECT_FALSE(isCaughtAs<ArrayIndexOutOfBoundsException>(raiseIllegalArgument));
    EXPECT_FALSE(isCaughtAs<IllegalArgumentException>(raiseIndex));
}

std::string indexMessage(unsigned int index) {
    return messageOf([&] { ArrayIndexOutOfBoundsException::doThrow(text(u"i"), index); });
}

TEST_F(ExceptionsTest, IndexAboveIntMaxIsShownNegative) {
    EXPECT_EQ("Array index out of bounds; i: 0.", indexMessage(0));
    EXPECT_EQ("Array index out of bounds; i: 2147483647.", indexMessage(0x7FFFFFFF));
    EXPECT_EQ("Array index out of bounds; i: -2147483648.", indexMessage(0x80000000));
    EXPECT_EQ("Array index out of bounds; i: -1.", indexMessage(0xFFFFFFFF));
}

TEST_F(ExceptionsTest, WhatIsShownInTheLocalCodePage) {
    const auto raise = [] { IllegalArgumentException::doThrow(text(u"caf\u00E9 %s")); };
    const std::string saved = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, "C.UTF-8"));
    EXPECT_EQ("Illegal argument provided: caf\xC3\xA9 %s.", messageOf(raise));
    ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, "C"));
    EXPECT_EQ("Illegal argument provided: caf? %s.", messageOf(raise));
    std::setlocale(LC_CTYPE, saved.c_str());
}

TEST_F(ExceptionsTest, EmptyWhatIsShownAsNothing) {
    EXPECT_EQ("Illegal argument provided: .",
              messageOf([] { IllegalArgumentException::doThrow(text(u"")); }));
}

/// What reached the host's formatter.
struct Formatted {
    static inline char identifier[64];
    static inline std::uint32_t code;
    static inline bool whatIsNull;

    static char* note(const char* id, std::uint32_t messageCode, std::va_list arguments) {
        std::snprintf(identifier, sizeof identifier, "%s", id);
        code = messageCode;
        std::va_list copy;
        va_copy(copy, arguments);
        whatIsNull = va_arg(copy, const char*) == nullptr;
        va_end(copy);
        return Runtime::defaultHostServices().formatMessage(id, messageCode, arguments);
    }
};

TEST_F(ExceptionsTest, NullWhatReachesTheFormatterAsANullPointer) {
    const ChangedHost host([](Runtime::HostServices& services) { services.formatMessage = Formatted::note; });
    EXPECT_TRUE(isCaughtAs<IllegalArgumentException>([] { IllegalArgumentException::doThrow(XmlString()); }));
    EXPECT_STREQ("KAVOLT:IllegalArgumentException", Formatted::identifier);
    EXPECT_EQ(0x4C0008u, Formatted::code);
    EXPECT_TRUE(Formatted::whatIsNull);
    EXPECT_TRUE(isCaughtAs<ArrayIndexOutOfBoundsException>(
        [] { ArrayIndexOutOfBoundsException::doThrow(XmlString(), 1); }));
    EXPECT_STREQ("KAVOLT:ArrayIndexOutOfBoundsException", Formatted::identifier);
    EXPECT_EQ(0x4C0007u, Formatted::code);
    EXPECT_TRUE(Formatted::whatIsNull);
}

TEST_F(ExceptionsTest, MessageSurvivesTheConvertedText) {
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    try {
        raiseIndex();
    } catch (const System::CataloguedException& exception) {
        EXPECT_EQ(before + 1, hostMemory().liveBlocks()) << "only the identifier's C string is left";
        EXPECT_EQ("Array index out of bounds; index: 7.", exception.getMessage());
    }
    EXPECT_EQ(before, hostMemory().liveBlocks());
}

TEST_F(ExceptionsTest, OutOfMemoryTakesTheExceptionsPlace) {
    const XmlString what = text(u"bad name");
    everyAllocationFails([&] {
        try {
            IllegalArgumentException::doThrow(what);
        } catch (const IllegalArgumentException&) {
        }
    });
    everyAllocationFails([&] {
        try {
            ArrayIndexOutOfBoundsException::doThrow(what, 1);
        } catch (const ArrayIndexOutOfBoundsException&) {
        }
    });
}

TEST_F(ExceptionsTest, BadAllocTakesTheExceptionsPlace) {
    const XmlString what = text(u"bad name");
    everyNewFails([&] {
        try {
            IllegalArgumentException::doThrow(what);
        } catch (const IllegalArgumentException&) {
        }
    });
    everyNewFails([&] {
        try {
            ArrayIndexOutOfBoundsException::doThrow(what, 1);
        } catch (const ArrayIndexOutOfBoundsException&) {
        }
    });
}

TEST_F(ExceptionsTest, PlainKindsAreRaisedWhenNoMemoryIsLeft) {
    for (std::size_t k = 1; k <= 3; ++k) {
        hostMemory().failRequest(k);
        Testing::newMemory().failRequest(k);
        const bool isCaught =
            isCaughtAs<IOException>([] { IOException::doThrow(); })
            && isCaughtAs<NullPointerException>([] { NullPointerException::doThrow(); })
            && isCaughtAs<ImmutableObjectWriteError>([] { ImmutableObjectWriteError::doThrow(); });
        hostMemory().failRequest(0);
        Testing::newMemory().failRequest(0);
        EXPECT_TRUE(isCaught);
    }
}

// Registration of the catalog. Each test starts a process of its own, in which nothing was raised before.

class CatalogRegistrationTest : public ::testing::Test {};

struct Registration {
    static inline int calls;
    static inline bool isFirst;
    static inline bool isWithoutContext;

    static void note(void* memoryContext, const Runtime::MessageTable* table) {
        ++calls;
        isFirst = hostMemory().requests() == requestsBefore;
        isWithoutContext = memoryContext == nullptr;
        Runtime::defaultHostServices().addMessageTable(memoryContext, table);
    }

    static inline std::size_t requestsBefore;
};

/// Raises the exceptions with `raise` three times and leaves the process with the number of registrations.
template <class Raise>
[[noreturn]] void exitWithRegistrations(Raise raise) {
    const ChangedHost host(
        [](Runtime::HostServices& services) { services.addMessageTable = Registration::note; });
    for (int i = 0; i < 3; ++i) {
        Registration::requestsBefore = hostMemory().requests();
        isCaughtAs<std::exception>(raise);
    }
    if (Registration::calls > 0 && !(Registration::isFirst && Registration::isWithoutContext))
        std::exit(99);
    std::exit(Registration::calls);
}

TEST_F(CatalogRegistrationTest, FirstIllegalArgumentRegistersTheCatalogLaterOnesDoNot) {
    EXPECT_EXIT(exitWithRegistrations([] {
                    static const unsigned short what[] = {'x', 0};
                    IllegalArgumentException::doThrow(XmlString(Borrowed, what));
                }),
                ::testing::ExitedWithCode(1), "");
}

TEST_F(CatalogRegistrationTest, FirstIndexOutOfBoundsRegistersTheCatalogLaterOnesDoNot) {
    EXPECT_EXIT(exitWithRegistrations([] {
                    static const unsigned short what[] = {'x', 0};
                    ArrayIndexOutOfBoundsException::doThrow(XmlString(Borrowed, what), 1);
                }),
                ::testing::ExitedWithCode(1), "");
}

TEST_F(CatalogRegistrationTest, CatalogIsRegisteredOnceForAllKinds) {
    EXPECT_EXIT(exitWithRegistrations([] {
                    static int turn = 0;
                    static const unsigned short what[] = {'x', 0};
                    if (++turn % 2 == 0)
                        IllegalArgumentException::doThrow(XmlString(Borrowed, what));
                    ArrayIndexOutOfBoundsException::doThrow(XmlString(Borrowed, what), 1);
                }),
                ::testing::ExitedWithCode(1), "");
}

TEST_F(CatalogRegistrationTest, PlainKindsDoNotRegisterTheCatalog) {
    EXPECT_EXIT(exitWithRegistrations([] {
                    static int turn = 0;
                    switch (++turn) {
                    case 1:
                        IOException::doThrow();
                    case 2:
                        NullPointerException::doThrow();
                    default:
                        ImmutableObjectWriteError::doThrow();
                    }
                }),
                ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace Quillon::Xml
