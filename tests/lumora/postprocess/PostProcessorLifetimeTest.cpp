#include "PostProcessorTest.h"

#include <Lumora/DeferredAAPostProcessor.h>
#include <Lumora/DeferredCMBPostProcessor.h>
#include <Lumora/DeferredDoFPostProcessor.h>
#include <Lumora/DeferredHDRPostProcessor.h>
#include <Lumora/DeferredSSAOPostProcessor.h>

#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGQuaternion.h>

#include "support/LiveObjects.h"

#include <functional>
#include <memory>

using namespace osg;
using posttest::PostProcessorTest;
using posttest::Surface;

namespace
{

struct Effect { const char *name; std::function<IDeferredPostProcessor *(void)> make; };

const Effect s_effects[] =
{
    {"AntiAliasing",      [] { return (IDeferredPostProcessor *)new DeferredAAPostProcessor;   }},
    {"MotionBlur",        [] { return (IDeferredPostProcessor *)new DeferredCMBPostProcessor;  }},
    {"DepthOfField",      [] { return (IDeferredPostProcessor *)new DeferredDoFPostProcessor;  }},
    {"HighDynamicRange",  [] { return (IDeferredPostProcessor *)new DeferredHDRPostProcessor;  }},
    {"AmbientOcclusion",  [] { return (IDeferredPostProcessor *)new DeferredSSAOPostProcessor; }},
};

class PostProcessorLifetimeTest : public PostProcessorTest,
                                  public testing::WithParamInterface<Effect> {};

} // namespace

// Two frames seen from two directions and a resize: all an effect makes on
// the way goes with it.
TEST_P(PostProcessorLifetimeTest, DestroyingItReleasesEverythingItCreated)
{
    RenderTarget &gbuffer = makeGBuffer([](int x, int) {
        return Surface{true, Vec3f(0, 0.3f, 1), x < Size / 2 ? 2.0f : 50.0f};
    });
    TextureChunkPtr scene = makeScene([](int x, int y) {
        return Vec3f(((x + y) % 2) ? 2.0f : 0.1f, Real32(x) / Size, Real32(y) / Size);
    });
    Matrix projection, turned;
    MatrixPerspective(projection, deg2rad(60.0f), 1.0f, Near, Far);
    turned.setRotate(Quaternion(Vec3f(0, 1, 0), deg2rad(5.0f)));

    auto cycle = [&]() {
        std::unique_ptr<IDeferredPostProcessor> effect(GetParam().make());
        effect->initialize(window, 0, 0, Size - 1, Size - 1, gbuffer, 2);
        effect->update(Matrix(), projection, Vec2f(Near, Far));
        effect->perform(scene);
        effect->resize(0, 0, Size / 2 - 1, Size / 2 - 1);
        effect->update(turned, projection, Vec2f(Near, Far));
        effect->perform(scene);
        effect.reset();
        window->frameExit();
    };
    // The first run uploads the inputs and makes what the runtime keeps for
    // the process: the shared downscale and blur programs.
    cycle();
    const testsupport::LiveObjects before = testsupport::LiveObjects::count();
    cycle();
    EXPECT_EQ(testsupport::differences(before, testsupport::LiveObjects::count()), "");
}

INSTANTIATE_TEST_SUITE_P(Effects, PostProcessorLifetimeTest, testing::ValuesIn(s_effects),
                         [](const testing::TestParamInfo<Effect> &info)
                         { return std::string(info.param.name); });
