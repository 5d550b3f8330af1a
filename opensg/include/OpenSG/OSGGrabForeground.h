#ifndef _OSGGRABFOREGROUND_H_
#define _OSGGRABFOREGROUND_H_

#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(GrabForeground, ForegroundPtr)

// Copies the viewport's pixels, as drawn so far, into Image, bottom row
// first as OpenGL reads them.
class GrabForeground : public Foreground
{
    OSG_FC_DECL(GrabForeground, Foreground)

  public:
    enum
    {
        ImageFieldId      = Inherited::NextFieldId,
        AutoResizeFieldId = ImageFieldId + 1,
        NextFieldId       = AutoResizeFieldId + 1
    };
    OSG_FIELD_MASK(Image)
    OSG_FIELD_MASK(AutoResize)

    OSG_SFIELD(SFImagePtr, Image)
    OSG_SFIELD(SFBool,     AutoResize)

  public:
    virtual void draw(DrawActionBase *action, Viewport *port) override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    GrabForeground(void);
    GrabForeground(const GrabForeground &source);
    virtual ~GrabForeground(void);
};

typedef RefPtr<GrabForegroundPtr> GrabForegroundRefPtr;

} // namespace osg

#endif
