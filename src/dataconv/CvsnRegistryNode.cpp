#include "dataconv/CvsnRegistryNode.h"

#include "dataconv/AConversionFunctor.h"
#include "dataconv/OpaqueFunctorInternal.h"

#include <utility>

namespace Quillon::DataConv {

namespace {

std::uint32_t keyOf(int from, int to) noexcept {
    return static_cast<std::uint32_t>(from) << 16 | (static_cast<std::uint32_t>(to) & 0xFFFF);
}

} // namespace

ACvsnRegistryNode::~ACvsnRegistryNode() = default;

CvsnRegistryNode::CvsnRegistryNode() = default;

CvsnRegistryNode::CvsnRegistryNode(boost::shared_ptr<CvsnRegistryNode> parent) : parent_(std::move(parent)) {}

CvsnRegistryNode::~CvsnRegistryNode() {
    for (const auto& [key, binding] : bindings_)
        delete binding.functor;
}

void CvsnRegistryNode::_bind(int from, int to, int* functor) {
    if (functor != nullptr)
        bindings_.try_emplace(keyOf(from, to), Binding{from, to, functorOf(functor)});
}

int* CvsnRegistryNode::_lookup(int from, int to) const {
    const auto found = bindings_.find(keyOf(from, to));
    if (found != bindings_.end())
        return opaque(found->second.functor);
    return parent_ ? parent_->_lookup(from, to) : nullptr;
}

void CvsnRegistryNode::_rebind(int from, int to, int* functor) {
    if (functor == nullptr)
        return;
    const Binding replacement{from, to, functorOf(functor)};
    const auto [bound, isNew] = bindings_.try_emplace(keyOf(from, to), replacement);
    if (isNew || bound->second.functor == replacement.functor)
        return;
    delete std::exchange(bound->second, replacement).functor;
}

void CvsnRegistryNode::_unbind(int from, int to) {
    const auto found = bindings_.find(keyOf(from, to));
    if (found == bindings_.end())
        return;
    AConversionFunctor* functor = found->second.functor;
    bindings_.erase(found);
    delete functor;
}

} // namespace Quillon::DataConv
