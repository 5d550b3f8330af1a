#include "support/Lighting.h"

#include "support/DeferredScene.h"

#include <algorithm>
#include <cmath>

using namespace osg;

namespace testsupport
{

namespace
{

Vec3f unit(Vec3f v)
{
    v.normalize();
    return v;
}

Color4f opaque(const Color3f &c) { return Color4f(c[0], c[1], c[2], 1); }

void setCommon(LightPtr light, const Color3f &diffuse, const Color3f &specular,
               Real32 shadowIntensity)
{
    light->setDiffuse (opaque(diffuse));
    light->setSpecular(opaque(specular));
    light->setShadowIntensity(shadowIntensity);
}

// Diffuse plus specular at P for a light in unit direction L (towards it),
// scaled by factor, as the range over the shininess the G-buffer carries.
ColourRange phong(const Pnt3f &P, const Vec3f &N, const Pnt3f &E, const Vec3f &L,
                  Real32 factor, const Color3f &lightDiffuse, const Color3f &lightSpecular,
                  const SurfaceParams &surface)
{
    const Vec3f  n     = unit(N);
    const Vec3f  v     = unit(E - P);
    const Real32 nDotL = std::max(0.0f, n.dot(L));
    const Real32 rDotV = std::max(0.0f, unit(n * (2.0f * n.dot(L)) - L).dot(v));

    ColourRange range;
    for(Real32 step : {-4.0f, 4.0f})
    {
        const Real32 s        = surface.shininess * std::pow(2.0f, step / 255.0f);
        const Real32 specular = std::pow(rDotV, std::max(1.0f, s));
        for(int c = 0; c < 3; ++c)
        {
            const Real32 value = factor * (nDotL * surface.diffuse[c] * lightDiffuse[c] +
                                           specular * surface.specular[c] * lightSpecular[c]);
            range.low [c] = step < 0 ? value : std::min(range.low [c], value);
            range.high[c] = step < 0 ? value : std::max(range.high[c], value);
        }
    }
    return range;
}

Real32 attenuation(const Vec3f &att, Real32 d)
{
    return 1.0f / (att[0] + att[1] * d + att[2] * d * d);
}

} // namespace

PointLightPtr makeLight(const PointLightParams &p)
{
    PointLightPtr light = PointLight::create();
    addRefCP(light);
    beginEditCP(light);
    light->setPosition(p.position[0], p.position[1], p.position[2]);
    light->setAttenuation(p.attenuation[0], p.attenuation[1], p.attenuation[2]);
    setCommon(light, p.diffuse, p.specular, p.shadowIntensity);
    endEditCP(light);
    return light;
}

SpotLightPtr makeLight(const SpotLightParams &p)
{
    SpotLightPtr light = SpotLight::create();
    addRefCP(light);
    beginEditCP(light);
    light->setPosition(p.position[0], p.position[1], p.position[2]);
    light->setDirection(p.direction);
    light->setSpotCutOff(p.cutOff);
    light->setSpotExponent(p.exponent);
    light->setAttenuation(p.attenuation[0], p.attenuation[1], p.attenuation[2]);
    setCommon(light, p.diffuse, p.specular, p.shadowIntensity);
    endEditCP(light);
    return light;
}

DirectionalLightPtr makeLight(const DirectionalLightParams &p)
{
    DirectionalLightPtr light = DirectionalLight::create();
    addRefCP(light);
    beginEditCP(light);
    light->setDirection(p.direction);
    setCommon(light, p.diffuse, p.specular, p.shadowIntensity);
    endEditCP(light);
    return light;
}

void setShadowIntensity(LightPtr light, Real32 intensity)
{
    editCP(light, Light::ShadowIntensityFieldMask, [&] { light->setShadowIntensity(intensity); });
}

ColourRange lightAt(const PointLightParams &light, const SurfaceParams &surface,
                    const Pnt3f &P, const Vec3f &N, const Pnt3f &E)
{
    const Vec3f toLight = light.position - P;
    return phong(P, N, E, unit(toLight), attenuation(light.attenuation, toLight.length()),
                 light.diffuse, light.specular, surface);
}

ColourRange lightAt(const SpotLightParams &light, const SurfaceParams &surface,
                    const Pnt3f &P, const Vec3f &N, const Pnt3f &E)
{
    const Vec3f  toLight = light.position - P;
    const Vec3f  L       = unit(toLight);
    const Real32 spot    = -unit(light.direction).dot(L);
    if(spot <= std::cos(light.cutOff))
        return ColourRange{Vec3f(0, 0, 0), Vec3f(0, 0, 0)};
    const Real32 factor = attenuation(light.attenuation, toLight.length()) *
                          std::pow(spot, light.exponent);
    return phong(P, N, E, L, factor, light.diffuse, light.specular, surface);
}

ColourRange lightAt(const DirectionalLightParams &light, const SurfaceParams &surface,
                    const Pnt3f &P, const Vec3f &N, const Pnt3f &E)
{
    return phong(P, N, E, unit(light.direction), 1.0f, light.diffuse, light.specular, surface);
}

Real32 angleFromAxis(const SpotLightParams &light, const Pnt3f &P)
{
    const Real32 cosine = unit(light.direction).dot(unit(P - light.position));
    return std::acos(std::max(-1.0f, std::min(1.0f, cosine)));
}

void PixelMismatches::check(int x, int y, int channel, float got, float low, float high)
{
    const float tolerance = _tolerance + 0.01f * std::fabs(high);
    if(got >= low - tolerance && got <= high + tolerance)
        return;
    if(++_count <= 5)
        _text << "pixel " << x << "," << y << " channel " << channel << ": got " << got
              << ", expected " << low << ".." << high << "\n";
}

void PixelMismatches::check(int x, int y, const float *got, const ColourRange &want)
{
    for(int c = 0; c < 3; ++c)
        check(x, y, c, got[c], want.low[c], want.high[c]);
}

int checkPlane(const TextureImage &image, const DeferredScene &scene, const PlaneEquation &want,
               PixelMismatches &mismatches, const std::function<bool(const Pnt3f &)> &keep)
{
    int checked = 0;
    for(int y = 0; y < image.height(); ++y)
        for(int x = 0; x < image.width(); ++x)
        {
            const Pnt3f P = scene.pixelOnPlane(x, y, 0.0f);
            if(keep && !keep(P))
                continue;
            ++checked;
            const float got[3] = {image.at(x, y, 0), image.at(x, y, 1), image.at(x, y, 2)};
            mismatches.check(x, y, got, want(P));
        }
    return checked;
}

Matrix rotateXThenTranslate(Real32 angle, const Vec3f &t)
{
    const Real32 c = std::cos(angle);
    const Real32 s = std::sin(angle);
    Matrix m;
    m.setValue(1, 0,  0, t[0],
               0, c, -s, t[1],
               0, s,  c, t[2],
               0, 0,  0, 1);
    return m;
}

} // namespace testsupport
