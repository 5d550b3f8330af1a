// The installed runtime's headers before the system GL, EGL, GLU and GLUT ones.
#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGGLUT.h>
#include <OpenSG/OSGSolidBackground.h>

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <GL/glut.h>

OSG_USING_NAMESPACE

bool solidBackgroundKeepsItsColour(void)
{
    SolidBackgroundPtr background = SolidBackground::create();
    addRefCP(background);
    beginEditCP(background, SolidBackground::ColorFieldMask);
    background->setColor(Color3f(0.25f, 0.5f, 1.f));
    endEditCP(background, SolidBackground::ColorFieldMask);
    const bool ok = background->getColor() == Color3f(0.25f, 0.5f, 1.f);
    subRefCP(background);
    return ok;
}
