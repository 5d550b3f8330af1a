#ifndef _OSGNODECORE_H_
#define _OSGNODECORE_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGNodeCoreFields.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVolume.h>

namespace osg
{

class NodeCore : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(NodeCore, AttachmentContainer)

  public:
    enum
    {
        ParentsFieldId = Inherited::NextFieldId,
        NextFieldId    = ParentsFieldId + 1
    };
    OSG_FIELD_MASK(Parents)

    OSG_MFIELD(MFNodePtr, Parents)

  public:
    static const bool isNodeCore = true;

    virtual void invalidateVolume(void);
    virtual void accumulateMatrix(Matrix &result);

    static void initMethod(void) {}

  protected:
    friend class Node;

    NodeCore(void);
    NodeCore(const NodeCore &source);
    virtual ~NodeCore(void);

    virtual void adjustVolume(Volume &volume);

    void addParent(const NodePtr &parent);
    void subParent(const NodePtr &parent);

    NodeCorePtr getPtr(void) const;
};

} // namespace osg

#endif
