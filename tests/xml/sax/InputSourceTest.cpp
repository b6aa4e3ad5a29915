#include "xml/sax/InputSource.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/ReadableByteChannel.h"

#include <gtest/gtest.h>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

/// Counts what is done to it.
class CountingChannel : public ReadableByteChannel {
public:
    ~CountingChannel() override { ++destroyed; }
    void close() override { ++closed; }
    bool isOpen() const override { return closed == 0; }
    unsigned int read(unsigned char*, unsigned int) override { return 0; }

    int closed = 0;
    inline static int destroyed = 0;
};

using InputSourceTest = Testing::HostFixture;

void expectEmptyNotNull(const XmlString& string) {
    EXPECT_FALSE(string.isNull());
    EXPECT_EQ(0u, string.size());
}

TEST_F(InputSourceTest, NewSourceIsEmpty) {
    const InputSource source;
    expectEmptyNotNull(source.getPublicId());
    expectEmptyNotNull(source.getSystemId());
    expectEmptyNotNull(source.getEncoding());
    EXPECT_EQ(nullptr, source.getByteChannel());
}

TEST_F(InputSourceTest, SystemIdLeavesTheOthersEmpty) {
    const InputSource source(text(u"doc.xml"));
    EXPECT_EQ("doc.xml", show(source.getSystemId()));
    expectEmptyNotNull(source.getPublicId());
    expectEmptyNotNull(source.getEncoding());
    EXPECT_EQ(nullptr, source.getByteChannel());
}

TEST_F(InputSourceTest, SystemIdMayBeNull) {
    EXPECT_TRUE(InputSource(XmlString()).getSystemId().isNull());
}

TEST_F(InputSourceTest, ChannelLeavesTheStringsEmpty) {
    CountingChannel channel;
    const InputSource source(&channel);
    EXPECT_EQ(&channel, source.getByteChannel());
    expectEmptyNotNull(source.getPublicId());
    expectEmptyNotNull(source.getSystemId());
    expectEmptyNotNull(source.getEncoding());
}

TEST_F(InputSourceTest, ChannelIsNeitherClosedNorDeleted) {
    CountingChannel channel, second;
    CountingChannel::destroyed = 0;
    {
        InputSource source(&channel);
        const InputSource copy(source);
        source.setByteChannel(&second);
        source.setByteChannel(nullptr);
        EXPECT_EQ(&channel, copy.getByteChannel());
    }
    EXPECT_EQ(0, channel.closed + second.closed);
    EXPECT_EQ(0, CountingChannel::destroyed);
}

TEST_F(InputSourceTest, ValuesAreSetOneByOne) {
    CountingChannel channel;
    InputSource source;
    source.setPublicId(text(u"pub"));
    expectEmptyNotNull(source.getSystemId());
    source.setSystemId(text(u"sys"));
    expectEmptyNotNull(source.getEncoding());
    source.setEncoding(text(u"UTF-8"));
    source.setByteChannel(&channel);
    EXPECT_EQ("pub", show(source.getPublicId()));
    EXPECT_EQ("sys", show(source.getSystemId()));
    EXPECT_EQ("UTF-8", show(source.getEncoding()));
    EXPECT_EQ(&channel, source.getByteChannel());
}

TEST_F(InputSourceTest, ValuesCanBeSetAgain) {
    InputSource source(text(u"first"));
    for (const char16_t* value : {u"one", static_cast<const char16_t*>(nullptr), u"two"}) {
        source.setPublicId(text(value));
        source.setSystemId(text(value));
        source.setEncoding(text(value));
        EXPECT_EQ(show(text(value)), show(source.getPublicId()));
        EXPECT_EQ(show(text(value)), show(source.getSystemId()));
        EXPECT_EQ(show(text(value)), show(source.getEncoding()));
    }
}

TEST_F(InputSourceTest, StringThatWasSetToALiteralRefusesTheNextValue) {
    static const unsigned short literal[] = {'l', 0};
    const XmlString view(Immutable | Borrowed, literal);
    InputSource source(view);
    EXPECT_THROW(source.setSystemId(text(u"other")), ImmutableObjectWriteError);
    source.setPublicId(view);
    EXPECT_THROW(source.setPublicId(text(u"other")), ImmutableObjectWriteError);
    source.setEncoding(view);
    EXPECT_THROW(source.setEncoding(text(u"other")), ImmutableObjectWriteError);
    EXPECT_EQ("l", show(source.getSystemId()));
    source = InputSource(text(u"assigned"));
    EXPECT_EQ("assigned", show(source.getSystemId()));
    source.setEncoding(text(u"free again"));
}

TEST_F(InputSourceTest, CopiesAndAssignmentsTakeEverything) {
    CountingChannel channel;
    InputSource source(&channel);
    source.setPublicId(text(u"pub"));
    source.setSystemId(text(u"sys"));
    source.setEncoding(text(u"UTF-8"));
    const InputSource copy(source);
    InputSource assigned;
    assigned = source;
    source.setPublicId(text(u"other"));
    source.setByteChannel(nullptr);
    for (const InputSource* kept : {&copy, const_cast<const InputSource*>(&assigned)}) {
        EXPECT_EQ("pub", show(kept->getPublicId()));
        EXPECT_EQ("sys", show(kept->getSystemId()));
        EXPECT_EQ("UTF-8", show(kept->getEncoding()));
        EXPECT_EQ(&channel, kept->getByteChannel());
    }
    const InputSource& same = assigned;
    assigned = same;
    EXPECT_EQ("pub", show(assigned.getPublicId()));
}

TEST_F(InputSourceTest, CanBeDeletedAsASubclass) {
    struct Named : InputSource {
        explicit Named(bool& gone) : gone_(gone) {}
        ~Named() override { gone_ = true; }
        bool& gone_;
    };
    bool gone = false;
    InputSource* source = new Named(gone);
    delete source;
    EXPECT_TRUE(gone);
}

TEST_F(InputSourceTest, WithoutMemoryThereIsNoSource) {
    Testing::everyAllocationFails([] { const InputSource source; });
    const XmlString systemId = text(u"doc.xml");
    Testing::everyAllocationFails([&] { const InputSource source(systemId); });
    EXPECT_EQ(1u, systemId.getRefs());
}

} // namespace
} // namespace Quillon::Xml::Sax
