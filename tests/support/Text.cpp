#include "support/Text.h"

#include <cstdio>

namespace Quillon::Testing {

namespace {

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace

std::vector<unsigned short> units(const char16_t* literal) {
    std::vector<unsigned short> result;
    while (*literal)
        result.push_back(*literal++);
    result.push_back(0);
    return result;
}

Xml::XmlString text(const char16_t* literal) {
    return literal ? Xml::XmlString(0, units(literal).data()) : Xml::XmlString();
}

Xml::XmlString text(const std::u16string& literal) {
    const std::vector<unsigned short> copy(literal.begin(), literal.end());
    Xml::XmlString result(0, copy.data() ? copy.data() : units(u"").data(),
                          static_cast<unsigned int>(copy.size()));
    for (std::size_t i = 0; i < copy.size(); ++i) // creation stops copying at a zero unit
        const_cast<unsigned short*>(result.getPtr())[i] = copy[i];
    return result;
}

std::u16string unitsOf(const Xml::XmlString& string) {
    std::u16string result;
    if (const unsigned short* data = string.data())
        result.assign(data, data + string.size());
    return result;
}

std::string show(const Xml::XmlString& string) {
    if (string.isNull())
        return "(null)";
    const std::u16string all = unitsOf(string);
    std::string out;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const char16_t unit = all[i];
        if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < all.size() && (all[i + 1] & 0xFC00) == 0xDC00) {
            appendUtf8(out, 0x10000 + ((unit - 0xD800u) << 10) + (all[++i] - 0xDC00u));
        } else if (unit >= 0xD800 && unit < 0xE000) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(unit));
            out += escape;
        } else {
            appendUtf8(out, unit);
        }
    }
    return out;
}

} // namespace Quillon::Testing
