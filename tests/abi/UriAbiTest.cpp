// Where the fields of URIs and their exception lie.
#include "net/URI.h"
#include "net/URISyntaxException.h"

#include "abi/VirtualSlot.h"
#include "support/HostFixture.h"

#include <cstddef>
#include <cstring>
#include <exception>
#include <type_traits>
#include <typeinfo>

namespace Quillon::Testing {
namespace {

using Net::URI;
using Net::URISyntaxException;

class UriAbiTest : public HostFixture {
protected:
    /// The field of type `Field` that lies `offset` bytes into `object`.
    template <class Field, class Object>
    static Field fieldAt(const Object& object, std::size_t offset) {
        Field field;
        std::memcpy(&field, reinterpret_cast<const unsigned char*>(&object) + offset, sizeof field);
        return field;
    }
};

constexpr std::size_t kWord = sizeof(void*);

static_assert(sizeof(URI) == (kWord == 8 ? 64 : 32));
static_assert(alignof(URI) == kWord);
static_assert(!std::is_polymorphic_v<URI>);
static_assert(sizeof(URISyntaxException) == (kWord == 8 ? 32 : 16));
static_assert(alignof(URISyntaxException) == kWord);
static_assert(std::is_polymorphic_v<URISyntaxException>);

TEST_F(UriAbiTest, ComponentsLieInTheirOrder) {
    unsigned char texts[7];
    URI uri;
    uri.setScheme(&texts[0]);
    uri.setAuthority(&texts[1]);
    uri.setPath(&texts[2]);
    uri.setQuery(&texts[3]);
    uri.setFragment(&texts[4]);
    uri.setUserInfo(&texts[5]);
    uri.setHost(&texts[6]);
    uri.setPort(8);
    for (std::size_t i = 0; i < 7; ++i)
        EXPECT_EQ(&texts[i], fieldAt<unsigned char*>(uri, i * kWord)) << "field " << i;
    EXPECT_EQ(8, fieldAt<int>(uri, 7 * kWord));
    std::memset(static_cast<void*>(&uri), 0, 7 * kWord); // the texts are not the host's
}

TEST_F(UriAbiTest, EmptyUriIsNullsAndMinusOne) {
    const URI uri;
    for (std::size_t i = 0; i < 7; ++i)
        EXPECT_EQ(nullptr, fieldAt<unsigned char*>(uri, i * kWord)) << "field " << i;
    EXPECT_EQ(-1, fieldAt<int>(uri, 7 * kWord));
}

TEST_F(UriAbiTest, ExceptionHoldsInputReasonAndIndex) {
    const unsigned char input[] = "input";
    const char reason[] = "reason";
    const URISyntaxException fault(input, reason, 7);
    EXPECT_EQ(input, fieldAt<const unsigned char*>(fault, kWord));
    EXPECT_EQ(reason, fieldAt<const char*>(fault, 2 * kWord));
    EXPECT_EQ(7u, fieldAt<unsigned int>(fault, 3 * kWord));
}

struct WithOneMore : URISyntaxException {
    using URISyntaxException::URISyntaxException;
    virtual int next() const { return 42; }
};

TEST_F(UriAbiTest, ExceptionHasNoVirtualOperationButItsDestructor) {
    EXPECT_EQ(2u, virtualSlotOf(&WithOneMore::next)); // a destructor takes two slots
}

TEST_F(UriAbiTest, ExceptionIsCaughtAcrossTheLibrary) {
    try {
        delete URI::construct(reinterpret_cast<const unsigned char*>(":"));
        FAIL() << "accepted";
    } catch (const std::exception&) {
        FAIL() << "has a base that it should not have";
    } catch (const URISyntaxException& fault) {
        EXPECT_TRUE(typeid(fault) == typeid(URISyntaxException));
    }
}

} // namespace
} // namespace Quillon::Testing
