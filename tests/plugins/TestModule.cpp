#include "plugins/TestModule.h"

#include <dlfcn.h>
#include <stdexcept>

namespace Quillon::Testing {

std::string moduleFileName(const std::string& name) {
    return "lib" + name + ".so";
}

bool isModuleOpen(const std::string& name) {
    void* const handle = dlopen(moduleFileName(name).c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}

PluginState& stateOf(const std::string& name) {
    void* const handle = dlopen(moduleFileName(name).c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle)
        throw std::runtime_error(name + " is not open");
    dlclose(handle);
    return *reinterpret_cast<PluginStateFunction>(dlsym(handle, "pluginState"))();
}

TestModule::TestModule(const std::string& name)
    : handle_(dlopen(moduleFileName(name).c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_)
        throw std::runtime_error(dlerror());
    reset();
}

TestModule::~TestModule() {
    reset();
    dlclose(handle_);
}

void TestModule::reset() const {
    reinterpret_cast<ResetPluginStateFunction>(dlsym(handle_, "resetPluginState"))();
}

PluginState& TestModule::state() const {
    return *reinterpret_cast<PluginStateFunction>(dlsym(handle_, "pluginState"))();
}

} // namespace Quillon::Testing
