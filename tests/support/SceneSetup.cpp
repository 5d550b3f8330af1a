#include "support/SceneSetup.h"
#include "support/Builders.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

namespace testsupport
{

using namespace osg;

SceneSetup::SceneSetup(int width, int height) :
    action (RenderAction::create()),
    _width (width),
    _height(height)
{
    Matrix beaconMatrix;
    beaconMatrix.setTranslate(0.f, 0.f, 5.f);
    cameraBeacon = makeTransformNode(beaconMatrix);
    addRefCP(cameraBeacon);

    camera = OrthographicCamera::create();
    addRefCP(camera);
    beginEditCP(camera);
    camera->setBeacon(cameraBeacon);
    camera->setVerticalSize(2.f);
    camera->setNear(1.f);
    camera->setFar(9.f);
    endEditCP(camera);

    background = SolidBackground::create();
    addRefCP(background);

    root = makeGroupNode();
    addRefCP(root);

    viewport = Viewport::create();
    addRefCP(viewport);
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(background);
    viewport->setRoot(root);
    endEditCP(viewport);

    window = PassiveWindow::create();
    addRefCP(window);
    editCP(window, Window::PortFieldMask, [&] { window->addPort(viewport); });
    window->init();
    window->resize(width, height);
}

SceneSetup::~SceneSetup()
{
    delete action;
    subRefCP(window);
    subRefCP(viewport);
    subRefCP(root);
    subRefCP(background);
    subRefCP(camera);
    subRefCP(cameraBeacon);
}

void SceneSetup::render()
{
    window->render(action);
}

Real32 SceneSetup::worldX(int x) const
{
    return -1.f + (Real32(x) + 0.5f) * 2.f / Real32(_width);
}

Real32 SceneSetup::worldY(int y) const
{
    return -1.f + (Real32(y) + 0.5f) * 2.f / Real32(_height);
}

NodePtr makeGroupNode() { return makeNodeFor(Group::create()); }

NodePtr makeTransformNode(const Matrix &matrix)
{
    TransformPtr t = Transform::create();
    editCP(t, Transform::MatrixFieldMask, [&] { t->setMatrix(matrix); });
    return makeNodeFor(t);
}

void addChild(NodePtr parent, NodePtr child)
{
    editCP(parent, Node::ChildrenFieldMask, [&] { parent->addChild(child); });
}

NodePtr makeRect(Real32 x0, Real32 y0, Real32 x1, Real32 y1, Real32 z, MaterialPtr mat)
{
    GeometryPtr geo = makePlaneGeo(x1 - x0, y1 - y0, 1, 1);
    editCP(geo, Geometry::MaterialFieldMask, [&] { geo->setMaterial(mat); });

    Matrix m;
    m.setTranslate((x0 + x1) / 2.f, (y0 + y1) / 2.f, z);
    NodePtr node = makeTransformNode(m);
    addChild(node, makeNodeFor(geo));
    return node;
}

NodePtr makeFullQuad(Real32 z, MaterialPtr mat) { return makeRect(-1.f, -1.f, 1.f, 1.f, z, mat); }

MaterialPtr makeUnlitMaterial(const Color3f &color, Real32 transparency)
{
    SimpleMaterialPtr mat = SimpleMaterial::create();
    beginEditCP(mat);
    mat->setLit(false);
    mat->setDiffuse(color);
    mat->setTransparency(transparency);
    endEditCP(mat);
    return mat;
}

} // namespace testsupport
