#ifndef ZUTARNEX_TESTS_TOOLS_TOOLRUNNER_H
#define ZUTARNEX_TESTS_TOOLS_TOOLRUNNER_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillon::Testing {

/// What a run of the tool left behind.
struct Outcome {
    int status; ///< the exit status; -1 when a signal ended the process
    std::string out;
    std::string err;
    long peakMemory; ///< the most that the process had at a time, in KiB
};

/// A folder of its own for each test, in which the tool runs.
class ToolTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    Outcome run(const std::vector<std::string>& arguments, const std::string& input = "");
    /// The same with standard output going to `device`; `out` stays empty.
    Outcome runInto(const std::string& device, const std::vector<std::string>& arguments,
                    const std::string& input = "");
    /// The same with standard output being a pipe whose reader has gone.
    Outcome runIntoClosedPipe(const std::vector<std::string>& arguments, const std::string& input = "");

    std::string path(const std::string& name) const;
    void write(const std::string& name, const std::string& content) const;
    std::string read(const std::string& name) const;
    std::vector<std::string> fileNames() const; ///< sorted, without what the runner itself made

private:
    Outcome spawn(int standardOutput, const std::vector<std::string>& arguments, const std::string& input);

    std::string folder_;
};

} // namespace Quillon::Testing

#endif
