// The parser held against the model: every string over small alphabets.
#include "net/URI.h"

#include "net/UriComparison.h"

namespace Quillon::Testing {
namespace {

struct Alphabet {
    const char* name;
    const char* prefix;
    const char* symbols;
    const char* suffix;
    std::size_t length;
};

void PrintTo(const Alphabet& alphabet, std::ostream* out) {
    *out << alphabet.prefix << '[' << alphabet.symbols << ']' << alphabet.suffix;
}

class UriParserModelTest : public UriFixture, public ::testing::WithParamInterface<Alphabet> {};

TEST_P(UriParserModelTest, EveryStringGivesTheSame) {
    const Alphabet& alphabet = GetParam();
    forEachString(alphabet.symbols, alphabet.length, [&](const std::string& text) {
        const std::string whole = alphabet.prefix + text + alphabet.suffix;
        ModelUri contents;
        if (const UriPtr uri = comparedParse(whole, &contents))
            if (modelRecompose(contents) != whole)
                ADD_FAILURE() << whole << " becomes " << modelRecompose(contents);
    });
}

const Alphabet kAlphabets[] = {
    // A letter that is a hexadecimal digit, a digit, all delimiters, the escape mark, and what is never taken.
    {"General", "", "a1:/?#%@[^", "", 6},
    {"Authority", "//", "a1:/?%@[]^", "", 6},
    {"AfterScheme", "x:", "a:/?#%^", "", 6},
    {"Groups", "x://[", "1g:./]%", "]", 6},
    {"GroupLengths", "//[", "a1:.", "]/", 7},
    {"GroupsBehindDoubleColon", "//[1::", "1a:./x", "]", 6},
    {"Ipv4InLiteral", "//[1:1.", "025./:x]", "]", 6},
    {"LastOctets", "//[a:1.25", "056./]", ".1]", 6},
    {"PrefixLength", "//[1", "/01289x:", "]:8", 6},
    {"Ipv4Host", "//1.2", "059.:/^", "", 6},
};
INSTANTIATE_TEST_SUITE_P(Alphabets, UriParserModelTest, ::testing::ValuesIn(kAlphabets),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace Quillon::Testing
