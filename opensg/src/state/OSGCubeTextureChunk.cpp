#include <OpenSG/OSGCubeTextureChunk.h>

namespace osg
{

OSG_FC_IMPL(CubeTextureChunk, "TextureChunk")

CubeTextureChunk::CubeTextureChunk(void) :
    Inherited(),
    _sfPosZImage(),
    _sfPosXImage(),
    _sfNegXImage(),
    _sfPosYImage(),
    _sfNegYImage()
{
}

CubeTextureChunk::CubeTextureChunk(const CubeTextureChunk &source) :
    Inherited(source),
    _sfPosZImage(source._sfPosZImage),
    _sfPosXImage(source._sfPosXImage),
    _sfNegXImage(source._sfNegXImage),
    _sfPosYImage(source._sfPosYImage),
    _sfNegYImage(source._sfNegYImage)
{
}

CubeTextureChunk::~CubeTextureChunk(void)
{
}

// A copy uses the same faces and needs its own references.
void CubeTextureChunk::onCreate(const CubeTextureChunk *source)
{
    Inherited::onCreate(source);
    attachImage(getPosZImage(), FieldContainerPtr(this));
    attachImage(getPosXImage(), FieldContainerPtr(this));
    attachImage(getNegXImage(), FieldContainerPtr(this));
    attachImage(getPosYImage(), FieldContainerPtr(this));
    attachImage(getNegYImage(), FieldContainerPtr(this));
}

void CubeTextureChunk::onDestroy(void)
{
    SFImagePtr *faces[] = { &_sfPosZImage, &_sfPosXImage, &_sfNegXImage,
                            &_sfPosYImage, &_sfNegYImage };
    for(SFImagePtr *face : faces)
    {
        ImagePtr image = face->getValue();
        face->setValue(NullFC);
        detachImage(image, FieldContainerPtr(this));
    }
    Inherited::onDestroy();
}

void CubeTextureChunk::setFace(SFImagePtr &field, ImagePtr &value)
{
    if(field.getValue() != value)
    {
        ImagePtr old = field.getValue();
        attachImage(value, FieldContainerPtr(this));
        field.setValue(value);
        detachImage(old, FieldContainerPtr(this));
    }
    _needsInit = true;
}

void CubeTextureChunk::setPosZImage(ImagePtr &value) { setFace(_sfPosZImage, value); }
void CubeTextureChunk::setPosXImage(ImagePtr &value) { setFace(_sfPosXImage, value); }
void CubeTextureChunk::setNegXImage(ImagePtr &value) { setFace(_sfNegXImage, value); }
void CubeTextureChunk::setPosYImage(ImagePtr &value) { setFace(_sfPosYImage, value); }
void CubeTextureChunk::setNegYImage(ImagePtr &value) { setFace(_sfNegYImage, value); }

GLenum CubeTextureChunk::getGLTarget(void) const
{
    return GL_TEXTURE_CUBE_MAP;
}

void CubeTextureChunk::uploadAll(GLenum target, bool)
{
    const struct { GLenum face; Image *image; } faces[] =
    {
        { GL_TEXTURE_CUBE_MAP_POSITIVE_X, getCPtr(getPosXImage()) },
        { GL_TEXTURE_CUBE_MAP_NEGATIVE_X, getCPtr(getNegXImage()) },
        { GL_TEXTURE_CUBE_MAP_POSITIVE_Y, getCPtr(getPosYImage()) },
        { GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, getCPtr(getNegYImage()) },
        { GL_TEXTURE_CUBE_MAP_POSITIVE_Z, getCPtr(getPosZImage()) },
        { GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, getCPtr(getImage())     }
    };

    // Faces are always uploaded whole: they are small and rarely edited.
    bool complete = true;
    for(const auto &f : faces)
    {
        if(f.image == NULL)
            complete = false;
        uploadImage(target, f.face, f.image, 0, true);
    }

    if(complete && mipmapped() && !_hasMipmaps)
    {
        glGenerateMipmap(target);
        _hasMipmaps = true;
    }
}

void CubeTextureChunk::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    Inherited::dump(uiIndent, bvFlags);
}

} // namespace osg
