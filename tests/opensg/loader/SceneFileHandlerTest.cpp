#include <OpenSG/OSGCameraAttachment.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleTexturedMaterial.h>
#include <OpenSG/OSGTransform.h>

#include "support/Builders.h"
#include "support/LiveObjects.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace osg;

namespace
{

// A fresh directory per test, removed with its files afterwards.
class SceneFileTest : public ::testing::Test
{
  protected:

    // A 3x2 RGB image whose pixels all differ, bottom row first.
    std::string writeTexture(const std::string &name)
    {
        ImagePtr image = testsupport::held(Image::create());
        const UInt8 pixels[] = { 255, 0, 0,   0, 255, 0,   0, 0, 255,
                                 255, 255, 0, 0, 255, 255, 255, 0, 255 };
        image->set(Image::OSG_RGB_PF, 3, 2, 1, 1, 1, 0.0, pixels);
        EXPECT_TRUE(image->write(dir.path(name).c_str()));
        subRefCP(image);
        return dir.path(name);
    }

    testsupport::TempDir dir;
};

void collect(NodePtr node, const std::function<bool(NodePtr)> &match, std::vector<NodePtr> &out)
{
    if(match(node))
        out.push_back(node);
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
        collect(node->getChild(i), match, out);
}

std::vector<NodePtr> geometryNodes(NodePtr root)
{
    std::vector<NodePtr> nodes;
    collect(root, [](NodePtr n) { return GeometryPtr::dcast(n->getCore()) != NullFC; }, nodes);
    return nodes;
}

// Holds a read scene for the test's duration.
struct Scene
{
    explicit Scene(NodePtr root) : root(root) { addRefCP(root); }
    ~Scene() { if(root != NullFC) subRefCP(root); }

    // The scene's one geometry; NullFC, failing the test, unless there is one.
    GeometryPtr onlyGeometry(void) const
    {
        if(root == NullFC)
            return NullFC;
        std::vector<NodePtr> geos = geometryNodes(root);
        EXPECT_EQ(geos.size(), 1u);
        return geos.size() == 1 ? GeometryPtr::dcast(geos[0]->getCore()) : GeometryPtr(NullFC);
    }

    NodePtr root;
};

NodePtr namedNode(NodePtr root, const std::string &name)
{
    std::vector<NodePtr> nodes;
    collect(root, [&](NodePtr n) { const Char8 *s = getName(n); return s != NULL && name == s; },
            nodes);
    return nodes.empty() ? NodePtr(NullFC) : nodes.front();
}

Pnt3f worldPoint(NodePtr node, const Pnt3f &p)
{
    Pnt3f result;
    node->getToWorld().multFullMatrixPnt(p, result);
    return result;
}

const Real32 s_tol = 1e-5f;

// A colour or point, within s_tol a component.
template <class T>
void expectXYZ(const T &actual, Real32 r, Real32 g, Real32 b, const char *what)
{
    EXPECT_NEAR(actual[0], r, s_tol) << what;
    EXPECT_NEAR(actual[1], g, s_tol) << what;
    EXPECT_NEAR(actual[2], b, s_tol) << what;
}

// Every triangle of `geo` faces +Z (counter-clockwise seen from +Z) and its
// vertex normals point along +Z.
void expectFacingPlusZ(GeometryPtr geo)
{
    GeoIndicesPtr   indices   = geo->getIndices();
    GeoPositionsPtr positions = geo->getPositions();
    GeoNormalsPtr   normals   = geo->getNormals();
    ASSERT_NE(normals, NullFC) << "no normals";
    ASSERT_EQ(indices->size() % 3, 0u);
    for(UInt32 i = 0; i < indices->size(); i += 3)
    {
        const Pnt3f a = positions->getValue(indices->getValue(i));
        const Pnt3f b = positions->getValue(indices->getValue(i + 1));
        const Pnt3f c = positions->getValue(indices->getValue(i + 2));
        EXPECT_GT((b - a).cross(c - a)[2], 0.f) << "triangle " << i / 3 << " is clockwise";
        for(UInt32 k = 0; k < 3; ++k)
            expectXYZ(normals->getValue(indices->getValue(i + k)), 0, 0, 1, "normal");
    }
}

const char *s_quadObj =
    "mtllib quad.mtl\n"
    "o Quad\n"
    "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 0 1 0\n"
    "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
    "usemtl Painted\n"
    "f 1/1 2/2 3/3 4/4\n";

const char *s_quadMtl =
    "newmtl Painted\n"
    "Ka 0.05 0.05 0.05\n"
    "Kd 0.2 0.4 0.6\n"
    "Ks 0.5 0.25 0.125\n"
    "Ns 40\n"
    "Ke 0.1 0 0.3\n"
    "d 0.75\n"
    "map_Kd tex.png\n";

TEST_F(SceneFileTest, ObjQuadWithMaterialAndTexture)
{
    writeTexture("tex.png");
    dir.write("quad.mtl", s_quadMtl);
    const std::string file = dir.write("quad.obj", s_quadObj);

    Scene scene(SceneFileHandler::the().read(file.c_str()));
    GeometryPtr geo = scene.onlyGeometry();
    ASSERT_NE(geo, NullFC);

    // The quad is split into two triangles over its four shared corners.
    ASSERT_EQ(geo->getTypes()->size(), 1u);
    EXPECT_EQ(geo->getTypes()->getValue(0), UInt32(GL_TRIANGLES));
    EXPECT_EQ(geo->getLengths()->getValue(0), 6u);
    ASSERT_EQ(geo->getIndices()->size(), 6u);
    ASSERT_EQ(geo->getPositions()->size(), 4u);

    // The file has no normals; generated ones face the quad's front.
    expectFacingPlusZ(geo);

    // Texture coordinates follow the corners: (x / 2, y).
    ASSERT_NE(geo->getTexCoords(), NullFC);
    ASSERT_EQ(geo->getTexCoords()->size(), 4u);
    for(UInt32 v = 0; v < 4; ++v)
    {
        const Pnt3f p = geo->getPositions()->getValue(v);
        const Vec2f t = geo->getTexCoords()->getValue(v);
        EXPECT_NEAR(t[0], p[0] / 2, s_tol) << "vertex " << v;
        EXPECT_NEAR(t[1], p[1], s_tol) << "vertex " << v;
    }

    SimpleTexturedMaterialPtr mat = SimpleTexturedMaterialPtr::dcast(geo->getMaterial());
    ASSERT_NE(mat, NullFC);
    expectXYZ(mat->getDiffuse(),  0.2f, 0.4f, 0.6f, "diffuse");
    expectXYZ(mat->getAmbient(),  0.05f, 0.05f, 0.05f, "ambient");
    expectXYZ(mat->getSpecular(), 0.5f, 0.25f, 0.125f, "specular");
    expectXYZ(mat->getEmission(), 0.1f, 0.f, 0.3f, "emission");
    EXPECT_NEAR(mat->getShininess(), 40.f, s_tol);
    EXPECT_NEAR(mat->getTransparency(), 0.25f, s_tol);
    ASSERT_STREQ(getName(mat), "Painted");

    ImagePtr image = mat->getImage();
    ASSERT_NE(image, NullFC);
    EXPECT_EQ(image->getWidth(), 3);
    EXPECT_EQ(image->getHeight(), 2);
    // Bottom-left texel first, as written.
    EXPECT_EQ(std::vector<UInt8>(image->getData(), image->getData() + 3), (std::vector<UInt8>{ 255, 0, 0 }));

    EXPECT_NE(namedNode(scene.root, "Quad"), NullFC) << "object name not attached";
}

// Opacity maps to transparency, except that a surface no file means to hide
// (opacity 0) stays opaque, with a warning. A missing texture leaves the
// material untextured, with a warning naming it.
TEST_F(SceneFileTest, OpacityBecomesTransparencyButZeroStaysOpaque)
{
    const struct { const char *opacity; Real32 transparency; bool warned; } cases[] =
    {
        {"1",    0.f,  false},
        {"0.4",  0.6f, false},
        {"0",    0.f,  true},
    };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(c.opacity);
        dir.write("quad.mtl", std::string("newmtl Painted\nKd 0.2 0.4 0.6\nmap_Kd tex.png\nd ") +
                              c.opacity + "\n");
        const std::string file = dir.write("quad.obj", s_quadObj);

        testsupport::LogCapture log;
        Scene scene(SceneFileHandler::the().read(file.c_str()));
        GeometryPtr geo = scene.onlyGeometry();
        ASSERT_NE(geo, NullFC);
        EXPECT_EQ(SimpleTexturedMaterialPtr::dcast(geo->getMaterial()), NullFC);
        SimpleMaterialPtr mat = SimpleMaterialPtr::dcast(geo->getMaterial());
        ASSERT_NE(mat, NullFC);
        expectXYZ(mat->getDiffuse(), 0.2f, 0.4f, 0.6f, "diffuse");
        EXPECT_TRUE(log.contains("tex.png")) << log.text();
        EXPECT_NEAR(mat->getTransparency(), c.transparency, s_tol);
        EXPECT_EQ(log.contains("opacity 0"), c.warned) << log.text();
        EXPECT_TRUE(!c.warned || log.contains(file)) << log.text();
    }
}

TEST_F(SceneFileTest, PlyQuadWithVertexColours)
{
    const std::string file = dir.write("quad.ply",
        "ply\n"
        "format ascii 1.0\n"
        "element vertex 4\n"
        "property float x\nproperty float y\nproperty float z\n"
        "property uchar red\nproperty uchar green\nproperty uchar blue\n"
        "element face 1\n"
        "property list uchar int vertex_indices\n"
        "end_header\n"
        "0 0 0 255 0 0\n"
        "1 0 0 0 255 0\n"
        "1 1 0 0 0 255\n"
        "0 1 0 255 255 255\n"
        "4 0 1 2 3\n");

    Scene scene(SceneFileHandler::the().read(file.c_str()));
    GeometryPtr geo = scene.onlyGeometry();
    ASSERT_NE(geo, NullFC);

    ASSERT_EQ(geo->getPositions()->size(), 4u);
    ASSERT_EQ(geo->getIndices()->size(), 6u);
    expectFacingPlusZ(geo);

    // Each corner keeps its own colour: red at the origin, white at (0,1).
    ASSERT_NE(geo->getColors(), NullFC);
    for(UInt32 v = 0; v < 4; ++v)
    {
        const Pnt3f   p = geo->getPositions()->getValue(v);
        const Color3f c = geo->getColors()->getValue(v);
        const Real32 expected[4][3] = { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 }, { 1, 1, 1 } };
        const int corner = p[0] < .5f ? (p[1] < .5f ? 0 : 3) : (p[1] < .5f ? 1 : 2);
        expectXYZ(c, expected[corner][0], expected[corner][1], expected[corner][2], "colour");
    }
}

template <class T> void append(std::string &buffer, std::initializer_list<T> values)
{
    for(T v : values)
        buffer.append(reinterpret_cast<const char *>(&v), sizeof(v));
}

// One triangle with normals, texture coordinates, a textured material, a
// camera and a point light; the buffer goes to triangle.bin.
std::string triangleGltf(const testsupport::TempDir &dir)
{
    std::string buffer;
    append<float>(buffer, { 0, 0, 0,  1, 0, 0,  0, 1, 0 });          // positions, 36
    append<float>(buffer, { 0, 0, 1,  0, 0, 1,  0, 0, 1 });          // normals, 36
    append<float>(buffer, { 0, 0,  1, 0,  0, 1 });                   // texcoords, 24
    append<UInt16>(buffer, { 0, 1, 2 });                             // indices, 6

    dir.write("triangle.bin", buffer);
    std::ostringstream gltf;
    gltf << R"({
  "asset": { "version": "2.0" },
  "extensionsUsed": [ "KHR_lights_punctual" ],
  "extensions": { "KHR_lights_punctual": { "lights": [
    { "type": "point", "color": [ 1.0, 0.5, 0.25 ], "intensity": 1.0 } ] } },
  "scene": 0,
  "scenes": [ { "nodes": [ 0, 1, 2 ] } ],
  "nodes": [
    { "name": "Triangle", "mesh": 0, "translation": [ 0, 0, -5 ] },
    { "name": "Cam", "camera": 0, "translation": [ 0, 1, 10 ] },
    { "name": "Lamp", "translation": [ 1, 2, 3 ],
      "extensions": { "KHR_lights_punctual": { "light": 0 } } } ],
  "cameras": [ { "type": "perspective",
    "perspective": { "yfov": 0.8, "znear": 0.5, "zfar": 200.0, "aspectRatio": 1.5 } } ],
  "meshes": [ { "name": "TriangleMesh", "primitives": [ { "attributes":
    { "POSITION": 0, "NORMAL": 1, "TEXCOORD_0": 2 }, "indices": 3, "material": 0 } ] } ],
  "materials": [ { "name": "Tinted",
    "pbrMetallicRoughness": { "baseColorFactor": [ 0.5, 0.25, 1.0, 1.0 ],
                              "baseColorTexture": { "index": 0 } },
    "emissiveFactor": [ 0.1, 0.2, 0.3 ] } ],
  "textures": [ { "source": 0 } ],
  "images": [ { "uri": "tex.png" } ],
  "buffers": [ { "byteLength": )" << buffer.size() << R"(, "uri": "triangle.bin" } ],
  "bufferViews": [
    { "buffer": 0, "byteOffset": 0,  "byteLength": 36 },
    { "buffer": 0, "byteOffset": 36, "byteLength": 36 },
    { "buffer": 0, "byteOffset": 72, "byteLength": 24 },
    { "buffer": 0, "byteOffset": 96, "byteLength": 6 } ],
  "accessors": [
    { "bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
      "min": [ 0, 0, 0 ], "max": [ 1, 1, 0 ] },
    { "bufferView": 1, "componentType": 5126, "count": 3, "type": "VEC3" },
    { "bufferView": 2, "componentType": 5126, "count": 3, "type": "VEC2" },
    { "bufferView": 3, "componentType": 5123, "count": 3, "type": "SCALAR" } ]
})";
    return gltf.str();
}

TEST_F(SceneFileTest, Gltf2WithTexturedMaterialCameraAndLight)
{
    writeTexture("tex.png");
    const std::string file = dir.write("triangle.gltf", triangleGltf(dir));

    Scene scene(SceneFileHandler::the().read(file.c_str()));
    GeometryPtr geo = scene.onlyGeometry();
    ASSERT_NE(geo, NullFC);
    ASSERT_EQ(geo->getPositions()->size(), 3u);
    ASSERT_EQ(geo->getIndices()->size(), 3u);
    expectFacingPlusZ(geo);
    for(UInt32 i = 0; i < 3; ++i)
    {
        // Texture coordinates equal the positions' x and y here. glTF's v
        // runs down the image; OpenGL's up.
        const UInt32 v = geo->getIndices()->getValue(i);
        const Pnt3f p = geo->getPositions()->getValue(v);
        const Vec2f t = geo->getTexCoords()->getValue(v);
        EXPECT_NEAR(t[0], p[0], s_tol);
        EXPECT_NEAR(t[1], 1 - p[1], s_tol);
    }

    // The node's translation is a Transform above the geometry.
    expectXYZ(worldPoint(geometryNodes(scene.root)[0], Pnt3f(1, 0, 0)), 1, 0, -5, "corner");

    SimpleTexturedMaterialPtr mat = SimpleTexturedMaterialPtr::dcast(geo->getMaterial());
    ASSERT_NE(mat, NullFC);
    expectXYZ(mat->getDiffuse(),  0.5f, 0.25f, 1.f, "diffuse");
    expectXYZ(mat->getEmission(), 0.1f, 0.2f, 0.3f, "emission");
    ASSERT_NE(mat->getImage(), NullFC);
    EXPECT_EQ(mat->getImage()->getWidth(), 3);
    EXPECT_EQ(mat->getImage()->getHeight(), 2);

    // The light wraps the scene so that it lights it, placed by its node.
    PointLightPtr light = PointLightPtr::dcast(scene.root->getCore());
    ASSERT_NE(light, NullFC);
    expectXYZ(light->getDiffuse(), 1.f, .5f, .25f, "light");
    ASSERT_NE(light->getBeacon(), NullFC);
    expectXYZ(worldPoint(light->getBeacon(), light->getPosition()), 1, 2, 3, "lamp");

    // The camera is attached to its beacon, which sits at the camera node
    // and looks down -Z.
    std::vector<CameraPtr> cameras = findCameras(scene.root);
    ASSERT_EQ(cameras.size(), 1u);
    PerspectiveCameraPtr camera = PerspectiveCameraPtr::dcast(cameras[0]);
    ASSERT_NE(camera, NullFC);
    EXPECT_NEAR(camera->getNear(), 0.5f, s_tol);
    EXPECT_NEAR(camera->getFar(), 200.f, 1e-3f);
    EXPECT_NEAR(camera->getFov(), 0.8f, s_tol);
    EXPECT_EQ(camera->getFovMode(), UInt32(PerspectiveCamera::FOV_vertical));
    NodePtr beacon = camera->getBeacon();
    ASSERT_NE(beacon, NullFC);
    EXPECT_EQ(getAttachedCamera(beacon), cameras[0]);
    const Pnt3f eye   = worldPoint(beacon, Pnt3f(0, 0, 0));
    const Pnt3f ahead = worldPoint(beacon, Pnt3f(0, 0, -1));
    expectXYZ(eye, 0, 1, 10, "eye");
    EXPECT_NEAR(ahead[2] - eye[2], -1.f, s_tol);
}

TEST_F(SceneFileTest, PointCloudBecomesIndexedPoints)
{
    const std::string file = dir.write("points.ply",
        "ply\n"
        "format ascii 1.0\n"
        "element vertex 5\n"
        "property float x\nproperty float y\nproperty float z\n"
        "end_header\n"
        "0 0 0\n1 0 0\n2 0 0\n3 0 0\n4 0 0\n");

    Scene scene(SceneFileHandler::the().read(file.c_str()));
    GeometryPtr geo = scene.onlyGeometry();
    ASSERT_NE(geo, NullFC);
    EXPECT_EQ(geo->getTypes()->getValue(0), UInt32(GL_POINTS));
    ASSERT_EQ(geo->getPositions()->size(), 5u);
    ASSERT_EQ(geo->getIndices()->size(), 5u);
    std::set<Real32> xs;
    for(UInt32 i = 0; i < 5; ++i)
        xs.insert(geo->getPositions()->getValue(geo->getIndices()->getValue(i))[0]);
    EXPECT_EQ(xs, (std::set<Real32>{ 0, 1, 2, 3, 4 }));
}

TEST_F(SceneFileTest, ReleasingTheSceneFreesEveryContainer)
{
    writeTexture("tex.png");
    dir.write("quad.mtl", s_quadMtl);
    const std::string file = dir.write("quad.obj", s_quadObj);

    const testsupport::LiveObjects before = testsupport::LiveObjects::countContainers();
    {
        Scene scene(SceneFileHandler::the().read(file.c_str()));
        ASSERT_NE(scene.root, NullFC);
    }
    const testsupport::LiveObjects after = testsupport::LiveObjects::countContainers();
    EXPECT_EQ(testsupport::differences(before, after), "");
}

TEST(SceneFileHandler, SuffixesComeFromTheImporterAndMatchAnyCase)
{
    std::list<const Char8 *> suffixes;
    const int count = SceneFileHandler::the().getSuffixList(suffixes,
                                                            SceneFileType::OSG_READ_SUPPORTED);
    EXPECT_EQ(count, int(suffixes.size()));
    std::set<std::string> known(suffixes.begin(), suffixes.end());
    for(const char *suffix : { "obj", "gltf", "glb", "ply", "3ds", "dae", "fbx", "stl" })
        EXPECT_EQ(known.count(suffix), 1u) << suffix;

    EXPECT_NE(SceneFileHandler::the().getFileType("dir.v2/MODEL.OBJ"), nullptr);
    EXPECT_NE(SceneFileHandler::the().getFileType("Dae"), nullptr);
    EXPECT_EQ(SceneFileHandler::the().getFileType("model.notamodel"), nullptr);
    EXPECT_EQ(SceneFileHandler::the().getFileType("dir.obj/model"), nullptr);
}

// Each case gives NullFC and a warning naming the file, without crashing.
TEST_F(SceneFileTest, UnreadableFilesGiveNullAndAWarningNamingThem)
{
    struct Case { const char *name; std::string contents; bool create; };
    std::string garbage;
    for(int i = 0; i < 4096; ++i)
        garbage += char((i * 7919 + 13) % 251);
    const Case cases[] =
    {
        { "missing.obj",        "",                                         false },
        { "model.notamodel",    "v 0 0 0\n",                                true  },
        { "empty.obj",          "",                                         true  },
        { "empty.gltf",         "",                                         true  },
        { "truncated.ply",      "ply\nformat ascii 1.0\nelement vertex 3\n"
                                "property float x\n",                       true  },
        { "huge-count.ply",     "ply\nformat ascii 1.0\nelement vertex 3000000000\n"
                                "property float x\nend_header\n0\n",       true  },
        { "huge-count.off",     "OFF\n353535235358 1 0\n0 0 0\n3 0 0 0\n",  true  },
        { "truncated.gltf",     "{ \"asset\": { \"version\": \"2.0\" }, \"meshes\": [ {", true },
        { "garbage.3ds",        garbage,                                    true  },
        { "garbage.glb",        garbage,                                    true  },
        { "garbage.dae",        garbage,                                    true  },
        { "garbage.obj",        garbage,                                    true  },
    };
    for(const Case &c : cases)
    {
        const std::string file = c.create ? dir.write(c.name, c.contents) : dir.path(c.name);
        testsupport::LogCapture log;
        NodePtr root = SceneFileHandler::the().read(file.c_str());
        EXPECT_EQ(root, NullFC) << c.name;
        EXPECT_TRUE(log.contains(file)) << c.name << ": " << log.text();
        if(root != NullFC)
        {
            addRefCP(root);
            subRefCP(root);
        }
    }
}

TEST(SceneFileHandler, UnreadableStreamsGiveNullAndAWarning)
{
    struct Case { const char *ext; const char *contents; const char *reason; };
    const Case cases[] =
    {
        { "notamodel", "v 0 0 0\n",                                 NULL },
        { "obj",       "",                                          "no data" },
        { "gltf",      "{ \"asset\": ",                             NULL },
        // Crashes assimp's reader: the process survives, the reason is told.
        { "off",       "OFF\n3 1 0\n0 08 061 0 0\n0 1 0\n3 0 1@2\n\x02OFF\n\n\"00' irr_sceneF\n",
                       "crashed" },
    };
    for(const Case &c : cases)
    {
        std::istringstream is(c.contents);
        testsupport::LogCapture log;
        EXPECT_EQ(SceneFileHandler::the().read(is, c.ext), NullFC) << c.ext;
        EXPECT_TRUE(log.contains(c.ext)) << c.ext << ": " << log.text();
        EXPECT_TRUE(c.reason == NULL || log.contains(c.reason)) << c.ext << ": " << log.text();
    }
}

} // namespace
