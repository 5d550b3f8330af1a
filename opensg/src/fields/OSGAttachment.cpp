#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSimpleAttachments.h>

#include <algorithm>

namespace osg
{

// --- AttachmentContainer ------------------------------------------------

OSG_FC_ABSTRACT_IMPL(AttachmentContainer, "FieldContainer")

AttachmentContainer::AttachmentContainer(void) :
    Inherited(), _sfAttachments()
{
}

// Copies share the attachments and take their own references.
AttachmentContainer::AttachmentContainer(const AttachmentContainer &source) :
    Inherited(source), _sfAttachments(source._sfAttachments)
{
    for(auto &entry : _sfAttachments.getValue())
        addRefCP(entry.second);
}

AttachmentContainer::~AttachmentContainer(void)
{
}

void AttachmentContainer::onDestroy(void)
{
    AttachmentMap attachments;
    attachments.swap(_sfAttachments.getValue());
    for(auto &entry : attachments)
    {
        entry.second->subParent(FieldContainerPtr(this));
        subRefCP(entry.second);
    }
    Inherited::onDestroy();
}

void AttachmentContainer::addAttachment(const AttachmentPtr &fieldContainerP, UInt16 binding)
{
    if(fieldContainerP == NullFC)
        return;

    UInt32 key = (UInt32(fieldContainerP->getGroupId()) << 16) | binding;

    addRefCP(fieldContainerP);
    beginEditCP(fieldContainerP, Attachment::ParentsFieldMask);
    fieldContainerP->addParent(FieldContainerPtr(this));
    endEditCP(fieldContainerP, Attachment::ParentsFieldMask);

    AttachmentMap &map = _sfAttachments.getValue();
    auto it = map.find(key);
    if(it != map.end())
    {
        beginEditCP(it->second, Attachment::ParentsFieldMask);
        it->second->subParent(FieldContainerPtr(this));
        endEditCP(it->second, Attachment::ParentsFieldMask);
        subRefCP(it->second);
        it->second = fieldContainerP;
    }
    else
        map[key] = fieldContainerP;
}

void AttachmentContainer::subAttachment(const AttachmentPtr &fieldContainerP, UInt16 binding)
{
    if(fieldContainerP == NullFC)
        return;

    UInt32 key = (UInt32(fieldContainerP->getGroupId()) << 16) | binding;
    AttachmentMap &map = _sfAttachments.getValue();
    auto it = map.find(key);
    if(it == map.end() || it->second != fieldContainerP)
        return;

    beginEditCP(fieldContainerP, Attachment::ParentsFieldMask);
    fieldContainerP->subParent(FieldContainerPtr(this));
    endEditCP(fieldContainerP, Attachment::ParentsFieldMask);
    map.erase(it);
    subRefCP(fieldContainerP);
}

AttachmentPtr AttachmentContainer::findAttachment(UInt32 groupId, UInt16 binding)
{
    AttachmentMap &map = _sfAttachments.getValue();
    auto it = map.find((groupId << 16) | binding);
    return it != map.end() ? it->second : AttachmentPtr();
}

AttachmentPtr AttachmentContainer::findAttachment(const FieldContainerType &type, UInt16 binding)
{
    return findAttachment(type.getGroupId(), binding);
}

// --- Attachment ---------------------------------------------------------

OSG_FC_ABSTRACT_IMPL(Attachment, "FieldContainer")

Attachment::Attachment(void) :
    Inherited(), _mfParents(), _sfInternal(false)
{
}

// A copy starts without parents: it is attached nowhere yet.
Attachment::Attachment(const Attachment &source) :
    Inherited(source), _mfParents(), _sfInternal(source._sfInternal)
{
}

Attachment::~Attachment(void)
{
}

void Attachment::addParent(FieldContainerPtr parent)
{
    _mfParents.push_back(parent);
}

void Attachment::subParent(FieldContainerPtr parent)
{
    auto it = _mfParents.find(parent);
    if(it != _mfParents.end())
        _mfParents.erase(it);
}

Int32 Attachment::findParent(FieldContainerPtr parent)
{
    auto it = _mfParents.find(parent);
    return it != _mfParents.end() ? Int32(it - _mfParents.begin()) : -1;
}

// --- Name -----------------------------------------------------------------

OSG_FC_IMPL(Name, "Attachment")

const Char8 *getName(AttachmentContainerPtr container)
{
    if(container == NullFC)
        return NULL;
    NamePtr name = NamePtr::dcast(container->findAttachment(Name::getClassType().getGroupId()));
    return name != NullFC ? name->getName().c_str() : NULL;
}

void setName(AttachmentContainerPtr container, const std::string &name)
{
    if(container == NullFC)
        return;
    NamePtr attachment = NamePtr::dcast(container->findAttachment(Name::getClassType().getGroupId()));
    if(attachment == NullFC)
    {
        attachment = Name::create();
        beginEditCP(container, AttachmentContainer::AttachmentsFieldMask);
        container->addAttachment(attachment);
        endEditCP(container, AttachmentContainer::AttachmentsFieldMask);
    }
    beginEditCP(attachment, Name::NameFieldMask);
    attachment->editName() = name;
    endEditCP(attachment, Name::NameFieldMask);
}

void setName(AttachmentContainerPtr container, const Char8 *name)
{
    setName(container, std::string(name != NULL ? name : ""));
}

} // namespace osg
