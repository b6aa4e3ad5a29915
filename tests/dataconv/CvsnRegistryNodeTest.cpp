#include "dataconv/CvsnRegistryNode.h"

#include "dataconv/AConversionFunctor.h"
#include "dataconv/CvsnRootNamespace.h"
#include "support/HostFixture.h"

#include <gtest/gtest.h>

namespace Quillon::DataConv {
namespace {

using Testing::everyNewFails;

class CvsnRegistryNodeTest : public Testing::HostFixture {
    void warmUp() override { CvsnRootNamespace::instance(); }
};

/// Counts how many of its kind were destroyed.
class Functor : public AConversionFunctor {
public:
    explicit Functor(int& destroyed) : destroyed_(destroyed) {}
    ~Functor() override { ++destroyed_; }

    int* opaque() { return reinterpret_cast<int*>(static_cast<AConversionFunctor*>(this)); }

private:
    int& destroyed_;
};

TEST_F(CvsnRegistryNodeTest, UnboundPairIsNull) {
    const CvsnRegistryNode node;
    EXPECT_EQ(nullptr, node._lookup(1, 2));
}

TEST_F(CvsnRegistryNodeTest, BoundPairIsFoundInItsDirection) {
    int destroyed = 0;
    {
        CvsnRegistryNode node;
        auto* functor = new Functor(destroyed);
        node._bind(1, 2, functor->opaque());
        EXPECT_EQ(functor->opaque(), node._lookup(1, 2));
        EXPECT_EQ(nullptr, node._lookup(2, 1));
        EXPECT_EQ(nullptr, node._lookup(1, 3));
        EXPECT_EQ(0, destroyed);
    }
    EXPECT_EQ(1, destroyed);
}

TEST_F(CvsnRegistryNodeTest, SecondBindingIsNotTaken) {
    int destroyed = 0;
    Functor second(destroyed);
    CvsnRegistryNode node;
    auto* first = new Functor(destroyed);
    node._bind(1, 2, first->opaque());
    node._bind(1, 2, second.opaque());
    EXPECT_EQ(first->opaque(), node._lookup(1, 2));
    EXPECT_EQ(0, destroyed);
}

TEST_F(CvsnRegistryNodeTest, RebindingReplacesAndDestroys) {
    int destroyed = 0;
    CvsnRegistryNode node;
    auto* first = new Functor(destroyed);
    node._rebind(1, 2, first->opaque());
    EXPECT_EQ(first->opaque(), node._lookup(1, 2)) << "an unbound pair is bound";
    auto* second = new Functor(destroyed);
    node._rebind(1, 2, second->opaque());
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(second->opaque(), node._lookup(1, 2));
    node._rebind(1, 2, second->opaque());
    EXPECT_EQ(1, destroyed) << "the same functor stays";
    EXPECT_EQ(second->opaque(), node._lookup(1, 2));
}

TEST_F(CvsnRegistryNodeTest, UnbindingDestroys) {
    int destroyed = 0;
    CvsnRegistryNode node;
    node._unbind(1, 2);
    node._bind(1, 2, (new Functor(destroyed))->opaque());
    node._bind(2, 1, (new Functor(destroyed))->opaque());
    node._unbind(1, 2);
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(nullptr, node._lookup(1, 2));
    EXPECT_NE(nullptr, node._lookup(2, 1));
    node._unbind(1, 2);
    EXPECT_EQ(1, destroyed);
}

TEST_F(CvsnRegistryNodeTest, NullFunctorDoesNothing) {
    int destroyed = 0;
    CvsnRegistryNode node;
    node._bind(1, 2, nullptr);
    node._rebind(1, 2, nullptr);
    EXPECT_EQ(nullptr, node._lookup(1, 2));
    auto* functor = new Functor(destroyed);
    node._bind(1, 2, functor->opaque());
    node._bind(1, 2, nullptr);
    node._rebind(1, 2, nullptr);
    EXPECT_EQ(functor->opaque(), node._lookup(1, 2));
    EXPECT_EQ(0, destroyed);
}

TEST_F(CvsnRegistryNodeTest, PairsAreOneNumberOf32Bits) {
    int destroyed = 0;
    CvsnRegistryNode node;
    auto* functor = new Functor(destroyed);
    node._bind(1, 65538, functor->opaque());
    EXPECT_EQ(functor->opaque(), node._lookup(1, 2));
    EXPECT_EQ(functor->opaque(), node._lookup(65537, 2));
    EXPECT_EQ(functor->opaque(), node._lookup(1, 2 - 65536));
    EXPECT_EQ(nullptr, node._lookup(0, 2));
    EXPECT_EQ(nullptr, node._lookup(2, 1));
    node._unbind(1, 2);
    EXPECT_EQ(1, destroyed);
    auto* negative = new Functor(destroyed);
    node._bind(-1, -1, negative->opaque());
    EXPECT_EQ(negative->opaque(), node._lookup(0xFFFF, 0xFFFF));
}

TEST_F(CvsnRegistryNodeTest, ParentIsAskedForWhatIsMissing) {
    int destroyed = 0;
    const boost::shared_ptr<CvsnRegistryNode> root(new CvsnRegistryNode);
    const boost::shared_ptr<CvsnRegistryNode> middle(new CvsnRegistryNode(root));
    CvsnRegistryNode node(middle);
    auto* inRoot = new Functor(destroyed);
    root->_bind(1, 2, inRoot->opaque());
    EXPECT_EQ(inRoot->opaque(), node._lookup(1, 2));
    auto* own = new Functor(destroyed);
    node._bind(1, 2, own->opaque());
    EXPECT_EQ(own->opaque(), node._lookup(1, 2));
    EXPECT_EQ(inRoot->opaque(), middle->_lookup(1, 2));
    node._unbind(1, 2);
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(inRoot->opaque(), node._lookup(1, 2)) << "the parent's binding is visible again";
    node._unbind(1, 2);
    EXPECT_EQ(inRoot->opaque(), root->_lookup(1, 2)) << "parents are not touched";
    node._rebind(1, 2, (new Functor(destroyed))->opaque());
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(inRoot->opaque(), root->_lookup(1, 2));
}

TEST_F(CvsnRegistryNodeTest, NodeKeepsItsParentAlive) {
    int destroyed = 0;
    boost::shared_ptr<CvsnRegistryNode> parent(new CvsnRegistryNode);
    parent->_bind(1, 2, (new Functor(destroyed))->opaque());
    {
        const CvsnRegistryNode node(parent);
        parent.reset();
        EXPECT_NE(nullptr, node._lookup(1, 2));
        EXPECT_EQ(0, destroyed);
    }
    EXPECT_EQ(1, destroyed);
}

TEST_F(CvsnRegistryNodeTest, FunctorIsNotTakenWhenMemoryRunsOut) {
    int destroyed = 0;
    CvsnRegistryNode node;
    auto* functor = new Functor(destroyed);
    const auto isUnbound = [&] { EXPECT_EQ(nullptr, node._lookup(1, 2)); };
    everyNewFails([&] { node._bind(1, 2, functor->opaque()); }, isUnbound);
    auto* other = new Functor(destroyed);
    const auto otherIsUnbound = [&] { EXPECT_EQ(nullptr, node._lookup(3, 4)); };
    everyNewFails([&] { node._rebind(3, 4, other->opaque()); }, otherIsUnbound);
    EXPECT_EQ(0, destroyed);
}

TEST_F(CvsnRegistryNodeTest, RootIsOneNodeOfTheProcess) {
    const boost::shared_ptr<CvsnRegistryNode> root = CvsnRootNamespace::instance();
    EXPECT_EQ(root.get(), CvsnRootNamespace::instance().get());
    EXPECT_EQ(nullptr, root->_lookup(1, 2));
}

} // namespace
} // namespace Quillon::DataConv
