#include <OpenSG/OSGTriangleIterator.h>

namespace osg
{

namespace
{

UInt32 trianglesIn(UInt32 type, UInt32 n)
{
    switch(type)
    {
        case GL_TRIANGLES:      return n / 3;
        case GL_TRIANGLE_STRIP:
        case GL_TRIANGLE_FAN:
        case GL_POLYGON:        return n >= 3 ? n - 2 : 0;
        case GL_QUADS:          return n / 4 * 2;
        case GL_QUAD_STRIP:     return n >= 4 ? (n - 2) / 2 * 2 : 0;
        default:                return 0;
    }
}

// The primitive's vertices of its triangle t, in GL's winding.
void triangleCorners(UInt32 type, UInt32 t, Int32 corner[3])
{
    const Int32 i = Int32(t);
    switch(type)
    {
        case GL_TRIANGLES:
            corner[0] = 3 * i; corner[1] = 3 * i + 1; corner[2] = 3 * i + 2;
            break;
        case GL_TRIANGLE_STRIP:
        case GL_QUAD_STRIP:
            corner[0] = (i & 1) ? i + 1 : i;
            corner[1] = (i & 1) ? i     : i + 1;
            corner[2] = i + 2;
            break;
        case GL_QUADS:
            corner[0] = i / 2 * 4;
            corner[1] = corner[0] + ((i & 1) ? 2 : 1);
            corner[2] = corner[0] + ((i & 1) ? 3 : 2);
            break;
        default:    // fans and polygons
            corner[0] = 0; corner[1] = i + 1; corner[2] = i + 2;
            break;
    }
}

} // namespace

TriangleIterator::TriangleIterator(void) :
    PrimitiveIterator(),
    _triIndex(0),
    _primTri (0),
    _corner  { 0, 0, 0 }
{
}

TriangleIterator::TriangleIterator(const GeometryPtr &geo) : TriangleIterator()
{
    PrimitiveIterator::setGeo(geo);
    setToBegin();
}

TriangleIterator::TriangleIterator(const NodePtr &node) : TriangleIterator()
{
    PrimitiveIterator::setGeo(node);
    setToBegin();
}

void TriangleIterator::setToBegin(void)
{
    PrimitiveIterator::setToBegin();
    _triIndex = 0;
    _primTri  = 0;
    findTriangle();
}

void TriangleIterator::setToEnd(void)
{
    PrimitiveIterator::setToEnd();
}

void TriangleIterator::findTriangle(void)
{
    while(!isAtEnd())
    {
        if(_primTri < trianglesIn(getType(), getLength()))
        {
            triangleCorners(getType(), _primTri, _corner);
            return;
        }
        PrimitiveIterator::operator ++();
        _primTri = 0;
    }
}

void TriangleIterator::operator ++(void)
{
    if(isAtEnd())
        return;
    ++_triIndex;
    ++_primTri;
    findTriangle();
}

void TriangleIterator::seek(Int32 index)
{
    setToBegin();
    while(!isAtEnd() && Int32(_triIndex) < index)
        ++(*this);
}

bool TriangleIterator::operator ==(const TriangleIterator &other) const
{
    return PrimitiveIterator::operator ==(other) &&
           (isAtEnd() || _triIndex == other._triIndex);
}

Int32 TriangleIterator::getIndexIndex(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getIndexIndex(_corner[which]) : -1;
}

Int32 TriangleIterator::getPositionIndex(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getPositionIndex(_corner[which]) : -1;
}

Pnt3f TriangleIterator::getPosition(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getPosition(_corner[which]) : Pnt3f();
}

Int32 TriangleIterator::getNormalIndex(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getNormalIndex(_corner[which]) : -1;
}

Vec3f TriangleIterator::getNormal(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getNormal(_corner[which]) : Vec3f();
}

Int32 TriangleIterator::getColorIndex(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getColorIndex(_corner[which]) : -1;
}

Color3f TriangleIterator::getColor(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getColor(_corner[which]) : Color3f();
}

Int32 TriangleIterator::getTexCoordsIndex(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getTexCoordsIndex(_corner[which]) : -1;
}

Vec2f TriangleIterator::getTexCoords(Int32 which) const
{
    return which >= 0 && which < 3 ? PrimitiveIterator::getTexCoords(_corner[which]) : Vec2f();
}

} // namespace osg
