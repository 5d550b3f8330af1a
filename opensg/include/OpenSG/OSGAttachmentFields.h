#ifndef _OSGATTACHMENTFIELDS_H_
#define _OSGATTACHMENTFIELDS_H_

#include <OpenSG/OSGFieldContainer.h>

#include <map>

namespace osg
{

class Attachment;
typedef FCPtr<FieldContainerPtr, Attachment> AttachmentPtr;
typedef SField<AttachmentPtr>                SFAttachmentPtr;
typedef MField<AttachmentPtr>                MFAttachmentPtr;

// Attachments keyed by (group id << 16) | binding.
typedef std::map<UInt32, AttachmentPtr> AttachmentMap;

template <>
struct FieldDataTraits<AttachmentMap> : public FieldTraitsRecurseMapper<AttachmentMap, false>
{
    static DataType    &getType (void) { static DataType t("AttachmentMap", NULL); return t; }
    static const Char8 *getSName(void) { return "SFAttachmentMap"; }
    static const Char8 *getMName(void) { return "MFAttachmentMap"; }
};

typedef SField<AttachmentMap> SFAttachmentMap;

} // namespace osg

#endif
