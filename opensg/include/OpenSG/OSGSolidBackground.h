#ifndef _OSGSOLIDBACKGROUND_H_
#define _OSGSOLIDBACKGROUND_H_

#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(SolidBackground, BackgroundPtr)

class SolidBackground : public Background
{
    OSG_FC_DECL(SolidBackground, Background)

  public:
    enum
    {
        ColorFieldId           = Inherited::NextFieldId,
        ClearStencilBitFieldId = ColorFieldId           + 1,
        AlphaFieldId           = ClearStencilBitFieldId + 1,
        DepthFieldId           = AlphaFieldId           + 1,
        ClearDepthFieldId      = DepthFieldId           + 1,
        ClearColorFieldId      = ClearDepthFieldId      + 1,
        NextFieldId            = ClearColorFieldId      + 1
    };
    OSG_FIELD_MASK(Color)
    OSG_FIELD_MASK(ClearStencilBit)
    OSG_FIELD_MASK(Alpha)
    OSG_FIELD_MASK(Depth)
    OSG_FIELD_MASK(ClearDepth)
    OSG_FIELD_MASK(ClearColor)

    OSG_SFIELD(SFColor3f, Color)
    OSG_SFIELD(SFInt32,   ClearStencilBit)
    OSG_SFIELD(SFReal32,  Alpha)
    OSG_SFIELD(SFReal32,  Depth)
    OSG_SFIELD(SFBool,    ClearDepth)
    OSG_SFIELD(SFBool,    ClearColor)

  public:
    virtual void clear(DrawActionBase *action, Viewport *port) override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    SolidBackground(void);
    SolidBackground(const SolidBackground &source);
    virtual ~SolidBackground(void);
};

typedef RefPtr<SolidBackgroundPtr> SolidBackgroundRefPtr;

} // namespace osg

#endif
