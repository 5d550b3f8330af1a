#ifndef _OSGIMAGEFOREGROUND_H_
#define _OSGIMAGEFOREGROUND_H_

#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(ImageForeground, ForegroundPtr)

// Draws images over the viewport, blended by their alpha. Position i
// places image i's lower left corner: below 1 in both coordinates as a
// fraction of the viewport, else in pixels.
class ImageForeground : public Foreground
{
    OSG_FC_DECL(ImageForeground, Foreground)

  public:
    enum
    {
        ImagesFieldId    = Inherited::NextFieldId,
        PositionsFieldId = ImagesFieldId + 1,
        NextFieldId      = PositionsFieldId + 1
    };
    OSG_FIELD_MASK(Images)
    OSG_FIELD_MASK(Positions)

    OSG_MFIELD(MFImagePtr, Images)
    OSG_MFIELD(MFPnt2f,    Positions)

  public:
    void addImage(ImagePtr image, Pnt2f position)
    {
        _mfImages.push_back(image);
        _mfPositions.push_back(position);
    }

    virtual void draw(DrawActionBase *action, Viewport *port) override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    ImageForeground(void);
    ImageForeground(const ImageForeground &source);
    virtual ~ImageForeground(void);
};

typedef RefPtr<ImageForegroundPtr> ImageForegroundRefPtr;

} // namespace osg

#endif
