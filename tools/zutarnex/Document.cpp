#include "Document.h"

#include "Failure.h"
#include "saxengine/FileByteChannel.h"
#include "saxengine/StreamByteChannel.h"
#include "xml/IOException.h"
#include "xml/XmlString.h"

#include <cerrno>
#include <iostream>

namespace Quillon::Tool {

namespace {

constexpr char kStandardInput[] = "-";

std::unique_ptr<Xml::ReadableByteChannel> opened(const std::string& path) {
    if (path == kStandardInput)
        return std::make_unique<Xml::StreamByteChannel>(std::cin);
    try {
        return std::make_unique<Xml::FileByteChannel>(path.c_str());
    } catch (const Xml::IOException&) {
        throw noAccess(path, errno);
    }
}

} // namespace

Document::Document(const std::string& path)
    : name_(path == kStandardInput ? "<stdin>" : path), channel_(opened(path)), source_(channel_.get()) {
    if (path != kStandardInput)
        source_.setSystemId(Xml::makeString(path.c_str()));
}

} // namespace Quillon::Tool
