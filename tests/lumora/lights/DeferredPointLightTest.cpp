#include "DeferredSceneTest.h"

#include <Lumora/DeferredPointLight.h>

#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGTransform.h>

#include <cmath>

using namespace osg;
using lighttest::DeferredSceneTest;
using lighttest::Phong;
using lighttest::phong;

namespace
{

PointLightPtr createPointLight(const Pnt3f &position, const Color3f &diffuse,
                               const Color3f &specular, const Vec3f &attenuation)
{
    PointLightPtr light = PointLight::create();
    addRefCP(light);
    beginEditCP(light);
    light->setPosition(position[0], position[1], position[2]);
    light->setDiffuse (Color4f(diffuse[0], diffuse[1], diffuse[2], 1));
    light->setSpecular(Color4f(specular[0], specular[1], specular[2], 1));
    light->setAttenuation(attenuation[0], attenuation[1], attenuation[2]);
    endEditCP(light);
    return light;
}

class DeferredPointLightTest : public DeferredSceneTest
{
};

} // namespace

TEST_F(DeferredPointLightTest, DiffuseFollowsLambertAndAttenuation)
{
    const Color3f kd(0.8f, 0.6f, 0.4f);
    addPlane(4.0f, 0.0f, material(kd));

    const Pnt3f   lightPos(0.5f, -0.25f, 1.0f);
    const Color3f ld(1.0f, 0.9f, 0.8f);
    const Vec3f   att(1.0f, 0.1f, 0.5f);
    PointLightPtr light = createPointLight(lightPos, ld, Color3f(0, 0, 0), att);
    viewport->addLight(light);

    renderFrame();

    const int pixels[][2] = {{32, 32}, {40, 28}, {20, 40}, {12, 12}, {50, 50}};
    for(const auto &p : pixels)
    {
        Pnt3f  P = pixelOnPlane(p[0], p[1], 0.0f);
        Vec3f  L = lightPos - P;
        Real32 d = L.length();
        L.normalize();
        Phong  ph = phong(P, Vec3f(0, 0, 1), Pnt3f(0, 0, 5), L, kd, Color3f(0, 0, 0), 1.0f,
                          ld, Color3f(0, 0, 0));
        Real32 a = 1.0f / (att[0] + att[1] * d + att[2] * d * d);

        testsupport::RGBAf got = lit(p[0], p[1]);
        for(int c = 0; c < 3; ++c)
            EXPECT_NEAR(got[c], a * ph.diffuse[c], 0.01f)
                << "pixel " << p[0] << "," << p[1] << " channel " << c;
    }
    subRefCP(light);
}
