#include <epoxy/gl.h>

#include <Lumora/HeadlessContext.h>

#include "support/PixelProbe.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace
{

struct DebugMessage { GLenum type; GLenum severity; std::string text; };

class HeadlessContextTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        _context.reset(new lumora::HeadlessContext(
            64, 32, true,
            [this](GLenum type, GLenum severity, const std::string &text)
            { _messages.push_back({ type, severity, text }); }));
        ASSERT_TRUE(_context->isValid()) << _context->errorString();
    }

    std::unique_ptr<lumora::HeadlessContext> _context;
    std::vector<DebugMessage>                _messages;
};

// GL 3.0 (framebuffer objects), not a core profile (the runtime relies on
// fixed-function state next to shaders), debug on request, the asked size.
TEST_F(HeadlessContextTest, HasTheRequestedProperties)
{
    int major = 0, minor = 0;
    const char *version = reinterpret_cast<const char *>(glGetString(GL_VERSION));
    ASSERT_NE(version, nullptr);
    ASSERT_EQ(std::sscanf(version, "%d.%d", &major, &minor), 2) << version;
    EXPECT_GE(major * 10 + minor, 30) << version;

    GLint mask = 0, flags = 0, viewport[4] = { 0, 0, 0, 0 };
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &mask);
    glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(mask & GL_CONTEXT_CORE_PROFILE_BIT, 0);
    EXPECT_TRUE(_context->isDebug());
    EXPECT_NE(flags & GL_CONTEXT_FLAG_DEBUG_BIT, 0);
    EXPECT_EQ(_context->width(), 64);
    EXPECT_EQ(_context->height(), 32);
    EXPECT_EQ(viewport[2], 64);
    EXPECT_EQ(viewport[3], 32);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(HeadlessContextTest, GLErrorReachesDebugCallback)
{
    glEnable(0xFFFF);

    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    ASSERT_FALSE(_messages.empty());
    EXPECT_EQ(_messages.front().type, GLenum(GL_DEBUG_TYPE_ERROR));
    EXPECT_FALSE(_messages.front().text.empty());
}

TEST_F(HeadlessContextTest, ReplacedCallbackGetsLaterMessages)
{
    int replacementCalls = 0;
    _context->setDebugCallback([&](GLenum, GLenum, const std::string &)
                               { ++replacementCalls; });
    glEnable(0xFFFF);
    glGetError();

    EXPECT_GE(replacementCalls, 1);
    EXPECT_TRUE(_messages.empty());
}

TEST(HeadlessContext, InvalidSizeFailsWithAReason)
{
    lumora::HeadlessContext context(0, 16);
    EXPECT_FALSE(context.isValid());
    EXPECT_FALSE(context.makeCurrent());
    EXPECT_NE(context.errorString().find("width"), std::string::npos)
        << context.errorString();
}

TEST(HeadlessContext, TwoContextsKeepTheirOwnContents)
{
    lumora::HeadlessContext first(8, 8);
    ASSERT_TRUE(first.isValid()) << first.errorString();
    {
        lumora::HeadlessContext second(8, 8);
        ASSERT_TRUE(second.isValid()) << second.errorString();

        ASSERT_TRUE(first.makeCurrent());
        glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);

        ASSERT_TRUE(second.makeCurrent());
        glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        EXPECT_EQ(testsupport::readPixelRGBA8(4, 4), (testsupport::RGBA8{ 0, 0, 255, 255 }));
    }

    // Both share one EGL display; the second going must not end it.
    ASSERT_TRUE(first.makeCurrent()) << first.errorString();
    EXPECT_EQ(testsupport::readPixelRGBA8(4, 4), (testsupport::RGBA8{ 255, 0, 0, 255 }));
}

} // namespace
