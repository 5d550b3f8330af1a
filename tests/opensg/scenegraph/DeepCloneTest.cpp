#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

#include "support/Builders.h"
#include "support/LiveObjects.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace osg;
using testsupport::editCP;

namespace
{

// root (Group) -> a transform node -> two nodes sharing one box geometry
// with a SimpleMaterial.
struct Tree
{
    NodePtr           root;
    TransformPtr      transform;
    GeometryPtr       geometry;
    SimpleMaterialPtr material;

    Tree()
    {
        material = SimpleMaterial::create();
        editCP(material, SimpleMaterial::DiffuseFieldMask,
               [&] { material->setDiffuse(Color3f(1, 0, 0)); });

        geometry = makeBoxGeo(1, 1, 1, 1, 1, 1);
        editCP(geometry, Geometry::MaterialFieldMask, [&] { geometry->setMaterial(material); });

        transform = Transform::create();
        Matrix m;
        m.setTranslate(1, 2, 3);
        editCP(transform, Transform::MatrixFieldMask, [&] { transform->setMatrix(m); });

        NodePtr transformNode = makeNodeFor(transform);
        beginEditCP(transformNode, Node::ChildrenFieldMask);
        transformNode->addChild(makeNodeFor(geometry));
        transformNode->addChild(makeNodeFor(geometry));
        endEditCP(transformNode, Node::ChildrenFieldMask);

        root = makeNodeFor(Group::create());
        addRefCP(root);
        editCP(root, Node::ChildrenFieldMask, [&] { root->addChild(transformNode); });
    }

    ~Tree() { subRefCP(root); }
};

TransformPtr transformOf(NodePtr root) { return TransformPtr::dcast(root->getChild(0)->getCore()); }

GeometryPtr geometryOf(NodePtr root, UInt32 index)
{
    return GeometryPtr::dcast(root->getChild(0)->getChild(index)->getCore());
}

bool hasParent(GeoPositionsPtr positions, GeometryPtr geometry)
{
    const MFFieldContainerPtr &parents = positions->getParents();
    return std::find(parents.begin(), parents.end(), FieldContainerPtr(geometry)) !=
           parents.end();
}

TEST(DeepCloneTree, CopiesEveryContainerWithItsValues)
{
    Tree tree;
    NodePtr copy = deepCloneTree(tree.root);
    addRefCP(copy);

    ASSERT_EQ(copy->getNChildren(), 1u);
    ASSERT_EQ(copy->getChild(0)->getNChildren(), 2u);
    TransformPtr copyTransform = transformOf(copy);
    GeometryPtr  copyGeometry  = geometryOf(copy, 0);
    ASSERT_NE(copyTransform, NullFC);
    ASSERT_NE(copyGeometry,  NullFC);
    EXPECT_NE(copyTransform, tree.transform);
    EXPECT_NE(copyGeometry,  tree.geometry);
    EXPECT_EQ(copyTransform->getMatrix(), tree.transform->getMatrix());

    // One core for both nodes, as in the original.
    EXPECT_EQ(geometryOf(copy, 1), copyGeometry);

    // What the geometry owns is copied too, with the back links moved.
    EXPECT_NE(copyGeometry->getPositions(), tree.geometry->getPositions());
    EXPECT_NE(copyGeometry->getMaterial(),  tree.geometry->getMaterial());
    EXPECT_TRUE (hasParent(copyGeometry->getPositions(), copyGeometry));
    EXPECT_FALSE(hasParent(tree.geometry->getPositions(), copyGeometry));
    EXPECT_TRUE (hasParent(tree.geometry->getPositions(), tree.geometry));
    EXPECT_EQ(copyGeometry->getPositions()->getSize(), tree.geometry->getPositions()->getSize());

    SimpleMaterialPtr copyMaterial = SimpleMaterialPtr::dcast(copyGeometry->getMaterial());
    ASSERT_NE(copyMaterial, NullFC);
    EXPECT_EQ(copyMaterial->getDiffuse(), Color3f(1, 0, 0));

    subRefCP(copy);
}

TEST(DeepCloneTree, NamedTypesAndTheirSubtypesAreShared)
{
    Tree tree;
    NodePtr copy = deepCloneTree(tree.root, "Material, GeoPositions");
    addRefCP(copy);

    GeometryPtr copyGeometry = geometryOf(copy, 0);
    EXPECT_NE(copyGeometry, tree.geometry);
    EXPECT_EQ(copyGeometry->getMaterial(),  tree.geometry->getMaterial());
    EXPECT_EQ(copyGeometry->getPositions(), tree.geometry->getPositions());
    EXPECT_NE(copyGeometry->getNormals(),   tree.geometry->getNormals());
    EXPECT_TRUE(hasParent(tree.geometry->getPositions(), copyGeometry));

    subRefCP(copy);
    EXPECT_FALSE(hasParent(tree.geometry->getPositions(), copyGeometry));
}

TEST(DeepCloneTree, DestroyingTheCopyFreesAllItMade)
{
    Tree tree;
    const testsupport::LiveObjects before = testsupport::LiveObjects::countContainers();

    NodePtr copy = deepCloneTree(tree.root);
    addRefCP(copy);
    const testsupport::LiveObjects copied = testsupport::LiveObjects::countContainers();
    EXPECT_EQ(copied.containers.at("Node"), before.containers.at("Node") + 4);
    EXPECT_EQ(copied.containers.at("Geometry"), before.containers.at("Geometry") + 1);
    subRefCP(copy);

    EXPECT_EQ(testsupport::differences(before, testsupport::LiveObjects::countContainers()), "");
}

} // namespace
