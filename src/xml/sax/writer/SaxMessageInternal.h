#ifndef ZUTARNEX_XML_SAX_WRITER_SAXMESSAGEINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_SAXMESSAGEINTERNAL_H

#include "xml/XmlString.h"

namespace Quillon::Xml::Sax {

/// `prefix` followed by `name`, for the message of an exception. A null or empty name gives the prefix alone: appending
/// an empty string would leave the message without Valid, and its copy in the exception would then be null.
inline XmlString prefixed(const unsigned short* prefix, const XmlString& name) {
    XmlString message(0, prefix);
    if (name.data() != nullptr && name.size() != 0)
        message += XmlString(Immutable | Borrowed, name.data(), name.size());
    return message;
}

} // namespace Quillon::Xml::Sax

#endif
