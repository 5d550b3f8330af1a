#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>

#include "support/Builders.h"
#include "support/SceneSetup.h"

#include <gtest/gtest.h>


using namespace osg;
using testsupport::addChild;
using testsupport::makeTransformNode;

namespace
{

bool alive(UInt32 id) { return FieldContainerFactory::the()->getContainer(id) != NullFC; }

Matrix translation(Real32 x, Real32 y, Real32 z)
{
    Matrix m;
    m.setTranslate(x, y, z);
    return m;
}

// A geometry node whose only content is the box [lo, hi] (two corners).
NodePtr boxGeometryNode(const Pnt3f &lo, const Pnt3f &hi, GeoPositions3fPtr *positions = NULL)
{
    GeoPositions3fPtr pos = GeoPositions3f::create();
    beginEditCP(pos, GeoPositions3f::GeoPropDataFieldMask);
    pos->push_back(lo);
    pos->push_back(hi);
    endEditCP(pos, GeoPositions3f::GeoPropDataFieldMask);

    GeometryPtr geo = Geometry::create();
    testsupport::editCP(geo, [&] { geo->setPositions(pos); });
    if(positions != NULL)
        *positions = pos;
    return makeNodeFor(geo);
}

void expectBounds(const Volume &vol, const Pnt3f &lo, const Pnt3f &hi)
{
    Pnt3f mn, mx;
    vol.getBounds(mn, mx);
    for(UInt32 i = 0; i < 3; ++i)
    {
        EXPECT_NEAR(mn[i], lo[i], 1e-5f) << "min axis " << i;
        EXPECT_NEAR(mx[i], hi[i], 1e-5f) << "max axis " << i;
    }
}

} // namespace

TEST(Node, RemovingAChildDestroysItWhenTheLastReferenceGoes)
{
    NodePtr parent = makeNodeFor(Group::create());
    addRefCP(parent);

    NodePtr kept    = makeNodeFor(Group::create());
    NodePtr dropped = makeNodeFor(Group::create());
    GroupPtr core   = GroupPtr::dcast(dropped->getCore());
    addChild(parent, kept);
    addChild(parent, dropped);
    addRefCP(kept);

    UInt32 keptId = kept.getFieldContainerId(), droppedId = dropped.getFieldContainerId();
    UInt32 coreId = core.getFieldContainerId();

    beginEditCP(parent, Node::ChildrenFieldMask);
    parent->subChild(dropped);
    parent->subChild(kept);
    endEditCP(parent, Node::ChildrenFieldMask);

    EXPECT_FALSE(alive(droppedId));
    EXPECT_FALSE(alive(coreId));
    EXPECT_TRUE(alive(keptId));
    EXPECT_EQ(kept->getParent(), NullFC);
    EXPECT_EQ(kept.getRefCount(), 1);

    subRefCP(kept);
    EXPECT_FALSE(alive(keptId));
    subRefCP(parent);
}

TEST(Node, AddingAChildWithAParentMovesIt)
{
    NodePtr p1 = makeNodeFor(Group::create()), p2 = makeNodeFor(Group::create());
    addRefCP(p1);
    addRefCP(p2);
    NodePtr child = makeNodeFor(Group::create());

    addChild(p1, child);
    addChild(p2, child);

    EXPECT_EQ(p1->getNChildren(), 0u);
    ASSERT_EQ(p2->getNChildren(), 1u);
    EXPECT_EQ(p2->getChild(0), child);
    EXPECT_EQ(child->getParent(), p2);
    EXPECT_EQ(child.getRefCount(), 1);

    subRefCP(p1);
    subRefCP(p2);
}

TEST(Node, SetCoreMovesTheNodeBetweenTheCoresParents)
{
    GroupPtr first = Group::create(), second = Group::create();
    addRefCP(second);
    UInt32 firstId = first.getFieldContainerId();

    NodePtr node = makeNodeFor(first);
    addRefCP(node);
    ASSERT_EQ(first->getParents().size(), 1u);
    EXPECT_EQ(first->getParents()[0], node);

    testsupport::editCP(node, Node::CoreFieldMask, [&] { node->setCore(second); });

    EXPECT_FALSE(alive(firstId));
    ASSERT_EQ(second->getParents().size(), 1u);
    EXPECT_EQ(second->getParents()[0], node);
    EXPECT_EQ(second.getRefCount(), 2);

    subRefCP(node);
    EXPECT_TRUE(second->getParents().empty());
    EXPECT_EQ(second.getRefCount(), 1);
    subRefCP(second);
    GroupPtr made;
    NodeRefPtr cored(makeCoredNode<Group>(&made));
    EXPECT_EQ(cored->getCore(), made);
    EXPECT_EQ(made->getParents()[0], cored.get());
}

TEST(Node, GetToWorldIncludesEveryTransformOnThePathAndTheNodesOwn)
{
    Matrix rotZ;  // 90 degrees about Z: (x, y) -> (-y, x)
    rotZ.setValue(0, -1, 0, 0,
                  1,  0, 0, 0,
                  0,  0, 1, 0,
                  0,  0, 0, 1);

    NodePtr root  = makeTransformNode(translation(10, 0, 0));
    NodePtr mid   = makeTransformNode(rotZ);
    NodePtr leaf  = makeTransformNode(translation(1, 2, 3));
    NodePtr plain = makeNodeFor(Group::create());
    addRefCP(root);
    addChild(root, mid);
    addChild(mid, leaf);
    addChild(leaf, plain);

    // p -> T(10,0,0) R (T(1,2,3) p): the origin goes to (10 - 2, 1, 3).
    for(NodePtr node : { leaf, plain })
    {
        Pnt3f p(0, 0, 0);
        node->getToWorld().multMatrixPnt(p);
        EXPECT_NEAR(p[0], 8.f, 1e-5f);
        EXPECT_NEAR(p[1], 1.f, 1e-5f);
        EXPECT_NEAR(p[2], 3.f, 1e-5f);
    }

    Pnt3f q(1, 0, 0);
    mid->getToWorld().multMatrixPnt(q);
    EXPECT_NEAR(q[0], 10.f, 1e-5f);
    EXPECT_NEAR(q[1], 1.f, 1e-5f);

    subRefCP(root);
}

TEST(Node, VolumesAreInTheParentsSpaceAndWorldVolumeAppliesTheRest)
{
    Matrix scale;
    scale.setScale(2.f);

    NodePtr root = makeTransformNode(translation(1, 2, 3));
    NodePtr mid  = makeTransformNode(scale);
    GeoPositions3fPtr pos;
    NodePtr geo  = boxGeometryNode(Pnt3f(-.5f, -.5f, -.5f), Pnt3f(.5f, .5f, .5f), &pos);
    addRefCP(root);
    addChild(root, mid);
    addChild(mid, geo);

    expectBounds(geo->getVolume(true),  Pnt3f(-.5f, -.5f, -.5f), Pnt3f(.5f, .5f, .5f));
    expectBounds(mid->getVolume(true),  Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1));
    expectBounds(root->getVolume(true), Pnt3f(0, 1, 2), Pnt3f(2, 3, 4));

    DynamicVolume world;
    geo->getWorldVolume(world);
    expectBounds(world, Pnt3f(0, 1, 2), Pnt3f(2, 3, 4));

    // Property edits reach the node volumes through the geometry.
    testsupport::editCP(pos, GeoPositions3f::GeoPropDataFieldMask,
                        [&] { pos->setValue(Pnt3f(1.5f, .5f, .5f), 1); });
    expectBounds(root->getVolume(true), Pnt3f(0, 1, 2), Pnt3f(4, 3, 4));

    // So do matrix edits.
    TransformPtr midCore = TransformPtr::dcast(mid->getCore());
    testsupport::editCP(midCore, Transform::MatrixFieldMask,
                        [&] { midCore->setMatrix(Matrix::identity()); });
    expectBounds(root->getVolume(true), Pnt3f(.5f, 1.5f, 2.5f), Pnt3f(2.5f, 2.5f, 3.5f));

    subRefCP(root);
}

TEST(Switch, VolumeAndChoiceFollowTheSelectedChild)
{
    SwitchPtr sw = Switch::create();
    EXPECT_EQ(sw->getChoice(), Switch::NONE);
    EXPECT_EQ(Int32(Switch::ALL), -2);

    NodePtr node = makeNodeFor(sw);
    addRefCP(node);
    addChild(node, boxGeometryNode(Pnt3f(0, 0, 0), Pnt3f(1, 1, 1)));
    addChild(node, boxGeometryNode(Pnt3f(5, 5, 5), Pnt3f(6, 6, 6)));

    struct Case { Int32 choice; bool empty; Pnt3f lo, hi; };
    const Case cases[] =
    {
        { Switch::NONE, true,  Pnt3f(),        Pnt3f()        },
        { 1,            false, Pnt3f(5, 5, 5), Pnt3f(6, 6, 6) },
        { 0,            false, Pnt3f(0, 0, 0), Pnt3f(1, 1, 1) },
        { Switch::ALL,  false, Pnt3f(0, 0, 0), Pnt3f(6, 6, 6) },
        { 7,            true,  Pnt3f(),        Pnt3f()        },
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.choice);
        testsupport::editCP(sw, Switch::ChoiceFieldMask, [&] { sw->setChoice(c.choice); });

        const DynamicVolume &vol = node->getVolume(true);
        EXPECT_EQ(vol.isEmpty(), c.empty);
        if(!c.empty)
            expectBounds(vol, c.lo, c.hi);
    }
    subRefCP(node);
}
