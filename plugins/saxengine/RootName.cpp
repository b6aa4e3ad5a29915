#include "RootName.h"

#include "OpenEntity.h"
#include "Text.h"

#include <vector>

namespace Quillon::SaxEngine {

namespace {

/// One character of the text as a number, with the bytes that it takes; only ASCII ones matter here.
unsigned int unitAt(const std::string& text, std::size_t i, const Encoding& encoding) {
    if (!encoding.isUtf16)
        return static_cast<unsigned char>(text[i]);
    const auto first = static_cast<unsigned char>(text[i]), second = static_cast<unsigned char>(text[i + 1]);
    return encoding.isBigEndian ? static_cast<unsigned int>(first) << 8 | second
                                : static_cast<unsigned int>(second) << 8 | first;
}

bool endsName(unsigned int unit) {
    return unit == '>' || unit == '/' || unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

Xml::XmlString decodedName(const std::string& bytes, const Encoding& encoding) {
    if (!encoding.isUtf16 && encoding.expatName[0] == u'U')
        return fromUtf8(bytes);
    const std::size_t width = encoding.isUtf16 ? 2 : 1;
    std::vector<XML_Char> units;
    for (std::size_t i = 0; i + width <= bytes.size(); i += width)
        units.push_back(static_cast<XML_Char>(unitAt(bytes, i, encoding)));
    return ownedString(UnitSpan(units.data(), units.size()));
}

} // namespace

Xml::XmlString rootName(OpenEntity& document) {
    const Encoding& encoding = document.input().encoding();
    const std::size_t width = encoding.isUtf16 ? 2 : 1;
    int offset = 0, size = 0;
    const char* buffer = XML_GetInputContext(document.parser(), &offset, &size);
    std::string text(buffer + offset, buffer + size);
    std::size_t end = width; // behind the <
    for (;;) {
        while (end + width <= text.size() && !endsName(unitAt(text, end, encoding)))
            end += width;
        if (end + width <= text.size())
            break;
        const std::string_view more = document.input().readAhead();
        if (more.empty())
            break;
        text += more;
    }
    return decodedName(text.substr(width, end - width), encoding);
}

} // namespace Quillon::SaxEngine
