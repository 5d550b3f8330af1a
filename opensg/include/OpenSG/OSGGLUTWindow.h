#ifndef _OSGGLUTWINDOW_H_
#define _OSGGLUTWINDOW_H_

#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(GLUTWindow, WindowPtr)

class GLUTWindow : public Window
{
    OSG_FC_DECL(GLUTWindow, Window)

  public:
    enum
    {
        IdFieldId   = Inherited::NextFieldId,
        NextFieldId = IdFieldId + 1
    };
    OSG_FIELD_MASK(Id)

    OSG_SFIELD(SFInt32, Id)

  public:
    void setGlutId(Int32 val);

    virtual void init      (void) override;
    virtual void activate  (void) override;
    virtual void deactivate(void) override;
    virtual void swap      (void) override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    GLUTWindow(void) : Inherited() {}
    GLUTWindow(const GLUTWindow &source) : Inherited(source), _sfId(source._sfId) {}
    virtual ~GLUTWindow(void) {}
};

typedef RefPtr<GLUTWindowPtr> GLUTWindowRefPtr;

} // namespace osg

#endif
