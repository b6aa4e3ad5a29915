#include "xml/Closeable.h"

#include <new>

namespace Quillon::Xml {

Closeable::~Closeable() = default;

void* Closeable::operator new(std::size_t bytes) {
    return ::operator new(bytes);
}
void* Closeable::operator new[](std::size_t bytes) {
    return ::operator new[](bytes);
}
void* Closeable::operator new(std::size_t, void* place) noexcept {
    return place;
}
void* Closeable::operator new[](std::size_t, void* place) noexcept {
    return place;
}
void Closeable::operator delete(void* block) noexcept {
    ::operator delete(block);
}
void Closeable::operator delete[](void* block) noexcept {
    ::operator delete[](block);
}
void Closeable::operator delete(void*, void*) noexcept {}
void Closeable::operator delete[](void*, void*) noexcept {}
void* Closeable::operator new(std::size_t bytes, const std::nothrow_t& tag) noexcept {
    return ::operator new(bytes, tag);
}
void* Closeable::operator new[](std::size_t bytes, const std::nothrow_t& tag) noexcept {
    return ::operator new[](bytes, tag);
}
void Closeable::operator delete(void* block, const std::nothrow_t& tag) noexcept {
    ::operator delete(block, tag);
}
void Closeable::operator delete[](void* block, const std::nothrow_t& tag) noexcept {
    ::operator delete[](block, tag);
}

} // namespace Quillon::Xml
