#ifndef ZUTARNEX_SAXENGINE_FILECHANNEL_H
#define ZUTARNEX_SAXENGINE_FILECHANNEL_H

#include "xml/ReadableByteChannel.h"

#include <string>

namespace Quillon::SaxEngine {

/// The file behind a system identifier. Its failures name the identifier and say why.
class FileChannel final : public Xml::ReadableByteChannel {
public:
    /// Throws: SaxException when the identifier is neither a path nor a file: URI, or the file cannot be opened.
    explicit FileChannel(const std::string& systemId);
    FileChannel(const FileChannel&) = delete;
    FileChannel& operator=(const FileChannel&) = delete;
    ~FileChannel() override;

    void close() override;
    bool isOpen() const override;
    unsigned int read(unsigned char* buffer, unsigned int length) override; ///< Throws: SaxException

private:
    [[noreturn]] void fail(const char* what, int error) const;

    std::string systemId_;
    int descriptor_ = -1;
};

} // namespace Quillon::SaxEngine

#endif
