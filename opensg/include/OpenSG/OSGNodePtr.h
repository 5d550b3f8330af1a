#ifndef _OSGNODEPTR_H_
#define _OSGNODEPTR_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGNodeCoreFields.h>

namespace osg
{

class Node;

class NodePtr : public AttachmentContainerPtr
{
  public:
    typedef Node                   StoredObjectType;
    typedef NodePtr                ObjectType;
    typedef AttachmentContainerPtr Inherited;

    NodePtr(void) : Inherited() {}
    NodePtr(const NullFieldContainerPtr &) : Inherited() {}
    explicit NodePtr(const Node &source);
    explicit NodePtr(const Node *source);

    template <class InTypeT>
    static NodePtr dcast(const InTypeT oIn)
    {
        return NodePtr(dynamic_cast<const Node *>(oIn.getBaseCPtr()));
    }

    Node *operator->(void) const { return reinterpret_cast<Node *>(getNodeCPtr()); }
    Node &operator* (void) const { return *operator->(); }
    Node *getCPtr   (void) const { return operator->(); }

    // Legacy access to the node's core through the pointer.
    NodeCore *getCore(void) const;

  private:
    FieldContainer *getNodeCPtr(void) const;
};

// A pointer to a node whose -> reaches the node's core, as action callbacks
// registered per core type receive it.
class CNodePtr : public AttachmentContainerPtr
{
  public:
    typedef NodeCore               StoredObjectType;
    typedef AttachmentContainerPtr Inherited;

    CNodePtr(void) : Inherited() {}
    CNodePtr(const NullFieldContainerPtr &) : Inherited() {}
    CNodePtr(const NodePtr &source) : Inherited(source) {}

    NodeCore *operator->(void) const;
    NodeCore &operator* (void) const { return *operator->(); }
    NodeCore *getCPtr   (void) const { return operator->(); }
    Node     *getNode   (void) const;
};

NodePtr makeNodeFor(NodeCorePtr core);

} // namespace osg

#endif
