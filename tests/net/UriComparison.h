#ifndef ZUTARNEX_TESTS_NET_URICOMPARISON_H
#define ZUTARNEX_TESTS_NET_URICOMPARISON_H

#include "net/UriFixture.h"

#include <string>
#include <vector>

namespace Quillon::Testing {

// The library against the model: what differs is a failure of the running test.

/// Parses with both; the URI of the library, null where both refuse. `contents` gets what the model read.
UriPtr comparedParse(const std::string& text, ModelUri* contents = nullptr);

void compareResolve(const Net::URI& reference, const ModelUri& r, const Net::URI& base, const ModelUri& b);
void compareRelativize(const Net::URI& target, const ModelUri& t, const Net::URI& base, const ModelUri& b);
void compareNormalize(const Net::URI& uri, const ModelUri& u);
void compareRecompose(const Net::URI& uri, const ModelUri& u);
void compareEqual(const Net::URI& left, const ModelUri& l, const Net::URI& right, const ModelUri& r);
/// Everything that is done with two.
void comparePair(const Net::URI& left, const ModelUri& l, const Net::URI& right, const ModelUri& r);

/// Calls `use` with every string of up to `length` characters of `alphabet`.
template <class Use>
void forEachString(const std::string& alphabet, std::size_t length, Use use) {
    std::vector<std::size_t> digits;
    std::string text;
    for (;;) {
        use(text);
        std::size_t place = 0;
        while (place < digits.size() && ++digits[place] == alphabet.size())
            digits[place++] = 0;
        if (place == digits.size()) {
            if (digits.size() == length)
                return;
            digits.assign(digits.size() + 1, 0);
            text.assign(digits.size(), alphabet[0]);
            continue;
        }
        for (std::size_t i = 0; i <= place; ++i)
            text[i] = alphabet[digits[i]];
    }
}

} // namespace Quillon::Testing

#endif
