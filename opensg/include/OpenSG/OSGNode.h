#ifndef _OSGNODE_H_
#define _OSGNODE_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGNodePtr.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGDynamicVolume.h>

#include <string>
#include <vector>

namespace osg
{

class Node : public AttachmentContainer
{
    OSG_FC_TYPE_COMMON_DECL(Node, AttachmentContainer)

  public:
    enum
    {
        VolumeFieldId   = Inherited::NextFieldId,
        TravMaskFieldId = VolumeFieldId   + 1,
        ParentFieldId   = TravMaskFieldId + 1,
        ChildrenFieldId = ParentFieldId   + 1,
        CoreFieldId     = ChildrenFieldId + 1,
        NextFieldId     = CoreFieldId     + 1
    };
    OSG_FIELD_MASK(Volume)
    OSG_FIELD_MASK(TravMask)
    OSG_FIELD_MASK(Parent)
    OSG_FIELD_MASK(Children)
    OSG_FIELD_MASK(Core)

    static NodePtr create     (void);
    static NodePtr createEmpty(void);
    virtual FieldContainerPtr shallowCopy(void) const override;

    // field access
          SFDynamicVolume *editSFVolume  (void)       { return &_sfVolume;   }
    const SFDynamicVolume *getSFVolume   (void) const { return &_sfVolume;   }
          SFDynamicVolume *getSFVolume   (void)       { return &_sfVolume;   }
          SFUInt32        *editSFTravMask(void)       { return &_sfTravMask; }
    const SFUInt32        *getSFTravMask (void) const { return &_sfTravMask; }
          SFUInt32        *getSFTravMask (void)       { return &_sfTravMask; }
    const SFNodePtr       *getSFParent   (void) const { return &_sfParent;   }
          SFNodePtr       *getSFParent   (void)       { return &_sfParent;   }
          MFNodePtr       *editMFChildren(void)       { return &_mfChildren; }
    const MFNodePtr       *getMFChildren (void) const { return &_mfChildren; }
          MFNodePtr       *getMFChildren (void)       { return &_mfChildren; }
          SFNodeCorePtr   *editSFCore    (void)       { return &_sfCore;     }
    const SFNodeCorePtr   *getSFCore     (void) const { return &_sfCore;     }
          SFNodeCorePtr   *getSFCore     (void)       { return &_sfCore;     }

    NodeCorePtr getCore(void);
    NodeCorePtr getCore(void) const;
    void        setCore(const NodeCorePtr &core);

    NodePtr getParent(void);

    UInt32  getNChildren  (void) const;
    void    addChild      (const NodePtr &childP);
    void    insertChild   (UInt32 childIndex, const NodePtr &childP);
    void    replaceChild  (UInt32 childIndex, const NodePtr &childP);
    bool    replaceChildBy(const NodePtr &childP, const NodePtr &newChildP);
    Int32   findChild     (const NodePtr &childP) const;
    void    subChild      (const NodePtr &childP);
    void    subChild      (UInt32 childIndex);
    NodePtr getChild      (UInt32 childIndex);

    void   setTravMask(UInt32 val);
    UInt32 getTravMask(void) const;
    bool   getActive  (void) const;
    void   setActive  (bool val);

    NodePtr clone(void);

    Matrix getToWorld(void);
    void   getToWorld(Matrix &result);

          DynamicVolume &getVolume      (bool update);
          DynamicVolume &editVolume     (bool update);
    const DynamicVolume &getVolume      (void) const;
    void                 getWorldVolume (DynamicVolume &result);
    void                 updateVolume   (void);
    void                 invalidateVolume(void);

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    Node(void);
    Node(const Node &source);
    virtual ~Node(void);

    virtual void onDestroy(void) override;

    void setParent(const NodePtr &parent);
    NodePtr getPtr(void) const { return NodePtr(this); }

    SFDynamicVolume _sfVolume;
    SFUInt32        _sfTravMask;
    SFNodePtr       _sfParent;
    MFNodePtr       _mfChildren;
    SFNodeCorePtr   _sfCore;

    OSG_FIELD_DESCRIPTION(SFDynamicVolume, Volume,   _sfVolume)
    OSG_FIELD_DESCRIPTION(SFUInt32,        TravMask, _sfTravMask)
    OSG_FIELD_DESCRIPTION(SFNodePtr,       Parent,   _sfParent)
    OSG_FIELD_DESCRIPTION(MFNodePtr,       Children, _mfChildren)
    OSG_FIELD_DESCRIPTION(SFNodeCorePtr,   Core,     _sfCore)
};


NodePtr cloneTree    (const NodePtr &pRootNode);

// Copies of src and of every container it holds a reference to, except those
// of the named types (and types derived from them), which are shared. The
// share string lists type names separated by commas or spaces.
FieldContainerPtr deepClone(const FieldContainerPtr &src,
                            const std::vector<std::string> &share);
FieldContainerPtr deepClone(const FieldContainerPtr &src,
                            const std::string &shareString = "");

// New nodes with deep copies of the cores; a core used by several nodes of
// the tree is copied once and used by their copies alike.
NodePtr deepCloneTree(const NodePtr &src, const std::vector<std::string> &share);
NodePtr deepCloneTree(const NodePtr &src, const std::string &shareString = "");

} // namespace osg

#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGCoredNodePtr.h>

namespace osg
{
typedef RefPtr<NodePtr> NodeRefPtr;

// A node with a new core of the given type, the core handed back on request.
template <class Core> inline
NodePtr makeCoredNode(typename Core::Ptr *coreP = NULL)
{
    NodePtr            node = Node::create();
    typename Core::Ptr core = Core::create();

    beginEditCP(node, Node::CoreFieldMask);
    node->setCore(core);
    endEditCP(node, Node::CoreFieldMask);

    if(coreP != NULL)
        *coreP = core;
    return node;
}
}

#endif
