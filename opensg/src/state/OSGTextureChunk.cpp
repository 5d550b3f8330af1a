#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGDrawActionBase.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGWindow.h>

#include "OSGStateGL.h"

#include <algorithm>

namespace osg
{

OSG_FC_IMPL(TextureChunk, "StateChunk")

TextureChunk::TextureChunk(void) :
    Inherited(),
    _sfImage     (),
    _sfInternalFormat(GL_NONE),
    _sfExternalFormat(GL_NONE),
    _sfScale(true),
    _sfFrame(0),
    _sfMinFilter(GL_LINEAR_MIPMAP_LINEAR),
    _sfMagFilter(GL_LINEAR),
    _sfWrapS(GL_REPEAT),
    _sfWrapT(GL_REPEAT),
    _sfWrapR(GL_REPEAT),
    _sfEnvMode(GL_REPLACE),
    _sfEnvColor(Color4f(0.f, 0.f, 0.f, 0.f)),
    _sfEnvCombineRGB(GL_MODULATE),
    _sfEnvCombineAlpha(GL_MODULATE),
    _sfEnvScaleRGB(1.f),
    _sfEnvScaleAlpha(1.f),
    _sfEnvSource0RGB(GL_TEXTURE),
    _sfEnvSource1RGB(GL_PREVIOUS_EXT),
    _sfEnvSource2RGB(GL_CONSTANT_EXT),
    _sfEnvSource0Alpha(GL_TEXTURE),
    _sfEnvSource1Alpha(GL_PREVIOUS_EXT),
    _sfEnvSource2Alpha(GL_CONSTANT_EXT),
    _sfEnvOperand0RGB(GL_SRC_COLOR),
    _sfEnvOperand1RGB(GL_SRC_COLOR),
    _sfEnvOperand2RGB(GL_SRC_ALPHA),
    _sfEnvOperand0Alpha(GL_SRC_ALPHA),
    _sfEnvOperand1Alpha(GL_SRC_ALPHA),
    _sfEnvOperand2Alpha(GL_SRC_ALPHA),
    _sfGLId(0),
    _sfIgnoreGLForAspect(-1),
    _sfPointSprite(false),
    _sfPriority(1.f),
    _sfShaderOperation(GL_NONE),
    _sfShaderInput(GL_NONE),
    _mfShaderOffsetMatrix(),
    _sfShaderOffsetScale(0.f),
    _sfShaderOffsetBias(0.f),
    _sfShaderRGBADotProduct(GL_NONE),
    _sfShaderCullModes(0),
    _sfShaderConstEye(),
    _sfLodBias(0.f),
    _sfTarget(GL_NONE),
    _sfDirtyLeft(-1),
    _sfDirtyMinX(-1),
    _sfDirtyMaxX(-1),
    _sfDirtyMinY(-1),
    _sfDirtyMaxY(-1),
    _sfDirtyMinZ(-1),
    _sfDirtyMaxZ(-1),
    _sfAnisotropy(1.f),
    _sfBorderColor(Color4f(0.f, 0.f, 0.f, 0.f)),
    _sfBorderWidth(0),
    _sfNPOTMatrixScale(0),
    _sfSkipMipMapLevels(0.f),
    _glName      (0),
    _glTarget    (GL_NONE),
    _needsInit   (true),
    _needsRefresh(false),
    _needsParams (true),
    _hasMipmaps  (false),
    _windowHandled(false)
{
}

// The copy gets a GL texture of its own at its first use.
TextureChunk::TextureChunk(const TextureChunk &source) :
    Inherited(source),
    _sfImage(source._sfImage),
    _sfInternalFormat(source._sfInternalFormat),
    _sfExternalFormat(source._sfExternalFormat),
    _sfScale(source._sfScale),
    _sfFrame(source._sfFrame),
    _sfMinFilter(source._sfMinFilter),
    _sfMagFilter(source._sfMagFilter),
    _sfWrapS(source._sfWrapS),
    _sfWrapT(source._sfWrapT),
    _sfWrapR(source._sfWrapR),
    _sfEnvMode(source._sfEnvMode),
    _sfEnvColor(source._sfEnvColor),
    _sfEnvCombineRGB(source._sfEnvCombineRGB),
    _sfEnvCombineAlpha(source._sfEnvCombineAlpha),
    _sfEnvScaleRGB(source._sfEnvScaleRGB),
    _sfEnvScaleAlpha(source._sfEnvScaleAlpha),
    _sfEnvSource0RGB(source._sfEnvSource0RGB),
    _sfEnvSource1RGB(source._sfEnvSource1RGB),
    _sfEnvSource2RGB(source._sfEnvSource2RGB),
    _sfEnvSource0Alpha(source._sfEnvSource0Alpha),
    _sfEnvSource1Alpha(source._sfEnvSource1Alpha),
    _sfEnvSource2Alpha(source._sfEnvSource2Alpha),
    _sfEnvOperand0RGB(source._sfEnvOperand0RGB),
    _sfEnvOperand1RGB(source._sfEnvOperand1RGB),
    _sfEnvOperand2RGB(source._sfEnvOperand2RGB),
    _sfEnvOperand0Alpha(source._sfEnvOperand0Alpha),
    _sfEnvOperand1Alpha(source._sfEnvOperand1Alpha),
    _sfEnvOperand2Alpha(source._sfEnvOperand2Alpha),
    _sfGLId(source._sfGLId),
    _sfIgnoreGLForAspect(source._sfIgnoreGLForAspect),
    _sfPointSprite(source._sfPointSprite),
    _sfPriority(source._sfPriority),
    _sfShaderOperation(source._sfShaderOperation),
    _sfShaderInput(source._sfShaderInput),
    _mfShaderOffsetMatrix(source._mfShaderOffsetMatrix),
    _sfShaderOffsetScale(source._sfShaderOffsetScale),
    _sfShaderOffsetBias(source._sfShaderOffsetBias),
    _sfShaderRGBADotProduct(source._sfShaderRGBADotProduct),
    _sfShaderCullModes(source._sfShaderCullModes),
    _sfShaderConstEye(source._sfShaderConstEye),
    _sfLodBias(source._sfLodBias),
    _sfTarget(source._sfTarget),
    _sfDirtyLeft(source._sfDirtyLeft),
    _sfDirtyMinX(source._sfDirtyMinX),
    _sfDirtyMaxX(source._sfDirtyMaxX),
    _sfDirtyMinY(source._sfDirtyMinY),
    _sfDirtyMaxY(source._sfDirtyMaxY),
    _sfDirtyMinZ(source._sfDirtyMinZ),
    _sfDirtyMaxZ(source._sfDirtyMaxZ),
    _sfAnisotropy(source._sfAnisotropy),
    _sfBorderColor(source._sfBorderColor),
    _sfBorderWidth(source._sfBorderWidth),
    _sfNPOTMatrixScale(source._sfNPOTMatrixScale),
    _sfSkipMipMapLevels(source._sfSkipMipMapLevels),
    _glName      (0),
    _glTarget    (GL_NONE),
    _needsInit   (true),
    _needsRefresh(false),
    _needsParams (true),
    _hasMipmaps  (false),
    _windowHandled(false)
{
    _sfGLId.setValue(0);
}

TextureChunk::~TextureChunk(void)
{
}

void TextureChunk::attachImage(ImagePtr image, FieldContainerPtr parent)
{
    if(image == NullFC)
        return;
    addRefCP(image);
    image->editMFParents()->push_back(parent);
}

void TextureChunk::detachImage(ImagePtr image, FieldContainerPtr parent)
{
    if(image == NullFC)
        return;
    MFFieldContainerPtr *parents = image->editMFParents();
    MFFieldContainerPtr::iterator it = parents->find(parent);
    if(it != parents->end())
        parents->erase(it);
    subRefCP(image);
}

// A copy uses the same image and needs its own reference.
void TextureChunk::onCreate(const TextureChunk *)
{
    attachImage(getImage(), FieldContainerPtr(this));

    _sfGLId.setValue(0);
    if(GlobalSystemState != Startup)
        registerGLObject();
}

// GLId is the texture's id among the window GL objects: each window that
// validates it keeps the texture name under it and deletes the texture when
// the chunk goes. A window refresh or reinitialisation reloads the image.
void TextureChunk::registerGLObject(void)
{
    TextureChunk *self = this;
    _sfGLId.setValue(Window::registerGLObject(Window::GLObjectFunctor(
        [self](Window *win, UInt32 idstatus)
        {
            UInt32 id;
            Window::GLObjectStatusE status;
            Window::unpackIdStatus(idstatus, id, status);
            if(status == Window::destroy)
            {
                // The chunk is gone by now; only the window knows the name.
                GLuint name = win->getGLObjectId(id);
                if(name != 0)
                    glDeleteTextures(1, &name);
            }
            else if(status == Window::reinitialize)
                self->_needsInit = true;
            else if(status == Window::needrefresh)
                self->_needsRefresh = true;
        })));
}

void TextureChunk::onDestroy(void)
{
    ImagePtr image = getImage();
    _sfImage.setValue(NullFC);
    detachImage(image, FieldContainerPtr(this));

    if(getGLId() != 0)
        Window::destroyGLObject(getGLId());
    if(_glName != 0 && !_windowHandled)
        glDeleteTextures(1, &_glName);
    _glName = 0;
    Inherited::onDestroy();
}

void TextureChunk::setImage(const ImagePtr &pImage)
{
    if(pImage != getImage())
    {
        ImagePtr old = getImage();
        attachImage(pImage, FieldContainerPtr(this));
        _sfImage.setValue(pImage);
        detachImage(old, FieldContainerPtr(this));
    }
    // Also for the same image: callers set it again after changing it.
    _needsInit = true;
}

void TextureChunk::imageContentChanged(Int32 minx, Int32 maxx, Int32 miny,
                                       Int32 maxy, Int32 minz, Int32 maxz)
{
    const BitVector mask = DirtyMinXFieldMask | DirtyMaxXFieldMask |
                           DirtyMinYFieldMask | DirtyMaxYFieldMask |
                           DirtyMinZFieldMask | DirtyMaxZFieldMask;
    TextureChunkPtr self(this);
    beginEditCP(self, mask);
    setDirtyMinX(minx);
    setDirtyMaxX(maxx);
    setDirtyMinY(miny);
    setDirtyMaxY(maxy);
    setDirtyMinZ(minz);
    setDirtyMaxZ(maxz);
    endEditCP(self, mask);
}

void TextureChunk::changed(BitVector whichField, UInt32 origin)
{
    const BitVector dirtyMask  = DirtyLeftFieldMask | DirtyMinXFieldMask |
                                 DirtyMaxXFieldMask | DirtyMinYFieldMask |
                                 DirtyMaxYFieldMask | DirtyMinZFieldMask |
                                 DirtyMaxZFieldMask;
    const BitVector paramMask  = MinFilterFieldMask | MagFilterFieldMask |
                                 WrapSFieldMask | WrapTFieldMask | WrapRFieldMask |
                                 AnisotropyFieldMask | LodBiasFieldMask |
                                 BorderColorFieldMask | PriorityFieldMask;
    // Applied at every activate or not used by GL at all.
    const BitVector activeMask = EnvModeFieldMask | EnvColorFieldMask |
                                 EnvCombineRGBFieldMask | EnvCombineAlphaFieldMask |
                                 EnvScaleRGBFieldMask | EnvScaleAlphaFieldMask |
                                 EnvSource0RGBFieldMask | EnvSource1RGBFieldMask |
                                 EnvSource2RGBFieldMask | EnvSource0AlphaFieldMask |
                                 EnvSource1AlphaFieldMask | EnvSource2AlphaFieldMask |
                                 EnvOperand0RGBFieldMask | EnvOperand1RGBFieldMask |
                                 EnvOperand2RGBFieldMask | EnvOperand0AlphaFieldMask |
                                 EnvOperand1AlphaFieldMask | EnvOperand2AlphaFieldMask |
                                 PointSpriteFieldMask | GLIdFieldMask |
                                 IgnoreGLForAspectFieldMask | ShaderOperationFieldMask |
                                 ShaderInputFieldMask | ShaderOffsetMatrixFieldMask |
                                 ShaderOffsetScaleFieldMask | ShaderOffsetBiasFieldMask |
                                 ShaderRGBADotProductFieldMask | ShaderCullModesFieldMask |
                                 ShaderConstEyeFieldMask | NPOTMatrixScaleFieldMask |
                                 IgnoreFieldMask | ParentsFieldMask | InternalFieldMask;

    if(whichField & ~(dirtyMask | paramMask | activeMask))
        _needsInit = true;
    if(whichField & dirtyMask)
        _needsRefresh = true;
    if(whichField & paramMask)
    {
        _needsParams = true;
        if((whichField & MinFilterFieldMask) && mipmapped() && !_hasMipmaps)
            _needsInit = true;
    }

    Inherited::changed(whichField, origin);
}

bool TextureChunk::mipmapped(void) const
{
    switch(getMinFilter())
    {
        case GL_NEAREST_MIPMAP_NEAREST:
        case GL_LINEAR_MIPMAP_NEAREST:
        case GL_NEAREST_MIPMAP_LINEAR:
        case GL_LINEAR_MIPMAP_LINEAR:
            return getGLTarget() != GL_TEXTURE_RECTANGLE;
        default:
            return false;
    }
}

GLenum TextureChunk::getGLTarget(void) const
{
    if(getTarget() != GL_NONE)
        return getTarget();

    const Image *image = getCPtr(getImage());
    if(image == NULL)
        return GL_TEXTURE_2D;
    if(image->getSideCount() == 6)
        return GL_TEXTURE_CUBE_MAP;
    if(image->getDepth() > 1)
        return GL_TEXTURE_3D;
    if(image->getHeight() > 1)
        return GL_TEXTURE_2D;
    return GL_TEXTURE_1D;
}

namespace
{


UInt32 externalComponents(GLenum format)
{
    switch(format)
    {
        case GL_RED: case GL_GREEN: case GL_BLUE: case GL_ALPHA:
        case GL_LUMINANCE: case GL_INTENSITY: case GL_DEPTH_COMPONENT:
        case GL_RED_INTEGER: case GL_ALPHA_INTEGER: case GL_LUMINANCE_INTEGER_EXT:
            return 1;
        case GL_RG: case GL_LUMINANCE_ALPHA: case GL_RG_INTEGER:
        case GL_LUMINANCE_ALPHA_INTEGER_EXT:
            return 2;
        case GL_RGB: case GL_BGR: case GL_RGB_INTEGER: case GL_BGR_INTEGER:
            return 3;
        case GL_RGBA: case GL_BGRA: case GL_RGBA_INTEGER: case GL_BGRA_INTEGER:
            return 4;
        default:
            return 0;
    }
}

bool isCompressedFormat(UInt32 format)
{
    return format == Image::OSG_RGB_DXT1  || format == Image::OSG_RGBA_DXT1 ||
           format == Image::OSG_RGBA_DXT3 || format == Image::OSG_RGBA_DXT5;
}

// Targets with a fixed-function enable.
bool hasEnable(GLenum target)
{
    return target == GL_TEXTURE_1D || target == GL_TEXTURE_2D ||
           target == GL_TEXTURE_3D || target == GL_TEXTURE_CUBE_MAP ||
           target == GL_TEXTURE_RECTANGLE;
}

// Texture enables and the texture environment exist only for the
// fixed-function units.
bool fixedUnit(UInt32 unit)
{
    const StateGLCaps &caps = stateGLCaps();
    return caps.fixedFunction && GLint(unit) < caps.maxFixedUnits;
}

} // namespace

TextureChunk::UploadFormat TextureChunk::uploadFormat(Image *image) const
{
    UploadFormat fmt;
    const GLenum pixelFormat = image->getPixelFormat();

    fmt.internalFormat = getInternalFormat();
    if(fmt.internalFormat == GL_NONE)
    {
        if(pixelFormat == Image::OSG_BGR_PF)
            fmt.internalFormat = GL_RGB;
        else if(pixelFormat == Image::OSG_BGRA_PF)
            fmt.internalFormat = GL_RGBA;
        else
            fmt.internalFormat = pixelFormat;
    }

    fmt.externalFormat = getExternalFormat() != GL_NONE ? getExternalFormat()
                                                         : pixelFormat;
    fmt.type           = image->getDataType();
    fmt.passData       = image->getData() != NULL;

    // Depth textures are render targets: allocated, never filled from the
    // image, whose luminance layout need not match.
    if(TextureChunk::isDepthFormat(fmt.internalFormat))
    {
        fmt.externalFormat = GL_DEPTH_COMPONENT;
        fmt.passData       = fmt.passData && fmt.type == GL_FLOAT &&
                             image->getComponents() == 1;
        fmt.type           = GL_FLOAT;
    }
    else if(fmt.passData && !isCompressedFormat(pixelFormat) &&
            externalComponents(fmt.externalFormat) != image->getComponents())
    {
        // GL would read past the image's pixels.
        SWARNING << "TextureChunk: external format 0x" << std::hex << fmt.externalFormat
                 << " does not match the image's pixel format 0x" << pixelFormat
                 << std::dec << "; texture left undefined" << std::endl;
        fmt.passData = false;
    }
    return fmt;
}

void TextureChunk::uploadImage(GLenum target, GLenum imageTarget, Image *image,
                               UInt32 side, bool full)
{
    if(image == NULL)
        return;

    const UploadFormat fmt = uploadFormat(image);
    const UInt32 frame = std::min(getFrame(), UInt32(std::max(image->getFrameCount(), 1) - 1));

    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);

    if(!full && fmt.passData && (target == GL_TEXTURE_2D || target == GL_TEXTURE_RECTANGLE) &&
       !isCompressedFormat(image->getPixelFormat()))
    {
        const Int32 w    = image->getWidth();
        const Int32 h    = image->getHeight();
        const Int32 minX = getDirtyMinX() >= 0 ? std::min(getDirtyMinX(), w - 1) : 0;
        const Int32 maxX = getDirtyMaxX() >= 0 ? std::min(getDirtyMaxX(), w - 1) : w - 1;
        const Int32 minY = getDirtyMinY() >= 0 ? std::min(getDirtyMinY(), h - 1) : 0;
        const Int32 maxY = getDirtyMaxY() >= 0 ? std::min(getDirtyMaxY(), h - 1) : h - 1;

        if(maxX >= minX && maxY >= minY)
        {
            glPixelStorei(GL_UNPACK_ROW_LENGTH,  w);
            glPixelStorei(GL_UNPACK_SKIP_PIXELS, minX);
            glPixelStorei(GL_UNPACK_SKIP_ROWS,   minY);
            glTexSubImage2D(imageTarget, 0, minX, minY, maxX - minX + 1, maxY - minY + 1,
                            fmt.externalFormat, fmt.type, image->getData(0, frame, side));
            glPixelStorei(GL_UNPACK_ROW_LENGTH,  0);
            glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
            glPixelStorei(GL_UNPACK_SKIP_ROWS,   0);
        }
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        return;
    }

    const bool compressed = isCompressedFormat(image->getPixelFormat());
    if(compressed && !stateGLCaps().textureS3TC)
    {
        SWARNING << "TextureChunk: no GL_EXT_texture_compression_s3tc; the DXT image "
                 << image->getName() << " is not uploaded" << std::endl;
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        return;
    }

    const Int32 imageLevels = mipmapped() ? std::max(image->getMipMapCount(), 1) : 1;
    const Int32 skip        = std::min(Int32(getSkipMipMapLevels()), imageLevels - 1);

    for(Int32 level = skip; level < imageLevels; ++level)
    {
        const GLsizei w = std::max(image->getWidth()  >> level, 1);
        const GLsizei h = std::max(image->getHeight() >> level, 1);
        const GLsizei d = std::max(image->getDepth()  >> level, 1);
        const UInt8 *data = fmt.passData ? image->getData(UInt32(level), frame, side) : NULL;
        const GLint  glLevel = level - skip;

        if(compressed)
        {
            if(data == NULL)
                continue;
            const GLsizei size = GLsizei(image->getLevelSize(UInt32(level)));
            if(target == GL_TEXTURE_3D)
                glCompressedTexImage3D(imageTarget, glLevel, image->getPixelFormat(),
                                       w, h, d, 0, size, data);
            else
                glCompressedTexImage2D(imageTarget, glLevel, image->getPixelFormat(),
                                       w, h, 0, size, data);
            continue;
        }

        switch(target)
        {
            case GL_TEXTURE_1D:
                glTexImage1D(imageTarget, glLevel, fmt.internalFormat, w, 0,
                             fmt.externalFormat, fmt.type, data);
                break;
            case GL_TEXTURE_3D:
            case GL_TEXTURE_2D_ARRAY:
                glTexImage3D(imageTarget, glLevel, fmt.internalFormat, w, h, d, 0,
                             fmt.externalFormat, fmt.type, data);
                break;
            default:
                glTexImage2D(imageTarget, glLevel, fmt.internalFormat, w, h, 0,
                             fmt.externalFormat, fmt.type, data);
                break;
        }
    }

    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);

    // GL does not derive levels of compressed data: the image's are all.
    const bool ownLevels = imageLevels - skip > 1 || compressed;
    if(mipmapped())
        glTexParameteri(target, GL_TEXTURE_MAX_LEVEL,
                        ownLevels ? imageLevels - skip - 1 : 1000);
    _hasMipmaps = mipmapped() && ownLevels;
}

void TextureChunk::uploadAll(GLenum target, bool full)
{
    Image *image = getCPtr(getImage());
    if(image == NULL)
        return;

    if(target == GL_TEXTURE_CUBE_MAP)
    {
        for(UInt32 side = 0; side < 6; ++side)
            uploadImage(target, GL_TEXTURE_CUBE_MAP_POSITIVE_X + side, image, side, full);
    }
    else
        uploadImage(target, target, image, 0, full);

    if(mipmapped() && (!_hasMipmaps || !full) && !isCompressedFormat(image->getPixelFormat()))
    {
        glGenerateMipmap(target);
        _hasMipmaps = true;
    }
}

void TextureChunk::applyParameters(GLenum target)
{
    const StateGLCaps &caps = stateGLCaps();
    const bool rectangle = target == GL_TEXTURE_RECTANGLE;

    GLenum minFilter = getMinFilter();
    if(!mipmapped() && minFilter != GL_NEAREST && minFilter != GL_LINEAR)
        minFilter = (minFilter == GL_NEAREST_MIPMAP_NEAREST ||
                     minFilter == GL_NEAREST_MIPMAP_LINEAR) ? GL_NEAREST : GL_LINEAR;

    // Rectangles only clamp; GL_CLAMP is gone without fixed function.
    auto wrap = [&](GLenum mode) -> GLint
    {
        if(rectangle && mode != GL_CLAMP && mode != GL_CLAMP_TO_EDGE &&
           mode != GL_CLAMP_TO_BORDER)
            return GL_CLAMP_TO_EDGE;
        if(mode == GL_CLAMP && !caps.fixedFunction)
            return GL_CLAMP_TO_EDGE;
        return GLint(mode);
    };

    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, minFilter);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, getMagFilter());
    glTexParameteri(target, GL_TEXTURE_WRAP_S, wrap(getWrapS()));
    if(target != GL_TEXTURE_1D)
        glTexParameteri(target, GL_TEXTURE_WRAP_T, wrap(getWrapT()));
    if(target == GL_TEXTURE_3D || target == GL_TEXTURE_CUBE_MAP)
        glTexParameteri(target, GL_TEXTURE_WRAP_R, wrap(getWrapR()));

    glTexParameterfv(target, GL_TEXTURE_BORDER_COLOR, getBorderColor().getValuesRGBA());

    if(!rectangle)
        glTexParameterf(target, GL_TEXTURE_LOD_BIAS, getLodBias());

    if(caps.anisotropy)
        glTexParameterf(target, GL_TEXTURE_MAX_ANISOTROPY_EXT,
                        std::min(std::max(getAnisotropy(), 1.f), caps.maxAnisotropy));
}

void TextureChunk::validate(Window *win)
{
    const GLenum target = getGLTarget();

    if(win != NULL && getGLId() == 0)
        registerGLObject();
    if(win != NULL)
        win->validateGLObject(getGLId());

    // A GL texture cannot change its target: make a new one.
    if(_glName != 0 && target != _glTarget)
    {
        glDeleteTextures(1, &_glName);
        _glName = 0;
    }
    if(_glName == 0)
    {
        glGenTextures(1, &_glName);
        _glTarget  = target;
        _needsInit = true;
    }
    if(win != NULL)
    {
        win->setGLObjectId(getGLId(), _glName);
        _windowHandled = true;
    }

    glBindTexture(target, _glName);

    if(_needsInit)
    {
        _hasMipmaps = false;
        uploadAll(target, true);
        _needsParams = true;
    }
    else if(_needsRefresh)
        uploadAll(target, false);

    if(_needsParams)
        applyParameters(target);

    _needsInit    = false;
    _needsRefresh = false;
    _needsParams  = false;
}

bool TextureChunk::hasMultiTexture(Window *)
{
    return true;
}

void TextureChunk::activeTexture(Window *, UInt16 texture)
{
    glActiveTexture(GL_TEXTURE0 + texture);
}

bool TextureChunk::activateTexture(Window *win, UInt16 texture)
{
    if(GLint(texture) >= stateGLCaps().maxImageUnits)
    {
        SWARNING << "TextureChunk::activateTexture: unit " << texture
                 << " beyond the " << stateGLCaps().maxImageUnits << " units"
                 << std::endl;
        return false;
    }
    activeTexture(win, texture);
    return true;
}

void TextureChunk::activate(DrawActionBase *action, UInt32 index)
{
    Window *win = action != NULL ? action->getWindow() : NULL;
    if(!activateTexture(win, UInt16(index)))
        return;

    validate(win);

    if(fixedUnit(index))
    {
        if(hasEnable(getGLTarget()))
            glEnable(getGLTarget());

        glTexEnvi (GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE,  getEnvMode());
        glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, getEnvColor().getValuesRGBA());

        if(getEnvMode() == GL_COMBINE)
        {
            glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB,    getEnvCombineRGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_ALPHA,  getEnvCombineAlpha());
            glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE,      getEnvScaleRGB());
            glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE,    getEnvScaleAlpha());
            glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_RGB,       getEnvSource0RGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_SRC1_RGB,       getEnvSource1RGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_SRC2_RGB,       getEnvSource2RGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_ALPHA,     getEnvSource0Alpha());
            glTexEnvi(GL_TEXTURE_ENV, GL_SRC1_ALPHA,     getEnvSource1Alpha());
            glTexEnvi(GL_TEXTURE_ENV, GL_SRC2_ALPHA,     getEnvSource2Alpha());
            glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_RGB,   getEnvOperand0RGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND1_RGB,   getEnvOperand1RGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND2_RGB,   getEnvOperand2RGB());
            glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_ALPHA, getEnvOperand0Alpha());
            glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND1_ALPHA, getEnvOperand1Alpha());
            glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND2_ALPHA, getEnvOperand2Alpha());
        }

        if(getPointSprite())
        {
            glTexEnvi(GL_POINT_SPRITE, GL_COORD_REPLACE, GL_TRUE);
            glEnable(GL_POINT_SPRITE);
        }
    }

    // Other code binds textures assuming unit 0 is the active one.
    if(index != 0)
        activeTexture(win, 0);
}

void TextureChunk::changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index)
{
    if(old == this)
    {
        if(_needsInit || _needsRefresh || _needsParams)
        {
            Window *win = action != NULL ? action->getWindow() : NULL;
            if(activateTexture(win, UInt16(index)))
            {
                validate(win);
                if(index != 0)
                    activeTexture(win, 0);
            }
        }
        return;
    }

    if(old != NULL)
        old->deactivate(action, index);
    activate(action, index);
}

void TextureChunk::deactivate(DrawActionBase *action, UInt32 index)
{
    if(!fixedUnit(index))
        return;

    Window *win = action != NULL ? action->getWindow() : NULL;
    activeTexture(win, UInt16(index));

    if(hasEnable(getGLTarget()))
        glDisable(getGLTarget());

    if(getPointSprite())
    {
        glTexEnvi(GL_POINT_SPRITE, GL_COORD_REPLACE, GL_FALSE);
        glDisable(GL_POINT_SPRITE);
    }

    if(index != 0)
        activeTexture(win, 0);
}

bool TextureChunk::isTransparent(void) const
{
    return false;
}

void TextureChunk::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "TextureChunk (" << this << ") GL texture " << _glName << " image "
         << getImage() << std::endl;
}

bool TextureChunk::isDepthFormat(GLenum format)
{
    switch(format)
    {
        case GL_DEPTH_COMPONENT:
        case GL_DEPTH_COMPONENT16:
        case GL_DEPTH_COMPONENT24:
        case GL_DEPTH_COMPONENT32:
        case GL_DEPTH_COMPONENT32F:
            return true;
        default:
            return false;
    }
}

} // namespace osg
