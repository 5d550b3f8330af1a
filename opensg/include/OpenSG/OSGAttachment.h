#ifndef _OSGATTACHMENT_H_
#define _OSGATTACHMENT_H_

#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGAttachmentFields.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace osg
{

class Attachment : public FieldContainer
{
    OSG_FC_ABSTRACT_DECL(Attachment, FieldContainer)

  public:
    enum
    {
        ParentsFieldId  = Inherited::NextFieldId,
        InternalFieldId = ParentsFieldId + 1,
        NextFieldId     = InternalFieldId + 1
    };
    OSG_FIELD_MASK(Parents)
    OSG_FIELD_MASK(Internal)

    OSG_MFIELD(MFFieldContainerPtr, Parents)
    OSG_SFIELD(SFBool, Internal)

  public:
    void addParent(FieldContainerPtr parent);
    void subParent(FieldContainerPtr parent);
    Int32 findParent(FieldContainerPtr parent);

    static void initMethod(void) {}

  protected:
    Attachment(void);
    Attachment(const Attachment &source);
    virtual ~Attachment(void);
};

} // namespace osg

#endif
