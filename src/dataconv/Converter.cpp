#include "dataconv/Converter.h"

#include "dataconv/AlreadyBoundException.h"
#include "dataconv/C99Conversions.h"
#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/NameIdMap.h"
#include "dataconv/NotBoundException.h"
#include "dataconv/NotFoundException.h"
#include "dataconv/OpaqueFunctorInternal.h"
#include "runtime/HostServices.h"

namespace Quillon::DataConv {

Converter::Converter() : Converter(C99Conversions::instance()) {}

Converter::Converter(boost::shared_ptr<CvsnRegistryNode> node) : node_(std::move(node)) {}

const char* Converter::known(const char* typeName) {
    if (typeName == nullptr || !NameIdMap::getGlobalNameIdMap()->contains(typeName))
        NotFoundException::doThrow();
    return typeName;
}

/// The text as a string; the host's block is released.
std::string Converter::taken(char* text) {
    const std::unique_ptr<char, void (*)(void*)> block(text, Runtime::release);
    return text != nullptr ? text : std::string();
}

const AConversionFunctor& Converter::functorBetween(const char* from, const char* to) const {
    const boost::shared_ptr<NameIdMap> names = NameIdMap::getGlobalNameIdMap();
    const unsigned int fromId = names->find(from), toId = names->find(to);
    int* functor = nullptr;
    if (fromId != 0 && toId != 0)
        functor = node_->_lookup(static_cast<int>(fromId), static_cast<int>(toId));
    if (functor == nullptr)
        NotBoundException::doThrow();
    return *functorOf(functor);
}

void Converter::bindBetween(const char* from, const char* to, std::unique_ptr<AConversionFunctor> functor) {
    if (from == nullptr || to == nullptr || functor == nullptr)
        IllegalArgumentException::doThrow();
    const boost::shared_ptr<NameIdMap> names = NameIdMap::getGlobalNameIdMap();
    const int fromId = static_cast<int>(names->find_or_insert(from));
    const int toId = static_cast<int>(names->find_or_insert(to));
    node_->_bind(fromId, toId, opaque(functor.get()));
    if (node_->_lookup(fromId, toId) != opaque(functor.get())) // the old binding was kept
        AlreadyBoundException::doThrow();
    static_cast<void>(functor.release()); // the node owns it now
}

} // namespace Quillon::DataConv
