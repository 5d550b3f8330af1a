#ifndef _OSGEDGEITERATOR_H_
#define _OSGEDGEITERATOR_H_

#include <OpenSG/OSGLineIterator.h>

namespace osg
{

// Walks every edge a wireframe of the geometry shows: the segments of its
// lines and the outline of each face (each triangle of a strip or fan,
// each quad, a polygon's border), in GL's winding. Edges shared by two
// faces come once per face.
class EdgeIterator : public LineIterator
{
  public:
    EdgeIterator(void);
    explicit EdgeIterator(const GeometryPtr &geo);
    explicit EdgeIterator(const NodePtr &node);
};

} // namespace osg

#endif
