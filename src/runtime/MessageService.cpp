// The default host's message service: tables are kept in a list that only grows, so that readers need no lock.
#include "runtime/DefaultHostInternal.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace Quillon::Runtime {

namespace {

struct TableNode {
    const MessageTable* table;
    TableNode* next;
};

/// Never freed: an exception may be raised as late as in the last destructor of the process.
constinit std::atomic<TableNode*> tables{nullptr};

bool isRemembered(const MessageTable* table) {
    for (const TableNode* node = tables.load(std::memory_order_acquire); node; node = node->next)
        if (node->table == table)
            return true;
    return false;
}

const char* findFormat(std::uint32_t code) {
    for (const TableNode* node = tables.load(std::memory_order_acquire); node; node = node->next)
        for (std::uint32_t i = 0; i < node->table->count; ++i)
            if (node->table->codes[i] == code)
                return node->table->formats[i];
    return nullptr;
}

char* printed(const char* format, std::va_list arguments) {
    std::va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length < 0)
        return nullptr;
    const std::size_t room = static_cast<std::size_t>(length) + 1;
    char* text = static_cast<char*>(hostServices().allocate(room));
    if (text)
        std::vsnprintf(text, room, format, arguments);
    return text;
}

char* printedUnknown(std::uint32_t code) {
    constexpr char kFormat[] = "Unknown message %08X.";
    constexpr std::size_t kRoom = sizeof kFormat + 8;
    char* text = static_cast<char*>(hostServices().allocate(kRoom));
    if (text)
        std::snprintf(text, kRoom, kFormat, static_cast<unsigned int>(code));
    return text;
}

} // namespace

void rememberMessages(void*, const MessageTable* table) {
    if (!table || isRemembered(table))
        return;
    auto* node = static_cast<TableNode*>(std::malloc(sizeof(TableNode)));
    if (!node)
        return; // the texts stay unknown, their codes are shown instead
    node->table = table;
    node->next = tables.load(std::memory_order_relaxed);
    while (!tables.compare_exchange_weak(node->next, node, std::memory_order_release,
                                         std::memory_order_relaxed)) {
    }
}

char* formatMessageText(const char*, std::uint32_t code, std::va_list arguments) {
    const char* format = findFormat(code);
    return format ? printed(format, arguments) : printedUnknown(code);
}

} // namespace Quillon::Runtime
