#ifndef ZUTARNEX_TOOLS_DOCUMENT_H
#define ZUTARNEX_TOOLS_DOCUMENT_H

#include "xml/ReadableByteChannel.h"
#include "xml/sax/InputSource.h"

#include <memory>
#include <string>

namespace Quillon::Tool {

/// A document that the user named: opened when it is made, so that "cannot be read" and "is ill-formed" stay apart.
///
/// Throws: Failure, status 3, when the file cannot be opened or is a directory.
class Document {
public:
    /// "-" is standard input, whose relative identifiers are resolved against the current folder.
    explicit Document(const std::string& path);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    const std::string& name() const noexcept { return name_; } ///< for messages
    Xml::Sax::InputSource& source() noexcept { return source_; }
    /// The next bytes, for who does not parse; 0 at the end.
    unsigned int read(unsigned char* buffer, unsigned int length) { return channel_->read(buffer, length); }

private:
    std::string name_;
    std::unique_ptr<Xml::ReadableByteChannel> channel_;
    Xml::Sax::InputSource source_;
};

} // namespace Quillon::Tool

#endif
