#include "common/DebugView.h"

#include "support/DeferredScene.h"

#include <cmath>
#include <utility>
#include <vector>

using namespace osg;

namespace
{

const int ViewSize = 32;

struct Surface { Color3f diffuse; Color3f specular; Real32 shininess; Color3f emission; };

// Channels all different, so that a view reading the wrong one shows.
const Surface Near = {Color3f(0.8f, 0.4f, 0.2f), Color3f(0.3f, 0.6f, 0.9f), 16.f,
                      Color3f(0.1f, 0.5f, 0.7f)};
const Surface Far  = {Color3f(0.2f, 0.7f, 0.3f), Color3f(0.9f, 0.1f, 0.5f), 64.f,
                      Color3f(0.3f, 0.1f, 0.2f)};

// Looking down -Z from (0, 0, 5): a small square at z = 0 in the middle of
// the view before a large one at z = -2 that fills it; no lights.
class DebugViewTest : public testsupport::DeferredSceneTest
{
  protected:
    testsupport::DeferredSceneOptions sceneOptions() const override
    {
        testsupport::DeferredSceneOptions options;
        options.width = options.height = ViewSize;
        return options;
    }

    void SetUp() override
    {
        DeferredSceneTest::SetUp();
        for(const auto &square : {std::make_pair(20.f, Far), std::make_pair(1.f, Near)})
        {
            const Surface &s = square.second;
            addPlane(square.first, square.first > 1.f ? -2.f : 0.f,
                     material(s.diffuse, s.specular, s.shininess, s.emission));
        }
        viewport->prepareScene(root);
    }
};

Color3f grey(Real32 v) { return Color3f(v, v, v); }

} // namespace

// Each view shows its own channel of the surface under the pixel: the near
// square in the middle, the far one in the corner.
TEST_F(DebugViewTest, EachViewShowsItsChannel)
{
    window->render(action);

    struct Case { demo::DebugView view; const char *name; Color3f middle; Color3f corner; };
    const Color3f facingViewer(0.5f, 0.5f, 1.f);  // (0, 0, 1) * 0.5 + 0.5
    const Case cases[] =
    {
        {demo::NormalsView,   "normals",   facingViewer,   facingViewer},
        {demo::DiffuseView,   "diffuse",   Near.diffuse,   Far.diffuse},
        {demo::SpecularView,  "specular",  Near.specular,  Far.specular},
        {demo::ShininessView, "shininess", grey(std::log2(Near.shininess) / 8.f),
                                           grey(std::log2(Far.shininess) / 8.f)},
        {demo::EmissiveView,  "emissive",  Near.emission,  Far.emission},
        // Nearest drawn black, farthest white.
        {demo::DepthView,     "depth",     grey(0.f),      grey(1.f)},
        // Without lights only the emission lights the surfaces.
        {demo::LightView,     "light",     Near.emission,  Far.emission},
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        EXPECT_STREQ(demo::debugViewName(c.view), c.name);

        std::vector<UInt8> rgb;
        int                width = 0, height = 0;
        ASSERT_TRUE(demo::readDebugView(viewport, c.view, rgb, width, height));
        ASSERT_EQ(width, ViewSize);
        ASSERT_EQ(height, ViewSize);
        ASSERT_EQ(rgb.size(), std::size_t(ViewSize * ViewSize * 3));

        const std::size_t middle = (std::size_t(ViewSize / 2) * ViewSize + ViewSize / 2) * 3;
        const std::size_t corner = (std::size_t(1) * ViewSize + 1) * 3;
        for(int ch = 0; ch < 3; ++ch)
        {
            // One step of 8 bits: the G-buffer stores 8 or 10 bits a channel.
            EXPECT_NEAR(rgb[middle + ch], c.middle[ch] * 255.f, 1.01f) << "channel " << ch;
            EXPECT_NEAR(rgb[corner + ch], c.corner[ch] * 255.f, 1.01f) << "channel " << ch;
        }
    }
}

TEST_F(DebugViewTest, NothingToReadBeforeTheFirstFrameOrForNoView)
{
    std::vector<UInt8> rgb;
    int                width = 0, height = 0;
    EXPECT_FALSE(demo::readDebugView(viewport, demo::NormalsView, rgb, width, height));

    window->render(action);
    EXPECT_TRUE (demo::readDebugView(viewport, demo::NormalsView, rgb, width, height));
    EXPECT_FALSE(demo::readDebugView(viewport, demo::NoDebugView, rgb, width, height));
    EXPECT_FALSE(demo::readDebugView(viewport, demo::NumDebugViews, rgb, width, height));
    EXPECT_EQ(demo::debugViewName(demo::NumDebugViews), nullptr);
}
