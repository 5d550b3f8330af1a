#ifndef _OSGPOLYGONFOREGROUND_H_
#define _OSGPOLYGONFOREGROUND_H_

#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

// Same typedefs as OSGMaterialFields.h; repeated so that a foreground does
// not pull in the whole state system.
OSG_FC_PTR_DECL(Material, AttachmentContainerPtr)
OSG_FC_PTR_DECL(PolygonForeground, ForegroundPtr)

class PolygonForeground : public Foreground
{
    OSG_FC_DECL(PolygonForeground, Foreground)

  public:
    enum
    {
        MaterialFieldId     = Inherited::NextFieldId,
        TexCoordsFieldId    = MaterialFieldId     + 1,
        PositionsFieldId    = TexCoordsFieldId    + 1,
        NormalizedXFieldId  = PositionsFieldId    + 1,
        NormalizedYFieldId  = NormalizedXFieldId  + 1,
        AspectHeightFieldId = NormalizedYFieldId  + 1,
        AspectWidthFieldId  = AspectHeightFieldId + 1,
        ScaleFieldId        = AspectWidthFieldId  + 1,
        TileFieldId         = ScaleFieldId        + 1,
        NextFieldId         = TileFieldId         + 1
    };
    OSG_FIELD_MASK(Material)
    OSG_FIELD_MASK(TexCoords)
    OSG_FIELD_MASK(Positions)
    OSG_FIELD_MASK(NormalizedX)
    OSG_FIELD_MASK(NormalizedY)
    OSG_FIELD_MASK(AspectHeight)
    OSG_FIELD_MASK(AspectWidth)
    OSG_FIELD_MASK(Scale)
    OSG_FIELD_MASK(Tile)

    OSG_SFIELD(SFMaterialPtr, Material)
    OSG_MFIELD(MFVec3f,       TexCoords)
    OSG_MFIELD(MFPnt2f,       Positions)
    OSG_SFIELD(SFBool,        NormalizedX)
    OSG_SFIELD(SFBool,        NormalizedY)
    OSG_SFIELD(SFUInt16,      AspectHeight)
    OSG_SFIELD(SFUInt16,      AspectWidth)
    OSG_SFIELD(SFReal32,      Scale)
    OSG_SFIELD(SFBool,        Tile)

  public:
    virtual void draw(DrawActionBase *action, Viewport *port) override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    PolygonForeground(void);
    PolygonForeground(const PolygonForeground &source);
    virtual ~PolygonForeground(void);

  private:
    Real32 mapCoordinate(Real32 value, Real32 size, bool normalized) const;
};

typedef RefPtr<PolygonForegroundPtr> PolygonForegroundRefPtr;

} // namespace osg

#endif
