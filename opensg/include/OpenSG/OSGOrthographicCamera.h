#ifndef _OSGORTHOGRAPHICCAMERA_H_
#define _OSGORTHOGRAPHICCAMERA_H_

#include <OpenSG/OSGCamera.h>

namespace osg
{

OSG_FC_PTR_DECL(OrthographicCamera, CameraPtr)

// VerticalSize and HorizontalSize are full extents; a non-positive one
// follows from the other and the window's aspect.
class OrthographicCamera : public Camera
{
    OSG_FC_DECL(OrthographicCamera, Camera)

  public:
    enum
    {
        VerticalSizeFieldId   = Inherited::NextFieldId,
        HorizontalSizeFieldId = VerticalSizeFieldId   + 1,
        AspectFieldId         = HorizontalSizeFieldId + 1,
        NextFieldId           = AspectFieldId         + 1
    };
    OSG_FIELD_MASK(VerticalSize)
    OSG_FIELD_MASK(HorizontalSize)
    OSG_FIELD_MASK(Aspect)

    OSG_CAMERA_SFIELD(SFReal32, VerticalSize)
    OSG_CAMERA_SFIELD(SFReal32, HorizontalSize)
    OSG_CAMERA_SFIELD(SFReal32, Aspect)

  public:
    virtual void getProjection(Matrix &result, UInt32 width, UInt32 height) override;

    static void initMethod(void) {}

  protected:
    OrthographicCamera(void);
    OrthographicCamera(const OrthographicCamera &source);
    virtual ~OrthographicCamera(void);
};

typedef RefPtr<OrthographicCameraPtr> OrthographicCameraRefPtr;

} // namespace osg

#endif
