#ifndef _OSGCOREDNODEPTR_H_
#define _OSGCOREDNODEPTR_H_

#include <OpenSG/OSGNode.h>

namespace osg
{

// A node paired with a core of a known type; holds a reference on the node.
template <class Core>
class CoredNodePtr
{
  public:
    typedef typename Core::Ptr CorePtr;

    CoredNodePtr(void) : _node(), _core() {}
    explicit CoredNodePtr(const NodePtr &node) : _node(), _core() { setNode(node); }
    CoredNodePtr(const CoredNodePtr &other) : _node(), _core() { setNode(other._node); }
    ~CoredNodePtr(void) { subRefCP(_node); }

    static CoredNodePtr create(void)
    {
        CoredNodePtr result;
        result.setNode(makeNodeFor(Core::create()));
        return result;
    }

    CoredNodePtr &operator =(const CoredNodePtr &other) { setNode(other._node); return *this; }
    CoredNodePtr &operator =(const NodePtr &node)       { setNode(node);        return *this; }

    NodePtr node(void) const { return _node; }
    CorePtr core(void) const { return _core; }
    typename Core::Ptr::StoredObjectType *operator->(void) const { return _core.operator->(); }
    operator NodePtr(void) const { return _node; }

  private:
    void setNode(const NodePtr &node)
    {
        setRefdCP(_node, node);
        _core = _node != NullFC ? CorePtr::dcast(_node->getCore()) : CorePtr();
    }

    NodePtr _node;
    CorePtr _core;
};

} // namespace osg

#endif
