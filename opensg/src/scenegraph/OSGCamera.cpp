#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGGL.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Camera, "AttachmentContainer")

Camera::Camera(void) :
    Inherited(),
    _sfBeacon(),
    _sfNear  (0.f),
    _sfFar   (0.f)
{
}

Camera::Camera(const Camera &source) :
    Inherited(source),
    _sfBeacon(source._sfBeacon),
    _sfNear  (source._sfNear),
    _sfFar   (source._sfFar)
{
}

Camera::~Camera(void)
{
}

void Camera::setup(DrawActionBase *action, const Viewport &port)
{
    setupProjection(action, port);

    Matrix viewing;
    getViewing(viewing, port.getPixelWidth(), port.getPixelHeight());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(viewing.getValues());
}

void Camera::setupProjection(DrawActionBase *, const Viewport &port)
{
    Matrix projection, translation;
    getProjection           (projection,  port.getPixelWidth(), port.getPixelHeight());
    getProjectionTranslation(translation, port.getPixelWidth(), port.getPixelHeight());
    projection.mult(translation);

    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(projection.getValues());
    glMatrixMode(GL_MODELVIEW);
}

void Camera::getProjection(Matrix &result, UInt32, UInt32)
{
    SFATAL << "Camera::getProjection: called on the abstract camera" << std::endl;
    result.setIdentity();
}

void Camera::getProjectionTranslation(Matrix &result, UInt32, UInt32)
{
    result.setIdentity();
}

void Camera::getViewing(Matrix &result, UInt32, UInt32)
{
    if(getBeacon() == NullFC)
    {
        SWARNING << "Camera::getViewing: no beacon" << std::endl;
        return;
    }

    getBeacon()->getToWorld(result);
    result.invert();
}

void Camera::getFrustum(FrustumVolume &result, const Viewport &port)
{
    getFrustum(result, port.getPixelWidth(), port.getPixelHeight());
}

void Camera::getFrustum(FrustumVolume &result, UInt32 width, UInt32 height)
{
    Matrix m, translation, viewing;
    getProjection           (m,           width, height);
    getProjectionTranslation(translation, width, height);
    getViewing              (viewing,     width, height);
    m.mult(translation);
    m.mult(viewing);

    result.setPlanes(m);
}

void Camera::getWorldToScreen(Matrix &result, const Viewport &port)
{
    Matrix translation, viewing;
    getProjection           (result,      port.getPixelWidth(), port.getPixelHeight());
    getProjectionTranslation(translation, port.getPixelWidth(), port.getPixelHeight());
    getViewing              (viewing,     port.getPixelWidth(), port.getPixelHeight());
    result.mult(translation);
    result.mult(viewing);
}

void Camera::getDecoration(Matrix &result, UInt32, UInt32)
{
    result.setIdentity();
}

bool Camera::calcViewRay(Line &line, Int32 x, Int32 y, const Viewport &port, Real32 *t)
{
    if(port.getPixelWidth() <= 0 || port.getPixelHeight() <= 0)
        return false;

    if(port.getParent() == NullFC)
    {
        SWARNING << "Camera::calcViewRay: viewport has no window" << std::endl;
        return false;
    }

    Matrix worldToScreen, screenToWorld;
    getWorldToScreen(worldToScreen, port);
    if(!worldToScreen.inverse(screenToWorld))
        return false;

    // Window y runs downwards, GL's upwards.
    Int32  glY = Int32(port.getParent()->getHeight()) - 1 - y;
    Real32 nx  = (x   - port.getPixelLeft()   + 0.5f) / port.getPixelWidth()  * 2.f - 1.f;
    Real32 ny  = (glY - port.getPixelBottom() + 0.5f) / port.getPixelHeight() * 2.f - 1.f;

    Pnt3f from, at;
    screenToWorld.multFullMatrixPnt(Pnt3f(nx, ny, -1.f), from);
    screenToWorld.multFullMatrixPnt(Pnt3f(nx, ny,  1.f), at);

    Vec3f dir = at - from;
    if(t != NULL)
        *t = dir.length();
    line.setValue(from, dir);
    return true;
}

} // namespace osg
