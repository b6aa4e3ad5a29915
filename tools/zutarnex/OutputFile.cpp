#include "OutputFile.h"

#include "Failure.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillon::Tool {

struct OutputFile::Target {
    std::string name;
    std::string finalPath;
    std::string temporaryPath;
    int descriptor = STDOUT_FILENO;
};

namespace {

/// The file behind links, so that a link stays one; the path itself where there is nothing yet.
std::string behindLinks(const std::string& path) {
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) ? resolved : path;
}

/// The permissions of what is replaced, or those of a new file.
mode_t modeFor(const std::string& path) {
    struct stat status;
    if (::stat(path.c_str(), &status) == 0)
        return status.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool isReplaceable(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

int openDirectly(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        throw noAccess(path, errno);
    return descriptor;
}

int openTemporary(const std::string& path, std::string& temporaryPath) {
    temporaryPath = path + ".XXXXXX";
    const int descriptor = ::mkostemp(temporaryPath.data(), O_CLOEXEC);
    if (descriptor < 0)
        throw noAccess(path, errno);
    return descriptor;
}

} // namespace

DescriptorBuffer::DescriptorBuffer(int descriptor) : descriptor_(descriptor) {
    setp(buffer_.data(), buffer_.data() + buffer_.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c) {
    if (!flushBuffer())
        return traits_type::eof();
    if (!traits_type::eq_int_type(c, traits_type::eof()))
        return sputc(traits_type::to_char_type(c));
    return traits_type::not_eof(c);
}

std::streamsize DescriptorBuffer::xsputn(const char* bytes, std::streamsize count) {
    if (count > epptr() - pptr()) {
        if (!flushBuffer())
            return 0;
        if (count > epptr() - pptr())
            return writeAll(bytes, static_cast<std::size_t>(count)) ? count : 0;
    }
    std::memcpy(pptr(), bytes, static_cast<std::size_t>(count));
    pbump(static_cast<int>(count));
    return count;
}

int DescriptorBuffer::sync() {
    return flushBuffer() ? 0 : -1;
}

bool DescriptorBuffer::flushBuffer() noexcept {
    const auto count = static_cast<std::size_t>(pptr() - pbase());
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return writeAll(buffer_.data(), count);
}

bool DescriptorBuffer::writeAll(const char* bytes, std::size_t count) noexcept {
    while (errorNumber_ == 0 && count != 0) {
        const ssize_t written = ::write(descriptor_, bytes, count);
        if (written >= 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        } else if (errno != EINTR) {
            errorNumber_ = errno;
        }
    }
    return errorNumber_ == 0;
}

OutputFile::OutputFile(const std::string& path)
    : OutputFile([&] {
          Target target;
          target.name = path;
          if (path.empty() || path == "-") {
              target.name = "standard output";
          } else if (!isReplaceable(path)) {
              target.descriptor = openDirectly(path);
          } else {
              target.finalPath = behindLinks(path);
              target.descriptor = openTemporary(target.finalPath, target.temporaryPath);
          }
          return target;
      }()) {}

OutputFile::OutputFile(Target target)
    : name_(std::move(target.name)), finalPath_(std::move(target.finalPath)),
      temporaryPath_(std::move(target.temporaryPath)), descriptor_(target.descriptor), buffer_(descriptor_),
      stream_(&buffer_) {}

OutputFile::~OutputFile() {
    discard();
}

void OutputFile::check() const {
    if (buffer_.errorNumber() != 0)
        throw noAccess(name_, buffer_.errorNumber());
}

void OutputFile::commit() {
    stream_.flush();
    check();
    if (!temporaryPath_.empty() && ::fchmod(descriptor_, modeFor(finalPath_)) != 0)
        throw noAccess(name_, errno);
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (::close(descriptor) != 0) // a network file system tells of a full disk only here
        throw noAccess(name_, errno);
    if (!temporaryPath_.empty() && ::rename(temporaryPath_.c_str(), finalPath_.c_str()) != 0)
        throw noAccess(name_, errno);
    temporaryPath_.clear();
}

void OutputFile::discard() noexcept {
    if (descriptor_ > STDERR_FILENO)
        ::close(descriptor_);
    if (!temporaryPath_.empty())
        ::unlink(temporaryPath_.c_str());
}

} // namespace Quillon::Tool
