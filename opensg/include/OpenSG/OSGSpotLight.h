#ifndef _OSGSPOTLIGHT_H_
#define _OSGSPOTLIGHT_H_

#include <OpenSG/OSGPointLight.h>

namespace osg
{

OSG_FC_PTR_DECL(SpotLight, PointLightPtr)

// SpotCutOff is the half angle of the cone in radians.
class SpotLight : public PointLight
{
    OSG_FC_DECL(SpotLight, PointLight)

  public:
    enum
    {
        DirectionFieldId    = Inherited::NextFieldId,
        SpotExponentFieldId = DirectionFieldId    + 1,
        SpotCutOffFieldId   = SpotExponentFieldId + 1,
        NextFieldId         = SpotCutOffFieldId   + 1
    };
    OSG_FIELD_MASK(Direction)
    OSG_FIELD_MASK(SpotExponent)
    OSG_FIELD_MASK(SpotCutOff)

    OSG_SFIELD(SFVec3f,  Direction)
    OSG_SFIELD(SFReal32, SpotExponent)
    OSG_SFIELD(SFReal32, SpotCutOff)

  public:
    void   setSpotDirection(Real32 x, Real32 y, Real32 z);
    void   setSpotCutOffDeg(Real32 angle);
    Real32 getSpotCutOffDeg(void);

    virtual void makeChunk(void) override;

    static void initMethod(void) {}

  protected:
    SpotLight(void);
    SpotLight(const SpotLight &source);
    virtual ~SpotLight(void);
};

typedef RefPtr<SpotLightPtr>    SpotLightRefPtr;
typedef CoredNodePtr<SpotLight> SpotLightNodePtr;

} // namespace osg

#endif
