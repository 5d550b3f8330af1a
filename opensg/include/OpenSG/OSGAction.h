#ifndef _OSGACTION_H_
#define _OSGACTION_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNodePtr.h>
#include <OpenSG/OSGTypedFunctors.h>

#include <vector>

namespace osg
{

class FieldContainerType;

class Action
{
  public:
    enum ResultE { Continue, Skip, Quit };

    typedef TypedFunctor2Base<ResultE, CPtrRefCallArg<CNodePtr>,
                              ArgsCollector<Action *> > Functor;

    static Action *create(void);
    virtual ~Action(void);

    static void registerEnterDefault(const FieldContainerType &type, const Functor &func);
    static void registerLeaveDefault(const FieldContainerType &type, const Functor &func);

    void registerEnterFunction(const FieldContainerType &type, const Functor &func);
    void registerLeaveFunction(const FieldContainerType &type, const Functor &func);

    virtual ResultE apply(std::vector<NodePtr>::iterator begin,
                          std::vector<NodePtr>::iterator end);
    virtual ResultE apply(NodePtr node);

    NodePtr       getActNode(void);
    UInt32        getNNodes (void) const;
    const NodePtr getNode   (int index);
    void          addNode   (NodePtr node);
    void          useNodeList(void);

    UInt32 getTravMask(void) const { return _travMask; }
    void   setTravMask(UInt32 val) { _travMask = val;  }

  protected:
    Action(void);
    Action(const Action &source);

    virtual ResultE start(void);
    virtual ResultE stop (ResultE res);

    ResultE recurse     (NodePtr node);
    ResultE callNewList (void);
    ResultE callEnter   (NodePtr node);
    ResultE callLeave   (NodePtr node);

    // Each action class keeps its own default functors; an instance copies
    // them on construction.
    virtual std::vector<Functor> *getDefaultEnterFunctors(void);
    virtual std::vector<Functor> *getDefaultLeaveFunctors(void);

    void fillFunctors(void);

    std::vector<Functor> _enterFunctors;
    std::vector<Functor> _leaveFunctors;

  private:
    ResultE callFunctor(std::vector<Functor> &functors, NodePtr node);

    NodePtr              _actNode;
    std::vector<NodePtr> _newList;
    bool                 _useNewList;
    UInt32               _travMask;
};

typedef TypedFunctor1Base<Action::ResultE, CPtrRefCallArg<NodePtr> >
    TraverseEnterFunctor;
typedef TypedFunctor2Base<Action::ResultE, CPtrRefCallArg<NodePtr>,
                          ArgsCollector<Action::ResultE> >
    TraverseLeaveFunctor;

Action::ResultE traverse(NodePtr root, TraverseEnterFunctor func);
Action::ResultE traverse(const std::vector<NodePtr> &nodeList, TraverseEnterFunctor func);
Action::ResultE traverse(NodePtr root, TraverseEnterFunctor enter, TraverseLeaveFunctor leave);
Action::ResultE traverse(const std::vector<NodePtr> &nodeList,
                         TraverseEnterFunctor enter, TraverseLeaveFunctor leave);

} // namespace osg

#endif
