#ifndef ZUTARNEX_TESTS_PLUGINS_TESTMODULE_H
#define ZUTARNEX_TESTS_PLUGINS_TESTMODULE_H

#include "plugins/PluginState.h"

#include <string>

namespace Quillon::Testing {

/// "zutarnex_test_plain" -> "libzutarnex_test_plain.so".
std::string moduleFileName(const std::string& name);

/// Whether the module is open in this process now.
bool isModuleOpen(const std::string& name);

/// Keeps a module open, beside the library's own hold on it, and reaches the state of the plug-in in it, which starts
/// as it was built.
class TestModule {
public:
    explicit TestModule(const std::string& name);
    TestModule(const TestModule&) = delete;
    TestModule& operator=(const TestModule&) = delete;
    ~TestModule();

    PluginState& state() const;

private:
    void* handle_;
};

} // namespace Quillon::Testing

#endif
