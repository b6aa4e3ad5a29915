#ifndef ZUTARNEX_TOOLS_OUTPUTFILE_H
#define ZUTARNEX_TOOLS_OUTPUTFILE_H

#include <array>
#include <ostream>
#include <streambuf>
#include <string>

namespace Quillon::Tool {

/// A stream buffer over a file descriptor that remembers why a write failed.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int descriptor);

    int errorNumber() const noexcept { return errorNumber_; } ///< 0: none has failed

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int sync() override;

private:
    bool flushBuffer() noexcept;
    bool writeAll(const char* bytes, std::size_t count) noexcept;

    int descriptor_;
    int errorNumber_ = 0;
    std::array<char, 65536> buffer_;
};

/// Where a command writes: standard output, or a file that is complete or not there at all: it is written under a
/// temporary name beside the target, which it replaces in `commit`. Targets that are no plain files (devices, pipes)
/// are written directly.
///
/// Throws: Failure, status 3, from the constructor, `check` and `commit`.
class OutputFile {
public:
    /// Empty or "-": standard output.
    explicit OutputFile(const std::string& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile(); ///< without `commit` the target stays as it was

    std::ostream& stream() noexcept { return stream_; }
    /// Throws when something could not be written: a long command ends early then.
    void check() const;
    void commit();

private:
    struct Target;
    explicit OutputFile(Target target);
    void discard() noexcept;

    std::string name_;      ///< for messages
    std::string finalPath_; ///< empty when written directly
    std::string temporaryPath_;
    int descriptor_;
    DescriptorBuffer buffer_;
    std::ostream stream_;
};

} // namespace Quillon::Tool

#endif
