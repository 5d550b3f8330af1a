#ifndef _OSGMATRIXCAMERA_H_
#define _OSGMATRIXCAMERA_H_

#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGSFMathTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(MatrixCamera, CameraPtr)

// Takes projection and world-to-eye matrices as given; the beacon is ignored.
class MatrixCamera : public Camera
{
    OSG_FC_DECL(MatrixCamera, Camera)

  public:
    enum
    {
        ProjectionMatrixFieldId = Inherited::NextFieldId,
        ModelviewMatrixFieldId  = ProjectionMatrixFieldId + 1,
        NextFieldId             = ModelviewMatrixFieldId  + 1
    };
    OSG_FIELD_MASK(ProjectionMatrix)
    OSG_FIELD_MASK(ModelviewMatrix)

    OSG_CAMERA_SFIELD(SFMatrix, ProjectionMatrix)
    OSG_CAMERA_SFIELD(SFMatrix, ModelviewMatrix)

  public:
    virtual void getProjection(Matrix &result, UInt32 width, UInt32 height) override;
    virtual void getViewing   (Matrix &result, UInt32 width, UInt32 height) override;

    static void initMethod(void) {}

  protected:
    MatrixCamera(void);
    MatrixCamera(const MatrixCamera &source);
    virtual ~MatrixCamera(void);
};

typedef RefPtr<MatrixCameraPtr> MatrixCameraRefPtr;

} // namespace osg

#endif
