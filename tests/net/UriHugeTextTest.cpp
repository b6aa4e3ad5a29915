// Texts whose lengths 32 bits cannot count: one small block of memory, mapped again and again.
#include "net/URI.h"

#include "net/URISyntaxException.h"
#include "net/UriFixture.h"
#include "runtime/HostServices.h"

#include <cstdint>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace Quillon::Testing {
namespace {

using Net::URI;
using Net::URISyntaxException;

/// `byteCount` times "a" and a terminator; read-only memory that is there once. A URI may own it: the host's release
/// is replaced by one that passes it over.
class HugeText {
public:
    explicit HugeText(std::size_t byteCount) : mapped_((byteCount / kPiece + 1) * kPiece) {
        const int file = memfd_create("huge-text", 0);
        EXPECT_EQ(0, ftruncate(file, kPiece));
        void* reserved =
            mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (file < 0 || reserved == MAP_FAILED) {
            ADD_FAILURE() << "no room for " << byteCount << " addresses";
            return;
        }
        begin_ = static_cast<unsigned char*>(reserved);
        for (std::size_t at = 0; at + kPiece < mapped_; at += kPiece)
            map(at, MAP_SHARED, file);
        map(mapped_ - kPiece, MAP_PRIVATE, file);
        std::memset(begin_, 'a', kPiece);
        begin_[byteCount] = 0;
        close(file);
        text = begin_;
        hostRelease = Runtime::hostServices().release;
        replaceRelease([](void* block) {
            if (block != text)
                hostRelease(block);
        });
    }
    HugeText(const HugeText&) = delete;
    HugeText& operator=(const HugeText&) = delete;
    ~HugeText() {
        replaceRelease(hostRelease);
        munmap(begin_, mapped_);
    }

    unsigned char* get() const { return begin_; }

private:
    static constexpr std::size_t kPiece = 1 << 21;

    static void replaceRelease(void (*release)(void*)) {
        Runtime::HostServices services = Runtime::hostServices();
        services.release = release;
        Runtime::setHostServices(services);
    }
    void map(std::size_t at, int kind, int file) {
        void* piece = mmap(begin_ + at, kPiece, PROT_READ | PROT_WRITE, kind | MAP_FIXED, file, 0);
        EXPECT_NE(MAP_FAILED, piece);
    }

    static inline void* text = nullptr;
    static inline void (*hostRelease)(void*) = nullptr;

    std::size_t mapped_;
    unsigned char* begin_ = nullptr;
};

class UriHugeTextTest : public UriFixture {};

// Five components of 0.8 GiB: together more than 32 bits can count, on both platforms.
TEST_F(UriHugeTextTest, RecomposeRefusesWhat32BitsCannotCount) {
    constexpr std::size_t kLength = 0xD0000000u / 4;
    const HugeText text(kLength);
    URI uri;
    uri.setScheme(text.get());
    uri.setAuthority(text.get());
    uri.setPath(text.get());
    uri.setQuery(text.get());
    uri.setFragment(text.get());
    const std::size_t requests = hostMemory().requests();
    EXPECT_THROW(uri.recompose(), System::OutOfMemoryException);
    EXPECT_EQ(requests, hostMemory().requests());
}

#if UINTPTR_MAX > UINT32_MAX
TEST_F(UriHugeTextTest, ConstructRefusesWhat32BitsCannotCount) {
    for (const std::size_t length : {std::size_t{0xFFFFFFFF}, std::size_t{0x100000001}}) {
        const HugeText text(length);
        text.get()[0] = '^'; // it is not even looked at
        const std::size_t requests = hostMemory().requests();
        EXPECT_THROW(URI::construct(text.get()), int);
        EXPECT_EQ(requests, hostMemory().requests());
    }
}

TEST_F(UriHugeTextTest, ConstructReadsWhat32BitsCanCount) {
    const HugeText text(0xFFFFFFFE);
    text.get()[0] = '^';
    EXPECT_THROW(URI::construct(text.get()), URISyntaxException);
}

TEST_F(UriHugeTextTest, CopyRefusesWhat32BitsCannotCount) {
    const HugeText text(0xFFFFFFFF);
    URI uri;
    uri.setPath(text.get());
    const std::size_t requests = hostMemory().requests();
    EXPECT_THROW(URI{uri}, System::OutOfMemoryException);
    EXPECT_THROW(uri.normalize(), System::OutOfMemoryException);
    EXPECT_EQ(requests, hostMemory().requests());
}
#endif

} // namespace
} // namespace Quillon::Testing
