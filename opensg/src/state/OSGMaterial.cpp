#include <OpenSG/OSGMaterial.h>

namespace osg
{

const Int32 Material::NoStateSorting               = 0x7fffffff;
const Int32 Material::TransparencyAutoDetection    = 0;
const Int32 Material::TransparencyForceTransparent = 1;
const Int32 Material::TransparencyForceOpaque      = 2;

OSG_FC_ABSTRACT_IMPL(Material, "AttachmentContainer")

Material::Material(void) :
    Inherited(),
    _sfSortKey         (0),
    _sfTransparencyMode(TransparencyAutoDetection),
    _pState            ()
{
}

Material::Material(const Material &source) :
    Inherited(source),
    _sfSortKey         (source._sfSortKey),
    _sfTransparencyMode(source._sfTransparencyMode),
    _pState            ()
{
}

Material::~Material(void)
{
}

void Material::onDestroy(void)
{
    clearRefCP(_pState);
    Inherited::onDestroy();
}

// Renderers only read the cached state, so it is refreshed on every edit.
void Material::changed(BitVector whichField, UInt32 origin)
{
    rebuildState();
    Inherited::changed(whichField, origin);
}

StatePtr Material::getState(UInt32)
{
    if(_pState == NullFC)
        rebuildState();
    return _pState;
}

bool Material::isMultiPass(void) const
{
    return false;
}

UInt32 Material::getNPasses(void) const
{
    return 1;
}

Int32 Material::getRealSortKey(void) const
{
    return getSortKey();
}

bool Material::operator <(const Material &other) const
{
    return this < &other;
}

bool Material::operator ==(const Material &other) const
{
    return this == &other;
}

bool Material::operator !=(const Material &other) const
{
    return !(*this == other);
}

void Material::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << getType().getName() << " (" << this << ") sort key " << getSortKey()
         << " transparency mode " << getTransparencyMode() << std::endl;
}

} // namespace osg
