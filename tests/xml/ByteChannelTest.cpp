#include "xml/ByteChannel.h"

#include "support/HostFixture.h"
#include "xml/IOException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace Quillon::Xml {
namespace {

using Testing::newMemory;

/// How often channels were closed and destroyed.
struct Log {
    int closed = 0;
    int destroyed = 0;
};

/// Hands out what was written to it.
class Pipe : public ByteChannel {
public:
    explicit Pipe(Log& log) : log_(log) {}
    ~Pipe() override { ++log_.destroyed; }

    void close() override {
        isOpen_ = false;
        ++log_.closed;
    }
    bool isOpen() const override { return isOpen_; }
    unsigned int read(unsigned char* buffer, unsigned int length) override {
        if (!isOpen_)
            IOException::doThrow();
        const auto count = std::min<unsigned int>(length, static_cast<unsigned int>(held_.size()));
        std::memcpy(buffer, held_.data(), count);
        held_.erase(0, count);
        return count;
    }
    unsigned int write(const unsigned char* buffer, unsigned int length) override {
        if (!isOpen_)
            IOException::doThrow();
        held_.append(reinterpret_cast<const char*>(buffer), length);
        return length;
    }

private:
    Log& log_;
    std::string held_;
    bool isOpen_ = true;
};

class ByteChannelTest : public Testing::HostFixture {
protected:
    Log log_;
};

TEST_F(ByteChannelTest, BytesGoThroughTheInterfaces) {
    Pipe pipe(log_);
    ReadableByteChannel& source = pipe;
    WritableByteChannel& sink = pipe;
    EXPECT_EQ(3u, sink.write(reinterpret_cast<const unsigned char*>("abc"), 3));
    unsigned char buffer[8] = {};
    EXPECT_EQ(2u, source.read(buffer, 2));
    EXPECT_EQ(1u, source.read(buffer + 2, 6));
    EXPECT_EQ(0, std::memcmp("abc", buffer, 3));
    EXPECT_EQ(0u, source.read(buffer, 8)) << "the end";
}

TEST_F(ByteChannelTest, TwoChannelPartsShareOneImplementation) {
    Pipe pipe(log_);
    Channel& reading = static_cast<ReadableByteChannel&>(pipe);
    Channel& writing = static_cast<WritableByteChannel&>(pipe);
    EXPECT_NE(&reading, &writing);
    EXPECT_TRUE(reading.isOpen());
    static_cast<Closeable&>(writing).close();
    EXPECT_FALSE(reading.isOpen());
    EXPECT_FALSE(writing.isOpen());
    EXPECT_EQ(1, log_.closed);
}

TEST_F(ByteChannelTest, FailureIsAnIOException) {
    Pipe pipe(log_);
    pipe.close();
    unsigned char buffer[1] = {};
    EXPECT_THROW(pipe.read(buffer, 1), IOException);
    EXPECT_THROW(pipe.write(buffer, 1), IOException);
}

TEST_F(ByteChannelTest, EveryInterfaceDeletesTheWholeObject) {
    delete static_cast<ByteChannel*>(new Pipe(log_));
    delete static_cast<ReadableByteChannel*>(new Pipe(log_));
    delete static_cast<WritableByteChannel*>(new Pipe(log_));
    delete static_cast<Channel*>(static_cast<WritableByteChannel*>(new Pipe(log_)));
    delete static_cast<Closeable*>(static_cast<ReadableByteChannel*>(new Pipe(log_)));
    EXPECT_EQ(5, log_.destroyed);
}

TEST_F(ByteChannelTest, ObjectsComeFromTheGlobalOperators) {
    const std::size_t before = newMemory().requests();
    void* one = Closeable::operator new(5);
    void* many = Closeable::operator new[](5);
    EXPECT_EQ(before + 2, newMemory().requests());
    const std::ptrdiff_t live = newMemory().liveBlocks();
    Closeable::operator delete(one);
    Closeable::operator delete[](many);
    EXPECT_EQ(live - 2, newMemory().liveBlocks());
    Testing::everyNewFails([this] { delete new Pipe(log_); });
}

TEST_F(ByteChannelTest, ArraysComeFromTheGlobalOperators) {
    const std::ptrdiff_t before = newMemory().liveBlocks();
    Pipe* pipes = new Pipe[2]{Pipe(log_), Pipe(log_)};
    EXPECT_EQ(before + 1, newMemory().liveBlocks());
    delete[] pipes;
    EXPECT_EQ(before, newMemory().liveBlocks());
    EXPECT_EQ(2, log_.destroyed);
}

TEST_F(ByteChannelTest, PlacementUsesTheGivenPlace) {
    alignas(Pipe) unsigned char place[sizeof(Pipe)];
    const std::size_t before = newMemory().requests();
    Pipe* pipe = new (place) Pipe(log_);
    EXPECT_EQ(static_cast<void*>(place), pipe);
    EXPECT_EQ(static_cast<void*>(place), Closeable::operator new[](sizeof place, place));
    EXPECT_EQ(before, newMemory().requests());
    pipe->~Pipe();
}

TEST_F(ByteChannelTest, NewThatDoesNotThrowIsTheGlobalOne) {
    const std::size_t before = newMemory().requests();
    delete new (std::nothrow) Pipe(log_);
    void* many = Closeable::operator new[](5, std::nothrow);
    EXPECT_EQ(before + 2, newMemory().requests());
    Closeable::operator delete[](many, std::nothrow);
    newMemory().failRequest(1);
    EXPECT_EQ(nullptr, Closeable::operator new(5, std::nothrow));
    newMemory().failRequest(0);
}

/// Cannot be made.
class Refuser : public ByteChannel {
public:
    Refuser() { IOException::doThrow(); }
    void close() override {}
    bool isOpen() const override { return false; }
    unsigned int read(unsigned char*, unsigned int) override { return 0; }
    unsigned int write(const unsigned char*, unsigned int) override { return 0; }
};

TEST_F(ByteChannelTest, ObjectIsFreedWhenItsConstructionFails) {
    EXPECT_THROW(static_cast<void>(new Refuser), IOException);
    alignas(Refuser) unsigned char place[sizeof(Refuser)];
    EXPECT_THROW(static_cast<void>(new (place) Refuser), IOException);
}

} // namespace
} // namespace Quillon::Xml
