#include <OpenSG/OSGEdgeIterator.h>

namespace osg
{

EdgeIterator::EdgeIterator(void) : LineIterator(true)
{
}

EdgeIterator::EdgeIterator(const GeometryPtr &geo) : LineIterator(true)
{
    PrimitiveIterator::setGeo(geo);
    setToBegin();
}

EdgeIterator::EdgeIterator(const NodePtr &node) : LineIterator(true)
{
    PrimitiveIterator::setGeo(node);
    setToBegin();
}

} // namespace osg
