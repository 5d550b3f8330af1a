#ifndef _OSGSIMPLEATTACHMENTS_H_
#define _OSGSIMPLEATTACHMENTS_H_

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGAttachmentContainer.h>

#include <string>

namespace osg
{

OSG_FC_PTR_DECL(Name, AttachmentPtr)

class Name : public Attachment
{
    OSG_FC_DECL(Name, Attachment)

  public:
    enum
    {
        NameFieldId = Inherited::NextFieldId,
        NextFieldId = NameFieldId + 1
    };
    OSG_FIELD_MASK(Name)

    OSG_SFIELD_NOSET(SFString, Name)

  public:

    static void initMethod(void) {}

  protected:
    Name(void) {}
    Name(const Name &source) : Inherited(source), _sfName(source._sfName) {}
    virtual ~Name(void) {}
};

const Char8 *getName(AttachmentContainerPtr container);
void         setName(AttachmentContainerPtr container, const std::string &name);
void         setName(AttachmentContainerPtr container, const Char8 *name);

} // namespace osg

#endif
