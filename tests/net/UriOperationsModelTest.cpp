// The operations held against the model: every text and pair of texts over small alphabets.
#include "net/URI.h"

#include "net/UriComparison.h"

#include <utility>

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriOperationsModelTest : public UriFixture {};

TEST_F(UriOperationsModelTest, EveryPathLosesTheSameDotSegments) {
    forEachString("/.a", 11, [](const std::string& path) {
        const ModelUri model{.path = path};
        compareNormalize(fromModel(model), model);
    });
    forEachString("/.a:%@", 6, [](const std::string& path) {
        const ModelUri model{.path = path};
        compareNormalize(fromModel(model), model);
    });
}

TEST_F(UriOperationsModelTest, EveryReferenceResolvesTheSame) {
    for (const char* baseText : {"", "a", "x:", "x:a", "x:a/b", "x:/a/b", "x://h", "x://h/",
                                 "x://h/a/../b/c?q#f", "a:b/./", "//h?q"}) {
        ModelUri baseModel;
        const UriPtr base = comparedParse(baseText, &baseModel);
        forEachString("a./?#:", 6, [&](const std::string& text) {
            ModelUri model;
            if (const UriPtr reference = comparedParse(text, &model))
                compareResolve(*reference, model, *base, baseModel);
        });
    }
}

TEST_F(UriOperationsModelTest, EveryReferenceResolvesTheSameAgainstEveryBase) {
    std::vector<std::pair<UriPtr, ModelUri>> uris;
    forEachString("a./?:", 4, [&](const std::string& text) {
        ModelUri model;
        if (UriPtr uri = comparedParse(text, &model))
            uris.emplace_back(std::move(uri), model);
    });
    ASSERT_LT(300u, uris.size());
    for (const auto& [reference, r] : uris)
        for (const auto& [base, b] : uris)
            compareResolve(*reference, r, *base, b);
}

TEST_F(UriOperationsModelTest, EveryPathIsReachedTheSameWay) {
    for (const char* basePath : {"", "/", "a", "/a", "/a/", "a/", "/a/b", "/a/b/", "a/b", "/a/b/a", "/A/b",
                                 "/a//b", "/a/b/a/b/", ":", "/a:b/", "a:/b"}) {
        const ModelUri base{.path = basePath};
        const URI from = fromModel(base);
        forEachString("/aAb:", 6, [&](const std::string& path) {
            const ModelUri target{.path = path};
            compareRelativize(fromModel(target), target, from, base);
        });
    }
}

TEST_F(UriOperationsModelTest, EveryPairOfPathsIsReachedTheSameWay) {
    std::vector<std::string> paths;
    forEachString("/aA:", 4, [&](const std::string& path) { paths.push_back(path); });
    for (const std::string& basePath : paths) {
        const ModelUri base{.path = basePath};
        const URI from = fromModel(base);
        for (const std::string& path : paths) {
            const ModelUri target{.path = path};
            compareRelativize(fromModel(target), target, from, base);
        }
    }
}

TEST_F(UriOperationsModelTest, EveryPairOfTextsComparesTheSame) {
    std::vector<std::pair<UriPtr, ModelUri>> uris;
    forEachString("aA:/?#", 4, [&](const std::string& text) {
        ModelUri model;
        if (UriPtr uri = comparedParse(text, &model))
            uris.emplace_back(std::move(uri), model);
    });
    for (const auto& [left, l] : uris)
        for (const auto& [right, r] : uris)
            compareEqual(*left, l, *right, r);
}

TEST_F(UriOperationsModelTest, EveryStringComparesTheSameWithItsNeighbours) {
    std::pair<UriPtr, ModelUri> last;
    forEachString("aA:/?#%", 6, [&](const std::string& text) {
        ModelUri model;
        UriPtr uri = comparedParse(text, &model);
        if (!uri)
            return;
        if (last.first)
            compareEqual(*uri, model, *last.first, last.second);
        std::string swapped = text;
        for (char& c : swapped)
            c = c == 'a' ? 'A' : c;
        ModelUri swappedModel;
        if (const UriPtr other = comparedParse(swapped, &swappedModel))
            compareEqual(*uri, model, *other, swappedModel);
        last = {std::move(uri), model};
    });
}

/// Every combination of the given components; null stands for an absent one.
std::vector<ModelUri> everyCombination() {
    const auto optional = [](const char* text) {
        return text ? std::optional<std::string>(text) : std::nullopt;
    };
    std::vector<ModelUri> uris;
    for (const char* scheme : {static_cast<const char*>(nullptr), "", "x", "X"})
        for (const char* authority : {static_cast<const char*>(nullptr), "", "h", "H"})
            for (const char* path : {static_cast<const char*>(nullptr), "", "a/b:", "/a/b", "/a/../c"})
                for (const char* query : {static_cast<const char*>(nullptr), "q", "Q", "r"})
                    uris.push_back({.scheme = optional(scheme),
                                    .authority = optional(authority),
                                    .path = optional(path),
                                    .query = optional(query),
                                    .fragment = optional(query ? nullptr : "f")});
    return uris;
}

TEST_F(UriOperationsModelTest, EveryCombinationOfComponentsGivesTheSame) {
    std::vector<std::pair<UriPtr, ModelUri>> uris;
    for (ModelUri& model : everyCombination()) {
        if (model.authority)
            model.host = model.authority;
        uris.emplace_back(std::make_unique<URI>(fromModel(model)), model);
    }
    for (const auto& [left, l] : uris) {
        compareNormalize(*left, l);
        compareRecompose(*left, l);
        for (const auto& [right, r] : uris)
            comparePair(*left, l, *right, r);
    }
}

} // namespace
} // namespace Quillon::Testing
