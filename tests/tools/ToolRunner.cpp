#include "tools/ToolRunner.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillon::Testing {

namespace {

constexpr char kInput[] = ".input", kOutput[] = ".output", kErrors[] = ".errors";

int opened(const std::string& path, int flags) {
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0644);
    EXPECT_LE(0, descriptor) << path;
    return descriptor;
}

} // namespace

void ToolTest::SetUp() {
    std::string pattern = testing::TempDir() + "zutarnex-tool-XXXXXX";
    ASSERT_NE(nullptr, ::mkdtemp(pattern.data()));
    folder_ = pattern;
}

void ToolTest::TearDown() {
    std::filesystem::remove_all(folder_);
}

std::string ToolTest::path(const std::string& name) const {
    return folder_ + '/' + name;
}

void ToolTest::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
}

std::string ToolTest::read(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<std::string> ToolTest::fileNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
        if (entry.path().filename().string().front() != '.')
            names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

Outcome ToolTest::spawn(int standardOutput, const std::vector<std::string>& arguments,
                        const std::string& input) {
    write(kInput, input);
    std::vector<char*> argv = {const_cast<char*>(ZUTARNEX_TOOL)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const int in = opened(path(kInput), O_RDONLY);
    const int err = opened(path(kErrors), O_WRONLY | O_CREAT | O_TRUNC);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(in, STDIN_FILENO);
        ::dup2(standardOutput, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        if (::chdir(folder_.c_str()) == 0)
            ::execv(ZUTARNEX_TOOL, argv.data());
        ::_exit(127);
    }
    for (const int descriptor : {in, err, standardOutput})
        ::close(descriptor);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, "", read(kErrors), usage.ru_maxrss};
}

Outcome ToolTest::run(const std::vector<std::string>& arguments, const std::string& input) {
    Outcome outcome = spawn(opened(path(kOutput), O_WRONLY | O_CREAT | O_TRUNC), arguments, input);
    outcome.out = read(kOutput);
    return outcome;
}

Outcome ToolTest::runInto(const std::string& device, const std::vector<std::string>& arguments,
                          const std::string& input) {
    return spawn(opened(device, O_WRONLY), arguments, input);
}

Outcome ToolTest::runIntoClosedPipe(const std::vector<std::string>& arguments, const std::string& input) {
    int ends[2];
    EXPECT_EQ(0, ::pipe2(ends, O_CLOEXEC));
    ::close(ends[0]);
    return spawn(ends[1], arguments, input);
}

} // namespace Quillon::Testing
