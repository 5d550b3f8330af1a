#ifndef _OSGCAMERA_H_
#define _OSGCAMERA_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(Camera, AttachmentContainerPtr)

class DrawActionBase;
class Viewport;

// A camera's field accessors are virtual so that decorators can forward them.
#define OSG_CAMERA_SFIELD(FIELDTYPE, NAME)                                         \
  public:                                                                          \
    virtual       FIELDTYPE *editSF##NAME(void)       { return &_sf##NAME; }       \
    virtual const FIELDTYPE *getSF##NAME (void) const { return &_sf##NAME; }       \
    virtual       FIELDTYPE *getSF##NAME (void)       { return &_sf##NAME; }       \
    virtual       FIELDTYPE::StoredType &edit##NAME(void)       { return _sf##NAME.getValue(); } \
    virtual const FIELDTYPE::StoredType &get##NAME (void) const { return _sf##NAME.getValue(); } \
    virtual       FIELDTYPE::StoredType &get##NAME (void)       { return _sf##NAME.getValue(); } \
    virtual void set##NAME(const FIELDTYPE::StoredType &value) { _sf##NAME.setValue(value); } \
  protected:                                                                       \
    FIELDTYPE _sf##NAME;                                                           \
    OSG_FIELD_DESCRIPTION(FIELDTYPE, NAME, _sf##NAME)

class Camera : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(Camera, AttachmentContainer)

  public:
    enum
    {
        BeaconFieldId = Inherited::NextFieldId,
        NearFieldId   = BeaconFieldId + 1,
        FarFieldId    = NearFieldId   + 1,
        NextFieldId   = FarFieldId    + 1
    };
    OSG_FIELD_MASK(Beacon)
    OSG_FIELD_MASK(Near)
    OSG_FIELD_MASK(Far)

    OSG_CAMERA_SFIELD(SFNodePtr, Beacon)
    OSG_CAMERA_SFIELD(SFReal32,  Near)
    OSG_CAMERA_SFIELD(SFReal32,  Far)

  public:
    // GL_PROJECTION = projection * projection translation, GL_MODELVIEW =
    // viewing; setupProjection leaves the modelview alone.
    virtual void setup          (DrawActionBase *action, const Viewport &port);
    virtual void setupProjection(DrawActionBase *action, const Viewport &port);

    virtual void getProjection           (Matrix &result, UInt32 width, UInt32 height);
    virtual void getProjectionTranslation(Matrix &result, UInt32 width, UInt32 height);
    virtual void getViewing              (Matrix &result, UInt32 width, UInt32 height);

    // World space: planes of projection * projection translation * viewing.
    virtual void getFrustum(FrustumVolume &result, const Viewport &port);
    virtual void getFrustum(FrustumVolume &result, UInt32 width, UInt32 height);

    virtual void getWorldToScreen(Matrix &result, const Viewport &port);
    virtual void getDecoration   (Matrix &result, UInt32 width, UInt32 height);

    // The world-space ray through window pixel (x, y), y counted from the
    // top; t receives the distance from the near to the far plane.
    bool calcViewRay(Line &line, Int32 x, Int32 y, const Viewport &port, Real32 *t = NULL);

    static void initMethod(void) {}

  protected:
    Camera(void);
    Camera(const Camera &source);
    virtual ~Camera(void);
};

typedef RefPtr<CameraPtr> CameraRefPtr;

} // namespace osg

#endif
