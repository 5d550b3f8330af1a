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

namespace
{
const Real32 s_streetHalfWidth  = 20.f;
const Real32 s_streetHalfLength = 40.f;
const Real32 s_pavingTile       = 8.f;
const Real32 s_houseDepth       = 6.f;
const Real32 s_kerbX            = 16.f;

// A fixed sequence, so that the street and its lights are the same in
// every run and on every machine.
class StreetRandom
{
  public:
    explicit StreetRandom(UInt32 seed) : state(seed) {}

    // Uniform in [lo, hi).
    Real32 next(Real32 lo, Real32 hi)
    {
        state = state * 1664525u + 1013904223u;
        return lo + (hi - lo) * Real32(state >> 8) / Real32(1u << 24);
    }

  private:
    UInt32 state;
};
}

Real32 streetWidth(void)
{
    return 2.f * s_streetHalfWidth;
}

NodePtr buildStreet(void)
{
    NodePtr street = makeGroupNode();
    StreetRandom random(20240611u);

    // Paving in tiles rather than one plane: a light then reaches only the
    // few tiles around it, for forward rendering as for the volumes.
    SimpleTexturedMaterialPtr paving = makeTextured(makeTileImage(8), 0.2f, 16.f);
    for(Real32 x = -s_streetHalfWidth; x < s_streetHalfWidth; x += s_pavingTile)
        for(Real32 z = -s_streetHalfLength; z < s_streetHalfLength; z += s_pavingTile)
            addChild(street, placeTurned(makePlaneGeo(s_pavingTile, s_pavingTile, 4, 4), paving,
                                         Vec3f(x + s_pavingTile / 2.f, 0.f,
                                               z + s_pavingTile / 2.f),
                                         Vec3f(1.f, 0.f, 0.f), -Pi / 2.f));

    // Houses on both sides, brick or painted, each under a stone cornice.
    SimpleTexturedMaterialPtr brick = makeTextured(makeBrickImage(8, 12), 0.1f, 8.f);
    SimpleMaterialPtr stone = makeMaterial(0.78f, 0.75f, 0.7f);
    const SimpleMaterialPtr paint[] = {makeMaterial(0.85f, 0.8f, 0.65f),
                                       makeMaterial(0.65f, 0.75f, 0.8f),
                                       makeMaterial(0.8f, 0.6f, 0.55f)};
    const int    housesPerSide = 9;
    const Real32 houseWidth    = 2.f * s_streetHalfLength / Real32(housesPerSide);
    for(Real32 side : {-1.f, 1.f})
    {
        const Real32 x = side * (s_streetHalfWidth + s_houseDepth / 2.f);
        for(int i = 0; i < housesPerSide; ++i)
        {
            const Real32 z      = -s_streetHalfLength + houseWidth * (Real32(i) + 0.5f);
            const Real32 height = random.next(6.f, 11.f);
            MaterialPtr  walls  = i % 3 == 1 ? MaterialPtr(paint[(i / 3) % 3]) : MaterialPtr(brick);
            addChild(street, place(makeBoxGeo(s_houseDepth, height, houseWidth - 0.3f, 2, 2, 2),
                                   walls, x, height / 2.f, z));
            addChild(street, place(makeBoxGeo(s_houseDepth + 0.6f, 0.4f, houseWidth - 0.1f,
                                              1, 1, 1),
                                   stone, x - side * 0.3f, height + 0.2f, z));
        }
    }

    // Lamp columns along the kerbs, every other globe warm.
    const SimpleMaterialPtr globes[] = {makeEmissive(Color3f(1.f, 0.8f, 0.5f)),
                                        makeEmissive(Color3f(0.6f, 0.8f, 1.f))};
    int column = 0;
    for(Real32 side : {-1.f, 1.f})
        for(Real32 z = -36.f; z <= 36.f; z += 8.f, ++column)
            addChild(street, makeColumn(Vec3f(side * s_kerbX, 0.f, z), stone,
                                        globes[column % 2]));

    // The fountain on the square in the middle.
    SimpleMaterialPtr basin = makeMaterial(0.5f, 0.52f, 0.55f);
    addChild(street, place(makeConicalFrustumGeo(0.5f, 2.2f, 1.9f, 32, true, true, false),
                           basin, 0.f, 0.25f, 0.f));
    addChild(street, placeTurned(makeTorusGeo(0.14f, 2.2f, 12, 48), stone,
                                 Vec3f(0.f, 0.5f, 0.f), Vec3f(1.f, 0.f, 0.f), Pi / 2.f));
    addChild(street, place(makeCylinderGeo(1.4f, 0.2f, 16, true, true, false), stone,
                           0.f, 1.2f, 0.f));
    addChild(street, place(makeSphereGeo(3, 0.5f), makeMaterial(0.9f, 0.75f, 0.3f),
                           0.f, 2.4f, 0.f));

    // Crates stacked in threes in front of the houses.
    SimpleTexturedMaterialPtr planks = makeTextured(makePlankImage(), 0.05f, 4.f);
    for(int i = 0; i < 8; ++i)
    {
        const Real32 side = i % 2 ? 1.f : -1.f;
        const Real32 x    = side * (s_streetHalfWidth - 1.2f);
        const Real32 z    = -34.f + 9.5f * Real32(i) + random.next(-1.f, 1.f);
        const Vec3f  at[] = {{x, 0.5f, z}, {x, 0.5f, z + 1.1f}, {x, 1.5f, z + 0.5f}};
        for(int k = 0; k < 3; ++k)
            addChild(street, placeTurned(makeBoxGeo(1.f, 1.f, 1.f, 1, 1, 1), planks, at[k],
                                         Vec3f(0.f, 1.f, 0.f), random.next(-0.3f, 0.3f)));
    }

    // Polished spheres along the street, hues around the circle.
    for(int i = 0; i < 12; ++i)
    {
        Color3f hue;
        hue.setValuesHSV(30.f * Real32(i), 0.75f, 0.9f);
        SimpleMaterialPtr polished = makeMaterial(hue[0], hue[1], hue[2]);
        beginEditCP(polished);
        polished->setSpecular (Color3f(0.9f, 0.9f, 0.9f));
        polished->setShininess(96.f);
        endEditCP(polished);
        const Real32 radius = random.next(0.35f, 0.7f);
        Real32       x      = random.next(-12.f, 12.f);
        Real32       z      = random.next(-37.f, 37.f);
        if(i < 4)
        {
            // Four on the square, just outside the lamps around the fountain.
            const Real32 angle = 2.f * Pi * (Real32(i) + 0.3f) / 4.f;
            x = 3.9f * std::cos(angle);
            z = 3.9f * std::sin(angle);
        }
        else if(std::fabs(z) < 5.f)
        {
            z += 10.f;
        }
        addChild(street, place(makeSphereGeo(3, radius), polished, x, radius, z));
    }
    return street;
}

PerspectiveCameraPtr makeStreetCamera(NodePtr root)
{
    Matrix camMatrix;
    MatrixLookAt(camMatrix, Pnt3f(0.f, 13.f, 46.f), Pnt3f(0.f, 0.f, -6.f),
                 Vec3f(0.f, 1.f, 0.f));
    NodePtr camBeacon = makeTransformNode(camMatrix);
    addChild(root, camBeacon);

    PerspectiveCameraPtr camera = PerspectiveCamera::create();
    beginEditCP(camera);
    camera->setBeacon(camBeacon);
    camera->setFov(osgdegree2rad(50.f));
    camera->setNear(0.5f);
    camera->setFar(150.f);
    endEditCP(camera);
    return camera;
}

std::vector<LightPtr> makeStreetLights(NodePtr root, int count)
{
    // The quadratic term alone reaches 1/1000 at the range, so that the
    // light volumes end a tenth of the street's width from their lights.
    // Bright lights make up for it, hung low to light pools on the paving
    // and the objects beside them; not brighter, as what a volume cuts off
    // at its edge grows with the brightness (here 14 / 1211, 3/255).
    const Real32 range     = 0.1f * streetWidth();
    const Real32 quadratic = 1.f / (0.001f * range * range);
    const Real32 intensity = 14.f;
    const int    ring      = 10;

    std::vector<LightPtr> lights;
    StreetRandom random(977u);
    for(int i = 0; i < count; ++i)
    {
        const Color4f hue = hueColor(random.next(0.f, 1.f), 1.f);
        const Color4f diffuse(intensity * hue[0], intensity * hue[1], intensity * hue[2], 1.f);
        const Color4f specular(0.6f * diffuse[0], 0.6f * diffuse[1], 0.6f * diffuse[2], 1.f);

        LightPtr light;
        Pnt3f    position;
        const bool spot = i >= ring && (i - ring) % 6 == 1;
        if(spot)
        {
            // Low on the street, shining across the kerb onto a house front.
            const Real32 side = random.next(0.f, 1.f) < 0.5f ? -1.f : 1.f;
            position.setValues(side * (s_streetHalfWidth - 0.8f), 0.9f,
                               random.next(-38.f, 38.f));
            Vec3f direction(side, -0.35f, 0.f);
            direction.normalize();
            SpotLightPtr s = SpotLight::create();
            beginEditCP(s);
            s->setDirection   (direction);
            s->setSpotCutOff  (osgdegree2rad(35.f));
            s->setSpotExponent(2.f);
            endEditCP(s);
            light = s;
        }
        else
        {
            if(i < ring)
            {
                const Real32 angle = 2.f * Pi * Real32(i) / Real32(ring);
                position.setValues(3.f * std::cos(angle), 0.6f, 3.f * std::sin(angle));
            }
            else
            {
                position.setValues(random.next(-18.f, 18.f), random.next(0.4f, 1.f),
                                   random.next(-39.f, 39.f));
            }
            light = PointLight::create();
        }

        // A spot light is a point light too.
        PointLightPtr point = PointLightPtr::dcast(light);
        beginEditCP(point);
        point->setPosition   (0.f, 0.f, 0.f);
        point->setDiffuse    (diffuse);
        point->setSpecular   (specular);
        point->setAttenuation(1.f, 0.f, quadratic);
        point->setShadowIntensity(1.f);
        point->setBeacon     (lightBeacon(root, position));
        endEditCP(point);
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
