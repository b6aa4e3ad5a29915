#include "saxengine/FileByteChannel.h"

#include "saxengine/MemoryByteChannel.h"
#include "saxengine/StreamByteChannel.h"
#include "support/HostFixture.h"
#include "xml/IOException.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace Quillon::Xml {
namespace {

class ByteChannelsTest : public Testing::HostFixture {
protected:
    static std::string readAll(ReadableByteChannel& channel, unsigned int pieces) {
        std::string all;
        std::string buffer(pieces, '\0');
        while (const unsigned int count =
                   channel.read(reinterpret_cast<unsigned char*>(buffer.data()), pieces)) {
            EXPECT_LE(count, pieces);
            all.append(buffer, 0, count);
        }
        return all;
    }
    /// A file with `text`, which goes with the object.
    struct TemporaryFile {
        explicit TemporaryFile(const std::string& text) {
            const int descriptor = ::mkstemp(name.data());
            EXPECT_EQ(static_cast<ssize_t>(text.size()), ::write(descriptor, text.data(), text.size()));
            ::close(descriptor);
        }
        ~TemporaryFile() { ::unlink(name.c_str()); }
        std::string name = testing::TempDir() + "/channelXXXXXX";
    };
    static void isClosedOnce(ReadableByteChannel& channel) {
        unsigned char byte;
        EXPECT_TRUE(channel.isOpen());
        channel.close();
        EXPECT_FALSE(channel.isOpen());
        EXPECT_THROW(channel.read(&byte, 1), IOException);
        channel.close();
        EXPECT_FALSE(channel.isOpen());
    }
};

TEST_F(ByteChannelsTest, FileIsReadToItsEnd) {
    const std::string text = std::string("a\0b\r\n", 5) + std::string(100000, 'x');
    const TemporaryFile file(text);
    for (const unsigned int pieces : {1u, 7u, 4096u, 1000000u}) {
        FileByteChannel channel(file.name.c_str());
        EXPECT_EQ(text, readAll(channel, pieces));
        unsigned char byte;
        EXPECT_EQ(0u, channel.read(&byte, 1)) << "the end stays the end";
        EXPECT_TRUE(channel.isOpen());
    }
}

TEST_F(ByteChannelsTest, FileThatCannotBeOpenedIsAnIOException) {
    errno = 0;
    EXPECT_THROW(FileByteChannel("/no/such/file"), IOException);
    EXPECT_EQ(ENOENT, errno);
    EXPECT_THROW(FileByteChannel("/"), IOException);
    EXPECT_EQ(EISDIR, errno);
    EXPECT_THROW(FileByteChannel(""), IOException);
    EXPECT_THROW(FileByteChannel(nullptr), IOException);
}

TEST_F(ByteChannelsTest, FileThatCannotBeReadIsAnIOException) {
    FileByteChannel channel("/proc/self/mem");
    unsigned char byte;
    EXPECT_THROW(channel.read(&byte, 1), IOException);
    EXPECT_TRUE(channel.isOpen());
}

TEST_F(ByteChannelsTest, FileIsClosedOnce) {
    FileByteChannel channel("/dev/null");
    isClosedOnce(channel);
}

TEST_F(ByteChannelsTest, FileIsClosedWithItsChannel) {
    const int next = ::dup(0);
    ::close(next);
    for (int i = 0; i < 3; ++i) {
        const FileByteChannel channel("/dev/null");
        EXPECT_TRUE(channel.isOpen());
    }
    const int again = ::dup(0);
    EXPECT_EQ(next, again) << "a descriptor was left open";
    ::close(again);
}

/// More than a signed count can tell.
TEST_F(ByteChannelsTest, HugeRequestIsServedInPart) {
    const TemporaryFile file("abc");
    FileByteChannel channel(file.name.c_str());
    std::vector<unsigned char> buffer(
        16); // the stack may end before what the request claims, a fault for read(2)
    EXPECT_EQ(3u, channel.read(buffer.data(), 16));
    EXPECT_EQ(0u, channel.read(buffer.data(), UINT_MAX));
}

TEST_F(ByteChannelsTest, MemoryIsReadToItsEnd) {
    const std::string text("a\0bcdefg", 8);
    for (const unsigned int pieces : {1u, 3u, 8u, 100u}) {
        MemoryByteChannel channel(text.data(), text.size());
        EXPECT_EQ(text, readAll(channel, pieces));
    }
    MemoryByteChannel channel(text.data(), text.size());
    unsigned char byte;
    EXPECT_EQ(0u, channel.read(&byte, 0));
    EXPECT_EQ(text, readAll(channel, 8));
}

TEST_F(ByteChannelsTest, EmptyMemoryEndsAtOnce) {
    unsigned char byte;
    MemoryByteChannel nothing(nullptr, 5);
    EXPECT_EQ(0u, nothing.read(&byte, 1));
    MemoryByteChannel empty("x", 0);
    EXPECT_EQ(0u, empty.read(&byte, 1));
}

TEST_F(ByteChannelsTest, MemoryIsClosedOnce) {
    MemoryByteChannel channel("x", 1);
    isClosedOnce(channel);
}

TEST_F(ByteChannelsTest, StreamIsReadFromWhereItStands) {
    for (const unsigned int pieces : {1u, 3u, 100u}) {
        std::istringstream stream(std::string("skip:a\0b\xFF", 9));
        stream.ignore(5);
        StreamByteChannel channel(stream);
        EXPECT_EQ(std::string("a\0b\xFF", 4), readAll(channel, pieces));
        unsigned char byte;
        EXPECT_EQ(0u, channel.read(&byte, 1));
    }
}

TEST_F(ByteChannelsTest, StreamThatThrowsAtItsEndEndsAsWell) {
    std::istringstream stream("abc");
    stream.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
    StreamByteChannel channel(stream);
    EXPECT_EQ("abc", readAll(channel, 2));
}

/// A stream buffer that breaks after its text.
class BrokenBuffer : public std::stringbuf {
public:
    explicit BrokenBuffer(const std::string& text) : std::stringbuf(text) {}

protected:
    int_type underflow() override { throw std::runtime_error("broken"); }
};

TEST_F(ByteChannelsTest, BadStreamIsAnIOException) {
    BrokenBuffer buffer("abc");
    std::istream stream(&buffer);
    StreamByteChannel channel(stream);
    unsigned char bytes[4];
    EXPECT_EQ(3u, channel.read(bytes, 3));
    EXPECT_THROW(channel.read(bytes, 1), IOException);
}

TEST_F(ByteChannelsTest, StreamThatFailedBeforeIsAnIOException) {
    std::ifstream missing("/no/such/file");
    StreamByteChannel channel(missing);
    unsigned char byte;
    EXPECT_THROW(channel.read(&byte, 1), IOException);
}

TEST_F(ByteChannelsTest, StreamIsNotClosedWithItsChannel) {
    std::ifstream stream("/dev/null");
    StreamByteChannel channel(stream);
    isClosedOnce(channel);
    EXPECT_TRUE(stream.is_open());
}

} // namespace
} // namespace Quillon::Xml
