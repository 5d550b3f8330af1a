#include "DemoScene.h"

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleTexturedMaterial.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>

using namespace osg;

namespace demo
{

NodePtr makeTransformNode(const Matrix &m)
{
    TransformPtr t = Transform::create();
    beginEditCP(t, Transform::MatrixFieldMask);
    t->setMatrix(m);
    endEditCP(t, Transform::MatrixFieldMask);
    return makeNodeFor(t);
}

NodePtr makeGroupNode(void)
{
    return makeNodeFor(Group::create());
}

void addChild(NodePtr parent, NodePtr child)
{
    beginEditCP(parent, Node::ChildrenFieldMask);
    parent->addChild(child);
    endEditCP(parent, Node::ChildrenFieldMask);
}

SimpleMaterialPtr makeMaterial(Real32 r, Real32 g, Real32 b)
{
    SimpleMaterialPtr m = SimpleMaterial::create();
    beginEditCP(m);
    m->setDiffuse  (Color3f(r, g, b));
    m->setAmbient  (Color3f(0.1f * r, 0.1f * g, 0.1f * b));
    m->setSpecular (Color3f(0.5f, 0.5f, 0.5f));
    m->setShininess(32.f);
    endEditCP(m);
    return m;
}

namespace
{
// A geometry with a material, placed at (x, y, z).
NodePtr place(GeometryPtr geo, MaterialPtr mat, Real32 x, Real32 y, Real32 z)
{
    beginEditCP(geo, Geometry::MaterialFieldMask);
    geo->setMaterial(mat);
    endEditCP(geo, Geometry::MaterialFieldMask);

    Matrix m;
    m.setTranslate(x, y, z);
    NodePtr node = makeTransformNode(m);
    addChild(node, makeNodeFor(geo));
    return node;
}
}

namespace
{
typedef UInt8 RGB[3];

// A square image filled texel by texel; rows from the bottom.
template <class Fill>
ImagePtr makeImage(int width, int height, Fill fill)
{
    ImagePtr image = Image::create();
    beginEditCP(image);
    image->set(Image::OSG_RGB_PF, width, height);
    UInt8 *data = image->editData();
    for(int y = 0; y < height; ++y)
        for(int x = 0; x < width; ++x)
            fill(x, y, data + (std::size_t(y) * std::size_t(width) + std::size_t(x)) * 3);
    endEditCP(image);
    return image;
}

// Cheap per-texel noise, so that tiles and bricks are not flat.
UInt8 grain(int x, int y, int amount)
{
    unsigned h = unsigned(x) * 374761393u + unsigned(y) * 668265263u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return UInt8((h >> 24) % unsigned(amount));
}

void shade(UInt8 *texel, const Color3f &c, int x, int y)
{
    for(int i = 0; i < 3; ++i)
        texel[i] = UInt8(std::min(255.f, c[i] * 230.f + grain(x, y, 25)));
}

// Worn stone tiles in two shades with mortar lines.
ImagePtr makeTileImage(int tiles)
{
    const int size = 512;
    const int tile = size / tiles;
    return makeImage(size, size, [tile](int x, int y, UInt8 *texel) {
        bool joint = x % tile < 2 || y % tile < 2;
        bool dark  = (x / tile + y / tile) % 2 != 0;
        Color3f c = joint ? Color3f(0.35f, 0.33f, 0.3f)
                          : dark ? Color3f(0.55f, 0.5f, 0.45f) : Color3f(0.8f, 0.76f, 0.68f);
        shade(texel, c, x, y);
    });
}

// Running-bond bricks, rows offset by half a brick.
ImagePtr makeBrickImage(int bricksAcross, int rows)
{
    const int width  = 512;
    const int height = 128;
    const int brickW = width / bricksAcross;
    const int brickH = height / rows;
    return makeImage(width, height, [=](int x, int y, UInt8 *texel) {
        int row    = y / brickH;
        int shifted = x + (row % 2) * brickW / 2;
        bool mortar = y % brickH < 2 || shifted % brickW < 2;
        Real32 tint = 0.8f + 0.2f * Real32(grain(shifted / brickW, row, 100)) / 100.f;
        Color3f c = mortar ? Color3f(0.7f, 0.68f, 0.62f)
                           : Color3f(0.62f * tint, 0.28f * tint, 0.2f * tint);
        shade(texel, c, x, y);
    });
}

// Planks for the crates.
ImagePtr makePlankImage(void)
{
    const int size = 128;
    return makeImage(size, size, [](int x, int y, UInt8 *texel) {
        bool gap    = y % 32 < 2 || x < 3 || x > size - 4;
        Real32 ring = 0.85f + 0.15f * std::sin(Real32(x) * 0.3f + Real32(y / 32) * 1.7f);
        Color3f c = gap ? Color3f(0.2f, 0.14f, 0.08f)
                        : Color3f(0.6f * ring, 0.42f * ring, 0.22f * ring);
        shade(texel, c, x, y);
    });
}

SimpleTexturedMaterialPtr makeTextured(ImagePtr image, Real32 specular, Real32 shininess)
{
    SimpleTexturedMaterialPtr m = SimpleTexturedMaterial::create();
    beginEditCP(m);
    m->setImage    (image);
    m->setDiffuse  (Color3f(1.f, 1.f, 1.f));
    m->setSpecular (Color3f(specular, specular, specular));
    m->setShininess(shininess);
    endEditCP(m);
    return m;
}

SimpleMaterialPtr makeEmissive(const Color3f &glow)
{
    SimpleMaterialPtr m = makeMaterial(0.2f * glow[0], 0.2f * glow[1], 0.2f * glow[2]);
    beginEditCP(m);
    m->setEmission(glow);
    endEditCP(m);
    return m;
}

SimpleMaterialPtr makeGlass(const Color3f &tint, Real32 transparency)
{
    SimpleMaterialPtr glass = makeMaterial(tint[0], tint[1], tint[2]);
    beginEditCP(glass);
    glass->setTransparency(transparency);
    // The forward pass sees none of the deferred lights.
    glass->setLit(false);
    endEditCP(glass);
    return glass;
}

NodePtr placeTurned(GeometryPtr geo, MaterialPtr mat, const Vec3f &at,
                    const Vec3f &axis, Real32 angle)
{
    NodePtr node = place(geo, mat, at[0], at[1], at[2]);
    Matrix m;
    m.setTransform(at, Quaternion(axis, angle));
    TransformPtr t = TransformPtr::dcast(node->getCore());
    beginEditCP(t, Transform::MatrixFieldMask);
    t->setMatrix(m);
    endEditCP(t, Transform::MatrixFieldMask);
    return node;
}

// Stone column on a plinth, a lamp globe on top (the lamp lights stand
// there, see lampPosition).
NodePtr makeColumn(const Vec3f &at, MaterialPtr stone, MaterialPtr globe)
{
    NodePtr column = makeGroupNode();
    addChild(column, place(makeBoxGeo(0.8f, 0.3f, 0.8f, 1, 1, 1), stone, at[0], 0.15f, at[2]));
    addChild(column, place(makeCylinderGeo(2.6f, 0.25f, 16, true, false, false), stone,
                           at[0], 1.6f, at[2]));
    addChild(column, place(makeBoxGeo(0.7f, 0.2f, 0.7f, 1, 1, 1), stone, at[0], 3.0f, at[2]));
    addChild(column, place(makeSphereGeo(2, 0.18f), globe, at[0], 3.28f, at[2]));
    return column;
}

const int    s_columnsPerSide = 4;
const Real32 s_columnX        = 5.5f;
const Real32 s_wallDistance   = 8.f;
}

int demoColumnCount(void)
{
    return 2 * s_columnsPerSide;
}

Pnt3f lampPosition(int i)
{
    Real32 side = (i % 2) ? 1.f : -1.f;
    Real32 z    = -6.f + 3.5f * Real32((i / 2) % s_columnsPerSide);
    return Pnt3f(side * s_columnX, 3.28f, z);
}

NodePtr buildObjects(bool withGlass)
{
    NodePtr objects = makeGroupNode();

    // The plane lies in XY; turned so that its normal is +Y.
    GeometryPtr floor = makePlaneGeo(2.f * s_wallDistance, 2.f * s_wallDistance + 4.f, 16, 16);
    addChild(objects, placeTurned(floor, makeTextured(makeTileImage(16), 0.2f, 16.f),
                                  Vec3f(0.f, 0.f, 2.f), Vec3f(1.f, 0.f, 0.f), -Pi / 2.f));

    // Brick walls on three sides; the fourth is where the camera stands.
    SimpleTexturedMaterialPtr brick = makeTextured(makeBrickImage(16, 8), 0.1f, 8.f);
    const Real32 wallHeight = 3.6f;
    const Real32 wallLength = 2.f * s_wallDistance;
    addChild(objects, place(makeBoxGeo(wallLength, wallHeight, 0.4f, 8, 2, 1), brick,
                            0.f, wallHeight / 2.f, -s_wallDistance));
    for(Real32 side : {-1.f, 1.f})
        addChild(objects, placeTurned(makeBoxGeo(wallLength, wallHeight, 0.4f, 8, 2, 1), brick,
                                      Vec3f(side * s_wallDistance, wallHeight / 2.f, 0.f),
                                      Vec3f(0.f, 1.f, 0.f), Pi / 2.f));

    SimpleMaterialPtr stone = makeMaterial(0.78f, 0.75f, 0.7f);
    for(int i = 0; i < demoColumnCount(); ++i)
    {
        const Color3f glow = i % 2 ? Color3f(1.f, 0.8f, 0.5f) : Color3f(0.6f, 0.8f, 1.f);
        Pnt3f lamp = lampPosition(i);
        addChild(objects, makeColumn(Vec3f(lamp[0], 0.f, lamp[2]), stone, makeEmissive(glow)));
    }

    // A fountain in the middle: basin, rim, a glowing ring and a pillar.
    SimpleMaterialPtr basin = makeMaterial(0.5f, 0.52f, 0.55f);
    addChild(objects, place(makeConicalFrustumGeo(0.5f, 1.8f, 1.5f, 32, true, true, false),
                            basin, 0.f, 0.25f, 0.f));
    // A torus lies in XY; laid flat.
    addChild(objects, placeTurned(makeTorusGeo(0.12f, 1.8f, 12, 48), stone,
                                  Vec3f(0.f, 0.5f, 0.f), Vec3f(1.f, 0.f, 0.f), Pi / 2.f));
    addChild(objects, placeTurned(makeTorusGeo(0.06f, 1.f, 8, 48),
                                  makeEmissive(Color3f(0.2f, 0.9f, 1.f)),
                                  Vec3f(0.f, 0.56f, 0.f), Vec3f(1.f, 0.f, 0.f), Pi / 2.f));
    addChild(objects, place(makeCylinderGeo(1.2f, 0.18f, 16, true, true, false), stone,
                            0.f, 1.1f, 0.f));
    addChild(objects, place(makeSphereGeo(3, 0.45f), makeMaterial(0.9f, 0.75f, 0.3f),
                            0.f, 2.1f, 0.f));

    // Crates stacked by the walls.
    SimpleTexturedMaterialPtr planks = makeTextured(makePlankImage(), 0.05f, 4.f);
    const Vec3f crates[] = {{-6.8f, 0.5f, -6.8f}, {-5.8f, 0.5f, -6.9f}, {-6.4f, 1.5f, -6.8f},
                            {6.7f, 0.4f, 2.f},    {6.6f, 0.4f, 3.f},    {3.f, 0.35f, -6.9f}};
    for(std::size_t i = 0; i < sizeof(crates) / sizeof(crates[0]); ++i)
    {
        Real32 size = crates[i][1] * 2.f;
        addChild(objects, placeTurned(makeBoxGeo(size, size, size, 1, 1, 1), planks, crates[i],
                                      Vec3f(0.f, 1.f, 0.f), 0.3f * Real32(i)));
    }

    // Polished spheres in a ring around the fountain, hues around the circle.
    for(int i = 0; i < 8; ++i)
    {
        Real32  angle = 2.f * Pi * (Real32(i) + 0.5f) / 8.f;
        Color3f hue;
        hue.setValuesHSV(45.f * Real32(i), 0.75f, 0.9f);
        SimpleMaterialPtr polished = makeMaterial(hue[0], hue[1], hue[2]);
        beginEditCP(polished);
        polished->setSpecular (Color3f(0.9f, 0.9f, 0.9f));
        polished->setShininess(96.f);
        endEditCP(polished);
        Real32 radius = 0.3f + 0.05f * Real32(i % 3);
        addChild(objects, place(makeSphereGeo(3, radius), polished,
                                3.3f * std::cos(angle), radius, 3.3f * std::sin(angle)));
    }

    // Cones and a torus near the back wall, and a pair of glowing cubes.
    addChild(objects, place(makeConeGeo(1.4f, 0.5f, 24, true, true), makeMaterial(0.3f, 0.6f, 0.3f),
                            -3.f, 0.7f, -5.5f));
    addChild(objects, place(makeConeGeo(1.f, 0.4f, 24, true, true), makeMaterial(0.7f, 0.3f, 0.5f),
                            -2.f, 0.5f, -6.3f));
    addChild(objects, placeTurned(makeTorusGeo(0.2f, 0.7f, 16, 32), makeMaterial(0.8f, 0.2f, 0.2f),
                                  Vec3f(2.5f, 0.9f, -5.f), Vec3f(0.f, 1.f, 0.f), 0.6f));
    for(Real32 side : {-1.f, 1.f})
        addChild(objects, placeTurned(makeBoxGeo(0.4f, 0.4f, 0.4f, 1, 1, 1),
                                      makeEmissive(Color3f(1.f, 0.3f, 0.6f)),
                                      Vec3f(side * 2.6f, 0.35f, 5.f), Vec3f(1.f, 1.f, 0.f), 0.7f));

    if(withGlass)
    {
        // Glass panes and a glass globe, drawn by the forward pass.
        for(Real32 side : {-1.f, 1.f})
            addChild(objects, placeTurned(makeBoxGeo(2.4f, 1.8f, 0.05f, 1, 1, 1),
                                          makeGlass(Color3f(0.4f, 0.7f, 1.f), 0.65f),
                                          Vec3f(side * 3.2f, 0.9f, 1.2f),
                                          Vec3f(0.f, 1.f, 0.f), side * 0.5f));
        addChild(objects, place(makeSphereGeo(3, 0.6f), makeGlass(Color3f(0.9f, 0.95f, 0.6f), 0.5f),
                                1.5f, 0.6f, 4.f));
    }
    return objects;
}

PerspectiveCameraPtr makeCamera(NodePtr root)
{
    Matrix camMatrix;
    MatrixLookAt(camMatrix, Pnt3f(0.f, 5.5f, 13.f), Pnt3f(0.f, 0.8f, -1.5f), Vec3f(0.f, 1.f, 0.f));
    NodePtr camBeacon = makeTransformNode(camMatrix);
    addChild(root, camBeacon);

    PerspectiveCameraPtr camera = PerspectiveCamera::create();
    beginEditCP(camera);
    camera->setBeacon(camBeacon);
    camera->setFov(osgdegree2rad(50.f));
    camera->setNear(0.1f);
    camera->setFar(100.f);
    endEditCP(camera);
    return camera;
}

Pnt3f pointLightPosition(int i, int n)
{
    Real32 angle = 2.f * Pi * Real32(i) / Real32(n > 0 ? n : 1);
    return Pnt3f(4.f * std::cos(angle), 3.f, 4.f * std::sin(angle));
}

namespace
{
// Saturated colours around the hue circle.
Color4f hueColor(Real32 hue, Real32 intensity)
{
    Color3f c;
    c.setValuesHSV(hue * 360.f, 0.7f, intensity);
    return Color4f(c[0], c[1], c[2], 1.f);
}

NodePtr lightBeacon(NodePtr root, const Pnt3f &position)
{
    Matrix m;
    m.setTranslate(position[0], position[1], position[2]);
    NodePtr beacon = makeTransformNode(m);
    addChild(root, beacon);
    return beacon;
}
}

std::vector<LightPtr> makeDemoLights(NodePtr root, int pointLights, int spotLights, bool sun,
                                     bool shadows)
{
    std::vector<LightPtr> lights;

    if(sun)
    {
        // Low evening sun, so that the columns throw long shadows.
        DirectionalLightPtr light = DirectionalLight::create();
        beginEditCP(light);
        light->setDirection(0.7f, 1.f, 0.45f);
        light->setDiffuse  (Color4f(0.5f, 0.45f, 0.4f, 1.f));
        light->setShadowIntensity(shadows ? 0.3f : 1.f);
        light->setSpecular (Color4f(0.2f, 0.2f, 0.2f, 1.f));
        light->setBeacon   (lightBeacon(root, Pnt3f(0.f, 0.f, 0.f)));
        endEditCP(light);
        lights.push_back(light);
    }

    // The first lamp hangs beside the fountain; the next stand in the column
    // globes; the rest circle the fountain low down and run along the walls.
    // The quadratic term keeps each light's volume to a few metres.
    const int columns = demoColumnCount();
    for(int i = 0; i < pointLights; ++i)
    {
        PointLightPtr light = PointLight::create();
        beginEditCP(light);
        light->setPosition   (0.f, 0.f, 0.f);
        light->setSpecular   (Color4f(0.6f, 0.6f, 0.6f, 1.f));
        light->setShadowIntensity(1.f);

        Pnt3f position;
        if(i == 0)
        {
            position.setValues(1.6f, 1.7f, 2.f);
            light->setDiffuse    (Color4f(1.f, 0.85f, 0.6f, 1.f));
            light->setAttenuation(1.f, 0.f, 0.15f);
            light->setShadowIntensity(shadows ? 0.2f : 1.f);
        }
        else if(i <= columns)
        {
            position = lampPosition(i - 1);
            // A little below the globe, which would hide the light's source.
            position[1] -= 0.3f;
            light->setDiffuse(i % 2 ? Color4f(0.6f, 0.8f, 1.f, 1.f)
                                    : Color4f(1.f, 0.8f, 0.5f, 1.f));
            light->setAttenuation(1.f, 0.f, 0.4f);
        }
        else
        {
            const int    k      = i - columns - 1;
            const int    n      = pointLights - columns - 1;
            const Real32 angle  = 2.f * Pi * (Real32(k) + 0.5f * (k % 2)) / Real32(n);
            const Real32 radius = (k % 2) ? 2.4f : 6.5f;
            const Real32 height = (k % 2) ? 0.35f : 1.f;
            position.setValues(radius * std::cos(angle), height, radius * std::sin(angle));
            light->setDiffuse    (hueColor(Real32(k) / Real32(n), 1.f));
            light->setAttenuation(1.f, 0.f, 1.2f);
        }
        light->setBeacon(lightBeacon(root, position));
        endEditCP(light);
        lights.push_back(light);
    }

    // Spot lights on the wall tops, each aimed across the yard.
    for(int i = 0; i < spotLights; ++i)
    {
        Real32 angle = 2.f * Pi * (Real32(i) + 0.25f) / Real32(spotLights);
        Pnt3f  from(7.f * std::cos(angle), 3.8f, 7.f * std::sin(angle));
        Pnt3f  target(-2.f * std::cos(angle + 0.5f), 0.f, -2.f * std::sin(angle + 0.5f));
        Vec3f  direction = target - from;
        direction.normalize();

        SpotLightPtr light = SpotLight::create();
        beginEditCP(light);
        light->setPosition    (0.f, 0.f, 0.f);
        light->setDirection   (direction);
        light->setSpotCutOff  (osgdegree2rad(16.f));
        light->setSpotExponent(4.f);
        light->setDiffuse     (hueColor(Real32(i) / Real32(spotLights) + 0.5f / spotLights,
                                        1.f));
        light->setSpecular    (Color4f(0.8f, 0.8f, 0.8f, 1.f));
        light->setAttenuation (1.f, 0.f, 0.02f);
        light->setShadowIntensity(shadows && i == 0 ? 0.2f : 1.f);
        light->setBeacon      (lightBeacon(root, from));
        endEditCP(light);
        lights.push_back(light);
    }

    for(LightPtr light : lights)
        addRefCP(light);
    return lights;
}

bool boundingSphere(NodePtr root, Pnt3f &center, Real32 &radius)
{
    const DynamicVolume &volume = root->getVolume(true);
    if(volume.isEmpty())
        return false;
    Pnt3f lo, hi;
    volume.getBounds(lo, hi);
    const Real32 diagonal = (hi - lo).length();
    if(!(diagonal > 0.f) || !std::isfinite(diagonal))
        return false;
    center = lo + (hi - lo) * 0.5f;
    radius = diagonal * 0.5f;
    return true;
}

PerspectiveCameraPtr makeFramingCamera(NodePtr parent, const Pnt3f &center, Real32 radius)
{
    const Real32 fov      = osgdegree2rad(50.f);
    const Real32 distance = 1.1f * radius / std::sin(fov / 2.f);
    // Off every axis plane, so that a flat model lying in one is not seen
    // edge-on.
    Vec3f        back(0.45f, 0.35f, 1.f);
    back.normalize();
    Matrix placement;
    MatrixLookAt(placement, center + back * distance, center, Vec3f(0.f, 1.f, 0.f));
    NodePtr beacon = makeTransformNode(placement);
    addChild(parent, beacon);

    PerspectiveCameraPtr camera = PerspectiveCamera::create();
    beginEditCP(camera);
    camera->setBeacon(beacon);
    camera->setFov   (fov);
    camera->setNear  (distance - 1.05f * radius);
    camera->setFar   (distance + 1.05f * radius);
    endEditCP(camera);
    return camera;
}

std::vector<LightPtr> makeLightsAround(NodePtr root, const Pnt3f &center, Real32 radius,
                                       int pointLights, int spotLights, bool sun, bool shadows)
{
    std::vector<LightPtr> lights;
    if(!(radius > 0.f))
        radius = 1.f;

    if(sun)
    {
        DirectionalLightPtr light = DirectionalLight::create();
        beginEditCP(light);
        light->setDirection(0.5f, 1.f, 0.7f);
        light->setDiffuse  (Color4f(0.5f, 0.5f, 0.5f, 1.f));
        light->setSpecular (Color4f(0.3f, 0.3f, 0.3f, 1.f));
        light->setShadowIntensity(shadows ? 0.35f : 1.f);
        light->setBeacon   (lightBeacon(root, center));
        endEditCP(light);
        lights.push_back(light);
    }

    // A ring above the model's middle; the attenuation scales with the
    // model, so that a light fades out over about its size.
    const Real32 quadratic = 4.f / (radius * radius);
    // However many lights, together about as bright as a few: a model's
    // white material would otherwise burn out.
    const Real32 pointShare = std::min(1.f, 6.f / Real32(std::max(pointLights, 1)));
    const Real32 spotShare  = std::min(1.f, 3.f / Real32(std::max(spotLights, 1)));
    for(int i = 0; i < pointLights; ++i)
    {
        Real32 angle  = 2.f * Pi * Real32(i) / Real32(pointLights);
        Real32 height = (i % 2) ? 0.2f : 0.6f;
        Pnt3f  position(center[0] + 0.9f * radius * std::cos(angle),
                        center[1] + height * radius,
                        center[2] + 0.9f * radius * std::sin(angle));

        PointLightPtr light = PointLight::create();
        beginEditCP(light);
        light->setPosition   (0.f, 0.f, 0.f);
        light->setDiffuse    (hueColor(Real32(i) / Real32(pointLights), 0.8f * pointShare));
        light->setSpecular   (Color4f(0.5f, 0.5f, 0.5f, 1.f));
        light->setAttenuation(1.f, 0.f, quadratic);
        light->setShadowIntensity(1.f);
        light->setBeacon     (lightBeacon(root, position));
        endEditCP(light);
        lights.push_back(light);
    }

    for(int i = 0; i < spotLights; ++i)
    {
        Real32 angle = 2.f * Pi * (Real32(i) + 0.5f) / Real32(spotLights);
        Pnt3f  from(center[0] + 1.5f * radius * std::cos(angle), center[1] + 1.5f * radius,
                    center[2] + 1.5f * radius * std::sin(angle));
        Vec3f  direction = center - from;
        direction.normalize();

        SpotLightPtr light = SpotLight::create();
        beginEditCP(light);
        light->setPosition    (0.f, 0.f, 0.f);
        light->setDirection   (direction);
        light->setSpotCutOff  (osgdegree2rad(25.f));
        light->setSpotExponent(2.f);
        light->setDiffuse     (hueColor(Real32(i) / Real32(spotLights) + 0.5f / spotLights,
                                        spotShare));
        light->setSpecular    (Color4f(0.6f, 0.6f, 0.6f, 1.f));
        light->setAttenuation (1.f, 0.f, 0.2f / (radius * radius));
        light->setShadowIntensity(shadows && i == 0 ? 0.3f : 1.f);
        light->setBeacon      (lightBeacon(root, from));
        endEditCP(light);
        lights.push_back(light);
    }

    for(LightPtr light : lights)
        addRefCP(light);
    return lights;
}

bool writeFramebufferPng(const std::string &path, int width, int height)
{
    ImagePtr image = Image::create();
    addRefCP(image);
    beginEditCP(image);
    image->set(Image::OSG_RGB_PF, width, height);
    endEditCP(image);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, image->editData());
    bool written = image->write(path.c_str());
    subRefCP(image);
    return written;
}

bool parseInt(const char *text, int minValue, int maxValue, int &result)
{
    errno = 0;
    char *end = NULL;
    long value = std::strtol(text, &end, 10);
    if(errno != 0 || end == text || *end != '\0' || value < minValue || value > maxValue)
        return false;
    result = int(value);
    return true;
}

bool parseReal(const char *text, Real32 &result)
{
    errno = 0;
    char *end = NULL;
    float value = std::strtof(text, &end);
    if(errno != 0 || end == text || *end != '\0' || !std::isfinite(value))
        return false;
    result = value;
    return true;
}

} // namespace demo
