#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGGrabForeground.h>
#include <OpenSG/OSGImageForeground.h>

#include <cstring>

using namespace osg;
using testsupport::readPixelRGBA8;
using testsupport::RGBA8;
using testsupport::SceneSetup;

namespace
{

using ForegroundTest = testsupport::GLTest;

ImagePtr makeImage(UInt32 format, Int32 width, Int32 height, UInt8 fill)
{
    return testsupport::held(
        testsupport::makeImage(format, width, height, Image::OSG_UINT8_IMAGEDATA, fill));
}

RGBA8 rgbAt(ImagePtr image, Int32 x, Int32 y)
{
    const UInt8 *p = image->getData() + 3 * (y * image->getWidth() + x);
    return RGBA8{p[0], p[1], p[2], 255};
}

// width and height: the image before the grab; grabbedW and grabbedH: after.
struct GrabCase { const char *name; bool autoResize; Int32 width, height, grabbedW, grabbedH; };

// The viewport is 32 x 32 pixels at (16, 8) of a 64 x 64 window: red below
// its middle, green above; the window outside it is blue.
const GrabCase s_grabCases[] = {
    {"unsized image takes the viewport's size", false, 1,  1,  32, 32},
    {"auto resize follows the viewport",        true,  10, 10, 32, 32},
    {"fixed image keeps its size",              false, 40, 20, 40, 20},
};

TEST_F(ForegroundTest, GrabForegroundReadsTheViewportBottomRowFirst)
{
    SceneSetup setup(64, 64);
    testsupport::editCP(setup.viewport, [&] { setup.viewport->setSize(16.f, 8.f, 47.f, 39.f); });
    testsupport::setBackgroundColor(setup, Color3f(1.f, 0.f, 0.f));
    testsupport::addChild(setup.root, testsupport::makeRect(
        -1.f, 0.f, 1.f, 1.f, 0.f, testsupport::makeUnlitMaterial(Color3f(0.f, 1.f, 0.f))));

    const RGBA8 red{255, 0, 0, 255}, green{0, 255, 0, 255}, fill{7, 7, 7, 255};
    for(const GrabCase &c : s_grabCases)
    {
        SCOPED_TRACE(c.name);
        ImagePtr image = makeImage(Image::OSG_RGB_PF, c.width, c.height, 7);
        GrabForegroundPtr grab = GrabForeground::create();
        beginEditCP(grab);
        grab->setImage(image);
        grab->setAutoResize(c.autoResize);
        endEditCP(grab);
        beginEditCP(setup.viewport, Viewport::ForegroundsFieldMask);
        setup.viewport->clearForegrounds();
        setup.viewport->addForeground(grab);
        endEditCP(setup.viewport, Viewport::ForegroundsFieldMask);

        glDisable(GL_SCISSOR_TEST);
        glClearColor(0.f, 0.f, 1.f, 1.f);
        glClear(GL_COLOR_BUFFER_BIT);
        setup.render();

        ASSERT_EQ(image->getWidth(),  c.grabbedW);
        ASSERT_EQ(image->getHeight(), c.grabbedH);
        const Int32 w = std::min(c.grabbedW, 32), h = std::min(c.grabbedH, 32);
        for(Int32 y = 0; y < c.grabbedH; ++y)
        {
            for(Int32 x = 0; x < c.grabbedW; ++x)
            {
                // A fixed image gets the viewport's lower left part; the
                // rest of it stays as it was.
                const RGBA8 expected = x >= w || y >= h ? fill : y < 16 ? red : green;
                ASSERT_EQ(rgbAt(image, x, y), expected) << x << ", " << y;
            }
        }
        subRefCP(image);
    }
}

TEST_F(ForegroundTest, ImageForegroundDrawsImagesAtPixelAndFractionPositions)
{
    SceneSetup setup(64, 64);

    // 3 x 2, bottom row first; one pixel half transparent over black.
    const UInt8 texels[2][3][4] = {
        {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}},
        {{255, 255, 0, 255}, {0, 255, 255, 255}, {200, 100, 50, 128}},
    };
    ImagePtr image = makeImage(Image::OSG_RGBA_PF, 3, 2, 0);
    std::memcpy(image->editData(), texels, sizeof(texels));

    ImageForegroundPtr fg = ImageForeground::create();
    beginEditCP(fg);
    fg->addImage(image, Pnt2f(10.f, 20.f));     // pixels
    fg->addImage(image, Pnt2f(0.5f, 0.25f));    // fractions: (32, 16)
    endEditCP(fg);
    testsupport::editCP(setup.viewport, Viewport::ForegroundsFieldMask,
                        [&] { setup.viewport->addForeground(fg); });
    setup.render();

    const int origins[2][2] = {{10, 20}, {32, 16}};
    for(const auto &o : origins)
    {
        SCOPED_TRACE(testing::Message() << o[0] << ", " << o[1]);
        for(int y = 0; y < 2; ++y)
        {
            for(int x = 0; x < 3; ++x)
            {
                const UInt8 *t = texels[y][x];
                // Blended over black: colour times alpha, within 8-bit rounding.
                const RGBA8  c = readPixelRGBA8(o[0] + x, o[1] + y);
                const float  a = t[3] / 255.f;
                EXPECT_NEAR(c.r, t[0] * a, 1.0) << x << ", " << y;
                EXPECT_NEAR(c.g, t[1] * a, 1.0) << x << ", " << y;
                EXPECT_NEAR(c.b, t[2] * a, 1.0) << x << ", " << y;
            }
        }
        EXPECT_EQ(readPixelRGBA8(o[0] - 1, o[1]),     (RGBA8{0, 0, 0, 255}));
        EXPECT_EQ(readPixelRGBA8(o[0] + 3, o[1] + 1), (RGBA8{0, 0, 0, 255}));
        EXPECT_EQ(readPixelRGBA8(o[0], o[1] + 2),     (RGBA8{0, 0, 0, 255}));
    }
    subRefCP(image);
}

} // namespace
