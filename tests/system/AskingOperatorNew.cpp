// In a file of its own, so that no compiler sees both a call of operator new and its body.
#include "system/AskingOperatorNew.h"

#include "system/IllegalStateException.h"
#include "system/QVPI_PluginLoader.h"

#include <cstdlib>
#include <new>

namespace Quillon::Testing {

namespace {

constinit AskingOperatorNew behaviour;

void askForTheLoader() {
    try {
        System::QVPI_PluginLoader::getSystemPluginLoader();
    } catch (const System::IllegalStateException&) {
        ++behaviour.refusals;
        if (behaviour.letsPass)
            throw;
    }
}

} // namespace

AskingOperatorNew& askingOperatorNew() noexcept {
    return behaviour;
}

} // namespace Quillon::Testing

void* operator new(std::size_t bytes) {
    using Quillon::Testing::behaviour;
    if (behaviour.asksIn != 0 && --behaviour.asksIn == 0)
        Quillon::Testing::askForTheLoader();
    if (void* const block = std::malloc(bytes != 0 ? bytes : 1))
        return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
