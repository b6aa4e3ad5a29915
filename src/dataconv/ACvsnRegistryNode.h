#ifndef ZUTARNEX_DATACONV_ACVSNREGISTRYNODE_H
#define ZUTARNEX_DATACONV_ACVSNREGISTRYNODE_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// Conversions by pairs of type ids, which are ids of type names in NameIdMap::getGlobalNameIdMap(). A functor travels
/// as an opaque pointer that designates an AConversionFunctor: reinterpret_cast<int*>(AConversionFunctor*) and back.
/// Converter offers typed calls on top.
///
/// Layout: no data; slots: destructor, _bind, _lookup, _rebind, _unbind (tests/abi/).
class ZUTARNEX_API ACvsnRegistryNode {
public:
    virtual ~ACvsnRegistryNode();

    /// Binds the pair to `functor`, which the node owns from then on. When the pair is bound here, the old binding is
    /// kept and `functor` is not taken.
    virtual void _bind(int from, int to, int* functor) = 0;
    /// The functor of the pair, or null.
    virtual int* _lookup(int from, int to) const = 0;
    /// Binds the pair to `functor` and destroys the one that was bound here, unless it is the same.
    virtual void _rebind(int from, int to, int* functor) = 0;
    /// Destroys the functor that is bound to the pair here, if there is one.
    virtual void _unbind(int from, int to) = 0;
};

} // namespace Quillon::DataConv

#endif
