#ifndef ZUTARNEX_DATACONV_CVSNREGISTRYNODE_H
#define ZUTARNEX_DATACONV_CVSNREGISTRYNODE_H

#include "dataconv/AConversionFunctor.h"
#include "dataconv/ACvsnRegistryNode.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <map>

namespace Quillon::DataConv {

/// A node that owns the functors bound in it and asks its parent for pairs that it lacks.
///
/// Layout:    the table of virtual functions, the bindings, the parent.
/// Ownership: a functor that is bound was made by `new`; unbinding, rebinding and the node's end destroy it. One share
///            of the parent.
/// Threads:   no lock: lookups may run at once with each other, not with a change.
/// Throws:    std::bad_alloc from _bind and _rebind, the functor not being taken.
///
/// Deliberate: a pair is one 32-bit number, `from` in the upper and `to` in the lower 16 bits, so that (1, 2) and
/// (1, 65538) are the same pair (tests/dataconv/CvsnRegistryNodeTest.cpp, PairsAreOneNumberOf32Bits). Nothing happens
/// for a null functor.
class ZUTARNEX_API CvsnRegistryNode : public ACvsnRegistryNode {
public:
    CvsnRegistryNode();
    explicit CvsnRegistryNode(boost::shared_ptr<CvsnRegistryNode> parent);
    ~CvsnRegistryNode() override;
    CvsnRegistryNode(const CvsnRegistryNode&) = delete;
    CvsnRegistryNode& operator=(const CvsnRegistryNode&) = delete;

    void _bind(int from, int to, int* functor) override;
    int* _lookup(int from, int to) const override;
    void _rebind(int from, int to, int* functor) override;
    void _unbind(int from, int to) override;

private:
    struct Binding {
        int from;
        int to;
        AConversionFunctor* functor;
    };

    std::map<std::uint32_t, Binding> bindings_;
    boost::shared_ptr<CvsnRegistryNode> parent_;
};

} // namespace Quillon::DataConv

#endif
