// Built twice: once with the system GL headers before the runtime's (an
// application's order), once with GL_HEADERS_RUNTIME_FIRST after them.
#ifdef GL_HEADERS_RUNTIME_FIRST
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGGLU.h>
#include <OpenSG/OSGGLUT.h>
#define GL_HEADERS_ORDER RuntimeFirst
#else
#define GL_HEADERS_ORDER SystemFirst
#endif

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <GL/glut.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGGLU.h>
#include <OpenSG/OSGGLUT.h>
#include <OpenSG/OSGSolidBackground.h>

#include "support/SceneSetup.h"

#include <Lumora/HeadlessContext.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

using namespace osg;

#define GL_HEADERS_NAME2(a, b) a##b
#define GL_HEADERS_NAME(a, b) GL_HEADERS_NAME2(a, b)
#define GL_HEADERS_SUITE GL_HEADERS_NAME(GLHeaders, GL_HEADERS_ORDER)

// GL_BGRA comes from glext.h.
TEST(GL_HEADERS_SUITE, SystemGLReadsWhatTheRuntimeDrew)
{
    lumora::HeadlessContext context(16, 16);
    ASSERT_TRUE(context.isValid()) << context.errorString();
    EXPECT_NE(eglGetCurrentContext(), EGL_NO_CONTEXT);

    testsupport::SceneSetup setup(16, 16);
    beginEditCP(setup.background, SolidBackground::ColorFieldMask);
    setup.background->setColor(Color3f(1.f, 0.6f, 0.f));
    endEditCP(setup.background, SolidBackground::ColorFieldMask);
    setup.render();

    GLubyte rgba[4] = { 0, 0, 0, 0 }, bgra[4] = { 0, 0, 0, 0 };
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    glReadPixels(8, 8, 1, 1, GL_BGRA, GL_UNSIGNED_BYTE, bgra);
    EXPECT_EQ(rgba[0], 255);
    EXPECT_EQ(rgba[1], 153);
    EXPECT_EQ(rgba[2], 0);
    EXPECT_EQ(bgra[0], 0);
    EXPECT_EQ(bgra[2], 255);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

// Programs that find GL entry points by hand name them as OSGConfig.h says.
TEST(GL_HEADERS_SUITE, EntryPointsAreFoundUnderTheConfiguredSymbolName)
{
#ifdef OSG_DLSYM_UNDERSCORE
    const char *name = "_glClear";
#else
    const char *name = "glClear";
#endif
    EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
}

#ifndef GL_HEADERS_RUNTIME_FIRST
int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if(!osg::osgInit(0, NULL))
        return 1;
    const int result = RUN_ALL_TESTS();
    osg::osgExit();
    return result;
}
#endif
