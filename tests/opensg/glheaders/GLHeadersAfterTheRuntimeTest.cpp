// The runtime's headers first, then the system GL headers.
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGGLU.h>
#include <OpenSG/OSGGLUT.h>
#include <OpenSG/OSGSolidBackground.h>

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <GL/glut.h>

#include "support/SceneSetup.h"

#include <Lumora/HeadlessContext.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

using namespace osg;

TEST(GLHeadersAfterTheRuntime, SystemGLReadsWhatTheRuntimeDrew)
{
    lumora::HeadlessContext context(16, 16);
    ASSERT_TRUE(context.isValid()) << context.errorString();
    EXPECT_NE(eglGetCurrentContext(), EGL_NO_CONTEXT);

    testsupport::SceneSetup setup(16, 16);
    beginEditCP(setup.background, SolidBackground::ColorFieldMask);
    setup.background->setColor(Color3f(0.f, 1.f, 0.f));
    endEditCP(setup.background, SolidBackground::ColorFieldMask);
    setup.render();

    // GL_BGRA comes from glext.h.
    GLubyte bgra[4] = { 0, 0, 0, 0 };
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(8, 8, 1, 1, GL_BGRA, GL_UNSIGNED_BYTE, bgra);
    EXPECT_EQ(bgra[0], 0);
    EXPECT_EQ(bgra[1], 255);
    EXPECT_EQ(bgra[2], 0);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

// Programs that find GL entry points by hand name them as OSGConfig.h says.
TEST(GLHeadersAfterTheRuntime, EntryPointsAreFoundUnderTheConfiguredSymbolName)
{
#ifdef OSG_DLSYM_UNDERSCORE
    const char *name = "_glClear";
#else
    const char *name = "glClear";
#endif
    EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
}
