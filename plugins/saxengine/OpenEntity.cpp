#include "OpenEntity.h"

#include "FileChannel.h"
#include "SystemIdentifier.h"
#include "Text.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxException.h"

#include <utility>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

/// Absent identifiers are null strings, also when the source says it with an empty one.
XmlString presentOrNull(const XmlString& identifier) {
    return identifier.size() == 0 ? XmlString() : identifier;
}

} // namespace

EntitySource::EntitySource(const Xml::Sax::InputSource& source, const std::string& fallbackUri)
    : publicId(presentOrNull(source.getPublicId())), systemId(presentOrNull(source.getSystemId())),
      encoding(toUtf8(source.getEncoding())), channel(source.getByteChannel()) {
    const std::string identifier = toUtf8(systemId);
    uri = identifier.empty() ? fallbackUri : absoluteUri(identifier);
    if (identifier.empty() && !fallbackUri.empty())
        systemId.copy(fromUtf8(fallbackUri));
    if (channel)
        return;
    if (uri.empty())
        throw Xml::Sax::SaxException(
            ownedAscii("the input source has neither a byte channel nor a system identifier"));
    file = std::make_unique<FileChannel>(identifier.empty() ? uri : identifier);
    channel = file.get();
}

OpenEntity::OpenEntity(ParserPointer parser, EntitySource source, Kind kind)
    : declarations(parser.get()), source_(std::move(source)), input_(*source_.channel),
      parser_(std::move(parser)), kind_(kind) {}

void OpenEntity::showChunk(const void* buffer, int byteCount) {
    const Encoding& encoding = input_.encoding();
    if (encoding.isUtf16 && !encoding.isBigEndian) // x86
        chunk_ = UnitSpan(static_cast<const XML_Char*>(buffer),
                          static_cast<std::size_t>(byteCount) / sizeof(XML_Char));
}

Location OpenEntity::location() {
    const XML_Size line = XML_GetCurrentLineNumber(parser());
    return place_.advance(line, XML_GetCurrentColumnNumber(parser()));
}

} // namespace Quillon::SaxEngine
