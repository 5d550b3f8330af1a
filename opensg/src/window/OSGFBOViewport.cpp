#include <OpenSG/OSGFBOViewport.h>
#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>

namespace osg
{

OSG_FC_IMPL(FBOViewport, "Viewport")

namespace
{


// What the texture really is, so the attachment call matches it.
GLenum textureTarget(TextureChunk *tex)
{
    return tex->getGLTarget();
}

bool isMipmapped(TextureChunk *tex)
{
    switch(tex->getMinFilter())
    {
        case GL_NEAREST_MIPMAP_NEAREST:
        case GL_LINEAR_MIPMAP_NEAREST:
        case GL_NEAREST_MIPMAP_LINEAR:
        case GL_LINEAR_MIPMAP_LINEAR:
            return true;
        default:
            return false;
    }
}

GLuint validatedName(Window *win, TextureChunk *tex)
{
    tex->validate(win);
    glBindTexture(tex->getGLTarget(), 0);
    return tex->getGLTextureName();
}

} // namespace

FBOViewport::FBOViewport(void) :
    Inherited(),
    _sfEnabled                (true),
    _mfExcludeNodes           (),
    _mfRenderNodes            (),
    _mfTextures               (),
    _sfFboOn                  (true),
    _sfStorageWidth           (256),
    _sfStorageHeight          (256),
    _sfGenCubemaps            (false),
    _sfGenDepthmaps           (false),
    _sfDirty                  (true),
    _sfReadBuffer             (false),
    _sfIgnoreCameraDecorators (true),
    _sfFboOffIgnoreStorageSize(false),
    _mfZOffset                (),
    _sfFrameBufferIndex       (0),
    _sfDepthBufferIndex       (0),
    _sfStencilBufferIndex     (0),
    _prevFramebuffer          (0),
    _prevDrawBuffers          (),
    _prevReadBuffer           (GL_NONE),
    _glFramebufferObject      (0),
    _glDepthObject            (0),
    _glStencilObject          (0)
{
}

FBOViewport::FBOViewport(const FBOViewport &source) :
    Inherited(source),
    _sfEnabled                (source._sfEnabled),
    _mfExcludeNodes           (source._mfExcludeNodes),
    _mfRenderNodes            (source._mfRenderNodes),
    _mfTextures               (source._mfTextures),
    _sfFboOn                  (source._sfFboOn),
    _sfStorageWidth           (source._sfStorageWidth),
    _sfStorageHeight          (source._sfStorageHeight),
    _sfGenCubemaps            (source._sfGenCubemaps),
    _sfGenDepthmaps           (source._sfGenDepthmaps),
    _sfDirty                  (true),
    _sfReadBuffer             (source._sfReadBuffer),
    _sfIgnoreCameraDecorators (source._sfIgnoreCameraDecorators),
    _sfFboOffIgnoreStorageSize(source._sfFboOffIgnoreStorageSize),
    _mfZOffset                (source._mfZOffset),
    _sfFrameBufferIndex       (0),
    _sfDepthBufferIndex       (0),
    _sfStencilBufferIndex     (0),
    _prevFramebuffer          (0),
    _prevDrawBuffers          (),
    _prevReadBuffer           (GL_NONE),
    _glFramebufferObject      (0),
    _glDepthObject            (0),
    _glStencilObject          (0)
{
}

FBOViewport::~FBOViewport(void)
{
}

void FBOViewport::onDestroy(void)
{
    // Deleted by each window that made them, at its next frameExit.
    const UInt32 objects[] = { _glFramebufferObject, _glDepthObject, _glStencilObject };
    for(UInt32 id : objects)
    {
        if(id != 0)
            Window::destroyGLObject(id);
    }
    Inherited::onDestroy();
}

namespace
{

void destroyFramebuffer(Window *win, UInt32 idstatus)
{
    UInt32 id;
    Window::GLObjectStatusE status;
    Window::unpackIdStatus(idstatus, id, status);
    GLuint name = win->getGLObjectId(id);
    if(status == Window::destroy && name != 0)
        glDeleteFramebuffers(1, &name);
}

void destroyRenderbuffer(Window *win, UInt32 idstatus)
{
    UInt32 id;
    Window::GLObjectStatusE status;
    Window::unpackIdStatus(idstatus, id, status);
    GLuint name = win->getGLObjectId(id);
    if(status == Window::destroy && name != 0)
        glDeleteRenderbuffers(1, &name);
}

} // namespace

void FBOViewport::keepGLName(Window *win, UInt32 &objectId, bool framebuffer, GLuint name)
{
    if(win == NULL)
        return;
    if(objectId == 0)
        objectId = Window::registerGLObject(Window::GLObjectFunctor(
            framebuffer ? &destroyFramebuffer : &destroyRenderbuffer));
    win->validateGLObject(objectId);
    win->setGLObjectId(objectId, name);
}

void FBOViewport::changed(BitVector whichField, UInt32 origin)
{
    Inherited::changed(whichField, origin);
}

void FBOViewport::dump(UInt32, const BitVector) const
{
    SLOG << "FBOViewport " << getStorageWidth() << "x" << getStorageHeight()
         << ", " << _mfTextures.size() << " textures" << std::endl;
}

Int32 FBOViewport::getMaxBuffers(void)
{
    GLint count = 0;
    glGetIntegerv(GL_MAX_COLOR_ATTACHMENTS, &count);
    return count;
}

// Replaces an earlier framebuffer (resize) instead of leaking it.
bool FBOViewport::initialize(Window *win, Int32 format)
{
    GLuint fb = getFrameBufferIndex();
    if(fb != 0)
        glDeleteFramebuffers(1, &fb);
    GLuint depth = getDepthBufferIndex();
    if(depth != 0)
        glDeleteRenderbuffers(1, &depth);
    GLuint stencil = getStencilBufferIndex();
    if(stencil != 0)
        glDeleteRenderbuffers(1, &stencil);

    Int32 width  = std::max(getStorageWidth(),  1);
    Int32 height = std::max(getStorageHeight(), 1);

    glGenFramebuffers(1, &fb);
    setFrameBufferIndex(fb);
    setDepthBufferIndex(0);
    setStencilBufferIndex(0);

    GLenum depthFormat = GL_NONE;
    if(format & FBO_DEPTH_32)
        depthFormat = GL_DEPTH_COMPONENT32;
    else if(format & FBO_DEPTH_24)
        depthFormat = GL_DEPTH_COMPONENT24;
    else if(format & FBO_DEPTH_16)
        depthFormat = GL_DEPTH_COMPONENT16;

    GLenum stencilFormat = GL_NONE;
    if(format & FBO_STENCIL_16)
        stencilFormat = GL_STENCIL_INDEX16;
    else if(format & FBO_STENCIL_8)
        stencilFormat = GL_STENCIL_INDEX8;
    else if(format & FBO_STENCIL_4)
        stencilFormat = GL_STENCIL_INDEX4;
    else if(format & FBO_STENCIL_1)
        stencilFormat = GL_STENCIL_INDEX1;

    GLint prevRenderbuffer = 0;
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &prevRenderbuffer);

    if(depthFormat != GL_NONE)
    {
        glGenRenderbuffers(1, &depth);
        glBindRenderbuffer(GL_RENDERBUFFER, depth);
        glRenderbufferStorage(GL_RENDERBUFFER, depthFormat, width, height);
        setDepthBufferIndex(depth);
    }
    if(stencilFormat != GL_NONE)
    {
        glGenRenderbuffers(1, &stencil);
        glBindRenderbuffer(GL_RENDERBUFFER, stencil);
        glRenderbufferStorage(GL_RENDERBUFFER, stencilFormat, width, height);
        setStencilBufferIndex(stencil);
    }
    glBindRenderbuffer(GL_RENDERBUFFER, GLuint(prevRenderbuffer));

    keepGLName(win, _glFramebufferObject, true,  fb);
    keepGLName(win, _glDepthObject,       false, getDepthBufferIndex());
    keepGLName(win, _glStencilObject,     false, getStencilBufferIndex());

    return fb != 0;
}

void FBOViewport::setTarget(Window *, UInt32 id, GLenum attachment,
                            GLenum target, GLint zoffset)
{
    switch(target)
    {
        case GL_TEXTURE_3D:
            glFramebufferTexture3D(GL_FRAMEBUFFER, attachment, target, id, 0, zoffset);
            break;
        case GL_TEXTURE_1D:
            glFramebufferTexture1D(GL_FRAMEBUFFER, attachment, target, id, 0);
            break;
        default:
            glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, target, id, 0);
            break;
    }
}

void FBOViewport::bind(Window *)
{
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &_prevFramebuffer);
    glGetIntegerv(GL_READ_BUFFER,         &_prevReadBuffer);

    // All of them: the one bound before may itself draw into several.
    GLint maxDrawBuffers = 1;
    glGetIntegerv(GL_MAX_DRAW_BUFFERS, &maxDrawBuffers);
    _prevDrawBuffers.resize(_prevFramebuffer != 0 ? maxDrawBuffers : 1);
    for(UInt32 i = 0; i < _prevDrawBuffers.size(); ++i)
    {
        GLint buffer = GL_NONE;
        glGetIntegerv(GLenum(GL_DRAW_BUFFER0 + i), &buffer);
        _prevDrawBuffers[i] = GLenum(buffer);
    }

    glBindFramebuffer(GL_FRAMEBUFFER, getFrameBufferIndex());
}

void FBOViewport::stop(Window *)
{
    glBindFramebuffer(GL_FRAMEBUFFER, GLuint(_prevFramebuffer));
    if(_prevFramebuffer != 0)
        glDrawBuffers(GLsizei(_prevDrawBuffers.size()), _prevDrawBuffers.data());
    else if(!_prevDrawBuffers.empty())
        glDrawBuffer(_prevDrawBuffers[0]);
    glReadBuffer(GLenum(_prevReadBuffer));
}

bool FBOViewport::checkFrameBufferStatus(Window *)
{
    GLenum status = glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if(status == GL_FRAMEBUFFER_COMPLETE)
        return true;

    SWARNING << "FBOViewport::checkFrameBufferStatus: framebuffer incomplete, status 0x"
             << std::hex << status << std::dec << std::endl;
    return false;
}

void FBOViewport::setExcludedActive(bool active)
{
    for(UInt32 i = 0; i < _mfExcludeNodes.size(); ++i)
    {
        NodePtr node = _mfExcludeNodes[i];
        if(node == NullFC)
            continue;
        beginEditCP(node, Node::TravMaskFieldMask);
        node->setActive(active);
        endEditCP(node, Node::TravMaskFieldMask);
    }
}

void FBOViewport::renderContents(RenderActionBase *action)
{
    setExcludedActive(false);

    action->setCamera    (getCPtr(getCamera()));
    action->setBackground(getCPtr(getBackground()));
    action->setViewport  (this);
    action->setTravMask  (getTravMask());

    activate();

    if(getRoot() != NullFC)
        action->apply(getRoot());
    else
        action->apply(_mfRenderNodes.begin(), _mfRenderNodes.end());

    drawForegrounds(action);
}

void FBOViewport::render(RenderActionBase *action)
{
    if(!getEnabled())
        return;

    if(action == NULL)
    {
        SWARNING << "FBOViewport::render: no action" << std::endl;
        return;
    }
    Window *win = action->getWindow();
    if(win == NULL)
    {
        SWARNING << "FBOViewport::render: the action has no window" << std::endl;
        return;
    }
    if(!checkRenderInputs("FBOViewport::render",
                          getRoot() != NullFC || !_mfRenderNodes.empty()))
        return;

    Window *parent = getCPtr(getParent());
    if(parent == NULL)
    {
        SWARNING << "FBOViewport::render: no parent window" << std::endl;
        return;
    }

    bool haveFBO = parent->hasExtension("GL_EXT_framebuffer_object") ||
                   parent->hasExtension("GL_ARB_framebuffer_object") ||
                   parent->getGLVersion() >= 0x0300;

    win->resizeGL();

    GLint maxSize = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize);
    if(getStorageWidth() > maxSize)
        setStorageWidth(maxSize);
    if(getStorageHeight() > maxSize)
        setStorageHeight(maxSize);

    RenderAction *ra      = dynamic_cast<RenderAction *>(action);
    bool          oldZW   = ra != NULL && ra->getZWriteTrans();
    if(getGenDepthmaps() && ra != NULL)
        ra->setZWriteTrans(true);

    if(getFboOn() && haveFBO)
        renderWithFBO(action, win);
    else
        renderWithoutFBO(action, win);

    if(getGenDepthmaps() && ra != NULL)
        ra->setZWriteTrans(oldZW);
}

void FBOViewport::renderWithFBO(RenderActionBase *action, Window *win)
{
    UInt32 count = std::min(UInt32(_mfTextures.size()), UInt32(std::max(getMaxBuffers(), 0)));

    TextureChunk *depthTex   = NULL;
    TextureChunk *stencilTex = NULL;
    std::vector<TextureChunk *> colorTex;

    for(UInt32 i = 0; i < count; ++i)
    {
        TextureChunk *tex = getCPtr(_mfTextures[i]);
        if(tex == NULL)
            continue;
        GLenum format = tex->getInternalFormat();
        if(TextureChunk::isDepthFormat(format))
            depthTex = tex;
        else if(format == GL_STENCIL_INDEX)
            stencilTex = tex;
        else if(format == GL_DEPTH_STENCIL)
            SWARNING << "FBOViewport::render: depth-stencil textures are not supported"
                     << std::endl;
        else
            colorTex.push_back(tex);
    }

    if(getFrameBufferIndex() == 0 || getDirty())
    {
        initialize(win, FBO_DEPTH_24);
        setDirty(false);
    }

    // Validation binds textures, so it happens before our framebuffer is.
    std::vector<GLuint> colorNames;
    for(TextureChunk *tex : colorTex)
        colorNames.push_back(validatedName(win, tex));
    GLuint depthName   = depthTex   != NULL ? validatedName(win, depthTex)   : 0;
    GLuint stencilName = stencilTex != NULL ? validatedName(win, stencilTex) : 0;

    GLint zoffset = _mfZOffset.empty() ? 0 : _mfZOffset[0];

    bind(win);

    if(depthTex != NULL)
        setTarget(win, depthName, GL_DEPTH_ATTACHMENT, textureTarget(depthTex), zoffset);
    else
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  getDepthBufferIndex());

    if(stencilTex != NULL && (depthTex == NULL || colorTex.empty()))
        setTarget(win, stencilName, GL_STENCIL_ATTACHMENT, textureTarget(stencilTex), zoffset);

    GLint maxAttachments = getMaxBuffers();
    std::vector<GLenum> drawBuffers;
    for(GLint i = 0; i < maxAttachments; ++i)
    {
        GLenum attachment = GLenum(GL_COLOR_ATTACHMENT0 + i);
        if(UInt32(i) < colorTex.size())
        {
            setTarget(win, colorNames[i], attachment, textureTarget(colorTex[i]), zoffset);
            drawBuffers.push_back(attachment);
        }
        else
        {
            // Leftovers from an earlier, longer texture list.
            GLint type = GL_NONE;
            glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, attachment,
                GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
            if(type == GL_NONE)
                break;
            glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, GL_TEXTURE_2D, 0, 0);
        }
    }

    if(drawBuffers.empty())
    {
        glDrawBuffer(GL_NONE);
        glReadBuffer(GL_NONE);
    }
    else
    {
        glDrawBuffers(GLsizei(drawBuffers.size()), drawBuffers.data());
        glReadBuffer(drawBuffers[0]);
    }

    if(checkFrameBufferStatus(win))
    {
        renderContents(action);

        if(getReadBuffer())
        {
            for(UInt32 i = 0; i < colorTex.size(); ++i)
            {
                ImagePtr img = colorTex[i]->getImage();
                if(img == NullFC || img->getData() == NULL)
                    continue;
                glReadBuffer(drawBuffers[i]);
                glReadPixels(0, 0, img->getWidth(), img->getHeight(),
                             img->getPixelFormat(), img->getDataType(), img->editData());
            }
        }

        deactivate();
        setExcludedActive(true);
    }

    stop(win);

    std::vector<TextureChunk *> targets(colorTex);
    if(depthTex != NULL)
        targets.push_back(depthTex);
    for(TextureChunk *tex : targets)
    {
        if(!isMipmapped(tex))
            continue;
        GLenum target = textureTarget(tex);
        glBindTexture(target, validatedName(win, tex));
        glGenerateMipmap(target);
        glBindTexture(target, 0);
    }
}

// Without framebuffer objects: render into the window's back buffer and copy
// into the first texture. Only what fits into the window is rendered.
void FBOViewport::renderWithoutFBO(RenderActionBase *action, Window *win)
{
    if(_mfTextures.empty() || _mfTextures[0] == NullFC)
    {
        SWARNING << "FBOViewport::render: no texture to copy into" << std::endl;
        return;
    }
    if(getGenCubemaps())
        SWARNING << "FBOViewport::render: cube maps need framebuffer objects"
                 << std::endl;

    TextureChunk *tex  = getCPtr(_mfTextures[0]);
    GLuint        name = validatedName(win, tex);

    Int32    width  = getStorageWidth();
    Int32    height = getStorageHeight();
    ImagePtr img    = tex->getImage();
    if(getFboOffIgnoreStorageSize() && img != NullFC)
    {
        width  = img->getWidth();
        height = img->getHeight();
    }
    WindowPtr parent = getParent();
    width  = std::min(width,  Int32(parent->getWidth()));
    height = std::min(height, Int32(parent->getHeight()));

    renderContents(action);

    GLenum target = textureTarget(tex);
    glBindTexture(target, name);
    glCopyTexSubImage2D(target, 0, 0, 0, getPixelLeft(), getPixelBottom(), width, height);
    glBindTexture(target, 0);

    deactivate();
    setExcludedActive(true);
}

} // namespace osg
