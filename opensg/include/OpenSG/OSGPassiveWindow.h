#ifndef _OSGPASSIVEWINDOW_H_
#define _OSGPASSIVEWINDOW_H_

#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(PassiveWindow, WindowPtr)

// For a context made current by someone else: OpenSG only draws into it.
class PassiveWindow : public Window
{
    OSG_FC_DECL(PassiveWindow, Window)

  public:
    enum { NextFieldId = Inherited::NextFieldId };

    virtual void init      (void) override;
    virtual void activate  (void) override;
    virtual void deactivate(void) override;
    virtual void swap      (void) override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    PassiveWindow(void) : Inherited() {}
    PassiveWindow(const PassiveWindow &source) : Inherited(source) {}
    virtual ~PassiveWindow(void) {}
};

typedef RefPtr<PassiveWindowPtr> PassiveWindowRefPtr;

} // namespace osg

#endif
