#include "support/Text.h"

#include "xml/XmlStringConversion.h"

#include "runtime/HostServices.h"

namespace Quillon::Bench {

namespace {

template <class Letter>
std::u16string words(std::size_t units, Random& random, Letter letter) {
    std::u16string text;
    text.reserve(units);
    std::size_t wordLength = random.between(2, 9);
    while (text.size() < units) {
        if (wordLength-- > 0) {
            text += letter();
            continue;
        }
        if (random.below(9) == 0)
            text += u'.';
        text += u' ';
        wordLength = random.between(2, 9);
    }
    text.resize(units);
    if (!text.empty() && text.back() == u' ')
        text.back() = u'.';
    return text;
}

char16_t asciiLetter(Random& random) {
    return static_cast<char16_t>(u'a' + random.below(26));
}

} // namespace

std::u16string asciiProse(std::size_t units, Random& random) {
    return words(units, random, [&] { return asciiLetter(random); });
}

std::u16string latinProse(std::size_t units, Random& random) {
    return words(units, random, [&] {
        return random.below(24) == 0 ? static_cast<char16_t>(0xE0 + random.below(0x17)) : asciiLetter(random);
    });
}

std::u16string cjkProse(std::size_t units, Random& random) {
    std::u16string text;
    text.reserve(units);
    while (text.size() < units)
        text += random.below(12) == 0 ? u'\u3002' : static_cast<char16_t>(0x4E00 + random.below(0x5000));
    return text;
}

std::u16string emoji(std::size_t units, Random& random) {
    std::u16string text;
    text.reserve(units);
    while (text.size() < units) {
        text += static_cast<char16_t>(0xD83D);
        text += static_cast<char16_t>(0xDC00 + random.below(0x200));
    }
    return text;
}

std::u16string asciiName(std::size_t units, Random& random) {
    std::u16string name;
    for (std::size_t i = 0; i < units; ++i)
        name += asciiLetter(random);
    return name;
}

std::string toUtf8(const std::u16string& text) {
    char* bytes = Xml::XmlStringConversion::toUTF8(toXmlString(text));
    const std::string result(bytes);
    Runtime::release(bytes);
    return result;
}

Xml::XmlString toXmlString(const std::u16string& text) {
    return Xml::makeString(0, reinterpret_cast<const unsigned short*>(text.c_str()));
}

} // namespace Quillon::Bench
