#ifndef _OSGCAMERAATTACHMENT_H_
#define _OSGCAMERAATTACHMENT_H_

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGNode.h>

#include <vector>

namespace osg
{

OSG_FC_PTR_DECL(CameraAttachment, AttachmentPtr)

// Runtime extension, not part of OpenSG 1.8: ties a camera to its beacon
// node so that a camera read from a scene file lives as long as the scene.
// The scene file handler attaches one to the beacon of every camera in the
// file; findCameras() collects them.
class CameraAttachment : public Attachment
{
    OSG_FC_DECL(CameraAttachment, Attachment)

  public:
    enum
    {
        CameraFieldId = Inherited::NextFieldId,
        NextFieldId   = CameraFieldId + 1
    };
    OSG_FIELD_MASK(Camera)

    OSG_SFIELD_NOSET(SFCameraPtr, Camera)

  public:
    // References the new camera and releases the old one.
    void setCamera(const CameraPtr &value);

    static void initMethod(void) {}

  protected:
    CameraAttachment(void);
    CameraAttachment(const CameraAttachment &source);
    virtual ~CameraAttachment(void);

    void onCreate(const CameraAttachment *source = NULL);
    virtual void onDestroy(void) override;
};

// The camera attached to `node`, or NullFC.
CameraPtr getAttachedCamera(NodePtr node);
// Attaches `camera` to `node`, replacing an earlier one.
void      attachCamera(NodePtr node, const CameraPtr &camera);
// The attached cameras of `root` and all nodes below it, depth first.
std::vector<CameraPtr> findCameras(NodePtr root);

} // namespace osg

#endif
