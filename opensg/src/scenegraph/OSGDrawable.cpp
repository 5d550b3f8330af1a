#include <OpenSG/OSGDrawable.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Drawable, "NodeCore")

StatElemDesc<StatIntElem>     Drawable::statNTriangles(
    "NTriangles", "number of rendered triangles");
StatElemDesc<StatIntElem>     Drawable::statNLines(
    "NLines", "number of rendered lines");
StatElemDesc<StatIntElem>     Drawable::statNPoints(
    "NPoints", "number of rendered points");
StatElemDesc<StatIntElem>     Drawable::statNVertices(
    "NVertices", "number of transformed vertices");
StatElemDesc<StatIntElem>     Drawable::statNPrimitives(
    "NPrimitives", "number of rendered primitive groups");
StatElemDesc<StatIntOnceElem> Drawable::statNGeoBytes(
    "NGeoBytes", "memory usages of geometry on the gfx card");

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
