#include <OpenSG/OSGFaceIterator.h>

namespace osg
{

namespace
{

UInt32 facesIn(UInt32 type, UInt32 n)
{
    switch(type)
    {
        case GL_TRIANGLES:      return n / 3;
        case GL_TRIANGLE_STRIP:
        case GL_TRIANGLE_FAN:
        case GL_POLYGON:        return n >= 3 ? n - 2 : 0;
        case GL_QUADS:          return n / 4;
        case GL_QUAD_STRIP:     return n >= 4 ? (n - 2) / 2 : 0;
        default:                return 0;
    }
}

// The primitive's vertices of face f, in GL's winding; the face's length.
UInt32 faceCorners(UInt32 type, UInt32 f, Int32 corner[4])
{
    const Int32 i = Int32(f);
    switch(type)
    {
        case GL_QUADS:
            corner[0] = 4 * i; corner[1] = 4 * i + 1; corner[2] = 4 * i + 2; corner[3] = 4 * i + 3;
            return 4;
        case GL_QUAD_STRIP:
            corner[0] = 2 * i; corner[1] = 2 * i + 1; corner[2] = 2 * i + 3; corner[3] = 2 * i + 2;
            return 4;
        case GL_TRIANGLES:
            corner[0] = 3 * i; corner[1] = 3 * i + 1; corner[2] = 3 * i + 2;
            return 3;
        case GL_TRIANGLE_STRIP:
            corner[0] = (i & 1) ? i + 1 : i;
            corner[1] = (i & 1) ? i     : i + 1;
            corner[2] = i + 2;
            return 3;
        default:    // fans and polygons
            corner[0] = 0; corner[1] = i + 1; corner[2] = i + 2;
            return 3;
    }
}

} // namespace

FaceIterator::FaceIterator(void) :
    PrimitiveIterator(),
    _faceIndex (0),
    _primFace  (0),
    _faceLength(0),
    _corner    { 0, 0, 0, 0 }
{
}

FaceIterator::FaceIterator(const GeometryPtr &geo) : FaceIterator()
{
    PrimitiveIterator::setGeo(geo);
    setToBegin();
}

FaceIterator::FaceIterator(const NodePtr &node) : FaceIterator()
{
    PrimitiveIterator::setGeo(node);
    setToBegin();
}

void FaceIterator::setToBegin(void)
{
    PrimitiveIterator::setToBegin();
    _faceIndex = 0;
    _primFace  = 0;
    findFace();
}

void FaceIterator::setToEnd(void)
{
    PrimitiveIterator::setToEnd();
}

void FaceIterator::findFace(void)
{
    while(!isAtEnd())
    {
        if(_primFace < facesIn(getType(), PrimitiveIterator::getLength()))
        {
            _faceLength = faceCorners(getType(), _primFace, _corner);
            return;
        }
        PrimitiveIterator::operator ++();
        _primFace = 0;
    }
}

void FaceIterator::operator ++(void)
{
    if(isAtEnd())
        return;
    ++_faceIndex;
    ++_primFace;
    findFace();
}

void FaceIterator::seek(Int32 index)
{
    setToBegin();
    while(!isAtEnd() && Int32(_faceIndex) < index)
        ++(*this);
}

bool FaceIterator::operator ==(const FaceIterator &other) const
{
    return PrimitiveIterator::operator ==(other) &&
           (isAtEnd() || _faceIndex == other._faceIndex);
}

Int32 FaceIterator::getPositionIndex(Int32 which) const
{
    return which >= 0 && UInt32(which) < _faceLength ?
           PrimitiveIterator::getPositionIndex(_corner[which]) : -1;
}

Pnt3f FaceIterator::getPosition(Int32 which) const
{
    return which >= 0 && UInt32(which) < _faceLength ?
           PrimitiveIterator::getPosition(_corner[which]) : Pnt3f();
}

Int32 FaceIterator::getNormalIndex(Int32 which) const
{
    return which >= 0 && UInt32(which) < _faceLength ?
           PrimitiveIterator::getNormalIndex(_corner[which]) : -1;
}

Vec3f FaceIterator::getNormal(Int32 which) const
{
    return which >= 0 && UInt32(which) < _faceLength ?
           PrimitiveIterator::getNormal(_corner[which]) : Vec3f();
}

Int32 FaceIterator::getTexCoordsIndex(Int32 which) const
{
    return which >= 0 && UInt32(which) < _faceLength ?
           PrimitiveIterator::getTexCoordsIndex(_corner[which]) : -1;
}

Vec2f FaceIterator::getTexCoords(Int32 which) const
{
    return which >= 0 && UInt32(which) < _faceLength ?
           PrimitiveIterator::getTexCoords(_corner[which]) : Vec2f();
}

} // namespace osg
