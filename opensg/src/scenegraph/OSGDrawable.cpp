#include <OpenSG/OSGDrawable.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Drawable, "NodeCore")

Drawable::Drawable(void) :
    Inherited()
{
}

Drawable::Drawable(const Drawable &source) :
    Inherited(source)
{
}

Drawable::~Drawable(void)
{
}

} // namespace osg
