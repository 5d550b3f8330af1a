#ifndef _OSGPERSPECTIVECAMERA_H_
#define _OSGPERSPECTIVECAMERA_H_

#include <OpenSG/OSGCamera.h>

namespace osg
{

OSG_FC_PTR_DECL(PerspectiveCamera, CameraPtr)

// Fov is the full opening angle in radians (values above Pi are taken as
// degrees); Aspect corrects for non-square pixels.
class PerspectiveCamera : public Camera
{
    OSG_FC_DECL(PerspectiveCamera, Camera)

  public:
    enum
    {
        FovFieldId     = Inherited::NextFieldId,
        FovModeFieldId = FovFieldId     + 1,
        AspectFieldId  = FovModeFieldId + 1,
        NextFieldId    = AspectFieldId  + 1
    };
    OSG_FIELD_MASK(Fov)
    OSG_FIELD_MASK(FovMode)
    OSG_FIELD_MASK(Aspect)

    OSG_CAMERA_SFIELD(SFReal32, Fov)
    OSG_CAMERA_SFIELD(SFUInt32, FovMode)
    OSG_CAMERA_SFIELD(SFReal32, Aspect)

  public:
    enum { FOV_vertical = 0, FOV_horizontal, FOV_smaller } FovMode;

    virtual void getProjection(Matrix &result, UInt32 width, UInt32 height) override;

    static void initMethod(void) {}

  protected:
    PerspectiveCamera(void);
    PerspectiveCamera(const PerspectiveCamera &source);
    virtual ~PerspectiveCamera(void);
};

typedef RefPtr<PerspectiveCameraPtr> PerspectiveCameraRefPtr;

} // namespace osg

#endif
