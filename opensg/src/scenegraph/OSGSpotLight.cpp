#include <OpenSG/OSGSpotLight.h>

namespace osg
{

OSG_FC_IMPL(SpotLight, "PointLight")

SpotLight::SpotLight(void) :
    Inherited      (),
    _sfDirection   (Vec3f(0, 0, 1)),
    _sfSpotExponent(0.f),
    _sfSpotCutOff  (0.f)
{
}

SpotLight::SpotLight(const SpotLight &source) :
    Inherited      (source),
    _sfDirection   (source._sfDirection),
    _sfSpotExponent(source._sfSpotExponent),
    _sfSpotCutOff  (source._sfSpotCutOff)
{
}

SpotLight::~SpotLight(void)
{
}

void SpotLight::setSpotDirection(Real32 x, Real32 y, Real32 z)
{
    _sfDirection.getValue().setValues(x, y, z);
}

void SpotLight::setSpotCutOffDeg(Real32 angle)
{
    setSpotCutOff(osgdegree2rad(angle));
}

Real32 SpotLight::getSpotCutOffDeg(void)
{
    return osgrad2degree(getSpotCutOff());
}

// GL takes the cut-off in degrees and only up to 90, or exactly 180.
void SpotLight::makeChunk(void)
{
    Inherited::makeChunk();

    Real32 cutoff = osgrad2degree(getSpotCutOff());
    if(cutoff > 90.f)
        cutoff = 180.f;

    _pChunk->setDirection(getDirection());
    _pChunk->setExponent (getSpotExponent());
    _pChunk->setCutoff   (cutoff);
}

} // namespace osg
