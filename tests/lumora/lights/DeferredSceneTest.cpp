#include "DeferredSceneTest.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <cmath>

using namespace osg;

namespace lighttest
{

void DeferredSceneTest::SetUp()
{
    GLTest::SetUp();

    window = PassiveWindow::create();
    addRefCP(window);
    window->init();
    window->resize(Size, Size);

    root = makeNodeFor(Group::create());
    addRefCP(root);

    Matrix m;
    m.setTranslate(0, 0, 5);
    TransformPtr beaconCore = Transform::create();
    beaconCore->setMatrix(m);
    cameraBeacon = makeNodeFor(beaconCore);
    beginEditCP(root, Node::ChildrenFieldMask);
    root->addChild(cameraBeacon);
    endEditCP(root, Node::ChildrenFieldMask);

    camera = PerspectiveCamera::create();
    addRefCP(camera);
    beginEditCP(camera);
    camera->setBeacon(cameraBeacon);
    camera->setFov(deg2rad(60.0f));
    camera->setNear(1.0f);
    camera->setFar(10.0f);
    endEditCP(camera);

    background = SolidBackground::create();
    addRefCP(background);
    beginEditCP(background);
    background->setColor(Color3f(0, 0, 0));
    background->setAlpha(0.0f);
    endEditCP(background);

    viewport = DeferredRenderingViewport::create();
    addRefCP(viewport);
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(background);
    viewport->setRoot(root);
    viewport->setSize(0, 0, 1, 1);
    endEditCP(viewport);
    beginEditCP(window, Window::PortFieldMask);
    window->addPort(viewport);
    endEditCP(window, Window::PortFieldMask);

    action = RenderAction::create();
}

void DeferredSceneTest::TearDown()
{
    delete action;
    beginEditCP(window, Window::PortFieldMask);
    window->subPort(viewport);
    endEditCP(window, Window::PortFieldMask);
    subRefCP(viewport);
    subRefCP(background);
    subRefCP(camera);
    subRefCP(root);
    subRefCP(window);
    GLTest::TearDown();
}

SimpleMaterialPtr DeferredSceneTest::material(const Color3f &diffuse, const Color3f &specular,
                                              Real32 shininess, const Color3f &emission)
{
    SimpleMaterialPtr mat = SimpleMaterial::create();
    beginEditCP(mat);
    mat->setDiffuse  (diffuse);
    mat->setAmbient  (Color3f(0, 0, 0));
    mat->setSpecular (specular);
    mat->setShininess(shininess);
    mat->setEmission (emission);
    endEditCP(mat);
    return mat;
}

NodePtr DeferredSceneTest::addPlane(Real32 size, Real32 z, MaterialPtr mat)
{
    GeometryPtr geometry = makePlaneGeo(size, size, 1, 1);
    beginEditCP(geometry, Geometry::MaterialFieldMask);
    geometry->setMaterial(mat);
    endEditCP(geometry, Geometry::MaterialFieldMask);

    Matrix m;
    m.setTranslate(0, 0, z);
    TransformPtr transform = Transform::create();
    beginEditCP(transform, Transform::MatrixFieldMask);
    transform->setMatrix(m);
    endEditCP(transform, Transform::MatrixFieldMask);

    NodePtr node = makeNodeFor(transform);
    beginEditCP(node, Node::ChildrenFieldMask);
    node->addChild(makeNodeFor(geometry));
    endEditCP(node, Node::ChildrenFieldMask);

    beginEditCP(root, Node::ChildrenFieldMask);
    root->addChild(node);
    endEditCP(root, Node::ChildrenFieldMask);
    return node;
}

void DeferredSceneTest::renderFrame()
{
    viewport->prepareScene(root);
    window->render(action);
}

testsupport::RGBAf DeferredSceneTest::lit(int x, int y)
{
    TextureChunkPtr texture = viewport->getLightTarget().getTargetTexture(0);
    glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
    testsupport::RGBAf texel = testsupport::readTexelFloat(x, y);
    glBindTexture(GL_TEXTURE_2D, 0);
    return texel;
}

Pnt3f DeferredSceneTest::pixelOnPlane(int x, int y, Real32 z) const
{
    const Real32 t      = std::tan(deg2rad(30.0f));
    const Real32 ndcX   = 2.0f * (x + 0.5f) / Size - 1.0f;
    const Real32 ndcY   = 2.0f * (y + 0.5f) / Size - 1.0f;
    const Real32 depth  = 5.0f - z;
    return Pnt3f(ndcX * t * depth, ndcY * t * depth, z);
}

Phong phong(const Pnt3f &P, const Vec3f &N, const Pnt3f &E, const Vec3f &L,
            const Color3f &materialDiffuse, const Color3f &materialSpecular, Real32 shininess,
            const Color3f &lightDiffuse, const Color3f &lightSpecular)
{
    Vec3f n = N;
    n.normalize();
    Vec3f v = E - P;
    v.normalize();

    Real32 nDotL = std::max(0.0f, n.dot(L));
    Vec3f  r     = n * (2.0f * n.dot(L)) - L;
    r.normalize();
    Real32 rDotV = std::pow(std::max(0.0f, r.dot(v)), std::max(1.0f, shininess));

    Phong result;
    for(int i = 0; i < 3; ++i)
    {
        result.diffuse[i]  = nDotL * materialDiffuse[i]  * lightDiffuse[i];
        result.specular[i] = rDotV * materialSpecular[i] * lightSpecular[i];
    }
    return result;
}

} // namespace lighttest
