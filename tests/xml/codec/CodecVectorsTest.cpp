// Vectors that nobody here wrote: those of RFC 4648 and the Web Platform Tests' list of Base64 texts.
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/HexBinaryCodec.h"

#include "support/SharedData.h"
#include "xml/codec/CodecCalls.h"
#include "xml/codec/CodecModels.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillon::Xml {
namespace {

using Testing::OneShotResult;
using Row = std::vector<std::string>;

std::string bytesOf(const std::string& hexadecimal) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hexadecimal.substr(i, 2), nullptr, 16));
    return bytes;
}

/// text, base64, base16; the first row is the empty text, which the codecs refuse.
void checkRfc4648(const std::string& table) {
    Base64BinaryCodec base64;
    HexBinaryCodec hex;
    const std::vector<Row> rows = Testing::tableRows(table);
    ASSERT_EQ(7u, rows.size());
    for (const Row& row : rows) {
        ASSERT_EQ(3u, row.size());
        const int error = row[0].empty() ? cteInvalidArguments : cteNoError;
        EXPECT_EQ((OneShotResult{row[1], error}), Testing::encodeAtOnce(base64, row[0]));
        EXPECT_EQ((OneShotResult{row[0], error}), Testing::decodeAtOnce(base64, row[1]));
        EXPECT_EQ((OneShotResult{row[2], error}), Testing::encodeAtOnce(hex, row[0]));
        EXPECT_EQ((OneShotResult{row[0], error}), Testing::decodeAtOnce(hex, row[2]));
    }
}

/// input_hex, forgiving, forgiving_output_hex, rfc4648_strict: what is strictly right is accepted and nothing else.
void checkBase64Texts(const std::string& table) {
    Base64BinaryCodec codec;
    const std::vector<Row> rows = Testing::tableRows(table);
    ASSERT_EQ(71u, rows.size());
    for (const Row& row : rows) {
        ASSERT_EQ(4u, row.size());
        const std::string input = bytesOf(row[0]);
        const OneShotResult actual = Testing::decodeAtOnce(codec, input);
        EXPECT_EQ(Testing::Base64DecoderModel::atOnce(input), actual) << row[0];
        if (row[3] == "accept" && !input.empty()) {
            EXPECT_EQ((OneShotResult{bytesOf(row[2]), cteNoError}), actual) << row[0];
        } else {
            EXPECT_NE(cteNoError, actual.error) << row[0];
        }
    }
}

TEST(CodecVectorsTest, OwnCopyOfRfc4648) {
    checkRfc4648(Testing::testData("base64/rfc4648-10.tsv"));
}

TEST(CodecVectorsTest, OwnCopyOfTheBase64Texts) {
    checkBase64Texts(Testing::testData("base64/wpt-forgiving-base64.tsv"));
}

TEST(CodecVectorsTest, SharedTables) {
    if (!Testing::hasSharedData("Base64 tables"))
        return;
    checkRfc4648(Testing::sharedData("base64/rfc4648-10.tsv"));
    checkBase64Texts(Testing::sharedData("base64/wpt-forgiving-base64.tsv"));
}

} // namespace
} // namespace Quillon::Xml
