#include <Lumora/DeferredCMBPostProcessor.h>

#include "support/DeferredScene.h"
#include "support/FloatTexture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <thread>
#include <vector>

using namespace osg;
using testsupport::TextureImage;

namespace
{

const int    Size = 64;
const double Pi   = 3.14159265358979;
const Real32 Near = 1.0f;
const Real32 Far  = 10.0f;

Real32 s_testTime = 0.0f;

Real32 testClock(void) { return s_testTime; }

double deg(double degrees) { return degrees * Pi / 180.0; }

// A symmetric perspective projection of 60 degrees vertically, built here
// from its definition.
Matrix projection()
{
    const Real32 f = Real32(1.0 / std::tan(deg(30.0)));
    return Matrix(f, 0, 0, 0,
                  0, f, 0, 0,
                  0, 0, (Far + Near) / (Near - Far), 2 * Far * Near / (Near - Far),
                  0, 0, -1, 0);
}

// World to eye for a camera at position, turned by yaw about the world's y
// axis after pitch about its own x axis.
Matrix viewing(double yaw, double pitch, Vec3f position = Vec3f(0, 0, 0))
{
    const Real32 cy = Real32(std::cos(yaw)),   sy = Real32(std::sin(yaw));
    const Real32 cp = Real32(std::cos(pitch)), sp = Real32(std::sin(pitch));
    // Camera to world: Ry(yaw) * Rx(pitch), its columns the camera's axes.
    const Vec3f x(cy, 0, -sy);
    const Vec3f y(sy * sp, cp, cy * sp);
    const Vec3f z(sy * cp, -sp, cy * cp);
    return Matrix(x[0], x[1], x[2], -x.dot(position),
                  y[0], y[1], y[2], -y.dot(position),
                  z[0], z[1], z[2], -z.dot(position),
                  0, 0, 0, 1);
}

Vec4f times(const Matrix &m, const Vec4f &v)
{
    Vec4f r;
    for(int row = 0; row < 4; ++row)
        r[row] = m[0][row] * v[0] + m[1][row] * v[1] + m[2][row] * v[2] + m[3][row] * v[3];
    return r;
}

// A smooth pattern, different in each channel, so that a smear in any
// direction changes some channel.
Vec4f pattern(int x, int y)
{
    const double k = 2.0 * Pi / 32.0;
    return Vec4f(Real32(0.5 + 0.4 * std::sin(k * x)),
                 Real32(0.5 + 0.4 * std::sin(k * y + 1.0)),
                 Real32(0.5 + 0.3 * std::sin(k * (x + y))), 1.0f);
}

// The blur as the equations give it, for a camera at the origin: each
// pixel averages 16 samples along (p - c) * scale, with p where the
// earlier view-projection saw the pixel's direction, three times over.
TextureImage expectedBlur(const TextureImage &input, const Matrix &viewingNow,
                          const Matrix &viewingEarlier, double scale)
{
    const Matrix proj = projection();
    Matrix toWorld = viewingNow;
    toWorld.invert();
    Matrix earlier = proj;
    earlier.mult(viewingEarlier);

    std::vector<Vec2f> velocity(Size * Size);
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
        {
            const Vec2f c((x + 0.5f) / Size, (y + 0.5f) / Size);
            const Vec4f eye((2 * c[0] - 1) / proj[0][0], (2 * c[1] - 1) / proj[1][1], -1, 0);
            Vec4f world = times(toWorld, eye);
            world[3] = 1;
            const Vec4f clip = times(earlier, world);
            const Vec2f p((clip[0] / clip[3] + 1) * 0.5f, (clip[1] / clip[3] + 1) * 0.5f);
            velocity[std::size_t(y * Size + x)] = (p - c) * Real32(scale);
        }

    // The first pass reads the input, clamped to its edge texels; the
    // later ones read targets with a black border.
    TextureImage image = input;
    for(int pass = 0; pass < 3; ++pass)
    {
        TextureImage next(Size, Size);
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                const Vec2f v = velocity[std::size_t(y * Size + x)];
                for(int i = 0; i < 16; ++i)
                {
                    const float s = -1.0f + i / 8.0f;
                    for(int ch = 0; ch < 3; ++ch)
                        next.at(x, y, ch) += image.bilinear(
                            (x + 0.5f) / Size - v[0] * s, (y + 0.5f) / Size - v[1] * s, ch,
                            pass == 0 ? TextureImage::EdgeTexels : TextureImage::BlackBorder) /
                            16.0f;
                }
            }
        image = next;
    }
    return image;
}

class DeferredCMBPostProcessorTest : public testsupport::WindowTest
{
  protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        DeferredCMBPostProcessor::setClock(testClock);
        image = testsupport::makeFloatTexture(Size, Size, pattern);
    }

    void TearDown() override
    {
        cmb.reset();
        DeferredCMBPostProcessor::setClock(NULL);
        subRefCP(image);
        WindowTest::TearDown();
    }

    // A frame with the camera at before, then one dt milliseconds later
    // with it at now; the second frame's blur.
    TextureImage twoFrames(const Matrix &before, const Matrix &now, Real32 dt)
    {
        if(!cmb->initialized)
            cmb->initialize(window, 0, 0, Size - 1, Size - 1, gbuffer, 5);
        s_testTime += 1000.0f;
        cmb->update(before, projection(), Vec2f(Near, Far));
        s_testTime += dt;
        cmb->update(now, projection(), Vec2f(Near, Far));
        return TextureImage(cmb->perform(image));
    }

    RenderTarget                              gbuffer;
    TextureChunkPtr                           image;
    std::unique_ptr<DeferredCMBPostProcessor> cmb{new DeferredCMBPostProcessor()};
};

TEST_F(DeferredCMBPostProcessorTest, WithoutRotationTheImageIsUnchanged)
{
    struct Case { const char *name; Matrix before; Matrix now; Real32 dt; Real32 blurScale; };
    const Case cases[] =
    {
        {"still camera", viewing(deg(20), deg(10)), viewing(deg(20), deg(10)), 40, 1.0f},
        {"pure translation", viewing(deg(20), deg(10), Vec3f(0, 0, 0)),
         viewing(deg(20), deg(10), Vec3f(2, -1, 3)), 40, 1.0f},
        {"translation away from the origin", viewing(0, 0, Vec3f(5, 1, 0)),
         viewing(0, 0, Vec3f(5, 1, -4)), 16, 1.0f},
        {"rotation with blur scale 0", viewing(deg(0), 0), viewing(deg(8), 0), 40, 0.0f},
        {"rotation within one millisecond", viewing(deg(0), 0), viewing(deg(8), 0), 0, 1.0f},
    };
    for(const Case &c : cases)
    {
        cmb->setBlurScale(c.blurScale);
        const TextureImage out = twoFrames(c.before, c.now, c.dt);
        // Three resamplings at texel centres, each stored as a half float,
        // which may lose up to a step of about 5e-4 near 1.
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                const Vec4f in = pattern(x, y);
                for(int ch = 0; ch < 3; ++ch)
                    ASSERT_NEAR(out.at(x, y, ch), in[ch], 2e-3)
                        << c.name << " at " << x << "," << y << " ch " << ch;
            }
    }
}

// The earlier rotation is extrapolated or interpolated to 40 ms before the
// current frame; the blur runs along where each pixel was seen then.
TEST_F(DeferredCMBPostProcessorTest, RotationSmearsAlongTheMotion)
{
    struct Case { const char *name; double yawBefore, pitchBefore, yawNow, pitchNow; Real32 dt;
                  double yawEarlier, pitchEarlier; Real32 blurScale; };
    const Case cases[] =
    {
        {"turning left",           0, 0, 8, 0, 40,  0, 0, 0.5f},
        {"turning right",          8, 0, 0, 0, 40,  8, 0, 0.5f},
        {"tilting up",             30, 0, 30, 8, 40, 30, 0, 0.5f},
        {"tilting down, turned",   20, 6, 25, -2, 40, 20, 6, 0.5f},
        {"short frame",            2, 0, 6, 0, 20,  -2, 0, 0.5f},
        {"long frame",             -10, 0, 6, 0, 80, -2, 0, 0.5f},
        {"larger scale",           0, 0, 4, 0, 40,  0, 0, 1.0f},
    };
    for(const Case &c : cases)
    {
        cmb->setBlurScale(c.blurScale);
        const Matrix now = viewing(deg(c.yawNow), deg(c.pitchNow));
        const TextureImage out = twoFrames(viewing(deg(c.yawBefore), deg(c.pitchBefore)),
                                           now, c.dt);
        const TextureImage expected = expectedBlur(
            TextureImage(image), now, viewing(deg(c.yawEarlier), deg(c.pitchEarlier)), c.blurScale);

        // The motion is visible: the image differs from its input.
        double change = 0.0;
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
                for(int ch = 0; ch < 3; ++ch)
                    change = std::max(change, double(std::abs(out.at(x, y, ch) -
                                                              pattern(x, y)[ch])));
        EXPECT_GT(change, 0.02) << c.name;

        // Half-float targets and the interpolation of the sphere's
        // coordinates allow a little; llvmpipe's 8-bit filter weights less.
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
                for(int ch = 0; ch < 3; ++ch)
                    ASSERT_NEAR(out.at(x, y, ch), expected.at(x, y, ch), 3e-3)
                        << c.name << " at " << x << "," << y << " ch " << ch;
    }
}

// The frame interval is kept once for the process: with two viewports it is
// the time since the last update of either.
TEST_F(DeferredCMBPostProcessorTest, InstancesShareTheFrameInterval)
{
    DeferredCMBPostProcessor other;
    cmb->initialize(window, 0, 0, Size - 1, Size - 1, gbuffer, 5);
    other.initialize(window, 0, 0, Size - 1, Size - 1, gbuffer, 5);
    cmb->setBlurScale(0.5f);

    s_testTime += 1000.0f;
    cmb->update(viewing(0, 0), projection(), Vec2f(Near, Far));
    s_testTime += 20.0f;
    other.update(viewing(0, 0), projection(), Vec2f(Near, Far));
    s_testTime += 20.0f;
    const Matrix now = viewing(deg(4), 0);
    cmb->update(now, projection(), Vec2f(Near, Far));
    const TextureImage out(cmb->perform(image));

    // 4 degrees in what counts as 20 ms: 40 ms back is 4 degrees beyond.
    const TextureImage expected = expectedBlur(TextureImage(image), now, viewing(deg(-4), 0), 0.5);
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
            for(int ch = 0; ch < 3; ++ch)
                ASSERT_NEAR(out.at(x, y, ch), expected.at(x, y, ch), 3e-3)
                    << x << "," << y << " ch " << ch;
}

// Headless programs never start GLUT, whose clock aborts before glutInit.
TEST(DeferredCMBPostProcessorClock, CountsMillisecondsWithoutGlut)
{
    DeferredCMBPostProcessor::setClock(NULL);
    const Real32 start = DeferredCMBPostProcessor::getElapsedTime();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const Real32 end = DeferredCMBPostProcessor::getElapsedTime();
    EXPECT_GE(end - start, 29.0f);
    EXPECT_LT(end - start, 5000.0f);
}

} // namespace
