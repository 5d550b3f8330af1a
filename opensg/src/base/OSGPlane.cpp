#include <OpenSG/OSGPlane.h>
#include <OpenSG/OSGLine.h>

namespace osg
{

Plane::Plane(void) :
    _normalVec(0.f, 0.f, 0.f),
    _distance (0.f)
{
}

Plane::Plane(const Plane &obj) :
    _normalVec(obj._normalVec),
    _distance (obj._distance )
{
}

Plane::Plane(const Pnt3f &p0, const Pnt3f &p1, const Pnt3f &p2)
{
    _normalVec = (p1 - p0).cross(p2 - p0);
    _normalVec.normalize();
    _distance  = _normalVec.dot(p0);
}

Plane::Plane(const Vec3f &normal, Real32 distance) :
    _normalVec(normal  ),
    _distance (distance)
{
    _normalVec.normalize();
}

Plane::Plane(const Vec3f &normal, const Pnt3f &point) :
    _normalVec(normal)
{
    _normalVec.normalize();
    _distance = _normalVec.dot(point);
}

Plane &Plane::operator =(const Plane &other)
{
    _normalVec = other._normalVec;
    _distance  = other._distance;
    return *this;
}

bool Plane::operator ==(const Plane &other) const
{
    return _normalVec == other._normalVec &&
           osgabs(_distance - other._distance) <= Eps;
}

bool Plane::intersect(const Plane &pl, Line &intersection) const
{
    const Vec3f &n1  = _normalVec;
    const Vec3f &n2  = pl._normalVec;
    const Vec3f  dir = n1.cross(n2);

    const Real32 n1n1 = n1.dot(n1);
    const Real32 n2n2 = n2.dot(n2);
    const Real32 n1n2 = n1.dot(n2);
    const Real32 det  = n1n1 * n2n2 - n1n2 * n1n2;

    if(dir.squareLength() < Eps * Eps || osgabs(det) < Eps * Eps)
        return false;

    // The point on the line that is a combination of both normals.
    const Real32 c1 = (_distance    * n2n2 - pl._distance * n1n2) / det;
    const Real32 c2 = (pl._distance * n1n1 - _distance    * n1n2) / det;

    const Pnt3f pos = (n1 * c1 + n2 * c2).addToZero();

    intersection.setValue(pos, dir);
    return true;
}

// As 1.8: only an exactly parallel line misses, unless it lies in the plane.
bool Plane::intersectInfinite(const Line &l, Real32 &t) const
{
    const Real32 denom = _normalVec.dot(l.getDirection());

    if(denom != 0.f)
    {
        t = _normalVec.dot(Pnt3f(_normalVec * _distance) - l.getPosition()) / denom;
        return true;
    }
    if(distance(l.getPosition()) == 0.f)
    {
        t = 0.f;
        return true;
    }
    return false;
}

bool Plane::intersectInfinite(const Line &l, Pnt3f &intersection) const
{
    Real32 t;
    if(!intersectInfinite(l, t))
        return false;
    intersection = l.getPosition() + l.getDirection() * t;
    return true;
}

bool Plane::intersect(const Line &l, Real32 &t) const
{
    return intersectInfinite(l, t) && t >= 0.f;
}

bool Plane::intersect(const Line &l, Pnt3f &intersection) const
{
    Real32 t;
    if(!intersect(l, t))
        return false;
    intersection = l.getPosition() + l.getDirection() * t;
    return true;
}

// As 1.8: the normal goes through the matrix itself, which holds for
// rotations only, and the translation along the normal moves the plane
// with 1.8's sign.
void Plane::transform(const Matrix &matrix)
{
    matrix.multMatrixVec(_normalVec);
    _normalVec.normalize();

    Vec3f trans(matrix[3][0], matrix[3][1], matrix[3][2]);
    trans.projectTo(_normalVec);

    auto largest = [](const Vec3f &v) -> UInt32
    {
        if(osgabs(v[0]) > osgabs(v[1]))
            return osgabs(v[0]) > osgabs(v[2]) ? 0 : 2;
        return osgabs(v[1]) > osgabs(v[2]) ? 1 : 2;
    };
    const Real32 n = _normalVec[largest(_normalVec)];
    const Real32 t = trans[largest(trans)];
    if(t > Eps || t < -Eps)
    {
        if((n < 0.f && t < 0.f) || (n > 0.f && t > 0.f))
            _distance -= trans.length();
        else
            _distance += trans.length();
    }
}

// Sutherland-Hodgman from the last corner, as 1.8 orders the output.
int Plane::clip(Pnt3f *polyIn, Pnt3f *polyOut, int count) const
{
    int   outCount = 0;
    Pnt3f prev     = polyIn[count - 1];

    for(int i = 0; i < count; ++i)
    {
        const Pnt3f cur = polyIn[i];
        Pnt3f       crossing;

        if(isInHalfSpace(cur))
        {
            if(isInHalfSpace(prev))
                polyOut[outCount++] = cur;
            else if(intersectInfinite(Line(prev, cur), crossing))
            {
                polyOut[outCount++] = crossing;
                polyOut[outCount++] = cur;
            }
        }
        else if(isInHalfSpace(prev) && intersectInfinite(Line(prev, cur), crossing))
        {
            polyOut[outCount++] = crossing;
        }
        prev = cur;
    }
    return outCount;
}

bool Plane::isOnPlane(const Pnt3f &point) const
{
    return osgabs(distance(point)) < Eps;
}

bool Plane::isInHalfSpace(const Pnt3f &point) const
{
    return distance(point) >= 0.f;
}

Real32 Plane::distance(const Pnt3f &point) const
{
    return _normalVec.dot(point) - _distance;
}

// The box corner farthest against the normal decides "all inside", the
// one farthest along it "all outside".
bool Plane::isInHalfSpace(const Pnt3f &min, const Pnt3f &max) const
{
    Pnt3f p;
    for(UInt32 i = 0; i < 3; ++i)
        p[i] = _normalVec[i] >= 0.f ? min[i] : max[i];
    return isInHalfSpace(p);
}

bool Plane::isOutHalfSpace(const Pnt3f &min, const Pnt3f &max) const
{
    Pnt3f p;
    for(UInt32 i = 0; i < 3; ++i)
        p[i] = _normalVec[i] >= 0.f ? max[i] : min[i];
    return !isInHalfSpace(p);
}

void Plane::set(const Vec3f &normal, Real32 distance)
{
    _normalVec = normal;
    _distance  = distance;
}

void Plane::set(Real32 x, Real32 y, Real32 z, Real32 distance)
{
    _normalVec.setValues(x, y, z);
    _distance = distance;
}

void Plane::set(const Vec4f &plane)
{
    _normalVec.setValues(plane[0], plane[1], plane[2]);
    _distance = plane[3];
}

std::ostream &operator <<(std::ostream &os, const Plane &pl)
{
    return os << pl.getNormal() << " " << pl.getDistanceFromOrigin();
}

} // namespace osg
