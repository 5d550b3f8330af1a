#ifndef _OSGDIRECTIONALLIGHT_H_
#define _OSGDIRECTIONALLIGHT_H_

#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGSFVecTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(DirectionalLight, LightPtr)

// Direction points from the scene towards the light.
class DirectionalLight : public Light
{
    OSG_FC_DECL(DirectionalLight, Light)

  public:
    enum
    {
        DirectionFieldId = Inherited::NextFieldId,
        NextFieldId      = DirectionFieldId + 1
    };
    OSG_FIELD_MASK(Direction)

    OSG_SFIELD(SFVec3f, Direction)

  public:
    void setDirection(Real32 x, Real32 y, Real32 z);

    virtual void makeChunk(void) override;

    static void initMethod(void) {}

  protected:
    DirectionalLight(void);
    DirectionalLight(const DirectionalLight &source);
    virtual ~DirectionalLight(void);
};

typedef RefPtr<DirectionalLightPtr>    DirectionalLightRefPtr;
typedef CoredNodePtr<DirectionalLight> DirectionalLightNodePtr;

} // namespace osg

#endif
