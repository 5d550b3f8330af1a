#include <OpenSG/OSGLineIterator.h>

namespace osg
{

namespace
{

UInt32 segmentsIn(UInt32 type, UInt32 n, bool faceEdges)
{
    switch(type)
    {
        case GL_LINES:      return n / 2;
        case GL_LINE_STRIP: return n >= 2 ? n - 1 : 0;
        case GL_LINE_LOOP:  return n >= 2 ? n : 0;
        default:            break;
    }
    if(!faceEdges)
        return 0;

    switch(type)
    {
        case GL_TRIANGLES:      return n / 3 * 3;
        case GL_TRIANGLE_STRIP:
        case GL_TRIANGLE_FAN:   return n >= 3 ? (n - 2) * 3 : 0;
        case GL_QUADS:          return n / 4 * 4;
        case GL_QUAD_STRIP:     return n >= 4 ? (n - 2) / 2 * 4 : 0;
        case GL_POLYGON:        return n >= 3 ? n : 0;
        default:                return 0;
    }
}

// The primitive's vertices joined by its segment s.
void segmentEnds(UInt32 type, UInt32 n, UInt32 s, Int32 end[2])
{
    const Int32 i = Int32(s);
    Int32 face[4];
    Int32 corners = 3, k = i % 3, f = i / 3;

    switch(type)
    {
        case GL_LINES:
            end[0] = 2 * i; end[1] = 2 * i + 1;
            return;
        case GL_LINE_STRIP:
            end[0] = i; end[1] = i + 1;
            return;
        case GL_LINE_LOOP:
        case GL_POLYGON:
            end[0] = i; end[1] = (i + 1) % Int32(n);
            return;
        case GL_TRIANGLES:
            face[0] = 3 * f; face[1] = 3 * f + 1; face[2] = 3 * f + 2;
            break;
        case GL_TRIANGLE_STRIP:
            face[0] = (f & 1) ? f + 1 : f;
            face[1] = (f & 1) ? f     : f + 1;
            face[2] = f + 2;
            break;
        case GL_TRIANGLE_FAN:
            face[0] = 0; face[1] = f + 1; face[2] = f + 2;
            break;
        case GL_QUADS:
            corners = 4; k = i % 4; f = i / 4;
            face[0] = 4 * f; face[1] = 4 * f + 1; face[2] = 4 * f + 2; face[3] = 4 * f + 3;
            break;
        default:    // quad strips
            corners = 4; k = i % 4; f = i / 4;
            face[0] = 2 * f; face[1] = 2 * f + 1; face[2] = 2 * f + 3; face[3] = 2 * f + 2;
            break;
    }
    end[0] = face[k];
    end[1] = face[(k + 1) % corners];
}

} // namespace

LineIterator::LineIterator(void) : LineIterator(false)
{
}

LineIterator::LineIterator(bool faceEdges) :
    PrimitiveIterator(),
    _faceEdges(faceEdges),
    _lineIndex(0),
    _primLine (0),
    _end      { 0, 0 }
{
}

LineIterator::LineIterator(const GeometryPtr &geo) : LineIterator(false)
{
    PrimitiveIterator::setGeo(geo);
    setToBegin();
}

LineIterator::LineIterator(const NodePtr &node) : LineIterator(false)
{
    PrimitiveIterator::setGeo(node);
    setToBegin();
}

void LineIterator::setToBegin(void)
{
    PrimitiveIterator::setToBegin();
    _lineIndex = 0;
    _primLine  = 0;
    findSegment();
}

void LineIterator::setToEnd(void)
{
    PrimitiveIterator::setToEnd();
}

void LineIterator::findSegment(void)
{
    while(!isAtEnd())
    {
        if(_primLine < segmentsIn(getType(), getLength(), _faceEdges))
        {
            segmentEnds(getType(), getLength(), _primLine, _end);
            return;
        }
        PrimitiveIterator::operator ++();
        _primLine = 0;
    }
}

void LineIterator::operator ++(void)
{
    if(isAtEnd())
        return;
    ++_lineIndex;
    ++_primLine;
    findSegment();
}

void LineIterator::seek(Int32 index)
{
    setToBegin();
    while(!isAtEnd() && Int32(_lineIndex) < index)
        ++(*this);
}

bool LineIterator::operator ==(const LineIterator &other) const
{
    return PrimitiveIterator::operator ==(other) &&
           (isAtEnd() || _lineIndex == other._lineIndex);
}

Int32 LineIterator::getIndexIndex(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getIndexIndex(_end[which]) : -1;
}

Int32 LineIterator::getPositionIndex(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getPositionIndex(_end[which]) : -1;
}

Pnt3f LineIterator::getPosition(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getPosition(_end[which]) : Pnt3f();
}

Int32 LineIterator::getNormalIndex(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getNormalIndex(_end[which]) : -1;
}

Vec3f LineIterator::getNormal(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getNormal(_end[which]) : Vec3f();
}

Int32 LineIterator::getColorIndex(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getColorIndex(_end[which]) : -1;
}

Color3f LineIterator::getColor(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getColor(_end[which]) : Color3f();
}

Int32 LineIterator::getTexCoordsIndex(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getTexCoordsIndex(_end[which]) : -1;
}

Vec2f LineIterator::getTexCoords(Int32 which) const
{
    return which == 0 || which == 1 ? PrimitiveIterator::getTexCoords(_end[which]) : Vec2f();
}

} // namespace osg
