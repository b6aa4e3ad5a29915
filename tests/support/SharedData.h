#ifndef ZUTARNEX_TESTS_SUPPORT_SHAREDDATA_H
#define ZUTARNEX_TESTS_SUPPORT_SHAREDDATA_H

#include <string>
#include <vector>

namespace Quillon::Testing {

/// A file of tests/data, byte for byte; a missing one fails the test.
std::string testData(const std::string& name);
/// Where a vector of tests/data lies.
std::string testDataPath(const std::string& name);

/// Whether the folder of documents and vectors that nobody here wrote stands beside the checkout. Where it is missing,
/// says in one line on standard output that `what` is left out.
bool hasSharedData(const std::string& what);
std::string sharedDataPath(const std::string& name);
std::string sharedData(const std::string& name);

/// The lines of a table, split at tabs, without the header line.
std::vector<std::vector<std::string>> tableRows(const std::string& text);

} // namespace Quillon::Testing

#endif
