#include <OpenSG/OSGCameraAttachment.h>

namespace osg
{

OSG_FC_IMPL(CameraAttachment, "Attachment")

CameraAttachment::CameraAttachment(void) :
    Inherited(),
    _sfCamera()
{
}

CameraAttachment::CameraAttachment(const CameraAttachment &source) :
    Inherited(source),
    _sfCamera(source._sfCamera)
{
}

CameraAttachment::~CameraAttachment(void)
{
}

// A copy holds the same camera and needs its own reference.
void CameraAttachment::onCreate(const CameraAttachment *)
{
    addRefCP(_sfCamera.getValue());
}

void CameraAttachment::onDestroy(void)
{
    CameraPtr camera = _sfCamera.getValue();
    _sfCamera.setValue(NullFC);
    subRefCP(camera);

    Inherited::onDestroy();
}

void CameraAttachment::setCamera(const CameraPtr &value)
{
    if(_sfCamera.getValue() == value)
        return;

    CameraPtr old = _sfCamera.getValue();
    addRefCP(value);
    _sfCamera.setValue(value);
    subRefCP(old);
}

CameraPtr getAttachedCamera(NodePtr node)
{
    if(node == NullFC)
        return NullFC;
    CameraAttachmentPtr attachment = CameraAttachmentPtr::dcast(
        node->findAttachment(CameraAttachment::getClassType().getGroupId()));
    return attachment != NullFC ? attachment->getCamera() : CameraPtr(NullFC);
}

void attachCamera(NodePtr node, const CameraPtr &camera)
{
    if(node == NullFC)
        return;
    CameraAttachmentPtr attachment = CameraAttachmentPtr::dcast(
        node->findAttachment(CameraAttachment::getClassType().getGroupId()));
    if(attachment == NullFC)
    {
        attachment = CameraAttachment::create();
        beginEditCP(node, AttachmentContainer::AttachmentsFieldMask);
        node->addAttachment(attachment);
        endEditCP(node, AttachmentContainer::AttachmentsFieldMask);
    }
    beginEditCP(attachment, CameraAttachment::CameraFieldMask);
    attachment->setCamera(camera);
    endEditCP(attachment, CameraAttachment::CameraFieldMask);
}

namespace
{

void collectCameras(NodePtr node, std::vector<CameraPtr> &cameras)
{
    CameraPtr camera = getAttachedCamera(node);
    if(camera != NullFC)
        cameras.push_back(camera);
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
        collectCameras(node->getChild(i), cameras);
}

} // namespace

std::vector<CameraPtr> findCameras(NodePtr root)
{
    std::vector<CameraPtr> cameras;
    if(root != NullFC)
        collectCameras(root, cameras);
    return cameras;
}

} // namespace osg
