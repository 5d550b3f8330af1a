#ifndef _OSGDRAWACTION_H_
#define _OSGDRAWACTION_H_

#include <OpenSG/OSGDrawActionBase.h>

#include <vector>

namespace osg
{

// Immediate-mode traversal for Window::draw: the viewport sets up camera and
// background, cores registered here draw as they are entered.
class DrawAction : public DrawActionBase
{
  public:
    static DrawAction *create(void);

    static void registerEnterDefault(const FieldContainerType &type,
                                     const Action::Functor   &func);
    static void registerLeaveDefault(const FieldContainerType &type,
                                     const Action::Functor   &func);

    virtual ~DrawAction(void);

    virtual bool isVisible(Node *node) override;

  protected:
    DrawAction(void);
    DrawAction(const DrawAction &source);

    virtual std::vector<Functor> *getDefaultEnterFunctors(void) override;
    virtual std::vector<Functor> *getDefaultLeaveFunctors(void) override;
};

} // namespace osg

#endif
