#include "FileChannel.h"

#include "SystemIdentifier.h"
#include "Text.h"
#include "xml/sax/SaxException.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Quillon::SaxEngine {

FileChannel::FileChannel(const std::string& systemId) : systemId_(systemId) {
    const std::string path = pathOf(systemId);
    descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor_ < 0)
        fail("cannot open", errno);
    struct stat status;
    if (::fstat(descriptor_, &status) == 0 && S_ISDIR(status.st_mode)) {
        close();
        fail("cannot open", EISDIR);
    }
}

FileChannel::~FileChannel() {
    close();
}

void FileChannel::close() {
    if (isOpen())
        ::close(descriptor_);
    descriptor_ = -1;
}

bool FileChannel::isOpen() const {
    return descriptor_ >= 0;
}

unsigned int FileChannel::read(unsigned char* buffer, unsigned int length) {
    for (;;) {
        const ssize_t count = ::read(descriptor_, buffer, length);
        if (count >= 0)
            return static_cast<unsigned int>(count);
        if (errno != EINTR)
            fail("cannot read", errno);
    }
}

void FileChannel::fail(const char* what, int error) const {
    throw Xml::Sax::SaxException(
        fromUtf8(std::string(what) + " \"" + systemId_ + "\": " + std::generic_category().message(error)));
}

} // namespace Quillon::SaxEngine
