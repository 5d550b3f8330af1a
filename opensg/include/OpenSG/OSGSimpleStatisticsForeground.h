#ifndef _OSGSIMPLESTATISTICSFOREGROUND_H_
#define _OSGSIMPLESTATISTICSFOREGROUND_H_

#include <OpenSG/OSGStatisticsForeground.h>
#include <OpenSG/OSGStatElemDesc.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGRefPtr.h>

#include <string>
#include <vector>

namespace osg
{

OSG_FC_PTR_DECL(SimpleStatisticsForeground, StatisticsForegroundPtr)

// One text line per element, in a block at a corner of the viewport. The
// glyphs come from a built-in 5 x 7 bitmap font drawn as blocks of
// Size / 10 pixels, so the text needs no font files; Family is kept but
// not used.
class SimpleStatisticsForeground : public StatisticsForeground
{
    OSG_FC_DECL(SimpleStatisticsForeground, StatisticsForeground)

  public:
    enum HorizontalAlignE { Left = 0, Middle, Right  };
    enum VerticalAlignE   { Top  = 0, Center, Bottom };

    enum
    {
        FormatsFieldId         = Inherited::NextFieldId,
        SizeFieldId            = FormatsFieldId         + 1,
        ColorFieldId           = SizeFieldId            + 1,
        ShadowColorFieldId     = ColorFieldId           + 1,
        BgColorFieldId         = ShadowColorFieldId     + 1,
        FamilyFieldId          = BgColorFieldId         + 1,
        ShadowOffsetFieldId    = FamilyFieldId          + 1,
        HorizontalAlignFieldId = ShadowOffsetFieldId    + 1,
        VerticalAlignFieldId   = HorizontalAlignFieldId + 1,
        BorderColorFieldId     = VerticalAlignFieldId   + 1,
        BorderOffsetFieldId    = BorderColorFieldId     + 1,
        TextMarginFieldId      = BorderOffsetFieldId    + 1,
        NextFieldId            = TextMarginFieldId      + 1
    };
    OSG_FIELD_MASK(Formats)
    OSG_FIELD_MASK(Size)
    OSG_FIELD_MASK(Color)
    OSG_FIELD_MASK(ShadowColor)
    OSG_FIELD_MASK(BgColor)
    OSG_FIELD_MASK(Family)
    OSG_FIELD_MASK(ShadowOffset)
    OSG_FIELD_MASK(HorizontalAlign)
    OSG_FIELD_MASK(VerticalAlign)
    OSG_FIELD_MASK(BorderColor)
    OSG_FIELD_MASK(BorderOffset)
    OSG_FIELD_MASK(TextMargin)

    OSG_MFIELD(MFString,  Formats)
    OSG_SFIELD(SFReal32,  Size)
    OSG_SFIELD(SFColor4f, Color)
    OSG_SFIELD(SFColor4f, ShadowColor)
    OSG_SFIELD(SFColor4f, BgColor)
    OSG_SFIELD(SFString,  Family)
    OSG_SFIELD(SFVec2f,   ShadowOffset)
    OSG_SFIELD(SFUInt8,   HorizontalAlign)
    OSG_SFIELD(SFUInt8,   VerticalAlign)
    OSG_SFIELD(SFColor4f, BorderColor)
    OSG_SFIELD(SFVec2f,   BorderOffset)
    OSG_SFIELD(SFVec2f,   TextMargin)

  public:
    virtual void draw(DrawActionBase *action, Viewport *port) override;

    // A format is a printf format for the element's value (see the
    // element types for the time formats); NULL shows the value alone.
    void addElement(StatElemDescBase &desc, const char *format = NULL);
    void addElement(Int32 id, const char *format = NULL);
    // A line of its own, printed as given.
    void addText   (const char *text);
    void clearElems(void);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    SimpleStatisticsForeground(void);
    SimpleStatisticsForeground(const SimpleStatisticsForeground &source);
    virtual ~SimpleStatisticsForeground(void);

  private:
    void collectLines(std::vector<std::string> &lines);
    void drawText    (const std::vector<std::string> &lines, Real32 unit) const;
};

typedef RefPtr<SimpleStatisticsForegroundPtr> SimpleStatisticsForegroundRefPtr;

} // namespace osg

#endif
