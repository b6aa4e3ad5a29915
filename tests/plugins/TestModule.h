#ifndef ZUTARNEX_TESTS_PLUGINS_TESTMODULE_H
#define ZUTARNEX_TESTS_PLUGINS_TESTMODULE_H

#include "plugins/PluginState.h"

#include <string>

namespace Quillon::Testing {

/// "zutarnex_test_plain" -> "libzutarnex_test_plain.so".
std::string moduleFileName(const std::string& name);

/// Whether the module is open in this process now.
bool isModuleOpen(const std::string& name);

/// The state of a plug-in whose module somebody else holds open.
PluginState& stateOf(const std::string& name);

/// Keeps a module open, beside the library's own hold on it. The plug-in in it starts and ends as it was built.
class TestModule {
public:
    explicit TestModule(const std::string& name);
    TestModule(const TestModule&) = delete;
    TestModule& operator=(const TestModule&) = delete;
    ~TestModule();

    PluginState& state() const;
    void reset() const; ///< the state, to what it was built with

private:
    void* handle_;
};

} // namespace Quillon::Testing

#endif
