#ifndef _OSGLIGHT_H_
#define _OSGLIGHT_H_

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLightChunk.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGGL.h>

namespace osg
{

OSG_FC_PTR_DECL(Light, GroupPtr)

// Base of the light cores. Position and direction are given in the
// coordinate system of the Beacon node (of the light's own node without one).
class Light : public Group
{
    OSG_FC_ABSTRACT_DECL(Light, Group)

  public:
    enum
    {
        AmbientFieldId              = Inherited::NextFieldId,
        DiffuseFieldId              = AmbientFieldId              + 1,
        SpecularFieldId             = DiffuseFieldId              + 1,
        BeaconFieldId               = SpecularFieldId             + 1,
        OnFieldId                   = BeaconFieldId               + 1,
        ConstantAttenuationFieldId  = OnFieldId                   + 1,
        LinearAttenuationFieldId    = ConstantAttenuationFieldId  + 1,
        QuadraticAttenuationFieldId = LinearAttenuationFieldId    + 1,
        ShadowIntensityFieldId      = QuadraticAttenuationFieldId + 1,
        ShadowModeFieldId           = ShadowIntensityFieldId      + 1,
        NextFieldId                 = ShadowModeFieldId           + 1
    };
    OSG_FIELD_MASK(Ambient)
    OSG_FIELD_MASK(Diffuse)
    OSG_FIELD_MASK(Specular)
    OSG_FIELD_MASK(Beacon)
    OSG_FIELD_MASK(On)
    OSG_FIELD_MASK(ConstantAttenuation)
    OSG_FIELD_MASK(LinearAttenuation)
    OSG_FIELD_MASK(QuadraticAttenuation)
    OSG_FIELD_MASK(ShadowIntensity)
    OSG_FIELD_MASK(ShadowMode)

    OSG_SFIELD      (SFColor4f, Ambient)
    OSG_SFIELD      (SFColor4f, Diffuse)
    OSG_SFIELD      (SFColor4f, Specular)
    OSG_SFIELD_NOSET(SFNodePtr, Beacon)
    OSG_SFIELD      (SFBool,    On)
    OSG_SFIELD      (SFReal32,  ConstantAttenuation)
    OSG_SFIELD      (SFReal32,  LinearAttenuation)
    OSG_SFIELD      (SFReal32,  QuadraticAttenuation)
    OSG_SFIELD      (SFReal32,  ShadowIntensity)
    OSG_SFIELD      (SFUInt32,  ShadowMode)

  public:
    enum { CAST_SHADOW_AUTO = 0, CAST_SHADOW_ON = 1, CAST_SHADOW_OFF = 2 };

    void setAmbient (Real32 r, Real32 g, Real32 b, Real32 a);
    void setDiffuse (Real32 r, Real32 g, Real32 b, Real32 a);
    void setSpecular(Real32 r, Real32 g, Real32 b, Real32 a);

    // References the new beacon and releases the old one.
    void setBeacon(const NodePtr &beacon);

    // The chunk that sets a GL light as the fields say; makeChunk (re)fills
    // it from the fields, creating it on first use.
    LightChunkPtr getChunk (void);
    virtual void  makeChunk(void);

    // Runtime extensions:
    // The beacon's (else the light node's) to-world matrix; false if
    // neither is known.
    bool getBeaconToWorld(Matrix &result, const NodePtr &lightNode = NullFC);

    // Sets GL light `light` through the chunk, leaving it enabled or not as
    // it was; position and direction go through the current modelview
    // matrix, which the caller sets to viewing * beacon-to-world.
    void activateGL(GLenum light) const;

    static void initMethod(void);

  protected:
    Light(void);
    Light(const Light &source);
    virtual ~Light(void);

    void onCreate(const Light *source = NULL);
    virtual void onDestroy(void) override;

    Action::ResultE renderEnter(Action *action);
    Action::ResultE renderLeave(Action *action);

    LightChunkPtr _pChunk;
};

typedef RefPtr<LightPtr> LightRefPtr;

} // namespace osg

#endif
