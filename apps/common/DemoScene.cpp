#include "DemoScene.h"

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGTransform.h>

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

NodePtr buildObjects(bool withGlass)
{
    NodePtr objects = makeGroupNode();

    // The plane lies in XY; turned so that its normal is +Y.
    GeometryPtr floor = makePlaneGeo(12.f, 12.f, 8, 8);
    beginEditCP(floor, Geometry::MaterialFieldMask);
    floor->setMaterial(makeMaterial(0.7f, 0.7f, 0.7f));
    endEditCP(floor, Geometry::MaterialFieldMask);
    Matrix floorMatrix;
    floorMatrix.setRotate(Quaternion(Vec3f(1.f, 0.f, 0.f), -Pi / 2.f));
    NodePtr floorNode = makeTransformNode(floorMatrix);
    addChild(floorNode, makeNodeFor(floor));
    addChild(objects, floorNode);

    addChild(objects, place(makeSphereGeo(3, 0.8f), makeMaterial(0.9f, 0.2f, 0.2f), -2.f, 0.8f,  0.f));
    addChild(objects, place(makeSphereGeo(3, 0.6f), makeMaterial(0.2f, 0.8f, 0.3f),  0.f, 0.6f,  1.5f));
    addChild(objects, place(makeSphereGeo(3, 0.7f), makeMaterial(0.2f, 0.3f, 0.9f),  2.f, 0.7f, -0.5f));
    addChild(objects, place(makeBoxGeo(1.2f, 1.2f, 1.2f, 1, 1, 1),
                            makeMaterial(0.9f, 0.8f, 0.2f), 0.3f, 0.6f, -2.f));

    if(withGlass)
    {
        SimpleMaterialPtr glass = makeMaterial(0.3f, 0.6f, 1.0f);
        beginEditCP(glass);
        glass->setTransparency(0.6f);
        glass->setLit(false);
        endEditCP(glass);
        addChild(objects, place(makePlaneGeo(2.5f, 1.5f, 1, 1), glass, 1.2f, 0.9f, 2.5f));
    }
    return objects;
}

PerspectiveCameraPtr makeCamera(NodePtr root)
{
    Matrix camMatrix;
    MatrixLookAt(camMatrix, Pnt3f(0.f, 4.f, 9.f), Pnt3f(0.f, 0.5f, 0.f), Vec3f(0.f, 1.f, 0.f));
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
        DirectionalLightPtr light = DirectionalLight::create();
        beginEditCP(light);
        light->setDirection(0.4f, 1.f, 0.6f);
        light->setDiffuse  (Color4f(0.45f, 0.45f, 0.5f, 1.f));
        light->setShadowIntensity(shadows ? 0.3f : 1.f);
        light->setSpecular (Color4f(0.2f, 0.2f, 0.2f, 1.f));
        light->setBeacon   (lightBeacon(root, Pnt3f(0.f, 0.f, 0.f)));
        endEditCP(light);
        lights.push_back(light);
    }

    // Two rings at different heights; the quadratic term keeps each light's
    // volume to a few metres.
    for(int i = 0; i < pointLights; ++i)
    {
        Real32 angle  = 2.f * Pi * (Real32(i) + 0.5f * (i % 2)) / Real32(pointLights);
        Real32 radius = (i % 2) ? 2.5f : 4.5f;
        Real32 height = (i % 2) ? 0.4f : 1.2f;

        Pnt3f position(radius * std::cos(angle), height, radius * std::sin(angle));

        PointLightPtr light = PointLight::create();
        beginEditCP(light);
        light->setPosition   (0.f, 0.f, 0.f);
        light->setDiffuse    (hueColor(Real32(i) / Real32(pointLights), 1.f));
        light->setSpecular   (Color4f(0.6f, 0.6f, 0.6f, 1.f));
        light->setAttenuation(1.f, 0.f, 1.2f);
        light->setShadowIntensity(1.f);
        if(shadows && i == 0)
        {
            // A brighter lamp among the objects, so that its shadows fall
            // on the floor all around it.
            position.setValues(-0.6f, 1.9f, 0.6f);
            light->setDiffuse        (Color4f(1.f, 0.85f, 0.6f, 1.f));
            light->setAttenuation    (1.f, 0.f, 0.12f);
            light->setShadowIntensity(0.2f);
        }
        light->setBeacon(lightBeacon(root, position));
        endEditCP(light);
        lights.push_back(light);
    }

    for(int i = 0; i < spotLights; ++i)
    {
        Real32 angle = 2.f * Pi * (Real32(i) + 0.25f) / Real32(spotLights);
        Pnt3f  from(5.f * std::cos(angle), 4.f, 5.f * std::sin(angle));
        // Each aims at its own spot on the floor, across the objects.
        Pnt3f  target(-2.5f * std::cos(angle + 0.6f), 0.f, -2.5f * std::sin(angle + 0.6f));
        Vec3f  toCenter = target - from;
        toCenter.normalize();

        SpotLightPtr light = SpotLight::create();
        beginEditCP(light);
        light->setPosition    (0.f, 0.f, 0.f);
        light->setDirection   (toCenter);
        light->setSpotCutOff  (osgdegree2rad(18.f));
        light->setSpotExponent(4.f);
        light->setDiffuse     (hueColor(Real32(i) / Real32(spotLights) + 0.5f / spotLights,
                                        0.9f));
        light->setSpecular    (Color4f(0.8f, 0.8f, 0.8f, 1.f));
        light->setAttenuation (1.f, 0.f, 0.03f);
        light->setShadowIntensity(shadows && i == 0 ? 0.2f : 1.f);
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
