#ifndef _OSGNODEFIELDS_H_
#define _OSGNODEFIELDS_H_

#include <OpenSG/OSGNodePtr.h>

namespace osg
{

template <>
struct FieldDataTraits<NodePtr> : public FieldTraitsRecurseMapper<NodePtr, true>
{
    static DataType    &getType (void) { static DataType t("NodePtr", "AttachmentContainerPtr"); return t; }
    static const Char8 *getSName(void) { return "SFNodePtr"; }
    static const Char8 *getMName(void) { return "MFNodePtr"; }
};

typedef SField<NodePtr>     SFNodePtr;
typedef MField<NodePtr>     MFNodePtr;
typedef SField<NodeCorePtr> SFNodeCorePtr;
typedef MField<NodeCorePtr> MFNodeCorePtr;

} // namespace osg

#endif
