#ifndef _OSGVIEWPORT_H_
#define _OSGVIEWPORT_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGNodeFields.h>
#include <OpenSG/OSGViewportFields.h>
#include <OpenSG/OSGWindowFields.h>
#include <OpenSG/OSGBackgroundFields.h>
#include <OpenSG/OSGForegroundFields.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

// Same typedefs as the cameras' own headers; repeated so that a viewport
// does not pull in every camera.
OSG_FC_PTR_DECL(Camera, AttachmentContainerPtr)

class DrawAction;
class RenderActionBase;

class Viewport : public AttachmentContainer
{
    OSG_FC_DECL(Viewport, AttachmentContainer)

  public:
    enum
    {
        LeftFieldId        = Inherited::NextFieldId,
        RightFieldId       = LeftFieldId        + 1,
        BottomFieldId      = RightFieldId       + 1,
        TopFieldId         = BottomFieldId      + 1,
        ParentFieldId      = TopFieldId         + 1,
        CameraFieldId      = ParentFieldId      + 1,
        RootFieldId        = CameraFieldId      + 1,
        BackgroundFieldId  = RootFieldId        + 1,
        ForegroundsFieldId = BackgroundFieldId  + 1,
        TravMaskFieldId    = ForegroundsFieldId + 1,
        DrawTimeFieldId    = TravMaskFieldId    + 1,
        NextFieldId        = DrawTimeFieldId    + 1
    };
    OSG_FIELD_MASK(Left)
    OSG_FIELD_MASK(Right)
    OSG_FIELD_MASK(Bottom)
    OSG_FIELD_MASK(Top)
    OSG_FIELD_MASK(Parent)
    OSG_FIELD_MASK(Camera)
    OSG_FIELD_MASK(Root)
    OSG_FIELD_MASK(Background)
    OSG_FIELD_MASK(Foregrounds)
    OSG_FIELD_MASK(TravMask)
    OSG_FIELD_MASK(DrawTime)

    OSG_SFIELD(SFReal32,        Left)
    OSG_SFIELD(SFReal32,        Right)
    OSG_SFIELD(SFReal32,        Bottom)
    OSG_SFIELD(SFReal32,        Top)
    OSG_SFIELD(SFWindowPtr,     Parent)
    OSG_SFIELD(SFCameraPtr,     Camera)
    OSG_SFIELD(SFNodePtr,       Root)
    OSG_SFIELD(SFBackgroundPtr, Background)
    OSG_MFIELD(MFForegroundPtr, Foregrounds)
    OSG_SFIELD(SFUInt32,        TravMask)
    OSG_SFIELD(SFReal32,        DrawTime)

  public:
    virtual Int32 getPixelLeft  (void) const;
    virtual Int32 getPixelRight (void) const;
    virtual Int32 getPixelBottom(void) const;
    virtual Int32 getPixelTop   (void) const;
    virtual Int32 getPixelWidth (void) const;
    virtual Int32 getPixelHeight(void) const;

    virtual void activateSize(void);
    virtual void activate    (void);
    virtual void deactivate  (void);

    virtual void draw  (DrawAction       *action);
    virtual void render(RenderActionBase *action);

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    void setSize(Real32 left, Real32 bottom, Real32 right, Real32 top);
    bool isFullWindow(void) const;

    void clearForegrounds(void);
    void addForeground   (ForegroundPtr fg);

    static void initMethod(void) {}

  protected:
    Viewport(void);
    Viewport(const Viewport &source);
    virtual ~Viewport(void);

    virtual void onDestroy(void) override;

    // Shared by Viewport and FBOViewport: camera, background and root (or
    // a substitute) present, else a warning naming the caller.
    bool checkRenderInputs(const Char8 *who, bool haveRoot) const;
    void drawForegrounds  (RenderActionBase *action);
};

typedef RefPtr<ViewportPtr> ViewportRefPtr;

} // namespace osg

#endif
