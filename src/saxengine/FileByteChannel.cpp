#include "saxengine/FileByteChannel.h"

#include "xml/IOException.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillon::Xml {

namespace {

/// The open file, or -1 with `errno` set. A directory can be opened but never be read, so it is refused here.
int openFile(const char* path) {
    if (!path) {
        errno = EFAULT;
        return -1;
    }
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        errno = EISDIR;
        return -1;
    }
    return descriptor;
}

} // namespace

FileByteChannel::FileByteChannel(const char* path) : descriptor_(openFile(path)) {
    if (descriptor_ < 0)
        IOException::doThrow();
}

FileByteChannel::~FileByteChannel() {
    if (FileByteChannel::isOpen())
        ::close(descriptor_);
}

void FileByteChannel::close() {
    if (!isOpen())
        return;
    const int descriptor = descriptor_;
    descriptor_ = -1; // whatever close says, the descriptor is gone
    if (::close(descriptor) != 0 && errno != EINTR)
        IOException::doThrow();
}

bool FileByteChannel::isOpen() const {
    return descriptor_ >= 0;
}

unsigned int FileByteChannel::read(unsigned char* buffer, unsigned int length) {
    if (!isOpen())
        IOException::doThrow();
    const unsigned int request = std::min(length, static_cast<unsigned int>(INT_MAX)); // ssize_t is signed
    for (;;) {
        const ssize_t count = ::read(descriptor_, buffer, request);
        if (count >= 0)
            return static_cast<unsigned int>(count);
        if (errno != EINTR)
            IOException::doThrow();
    }
}

} // namespace Quillon::Xml
