#ifndef TESTS_SUPPORT_LIGHTING_H
#define TESTS_SUPPORT_LIGHTING_H

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>

#include <functional>
#include <sstream>
#include <string>

namespace testsupport
{

// What the light factories set and the lighting equations read. The
// shadow intensity defaults to the runtime's own (0: casts full shadows).
struct PointLightParams
{
    osg::Pnt3f   position;
    osg::Color3f diffuse         = osg::Color3f(1, 1, 1);
    osg::Color3f specular        = osg::Color3f(0, 0, 0);
    osg::Vec3f   attenuation     = osg::Vec3f(1, 0, 0); // constant, linear, quadratic
    osg::Real32  shadowIntensity = 0.0f;
};

struct SpotLightParams
{
    osg::Pnt3f   position;
    osg::Vec3f   direction;
    osg::Real32  cutOff;                                // half angle, radians
    osg::Real32  exponent;
    osg::Vec3f   attenuation;
    osg::Color3f diffuse;
    osg::Color3f specular;
    osg::Real32  shadowIntensity = 1.0f;
};

struct DirectionalLightParams
{
    osg::Vec3f   direction;                             // towards the light
    osg::Color3f diffuse         = osg::Color3f(1, 1, 1);
    osg::Color3f specular        = osg::Color3f(0, 0, 0);
    osg::Real32  shadowIntensity = 1.0f;
};

// Each returns a light with one reference, which the caller gives back.
osg::PointLightPtr       makeLight(const PointLightParams       &p);
osg::SpotLightPtr        makeLight(const SpotLightParams        &p);
osg::DirectionalLightPtr makeLight(const DirectionalLightParams &p);

void setShadowIntensity(osg::LightPtr light, osg::Real32 intensity);

struct SurfaceParams
{
    osg::Color3f diffuse;
    osg::Color3f specular  = osg::Color3f(0, 0, 0);
    osg::Real32  shininess = 1.0f;
};

// A light's colour at surface point P with normal N seen from eye E, by the
// Phong equation with OpenGL's attenuation and spot terms. The shininess
// reaches the light pass as log2(s) / 8 in eight bits, so each channel is
// the range over shininess half a step either side.
struct ColourRange { osg::Vec3f low, high; };

ColourRange lightAt(const PointLightParams       &light, const SurfaceParams &surface,
                    const osg::Pnt3f &P, const osg::Vec3f &N, const osg::Pnt3f &E);
ColourRange lightAt(const SpotLightParams        &light, const SurfaceParams &surface,
                    const osg::Pnt3f &P, const osg::Vec3f &N, const osg::Pnt3f &E);
ColourRange lightAt(const DirectionalLightParams &light, const SurfaceParams &surface,
                    const osg::Pnt3f &P, const osg::Vec3f &N, const osg::Pnt3f &E);

// Angle between a spot light's axis and the ray from it through P.
osg::Real32 angleFromAxis(const SpotLightParams &light, const osg::Pnt3f &P);

// Collects pixels outside their expected range, so that a wrong image
// reports a few of them rather than thousands. The tolerance is absolute
// plus 1 % of the expected value, for the half-float lit image.
class PixelMismatches
{
  public:
    explicit PixelMismatches(float tolerance = 0.01f) : _tolerance(tolerance) {}

    void check(int x, int y, int channel, float got, float low, float high);
    void check(int x, int y, const float *got, const ColourRange &want);

    int         count() const { return _count; }
    std::string text () const { return _text.str(); }

  private:
    float              _tolerance;
    int                _count = 0;
    std::ostringstream _text;
};

class TextureImage;
class DeferredScene;

typedef std::function<ColourRange(const osg::Pnt3f &)> PlaneEquation;

// A light's equation on the plane z = 0, facing +Z, seen from the eye.
template <class Light>
PlaneEquation onPlane(const Light &light, const SurfaceParams &surface, const osg::Pnt3f &eye)
{
    return [=](const osg::Pnt3f &P) {
        return lightAt(light, surface, P, osg::Vec3f(0, 0, 1), eye);
    };
}

// Checks each pixel of the scene's plane z = 0 whose point keep accepts
// (all if none) against the equation; returns how many it checked.
int checkPlane(const TextureImage &image, const DeferredScene &scene, const PlaneEquation &want,
               PixelMismatches &mismatches,
               const std::function<bool(const osg::Pnt3f &)> &keep = nullptr);

// Rotation by angle (radians) about X followed by a translation, written out
// row by row.
osg::Matrix rotateXThenTranslate(osg::Real32 angle, const osg::Vec3f &t);

} // namespace testsupport

#endif
