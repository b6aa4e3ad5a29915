#ifndef ZUTARNEX_BENCH_SUPPORT_DISCARDINGSTREAM_H
#define ZUTARNEX_BENCH_SUPPORT_DISCARDINGSTREAM_H

#include <cstddef>
#include <ostream>
#include <streambuf>

namespace Quillon::Bench {

/// Takes everything and counts it.
class DiscardingBuffer : public std::streambuf {
public:
    std::size_t byteCount() const noexcept { return byteCount_; }

protected:
    int_type overflow(int_type c) override {
        ++byteCount_;
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char*, std::streamsize count) override {
        byteCount_ += static_cast<std::size_t>(count);
        return count;
    }

private:
    std::size_t byteCount_ = 0;
};

class DiscardingStream : public std::ostream {
public:
    DiscardingStream() : std::ostream(nullptr) { rdbuf(&buffer_); }

    std::size_t byteCount() const noexcept { return buffer_.byteCount(); }

private:
    DiscardingBuffer buffer_;
};

} // namespace Quillon::Bench

#endif
