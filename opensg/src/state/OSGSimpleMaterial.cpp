#include <OpenSG/OSGSimpleMaterial.h>

namespace osg
{

OSG_FC_IMPL(SimpleMaterial, "ChunkMaterial")

SimpleMaterial::SimpleMaterial(void) :
    Inherited(),
    _sfAmbient      (Color3f(0.f, 0.f, 0.f)),
    _sfDiffuse      (Color3f(0.f, 0.f, 0.f)),
    _sfSpecular     (Color3f(0.f, 0.f, 0.f)),
    _sfShininess    (1.f),
    _sfEmission     (Color3f(0.f, 0.f, 0.f)),
    _sfTransparency (0.f),
    _sfLit          (true),
    _sfColorMaterial(GL_DIFFUSE),
    _materialChunk  (),
    _blendChunk     ()
{
}

// The copy makes internal chunks of its own.
SimpleMaterial::SimpleMaterial(const SimpleMaterial &source) :
    Inherited(source),
    _sfAmbient      (source._sfAmbient),
    _sfDiffuse      (source._sfDiffuse),
    _sfSpecular     (source._sfSpecular),
    _sfShininess    (source._sfShininess),
    _sfEmission     (source._sfEmission),
    _sfTransparency (source._sfTransparency),
    _sfLit          (source._sfLit),
    _sfColorMaterial(source._sfColorMaterial),
    _materialChunk  (),
    _blendChunk     ()
{
}

SimpleMaterial::~SimpleMaterial(void)
{
}

void SimpleMaterial::onDestroy(void)
{
    clearRefCP(_materialChunk);
    clearRefCP(_blendChunk);
    Inherited::onDestroy();
}

namespace
{

template <class PtrT>
void createInternal(PtrT &chunk)
{
    typedef typename PtrT::StoredObjectType ChunkT;
    if(chunk != NullFC)
        return;
    chunk = ChunkT::create();
    if(chunk == NullFC)
        chunk = ChunkT::createEmpty();
    addRefCP(chunk);
}

Color4f withAlpha(const Color3f &c, Real32 alpha)
{
    return Color4f(c[0], c[1], c[2], alpha);
}

} // namespace

void SimpleMaterial::prepareLocalChunks(void)
{
    createInternal(_materialChunk);
    createInternal(_blendChunk);

    const Real32 alpha = 1.f - getTransparency();

    beginEditCP(_materialChunk);
    _materialChunk->setDiffuse      (withAlpha(getDiffuse(),  alpha));
    _materialChunk->setAmbient      (withAlpha(getAmbient(),  alpha));
    _materialChunk->setSpecular     (withAlpha(getSpecular(), alpha));
    _materialChunk->setEmission     (withAlpha(getEmission(), alpha));
    _materialChunk->setShininess    (getShininess());
    _materialChunk->setLit          (getLit());
    _materialChunk->setColorMaterial(getColorMaterial());
    endEditCP(_materialChunk);

    beginEditCP(_blendChunk);
    _blendChunk->setSrcFactor (GL_SRC_ALPHA);
    _blendChunk->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);
    endEditCP(_blendChunk);
}

void SimpleMaterial::addLocalChunks(StatePtr state)
{
    state->addChunk(_materialChunk);
    if(isTransparent())
        state->addChunk(_blendChunk);
}

StatePtr SimpleMaterial::makeState(void)
{
    prepareLocalChunks();
    StatePtr state = State::create();
    addLocalChunks(state);
    addChunks(state);
    return state;
}

void SimpleMaterial::rebuildState(void)
{
    prepareLocalChunks();
    if(_pState == NullFC)
    {
        _pState = State::create();
        addRefCP(_pState);
    }
    else
        _pState->clearChunks();

    addLocalChunks(_pState);
    addChunks(_pState);
}

// A transparency value wins even over a forced-opaque mode, as in 1.8.
bool SimpleMaterial::isTransparent(void) const
{
    return getTransparency() > Eps || Inherited::isTransparent();
}

void SimpleMaterial::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    Inherited::dump(uiIndent, bvFlags);
    indentLog(uiIndent + 2, PLOG);
    PLOG << "diffuse " << getDiffuse() << " transparency " << getTransparency()
         << (getLit() ? " lit" : " unlit") << std::endl;
}

} // namespace osg
