#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include "support/PixelProbe.h"

#include <cmath>

using namespace osg;
using namespace testsupport;

namespace
{

// left to top are fractions of the window.
struct Placement { const char *name; int windowWidth, windowHeight;
                   Real32 left, bottom, right, top; };

class ViewportRectangleTest : public DeferredSceneTest,
                              public testing::WithParamInterface<Placement> {};

// A 64 x 64 viewport somewhere in a larger window lights its scene as a
// viewport filling a 64 x 64 window would, whatever the window's shape,
// and shows it in its own rectangle only.
TEST_P(ViewportRectangleTest, LightingFollowsTheViewportNotTheWindow)
{
    const Placement &p = GetParam();
    window->resize(p.windowWidth, p.windowHeight);
    editCP(viewport, [&] { viewport->setSize(p.left, p.bottom, p.right, p.top); });
    ASSERT_EQ(viewport->getPixelWidth(),  Size);
    ASSERT_EQ(viewport->getPixelHeight(), Size);

    const Color3f kd(0.8f, 0.6f, 0.4f);
    addPlane(4.0f, 0.0f, material(kd));
    const PointLightParams params{Pnt3f(0.5f, -0.25f, 1.0f), Color3f(1, 1, 1), Color3f(0, 0, 0),
                                  Vec3f(1.0f, 0.1f, 0.5f), 1.0f};
    PointLightPtr light = makeLight(params);
    viewport->addLight(light);

    // Window pixels outside the viewport keep what was there.
    glViewport(0, 0, p.windowWidth, p.windowHeight);
    glDisable(GL_SCISSOR_TEST);
    glClearColor(1.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    renderFrame();

    LitImage        image(viewport);
    PixelMismatches mismatches;
    ASSERT_EQ(image.width(), Size);
    EXPECT_GT(checkPlane(image, *scene, onPlane(params, SurfaceParams{kd}, scene->eye()),
                         mismatches, [](const Pnt3f &P) {
                             return std::fabs(P[0]) <= 1.9f && std::fabs(P[1]) <= 1.9f;
                         }),
              Size * Size / 3);
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();

    // The shown image sits in the viewport's rectangle of the window.
    const int x0 = viewport->getPixelLeft(), y0 = viewport->getPixelBottom();
    for(int k = 8; k < Size; k += 16)
    {
        testsupport::RGBA8 shown = testsupport::readPixelRGBA8(x0 + k, y0 + k);
        EXPECT_NEAR(shown.r / 255.0f, std::min(1.0f, image.at(k, k, 0)), 2.5f / 255.0f) << k;
        EXPECT_NEAR(shown.g / 255.0f, std::min(1.0f, image.at(k, k, 1)), 2.5f / 255.0f) << k;
    }
    const int outsideX = x0 > 0 ? x0 - 1 : x0 + Size;
    const int outsideY = y0 > 0 ? y0 - 1 : y0 + Size;
    const testsupport::RGBA8 untouched = {255, 0, 255, 255};
    if(outsideX < p.windowWidth)
    {
        EXPECT_EQ(testsupport::readPixelRGBA8(outsideX, y0 + 5), untouched);
    }
    if(outsideY < p.windowHeight)
    {
        EXPECT_EQ(testsupport::readPixelRGBA8(x0 + 5, outsideY), untouched);
    }
    subRefCP(light);
}

INSTANTIATE_TEST_SUITE_P(DeferredRenderingViewport, ViewportRectangleTest,
    testing::Values(Placement{"UpperRightQuadrant", 128, 128, 0.5f, 0.5f, 1.0f, 1.0f},
                    Placement{"LeftHalfOfAWideWindow", 128, 64, 0.0f, 0.0f, 0.5f, 1.0f},
                    Placement{"TopHalfOfATallWindow", 64, 128, 0.0f, 0.5f, 1.0f, 1.0f}),
    [](const testing::TestParamInfo<Placement> &info) { return std::string(info.param.name); });

} // namespace
