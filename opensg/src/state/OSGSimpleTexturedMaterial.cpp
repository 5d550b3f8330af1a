#include <OpenSG/OSGSimpleTexturedMaterial.h>

namespace osg
{

OSG_FC_IMPL(SimpleTexturedMaterial, "SimpleMaterial")

SimpleTexturedMaterial::SimpleTexturedMaterial(void) :
    Inherited(),
    _sfImage     (),
    _sfMinFilter (GL_LINEAR_MIPMAP_LINEAR),
    _sfMagFilter (GL_LINEAR),
    _sfEnvMode   (GL_REPLACE),
    _sfEnvMap    (false),
    _textureChunk()
{
}

SimpleTexturedMaterial::SimpleTexturedMaterial(const SimpleTexturedMaterial &source) :
    Inherited(source),
    _sfImage     (source._sfImage),
    _sfMinFilter (source._sfMinFilter),
    _sfMagFilter (source._sfMagFilter),
    _sfEnvMode   (source._sfEnvMode),
    _sfEnvMap    (source._sfEnvMap),
    _textureChunk()
{
}

SimpleTexturedMaterial::~SimpleTexturedMaterial(void)
{
}

// A copy uses the same image and needs its own reference.
void SimpleTexturedMaterial::onCreate(const SimpleTexturedMaterial *source)
{
    Inherited::onCreate(source);
    addRefCP(getImage());
}

void SimpleTexturedMaterial::onDestroy(void)
{
    clearRefCP(_textureChunk);
    ImagePtr image = getImage();
    _sfImage.setValue(NullFC);
    subRefCP(image);
    Inherited::onDestroy();
}

void SimpleTexturedMaterial::setImage(const ImagePtr &pImage)
{
    if(pImage == getImage())
        return;
    ImagePtr old = getImage();
    addRefCP(pImage);
    _sfImage.setValue(pImage);
    subRefCP(old);
}

void SimpleTexturedMaterial::imageChanged(void)
{
    if(_textureChunk != NullFC)
        _textureChunk->setImage(getImage());
}

void SimpleTexturedMaterial::prepareLocalChunks(void)
{
    Inherited::prepareLocalChunks();

    if(_textureChunk == NullFC)
    {
        _textureChunk = TextureChunk::create();
        if(_textureChunk == NullFC)
            _textureChunk = TextureChunk::createEmpty();
        addRefCP(_textureChunk);
    }

    if(_textureChunk->getImage() != getImage())
        _textureChunk->setImage(getImage());

    const BitVector mask = TextureChunk::MinFilterFieldMask |
                           TextureChunk::MagFilterFieldMask |
                           TextureChunk::EnvModeFieldMask;
    beginEditCP(_textureChunk, mask);
    _textureChunk->setMinFilter(getMinFilter());
    _textureChunk->setMagFilter(getMagFilter());
    _textureChunk->setEnvMode  (getEnvMode());
    endEditCP(_textureChunk, mask);
}

void SimpleTexturedMaterial::addLocalChunks(StatePtr state)
{
    Inherited::addLocalChunks(state);
    if(getImage() != NullFC)
        state->addChunk(_textureChunk);
}

bool SimpleTexturedMaterial::isTransparent(void) const
{
    if(getTransparencyMode() != TransparencyAutoDetection)
        return Inherited::isTransparent();

    Image *image = getCPtr(getImage());
    if(image != NULL && image->hasAlphaChannel() && getEnvMode() != GL_DECAL)
        return true;
    return Inherited::isTransparent();
}

} // namespace osg
