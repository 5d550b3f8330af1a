// Builds a small graph the way OpenSG 1.8 programs do and counts its nodes
// with a traversal; exits 0 only if the count is right.
#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGTypedFunctors.h>

#include <iostream>

OSG_USING_NAMESPACE

static UInt32 s_visited = 0;

static Action::ResultE countNode(NodePtr &)
{
    ++s_visited;
    return Action::Continue;
}

int main(int argc, char **argv)
{
    osgInit(argc, argv);

    const UInt32 branches = 3;
    const UInt32 leaves   = 4;

    NodePtr root = Node::create();
    addRefCP(root);
    beginEditCP(root, Node::CoreFieldMask | Node::ChildrenFieldMask);
    root->setCore(Group::create());
    for(UInt32 b = 0; b < branches; ++b)
    {
        NodePtr branch = makeNodeFor(Group::create());
        beginEditCP(branch, Node::ChildrenFieldMask);
        for(UInt32 l = 0; l < leaves; ++l)
            branch->addChild(makeNodeFor(Group::create()));
        endEditCP(branch, Node::ChildrenFieldMask);
        root->addChild(branch);
    }
    endEditCP(root, Node::CoreFieldMask | Node::ChildrenFieldMask);

    traverse(root, osgTypedFunctionFunctor1CPtrRef<Action::ResultE, NodePtr>(countNode));

    const UInt32 expected = 1 + branches + branches * leaves;
    std::cout << "visited " << s_visited << " of " << expected << " nodes" << std::endl;

    subRefCP(root);
    osgExit();
    return s_visited == expected ? 0 : 1;
}
