// Needs a 64-bit address space, and no sanitizer, whose shadow of the text would be real memory.
#include "xml/XmlString.h"

#include "support/HostFixture.h"
#include "system/OutOfMemoryException.h"

#include <gtest/gtest.h>

#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace Quillon::Xml {
namespace {

/// 2^32 units and a zero unit: two mebibytes of memory mapped again and again, then a page of zeros.
class HugeText {
public:
    HugeText() : file_(memfd_create("units", 0)) {
        const std::vector<unsigned short> units(kPieceBytes / 2, 'a');
        isMapped = write(file_, units.data(), kPieceBytes) == static_cast<ssize_t>(kPieceBytes);
        base_ = static_cast<char*>(mmap(nullptr, kBytes + kPageBytes, PROT_READ,
                                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        isMapped = isMapped && base_ != MAP_FAILED;
        for (std::size_t offset = 0; isMapped && offset < kBytes; offset += kPieceBytes)
            isMapped =
                mmap(base_ + offset, kPieceBytes, PROT_READ, MAP_SHARED | MAP_FIXED, file_, 0) != MAP_FAILED;
    }
    ~HugeText() {
        munmap(base_, kBytes + kPageBytes);
        close(file_);
    }
    HugeText(const HugeText&) = delete;
    HugeText& operator=(const HugeText&) = delete;

    const unsigned short* units() const { return reinterpret_cast<const unsigned short*>(base_); }

    bool isMapped;

private:
    static constexpr std::size_t kPieceBytes = std::size_t{2} << 20, kPageBytes = 4096;
    static constexpr std::size_t kBytes = std::size_t{2} << 32;

    int file_;
    char* base_;
};

class HugeTextTest : public Testing::HostFixture {};

TEST_F(HugeTextTest, TextOfMoreUnitsThan32BitsCountIsRefused) {
    const HugeText huge;
    ASSERT_TRUE(huge.isMapped);
    const std::size_t before = Testing::hostMemory().requests();
    EXPECT_THROW(XmlString(Borrowed, huge.units()), System::OutOfMemoryException);
    EXPECT_EQ(before, Testing::hostMemory().requests());
}

} // namespace
} // namespace Quillon::Xml
