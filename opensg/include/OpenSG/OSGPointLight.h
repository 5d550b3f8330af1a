#ifndef _OSGPOINTLIGHT_H_
#define _OSGPOINTLIGHT_H_

#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGSFVecTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(PointLight, LightPtr)

class PointLight : public Light
{
    OSG_FC_DECL(PointLight, Light)

  public:
    enum
    {
        PositionFieldId = Inherited::NextFieldId,
        NextFieldId     = PositionFieldId + 1
    };
    OSG_FIELD_MASK(Position)

    OSG_SFIELD(SFPnt3f, Position)

  public:
    void setPosition   (Real32 x, Real32 y, Real32 z);
    void setAttenuation(Real32 constant, Real32 linear, Real32 quadratic);

    virtual void makeChunk(void) override;

    static void initMethod(void) {}

  protected:
    PointLight(void);
    PointLight(const PointLight &source);
    virtual ~PointLight(void);
};

typedef RefPtr<PointLightPtr>    PointLightRefPtr;
typedef CoredNodePtr<PointLight> PointLightNodePtr;

} // namespace osg

#endif
