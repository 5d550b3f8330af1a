#include <OpenSG/OSGMaterialDrawable.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(MaterialDrawable, "Drawable")

MaterialDrawable::MaterialDrawable(void) :
    Inherited(),
    _sfMaterial()
{
}

MaterialDrawable::MaterialDrawable(const MaterialDrawable &source) :
    Inherited(source),
    _sfMaterial(source._sfMaterial)
{
}

MaterialDrawable::~MaterialDrawable(void)
{
}

// A copy holds the same material and needs its own reference.
void MaterialDrawable::onCreate(const MaterialDrawable *)
{
    addRefCP(_sfMaterial.getValue());
}

void MaterialDrawable::onDestroy(void)
{
    MaterialPtr material = _sfMaterial.getValue();
    _sfMaterial.setValue(NullFC);
    subRefCP(material);

    Inherited::onDestroy();
}

void MaterialDrawable::setMaterial(const MaterialPtr &value)
{
    if(_sfMaterial.getValue() == value)
        return;

    MaterialPtr old = _sfMaterial.getValue();
    addRefCP(value);
    _sfMaterial.setValue(value);
    subRefCP(old);
}

} // namespace osg
