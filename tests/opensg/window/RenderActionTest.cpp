#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGSimpleGeometry.h>


using namespace osg;
using testsupport::editCP;
using testsupport::addChild;
using testsupport::makeFullQuad;
using testsupport::makeUnlitMaterial;
using testsupport::readPixelFloat;
using testsupport::SceneSetup;
using testsupport::setBackgroundColor;

namespace
{

// 8-bit framebuffer: one step, plus one for each blend that rounds.
const float s_tol = 1.5f / 255.f;

void expectColor(int x, int y, const Color3f &expected, float tol = s_tol)
{
    testsupport::RGBAf pixel = readPixelFloat(x, y);
    EXPECT_NEAR(pixel[0], expected[0], tol);
    EXPECT_NEAR(pixel[1], expected[1], tol);
    EXPECT_NEAR(pixel[2], expected[2], tol);
}

// Unlit colour through a MaterialChunk plus any extra chunks.
ChunkMaterialPtr makeChunkMaterial(const Color3f &color, StateChunkPtr extra)
{
    MaterialChunkPtr mc = MaterialChunk::create();
    beginEditCP(mc);
    mc->setLit(false);
    mc->setDiffuse(Color4f(color[0], color[1], color[2], 1.f));
    endEditCP(mc);

    return testsupport::makeChunkMaterial({ mc, extra });
}

using RenderActionTest = testsupport::GLTest;

// Three half-transparent quads, listed front to back: sorted, they blend
// back to front; unsorted they are drawn in list order with depth writes
// on, so the front one hides the others.
TEST_F(RenderActionTest, TransparentObjectsBlendBackToFront)
{
    const Color3f bg(0.1f, 0.1f, 0.1f);
    const Color3f colors[3] = { Color3f(1.f, 0.f, 0.f),     // front, z = 1
                                Color3f(0.f, 1.f, 0.f),     // middle, z = 0
                                Color3f(0.f, 0.f, 1.f) };   // back, z = -1
    const Real32  heights[3] = { 1.f, 0.f, -1.f };
    const Real32  alpha = 0.4f;     // not 0.5, so that alpha and transparency differ

    for(bool sortTrans : { true, false })
    {
        SCOPED_TRACE(sortTrans ? "sorted" : "unsorted");
        SceneSetup setup(32, 32);
        setBackgroundColor(setup, bg);
        setup.action->setSortTrans(sortTrans);
        for(int i = 0; i < 3; ++i)
            addChild(setup.root, makeFullQuad(heights[i], makeUnlitMaterial(colors[i], 1.f - alpha)));

        setup.render();

        Color3f expected = bg;
        if(sortTrans)
        {
            for(int i = 2; i >= 0; --i)
                expected = colors[i] * alpha + expected * (1.f - alpha);
        }
        else
        {
            expected = colors[0] * alpha + bg * (1.f - alpha);
        }
        expectColor(16, 16, expected, 3.f / 255.f);
        EXPECT_FALSE(glIsEnabled(GL_BLEND)) << "the blend chunk is deactivated after the frame";
    }
}

TEST_F(RenderActionTest, TransparentPassLeavesDepthUnwrittenUnlessZWriteTrans)
{
    for(bool zwrite : { false, true })
    {
        SCOPED_TRACE(zwrite ? "ZWriteTrans" : "default");
        SceneSetup setup(32, 32);
        setup.action->setZWriteTrans(zwrite);
        addChild(setup.root, makeFullQuad(0.f, makeUnlitMaterial(Color3f(1.f, 1.f, 1.f), 0.5f)));

        setup.render();

        // The quad lies at depth 0.5; the background clears to 1.
        EXPECT_NEAR(testsupport::readDepth(16, 16), zwrite ? 0.5f : 1.f, 1e-4);
    }
}

// turned: the quad is rotated to show its back.
struct CullCase { const char *name; GLenum cullFace; bool turned, visible; };

const CullCase s_cullCases[] = {
    { "no culling, front",  GL_NONE,  false, true  },
    { "no culling, back",   GL_NONE,  true,  true  },
    { "cull back, front",   GL_BACK,  false, true  },
    { "cull back, back",    GL_BACK,  true,  false },
    { "cull front, front",  GL_FRONT, false, false },
    { "cull front, back",   GL_FRONT, true,  true  },
};

TEST_F(RenderActionTest, PolygonChunkCullsTheSelectedFaces)
{
    const Color3f color(0.f, 0.8f, 0.2f);
    for(const CullCase &c : s_cullCases)
    {
        SCOPED_TRACE(c.name);
        SceneSetup setup(32, 32);

        PolygonChunkPtr poly = PolygonChunk::create();
        editCP(poly, [&] { poly->setCullFace(c.cullFace); });

        Matrix m;
        if(c.turned)
            m.setRotate(Quaternion(Vec3f(0.f, 1.f, 0.f), Pi));
        NodePtr turn = testsupport::makeTransformNode(m);
        addChild(turn, makeFullQuad(0.f, makeChunkMaterial(color, poly)));
        addChild(setup.root, turn);

        setup.render();

        expectColor(16, 16, c.visible ? color : Color3f(0.f, 0.f, 0.f));
    }
}

struct MaskCase { UInt32 nodeMask; UInt32 viewportMask; bool visible; };

const MaskCase s_maskCases[] = {
    { 0xffffffff, 0xffffffff, true  },
    { 0,          0xffffffff, false },
    { 0x2,        0x1,        false },
    { 0x2,        0x3,        true  },
};

TEST_F(RenderActionTest, TraversalMaskHidesASubtree)
{
    const Color3f color(1.f, 1.f, 0.f);
    for(const MaskCase &c : s_maskCases)
    {
        SCOPED_TRACE(testing::Message() << std::hex << c.nodeMask << " & " << c.viewportMask);
        SceneSetup setup(32, 32);

        NodePtr subtree = testsupport::makeGroupNode();
        addChild(subtree, makeFullQuad(0.f, makeUnlitMaterial(color)));
        editCP(subtree, Node::TravMaskFieldMask, [&] { subtree->setTravMask(c.nodeMask); });
        addChild(setup.root, subtree);
        editCP(setup.viewport, Viewport::TravMaskFieldMask,
               [&] { setup.viewport->setTravMask(c.viewportMask); });

        setup.render();

        expectColor(16, 16, c.visible ? color : Color3f(0.f, 0.f, 0.f));
        EXPECT_EQ(setup.action->getNumDrawnNodes(), c.visible ? 1u : 0u);
    }
}

// Writing TravMask without an edit leaves the parents' cached volumes as
// they were computed while the child was hidden: empty, which must not cull.
TEST_F(RenderActionTest, ChildReenabledWithoutAnEditIsStillDrawn)
{
    const Color3f color(0.f, 1.f, 1.f);
    SceneSetup setup(32, 32);
    NodePtr quad = makeFullQuad(0.f, makeUnlitMaterial(color));
    NodePtr group = testsupport::makeGroupNode();
    addChild(group, quad);
    addChild(setup.root, group);

    quad->setTravMask(0);
    setup.render();
    expectColor(16, 16, Color3f(0.f, 0.f, 0.f));

    quad->setTravMask(0xffffffff);
    setup.render();
    expectColor(16, 16, color);
}

TEST_F(RenderActionTest, OverrideMaterialReplacesEveryGeometrysMaterial)
{
    SceneSetup setup(32, 32);
    addChild(setup.root, makeFullQuad(0.f, makeUnlitMaterial(Color3f(1.f, 0.f, 0.f))));

    MaterialPtr blue = makeUnlitMaterial(Color3f(0.f, 0.f, 1.f));
    addRefCP(blue);
    setup.action->setMaterial(getCPtr(blue), NullFC);

    setup.render();
    expectColor(16, 16, Color3f(0.f, 0.f, 1.f));

    // start() leaves the override alone; clearing it restores the own one.
    setup.action->setMaterial(NULL, NullFC);
    setup.render();
    expectColor(16, 16, Color3f(1.f, 0.f, 0.f));
    subRefCP(blue);
}

struct CounterCase { const char *name; bool stateSorting, culling; UInt32 drawn, stateChanges; };

// Six spheres alternating between two materials plus one outside the view.
const CounterCase s_counterCases[] = {
    { "sorted, culled",     true,  true,  6, 2 },
    { "unsorted, culled",   false, true,  6, 6 },
    { "sorted, not culled", true,  false, 7, 2 },
};

TEST_F(RenderActionTest, CountersReportDrawsTrianglesAndStateChanges)
{
    const UInt16 depth = 1;
    const UInt32 trianglesPerSphere = 20 * 4;   // icosahedron split once

    for(const CounterCase &c : s_counterCases)
    {
        SCOPED_TRACE(c.name);
        SceneSetup setup(64, 64);
        setup.action->setStateSorting(c.stateSorting);
        setup.action->setFrustumCulling(c.culling);

        MaterialPtr mats[2] = { makeUnlitMaterial(Color3f(1.f, 0.f, 0.f)),
                                makeUnlitMaterial(Color3f(0.f, 1.f, 0.f)) };
        for(int i = 0; i < 7; ++i)
        {
            GeometryPtr sphere = makeSphereGeo(depth, 0.1f);
            editCP(sphere, Geometry::MaterialFieldMask, [&] { sphere->setMaterial(mats[i % 2]); });

            Matrix m;
            // The last one sits far to the right of the view.
            m.setTranslate(i < 6 ? -0.75f + 0.3f * i : 5.f, 0.f, 0.f);
            NodePtr node = testsupport::makeTransformNode(m);
            addChild(node, makeNodeFor(sphere));
            addChild(setup.root, node);
        }

        setup.render();

        EXPECT_EQ(setup.action->getNumDrawnNodes(),   c.drawn);
        EXPECT_EQ(setup.action->getNumTriangles(),    c.drawn * trianglesPerSphere);
        EXPECT_EQ(setup.action->getNumStateChanges(), c.stateChanges);
    }
}

} // namespace
