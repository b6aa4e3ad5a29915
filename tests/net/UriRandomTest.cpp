// Everything held against the model with random texts.
#include "net/URI.h"

#include "net/UriComparison.h"

#include <random>
#include <utility>

namespace Quillon::Testing {
namespace {

class UriRandomTest : public UriFixture {};

/// Inputs that are URIs more often than not, or nearly.
class RandomTexts {
public:
    explicit RandomTexts(std::uint64_t seed) : random_(seed) {}

    std::string next() {
        switch (below(8)) {
        case 0:
            return string(below(20), kEveryByte);
        case 1:
            return string(below(24), "aAfF019:/?#[]@%.-+^ ");
        default:
            std::string text = reference();
            for (std::size_t edits = below(4) == 0 ? 1 + below(2) : 0; edits != 0 && !text.empty(); --edits)
                text[below(text.size())] = character(below(2) ? kEveryByte : "aA1:/?#[]@%.^");
            return text;
        }
    }

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }
    char character(const std::string& alphabet) { return alphabet[below(alphabet.size())]; }
    std::string string(std::size_t length, const std::string& alphabet) {
        std::string text;
        for (; length != 0; --length)
            text += character(alphabet);
        return text;
    }
    std::string word() {
        static const char* const kWords[] = {"a",     "b",   "A",  "x1", "%41", "%4a",
                                             "g;x=1", "..a", ".b", "@",  "c-_~"};
        return kWords[below(std::size(kWords))];
    }

    std::string reference() {
        std::string text;
        if (below(2))
            text += std::string(below(2) ? "x" : "Http") + ":";
        if (below(2))
            text += "//" + authority();
        text += path();
        if (below(3) == 0)
            text += "?" + (below(2) ? word() : "q");
        if (below(3) == 0)
            text += "#" + (below(2) ? word() : "^f");
        return text;
    }
    std::string authority() {
        std::string text = below(4) ? "" : word() + "@";
        switch (below(4)) {
        case 0:
            text += "[" + literal() + "]";
            break;
        case 1:
            text += ipv4();
            break;
        default:
            text += below(2) ? "h" : word();
        }
        if (below(3) == 0)
            text += ":" + string(below(12), "0123456789");
        return text;
    }
    std::string path() {
        std::string text;
        if (below(3))
            text += "/";
        for (std::size_t segments = below(6); segments != 0; --segments) {
            switch (below(4)) {
            case 0:
                text += "..";
                break;
            case 1:
                text += below(2) ? "." : ":";
                break;
            default:
                text += word();
            }
            if (segments != 1 || below(2))
                text += "/";
        }
        return text;
    }
    std::string groups() {
        std::string text;
        for (std::size_t count = below(4); count != 0; --count)
            text += string(1 + below(below(8) ? 4 : 6), "01aAfF") + (count != 1 || !below(8) ? ":" : "");
        return text;
    }
    std::string ipv4() {
        std::string text;
        for (int octet = 0; octet < 4; ++octet)
            text += (octet ? "." : "") + std::to_string(below(below(4) ? 256 : 300));
        return text;
    }
    std::string literal() {
        std::string text = groups();
        if (below(2))
            text += "::" + groups();
        if (below(3) == 0)
            text += ":" + ipv4();
        if (below(3) == 0)
            text += "/" + std::to_string(below(160));
        return text;
    }

    static const std::string kEveryByte;
    std::mt19937_64 random_;
};

const std::string RandomTexts::kEveryByte = [] {
    std::string bytes;
    for (int c = 1; c < 256; ++c)
        bytes += static_cast<char>(c);
    return bytes;
}();

TEST_F(UriRandomTest, AMillionRandomTextsGiveTheSame) {
    constexpr std::uint64_t kSeed = 3986;
    constexpr int kTexts = 1000000;
    RandomTexts texts(kSeed);
    std::pair<UriPtr, ModelUri> last;
    int accepted = 0;
    for (int i = 0; i < kTexts; ++i) {
        ModelUri model;
        UriPtr uri = comparedParse(texts.next(), &model);
        if (!uri)
            continue;
        ++accepted;
        compareRecompose(*uri, model);
        compareNormalize(*uri, model);
        if (last.first)
            comparePair(*uri, model, *last.first, last.second);
        last = {std::move(uri), model};
    }
    EXPECT_LT(kTexts / 4, accepted);
    EXPECT_LT(kTexts / 8, kTexts - accepted);
}

} // namespace
} // namespace Quillon::Testing
