// The system GL headers first, then the runtime's: an application's order.
#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <GL/glut.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGGLU.h>
#include <OpenSG/OSGGLUT.h>
#include <OpenSG/OSGSolidBackground.h>

#include "support/SceneSetup.h"

#include <Lumora/HeadlessContext.h>

#include <gtest/gtest.h>

using namespace osg;

TEST(GLHeadersBeforeTheRuntime, SystemGLReadsWhatTheRuntimeDrew)
{
    lumora::HeadlessContext context(16, 16);
    ASSERT_TRUE(context.isValid()) << context.errorString();
    EXPECT_NE(eglGetCurrentContext(), EGL_NO_CONTEXT);

    testsupport::SceneSetup setup(16, 16);
    beginEditCP(setup.background, SolidBackground::ColorFieldMask);
    setup.background->setColor(Color3f(1.f, 0.f, 1.f));
    endEditCP(setup.background, SolidBackground::ColorFieldMask);
    setup.render();

    GLubyte rgba[4] = { 0, 0, 0, 0 };
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    EXPECT_EQ(rgba[0], 255);
    EXPECT_EQ(rgba[1], 0);
    EXPECT_EQ(rgba[2], 255);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}
