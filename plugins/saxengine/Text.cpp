#include "Text.h"

#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

struct ReleaseToHost {
    void operator()(char* block) const { Runtime::release(block); }
};

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

XmlString ownedString(UnitSpan units) {
    static constexpr XML_Char kNothing[1] = {};
    return XmlString(0, units.size == 0 ? kNothing : units.data, units.size);
}

XmlString ownedString(const XML_Char* terminated) {
    return XmlString(0, terminated);
}

XmlString ownedAscii(std::string_view text) {
    const std::vector<XML_Char> units(text.begin(), text.end());
    return ownedString(UnitSpan(units.data(), units.size()));
}

XmlString fromUtf8(const std::string& text) {
    return Xml::makeString(reinterpret_cast<const unsigned char*>(text.c_str()));
}

XmlString fromUtf8OrNull(const std::string& text) {
    return text.empty() ? XmlString() : fromUtf8(text);
}

std::string toUtf8(UnitSpan units) {
    if (units.size == 0)
        return {};
    const std::unique_ptr<char, ReleaseToHost> utf8(Runtime::utf16ToUtf8(units.data, units.size));
    if (!utf8)
        System::OutOfMemoryException::doThrow();
    return utf8.get();
}

std::string toUtf8(const XmlString& string) {
    return toUtf8(UnitSpan(string));
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

} // namespace Quillon::SaxEngine
