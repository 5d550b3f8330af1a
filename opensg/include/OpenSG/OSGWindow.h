#ifndef _OSGWINDOW_H_
#define _OSGWINDOW_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGWindowFields.h>
#include <OpenSG/OSGViewportFields.h>
#include <OpenSG/OSGTypedFunctors.h>
#include <OpenSG/OSGGL.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace osg
{

class DrawAction;
class RenderActionBase;

class Window : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(Window, AttachmentContainer)

  public:
    enum
    {
        WidthFieldId                    = Inherited::NextFieldId,
        HeightFieldId                   = WidthFieldId                + 1,
        PortFieldId                     = HeightFieldId               + 1,
        ResizePendingFieldId            = PortFieldId                 + 1,
        GlObjectEventCounterFieldId     = ResizePendingFieldId        + 1,
        GlObjectLastRefreshFieldId      = GlObjectEventCounterFieldId + 1,
        GlObjectLastReinitializeFieldId = GlObjectLastRefreshFieldId  + 1,
        NextFieldId                     = GlObjectLastReinitializeFieldId + 1
    };
    OSG_FIELD_MASK(Width)
    OSG_FIELD_MASK(Height)
    OSG_FIELD_MASK(Port)
    OSG_FIELD_MASK(ResizePending)
    OSG_FIELD_MASK(GlObjectEventCounter)
    OSG_FIELD_MASK(GlObjectLastRefresh)
    OSG_FIELD_MASK(GlObjectLastReinitialize)

    OSG_SFIELD(SFUInt16,      Width)
    OSG_SFIELD(SFUInt16,      Height)
    OSG_MFIELD(MFViewportPtr, Port)
    OSG_SFIELD(SFBool,        ResizePending)
    OSG_SFIELD(SFUInt32,      GlObjectEventCounter)
    OSG_MFIELD(MFUInt32,      GlObjectLastRefresh)
    OSG_MFIELD(MFUInt32,      GlObjectLastReinitialize)

  public:
    enum GLObjectStatusE
    {
        notused = 1,
        initialize,
        reinitialize,
        initialized,
        needrefresh,
        destroy,
        finaldestroy
    };

    // Called as functor(window, packIdStatus(id, status)); build one from a
    // lambda or any callable taking (Window *, UInt32).
    typedef TypedFunctor2Base<void, PtrCallArg<Window>,
                              ArgsCollector<UInt32> > GLObjectFunctor;

    typedef void (*GLExtensionFunction)(void);

    static const UInt32 statusShift = 3;
    static const UInt32 statusMask  = 7;

    static UInt32 packIdStatus(UInt32 id, GLObjectStatusE status)
    {
        return (id << statusShift) | UInt32(status);
    }
    static void unpackIdStatus(UInt32 idstatus, UInt32 &id, GLObjectStatusE &status)
    {
        id     = idstatus >> statusShift;
        status = GLObjectStatusE(idstatus & statusMask);
    }

    virtual void changed(BitVector whichField, UInt32 origin) override;

    virtual void resize   (int width, int height);
    virtual void resizeGL (void);
    virtual void frameInit(void);
    virtual void frameExit(void);

    virtual void draw            (DrawAction *action = NULL);
    virtual void drawAllViewports(DrawAction *action = NULL);

    virtual void render            (RenderActionBase *action = NULL);
    virtual void renderAllViewports(RenderActionBase *action = NULL);

    virtual void init      (void) = 0;
    virtual void activate  (void) = 0;
    virtual void deactivate(void) = 0;
    virtual void swap      (void) = 0;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    void addPort      (const ViewportPtr &portP);
    void insertPort   (UInt32 portIndex, const ViewportPtr &portP);
    void replacePort  (UInt32 portIndex, const ViewportPtr &portP);
    void replacePortBy(const ViewportPtr &portP, const ViewportPtr &newPortP);
    void subPort      (const ViewportPtr &portP);
    void subPort      (UInt32 portIndex);
    void clearPorts   (void);

    static UInt32 registerExtension(const Char8 *s);
    static void   ignoreExtensions (const Char8 *s);
    static UInt32 registerFunction (const Char8 *s, Int32 ext = -1,
                                    UInt32 version = 0xffff);
    static void   registerConstant (GLenum val);

    bool         hasExtension   (UInt32 id);
    bool         hasExtension   (const Char8 *s);
    static Int32 getExtensionId (const Char8 *s);

    GLExtensionFunction getFunction       (UInt32 id);
    GLExtensionFunction getFunctionNoCheck(UInt32 id);

    UInt32 getGLVersion    (void);
    Real32 getConstantValue(GLenum val);

    static UInt32 registerGLObject    (GLObjectFunctor functor, UInt32 num = 1);
    void          validateGLObject    (UInt32 id);
    void          setGLObjectId       (UInt32 id, UInt32 glid);
    UInt32        getGLObjectId       (UInt32 id);
    static void   refreshGLObject     (UInt32 id);
    static void   reinitializeGLObject(UInt32 id);
    static void   destroyGLObject     (UInt32 id, UInt32 num = 1);

    bool isResizePending(void);
    void setSize(UInt16 width, UInt16 height);

    static void initMethod(void) {}

  protected:
    Window(void);
    Window(const Window &source);
    virtual ~Window(void);

    virtual void setupGL(void);

  private:
    void doFrameInit  (void);
    void resolveNew   (void);
    bool handledHere  (UInt32 id) const;
    void destroyQueued(void);

    bool                             _glInitDone;
    UInt32                           _glVersion;
    std::set<std::string>            _availExtensions;
    std::vector<bool>                _extensionAvailable;
    std::vector<GLExtensionFunction> _functions;
    std::vector<Real32>              _constantValues;
    std::vector<UInt32>              _ids;
    std::vector<std::pair<UInt32, UInt32> > _glObjectDestroyList;
};

} // namespace osg

#include <OpenSG/OSGViewport.h>

#endif
