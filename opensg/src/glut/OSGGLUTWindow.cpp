#include <OpenSG/OSGGLUTWindow.h>
#include <OpenSG/OSGGLUT.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(GLUTWindow, "Window")

void GLUTWindow::setGlutId(Int32 val)
{
    setId(val);
}

void GLUTWindow::init(void)
{
    activate();
    setupGL();
}

void GLUTWindow::activate(void)
{
    if(glutGetWindow() != getId())
        glutSetWindow(getId());
}

void GLUTWindow::deactivate(void)
{
}

void GLUTWindow::swap(void)
{
    glutSwapBuffers();
}

void GLUTWindow::dump(UInt32, const BitVector) const
{
    SLOG << "GLUTWindow " << getId() << ": " << getWidth() << "x" << getHeight()
         << std::endl;
}

} // namespace osg
