// Tables of vectors: those beside the tests, and the same and more in the shared folder where it is there.
#include "net/URI.h"

#include "net/URISyntaxException.h"
#include "net/UriFixture.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <vector>

namespace Quillon::Testing {
namespace {

using Net::URI;
using Net::URISyntaxException;

using Row = std::vector<std::string>;

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts{""};
    for (const char c : text) {
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

/// The rows of a table without its header; nothing when it is not there.
std::vector<Row> rowsOf(const std::string& path) {
    std::vector<Row> rows;
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line))
        rows.push_back(split(line, '\t'));
    return rows;
}

/// The rows of a table of the shared folder; says so when there is none.
std::vector<Row> sharedRows(const std::string& table) {
    const std::string path = ZUTARNEX_SHARED_DATA "/uri/" + table;
    const std::vector<Row> rows = rowsOf(path);
    if (rows.empty())
        std::cout << "not found, nothing compared: " << path << '\n';
    return rows;
}

std::vector<Row> ownRows(const std::string& table) {
    const std::vector<Row> rows = rowsOf(ZUTARNEX_TEST_DATA "/uri/" + table);
    EXPECT_FALSE(rows.empty()) << table;
    return rows;
}

std::string resolvedText(const std::string& base, const std::string& reference, bool strict) {
    return recomposed(*UriPtr(parsed(reference)->resolve(*parsed(base), strict)));
}

std::string modelText(const std::string& base, const std::string& reference, bool strict) {
    return modelRecompose(modelResolve(modelParse(reference).uri, modelParse(base).uri, strict));
}

/// What the algorithm of the RFC gives where a table wants something else.
struct Exception {
    const char* base;
    const char* reference;
    const char* target;
};
const Exception kExceptions[] = {
    {"foo:a/b", "../c", "foo:/c"}, // "a/../c": a ".." takes "a" away, but not the "/" behind it
    {"zz:abc", "foo/../bar", "zz:/bar"},
};

const char* exceptionFor(const std::string& base, const std::string& reference) {
    for (const Exception& exception : kExceptions)
        if (base == exception.base && reference == exception.reference)
            return exception.target;
    return nullptr;
}

/// Columns base, reference, targets (any of them is right), whether the algorithm of the RFC agrees.
void checkResolution(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        ASSERT_EQ(4u, row.size());
        const std::string &base = row[0], &reference = row[1];
        const std::string target = resolvedText(base, reference, true);
        EXPECT_EQ(modelText(base, reference, true), target) << base << " and " << reference;
        EXPECT_EQ(modelText(base, reference, false), resolvedText(base, reference, false));
        const char* exception = exceptionFor(base, reference);
        EXPECT_EQ(exception != nullptr, row[3] == "no") << base << " and " << reference;
        if (exception) {
            EXPECT_EQ(exception, target);
            continue;
        }
        const std::vector<std::string> targets = split(row[2], ' ');
        EXPECT_NE(targets.end(), std::find(targets.begin(), targets.end(), target))
            << base << " and " << reference << " gave " << target << ", not " << row[2];
    }
}

/// Columns section, mode, base, reference, target. No example of section 5.4 is an exception.
void checkExamplesOfTheRfc(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        ASSERT_EQ(5u, row.size());
        const bool strict = row[1] == "strict";
        EXPECT_EQ(row[4], resolvedText(row[2], row[3], strict)) << row[3];
        EXPECT_EQ(row[4], modelText(row[2], row[3], strict)) << row[3];
    }
}

class UriTablesTest : public UriFixture {};

TEST_F(UriTablesTest, ExamplesOfTheRfc) {
    const std::vector<Row> rows = ownRows("rfc3986-5.4.tsv");
    EXPECT_EQ(43u, rows.size());
    checkExamplesOfTheRfc(rows);
    checkExamplesOfTheRfc(sharedRows("rfc3986-5.4.tsv"));
}

TEST_F(UriTablesTest, StrictnessMattersOnlyForTheSameScheme) {
    for (const Row& row : ownRows("rfc3986-5.4.tsv")) {
        const bool countsWhenLax = row[3] != "http:g" || row[1] == "lax";
        if (countsWhenLax) {
            EXPECT_EQ(row[4], resolvedText(row[2], row[3], false)) << row[3];
        }
    }
    EXPECT_EQ("http:g", resolvedText("http://a/b/c/d;p?q", "http:g", true));
    EXPECT_EQ("http://a/b/c/g", resolvedText("http://a/b/c/d;p?q", "http:g", false));
}

TEST_F(UriTablesTest, ResolutionOfTheCheckedInVectors) {
    checkResolution(ownRows("resolve-skew.tsv"));
}

TEST_F(UriTablesTest, ResolutionOfTheSharedVectors) {
    checkResolution(sharedRows("resolve-skew.tsv"));
    checkResolution(sharedRows("resolve-w3c-rdf.tsv"));
    checkResolution(sharedRows("resolve-core-href.tsv"));
}

/// Columns as (uri, uri-reference), verdict, text, description. A URI is a reference with a scheme.
TEST_F(UriTablesTest, ValidityOfTheSharedVectors) {
    for (const Row& row : sharedRows("validity-json-schema.tsv")) {
        ASSERT_EQ(4u, row.size());
        bool valid = false;
        try {
            valid = parsed(row[2])->getScheme() || row[0] == "uri-reference";
        } catch (const URISyntaxException&) {
        }
        EXPECT_EQ(row[1] == "valid", valid) << row[2] << ": " << row[3];
        EXPECT_EQ(modelOutcome(row[2]), outcome(row[2]));
    }
}

std::optional<std::string> component(const std::string& field) {
    return field == "-" ? std::nullopt : std::optional<std::string>(field.substr(1));
}

/// Columns text, verdict, scheme, authority, userinfo, host, port, path, query, fragment; "-" is absent, "=" and the
/// text otherwise.
TEST_F(UriTablesTest, ComponentsOfTheSharedVectors) {
    for (const Row& row : sharedRows("components-fast-uri.tsv")) {
        ASSERT_EQ(10u, row.size());
        const std::string& text = row[0];
        EXPECT_EQ(modelOutcome(text), outcome(text));
        if (row[1] == "invalid") {
            EXPECT_THROW(parsed(text), URISyntaxException) << text;
            continue;
        }
        const ModelUri expected{.scheme = component(row[2]),
                                .authority = component(row[3]),
                                .path = component(row[7]),
                                .query = component(row[8]),
                                .fragment = component(row[9]),
                                .userInfo = component(row[4]),
                                .host = component(row[5])};
        EXPECT_EQ(show(expected), outcome(text)); // the port is not delivered
        const std::optional<std::string> port = component(row[6]);
        EXPECT_EQ(port ? std::stoi(*port) : -1, modelParse(text).uri.port) << text;
    }
}

} // namespace
} // namespace Quillon::Testing
