#include "support/SharedData.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace Quillon::Testing {

namespace {

std::string contentsOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << path;
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<std::string> splitAtTabs(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == '\t')
            cells.emplace_back();
        else
            cells.back() += c;
    }
    return cells;
}

} // namespace

std::string testDataPath(const std::string& name) {
    return ZUTARNEX_TEST_DATA "/" + name;
}

std::string testData(const std::string& name) {
    return contentsOf(testDataPath(name));
}

bool hasSharedData(const std::string& what) {
    if (std::filesystem::is_directory(ZUTARNEX_SHARED_DATA))
        return true;
    std::printf("left out, no data beside the checkout: %s\n", what.c_str());
    return false;
}

std::string sharedDataPath(const std::string& name) {
    return ZUTARNEX_SHARED_DATA "/" + name;
}

std::string sharedData(const std::string& name) {
    return contentsOf(sharedDataPath(name));
}

std::vector<std::vector<std::string>> tableRows(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream in(text);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line))
        rows.push_back(splitAtTabs(line));
    return rows;
}

} // namespace Quillon::Testing
