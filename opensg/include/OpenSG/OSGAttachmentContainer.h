#ifndef _OSGATTACHMENTCONTAINER_H_
#define _OSGATTACHMENTCONTAINER_H_

#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGAttachmentFields.h>
#include <OpenSG/OSGAttachmentContainerFields.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace osg
{

class AttachmentContainer : public FieldContainer
{
    OSG_FC_ABSTRACT_DECL(AttachmentContainer, FieldContainer)

  public:
    enum
    {
        AttachmentsFieldId = Inherited::NextFieldId,
        NextFieldId        = AttachmentsFieldId + 1
    };
    OSG_FIELD_MASK(Attachments)

    OSG_SFIELD_NOSET(SFAttachmentMap, Attachments)

  public:
    void          addAttachment (const AttachmentPtr &fieldContainerP, UInt16 binding = 0);
    void          subAttachment (const AttachmentPtr &fieldContainerP, UInt16 binding = 0);
    AttachmentPtr findAttachment(UInt32 groupId, UInt16 binding = 0);
    AttachmentPtr findAttachment(const FieldContainerType &type, UInt16 binding = 0);

    static void initMethod(void) {}

  protected:
    AttachmentContainer(void);
    AttachmentContainer(const AttachmentContainer &source);
    virtual ~AttachmentContainer(void);

    virtual void onDestroy(void) override;
};

} // namespace osg

#endif
