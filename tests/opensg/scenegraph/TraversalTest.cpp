#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGTransform.h>

#include "support/Builders.h"
#include "support/LogCapture.h"

#include "support/SceneSetup.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using namespace osg;
using testsupport::addChild;

namespace
{

NodePtr namedNode(const std::string &name, NodeCorePtr core = Group::create())
{
    NodePtr node = makeNodeFor(core);
    setName(node, name);
    return node;
}

// root
//   a
//     a1
//     a2
//   b (Transform core)
//     b1
struct Tree
{
    Tree()
    {
        root = namedNode("root");
        a    = namedNode("a");
        b    = namedNode("b", Transform::create());
        addChild(root, a);
        addChild(root, b);
        addChild(a, namedNode("a1"));
        addChild(a, namedNode("a2"));
        addChild(b, namedNode("b1"));
        addRefCP(root);
    }
    ~Tree() { subRefCP(root); }

    NodePtr root, a, b;
};

const char *resultName(Action::ResultE r)
{
    return r == Action::Continue ? "Continue" : r == Action::Skip ? "Skip" : "Quit";
}

// Enter answers per node name; leave records the children's result and
// may override it.
struct Recorder
{
    std::map<std::string, Action::ResultE> enterResult;
    std::map<std::string, Action::ResultE> leaveResult;
    std::vector<std::string>               entered;
    std::vector<std::string>               left;

    Action::ResultE enter(NodePtr &node)
    {
        std::string name = getName(node);
        entered.push_back(name);
        auto it = enterResult.find(name);
        return it != enterResult.end() ? it->second : Action::Continue;
    }

    Action::ResultE leave(NodePtr &node, Action::ResultE res)
    {
        std::string name = getName(node);
        left.push_back(name + ":" + resultName(res));
        auto it = leaveResult.find(name);
        return it != leaveResult.end() ? it->second : res;
    }
};

} // namespace

TEST(Traverse, EnterAndLeaveFollowDepthFirstOrderAndResults)
{
    struct Case { const char *what; std::map<std::string, Action::ResultE> enter, leave;
                  std::vector<std::string> entered, left; Action::ResultE result; };
    const Case cases[] =
    {
        { "all continue", {}, {},
          { "root", "a", "a1", "a2", "b", "b1" },
          { "a1:Continue", "a2:Continue", "a:Continue", "b1:Continue", "b:Continue",
            "root:Continue" },
          Action::Continue },
        { "skip hides the children only", { { "a", Action::Skip } }, {},
          { "root", "a", "b", "b1" },
          { "a:Continue", "b1:Continue", "b:Continue", "root:Continue" },
          Action::Continue },
        { "quit ends everything and reaches every open leave", { { "a1", Action::Quit } }, {},
          { "root", "a", "a1" },
          { "a1:Quit", "a:Quit", "root:Quit" },
          Action::Quit },
        { "leave's result replaces the node's", {}, { { "a", Action::Quit } },
          { "root", "a", "a1", "a2" },
          { "a1:Continue", "a2:Continue", "a:Continue", "root:Quit" },
          Action::Quit },
    };

    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.what);
        Tree     tree;
        Recorder rec;
        rec.enterResult = c.enter;
        rec.leaveResult = c.leave;

        Action::ResultE result = traverse(
            tree.root,
            osgTypedMethodFunctor1ObjPtrCPtrRef<Action::ResultE, Recorder, NodePtr>(
                &rec, &Recorder::enter),
            osgTypedMethodFunctor2ObjPtrCPtrRef<Action::ResultE, Recorder, NodePtr,
                                                Action::ResultE>(&rec, &Recorder::leave));

        EXPECT_EQ(rec.entered, c.entered);
        EXPECT_EQ(rec.left, c.left);
        EXPECT_EQ(result, c.result);
    }
}

TEST(Traverse, EnterOnlyStopsAtQuitAndIgnoresTravMask)
{
    Tree tree;
    tree.b->setTravMask(0);

    Recorder rec;
    rec.enterResult["a2"] = Action::Quit;
    auto enter = osgTypedMethodFunctor1ObjPtrCPtrRef<Action::ResultE, Recorder, NodePtr>(
        &rec, &Recorder::enter);

    EXPECT_EQ(traverse(tree.root, enter), Action::Quit);
    EXPECT_EQ(rec.entered, (std::vector<std::string>{ "root", "a", "a1", "a2" }));

    rec.entered.clear();
    rec.enterResult.clear();
    std::vector<NodePtr> list = { tree.b, tree.a };
    EXPECT_EQ(traverse(list, enter), Action::Continue);
    EXPECT_EQ(rec.entered, (std::vector<std::string>{ "b", "b1", "a", "a1", "a2" }));
}

namespace
{

// An action with one enter functor for Group, which also serves every core
// type derived from Group.
struct GroupVisits
{
    GroupVisits() : action(Action::create())
    {
        action->registerEnterFunction(
            Group::getClassType(),
            Action::Functor([this](CNodePtr &node, Action *) {
                visited.push_back(getName(NodePtr(node.getNode())));
                return Action::Continue;
            }));
    }
    ~GroupVisits() { delete action; }

    Action                  *action;
    std::vector<std::string> visited;
};

} // namespace

// The Group functor also visits b's Transform core, until the coreless
// child below b ends the traversal.
TEST(Action, NodeWithoutCoreAbortsWithAWarning)
{
    Tree    tree;
    NodePtr coreless = Node::create();
    setName(coreless, "coreless");
    testsupport::editCP(tree.b, Node::ChildrenFieldMask, [&] { tree.b->insertChild(0, coreless); });

    testsupport::LogCapture log(LOG_WARNING);
    GroupVisits visits;
    EXPECT_EQ(visits.action->apply(tree.root), Action::Quit);
    EXPECT_EQ(visits.visited, (std::vector<std::string>{ "root", "a", "a1", "a2", "b" }));
    EXPECT_TRUE(log.contains("core"));
}
