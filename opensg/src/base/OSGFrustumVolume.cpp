#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

namespace
{
    // Point where three planes meet; false if two of them are parallel.
    bool meet(const Plane &a, const Plane &b, const Plane &c, Pnt3f &p)
    {
        const Vec3f &na = a.getNormal();
        const Vec3f &nb = b.getNormal();
        const Vec3f &nc = c.getNormal();

        const Vec3f  bc  = nb.cross(nc);
        const Real32 det = na.dot(bc);

        if(osgabs(det) < Eps)
            return false;

        const Vec3f v = bc * a.getDistanceFromOrigin() +
                        nc.cross(na) * b.getDistanceFromOrigin() +
                        na.cross(nb) * c.getDistanceFromOrigin();

        p = (v * (1.f / det)).addToZero();
        return true;
    }

    // Plane through three points, turned to face inside.
    Plane facing(const Pnt3f &p0, const Pnt3f &p1, const Pnt3f &p2,
                 const Pnt3f &inside)
    {
        Plane pl(p0, p1, p2);
        if(pl.distance(inside) < 0.f)
            pl.set(-pl.getNormal(), -pl.getDistanceFromOrigin());
        return pl;
    }
}

FrustumVolume::FrustumVolume(void) :
    Volume()
{
}

FrustumVolume::FrustumVolume(const Plane &pnear, const Plane &pfar,
                             const Plane &left,  const Plane &right,
                             const Plane &top,   const Plane &bottom) :
    Volume()
{
    setPlanes(pnear, pfar, left, right, top, bottom);
}

FrustumVolume::FrustumVolume(const FrustumVolume &obj) :
    Volume(obj)
{
    for(UInt32 i = 0; i < 6; ++i)
        _planeVec[i] = obj._planeVec[i];
}

FrustumVolume::~FrustumVolume(void)
{
}

FrustumVolume &FrustumVolume::operator =(const FrustumVolume &obj)
{
    Volume::operator =(obj);
    for(UInt32 i = 0; i < 6; ++i)
        _planeVec[i] = obj._planeVec[i];
    return *this;
}

bool FrustumVolume::operator ==(const FrustumVolume &other) const
{
    for(UInt32 i = 0; i < 6; ++i)
        if(_planeVec[i] != other._planeVec[i])
            return false;
    return true;
}

void FrustumVolume::setPlanes(const Plane &pnear, const Plane &pfar,
                              const Plane &left,  const Plane &right,
                              const Plane &top,   const Plane &bottom)
{
    _planeVec[0] = pnear;
    _planeVec[1] = pfar;
    _planeVec[2] = left;
    _planeVec[3] = right;
    _planeVec[4] = top;
    _planeVec[5] = bottom;

    setEmpty(false);
}

void FrustumVolume::setPlanes(const Pnt3f &nlt, const Pnt3f &nlb,
                              const Pnt3f &nrt, const Pnt3f &nrb,
                              const Pnt3f &flt, const Pnt3f &flb,
                              const Pnt3f &frt, const Pnt3f &frb)
{
    Vec3f sum;
    const Pnt3f *corners[] = { &nlt, &nlb, &nrt, &nrb, &flt, &flb, &frt, &frb };
    for(UInt32 i = 0; i < 8; ++i)
        sum += corners[i]->subZero();
    const Pnt3f inside = (sum * 0.125f).addToZero();

    setPlanes(facing(nlt, nlb, nrb, inside),
              facing(flt, flb, frb, inside),
              facing(nlt, nlb, flb, inside),
              facing(nrt, nrb, frb, inside),
              facing(nlt, nrt, frt, inside),
              facing(nlb, nrb, frb, inside));
}

// Clip space bounds -w <= x, y, z <= w as planes of the matrix rows.
void FrustumVolume::setPlanes(const Matrix &matrix)
{
    Vec4f row[4];
    for(UInt32 r = 0; r < 4; ++r)
        row[r].setValues(matrix[0][r], matrix[1][r], matrix[2][r], matrix[3][r]);

    const Vec4f eq[6] =
    {
        row[3] + row[2],   // near
        row[3] - row[2],   // far
        row[3] + row[0],   // left
        row[3] - row[0],   // right
        row[3] - row[1],   // top
        row[3] + row[1]    // bottom
    };

    Plane planes[6];
    for(UInt32 i = 0; i < 6; ++i)
    {
        // a x + b y + c z + d >= 0  <=>  n.p - (-d) >= 0
        const Vec3f  n(eq[i][0], eq[i][1], eq[i][2]);
        const Real32 len = n.length();
        // Divided, not multiplied by the reciprocal: the planes agree with
        // 1.8's to the bit.
        if(len > 0.f)
            planes[i].set(Vec3f(n[0] / len, n[1] / len, n[2] / len), eq[i][3] / -len);
        else
            planes[i].set(n, -eq[i][3]);
    }

    setPlanes(planes[0], planes[1], planes[2], planes[3], planes[4], planes[5]);
}

bool FrustumVolume::getCorners(Pnt3f *corners) const
{
    bool ok = true;
    for(UInt32 i = 0; i < 8; ++i)
    {
        if(!meet(_planeVec[i >> 2],
                 _planeVec[2 + ((i >> 1) & 1)],
                 _planeVec[4 + (i & 1)], corners[i]))
        {
            corners[i].setValues(0.f, 0.f, 0.f);
            ok = false;
        }
    }
    return ok;
}

void FrustumVolume::getCenter(Pnt3f &center) const
{
    Pnt3f corners[8];
    getCorners(corners);

    Vec3f sum;
    for(UInt32 i = 0; i < 8; ++i)
        sum += corners[i].subZero();
    center = (sum * 0.125f).addToZero();
}

// Sum of the tetrahedra from the centre to the twelve face triangles.
float FrustumVolume::getScalarVolume(void) const
{
    Pnt3f c[8];
    if(!getCorners(c))
        return 0.f;

    Pnt3f centre;
    getCenter(centre);

    // Corner indices: bit 2 near/far, bit 1 left/right, bit 0 top/bottom.
    static const UInt32 faces[6][4] =
    {
        { 0, 1, 3, 2 }, { 4, 5, 7, 6 },   // near, far
        { 0, 1, 5, 4 }, { 2, 3, 7, 6 },   // left, right
        { 0, 2, 6, 4 }, { 1, 3, 7, 5 }    // top, bottom
    };

    Real32 volume = 0.f;
    for(UInt32 f = 0; f < 6; ++f)
    {
        const Vec3f a = c[faces[f][0]] - centre;
        for(UInt32 t = 1; t < 3; ++t)
        {
            const Vec3f b = c[faces[f][t    ]] - centre;
            const Vec3f d = c[faces[f][t + 1]] - centre;
            volume += osgabs(a.dot(b.cross(d))) / 6.f;
        }
    }
    return volume;
}

void FrustumVolume::getBounds(Pnt3f &, Pnt3f &) const
{
}

void FrustumVolume::extendBy(const Pnt3f &)
{
}

void FrustumVolume::extendBy(const Volume &volume)
{
    extend(*this, volume);
}

bool FrustumVolume::intersect(const Pnt3f &point) const
{
    for(UInt32 i = 0; i < 6; ++i)
        if(!_planeVec[i].isInHalfSpace(point))
            return false;
    return true;
}

bool FrustumVolume::intersect(const Line &line) const
{
    return line.intersect(*this);
}

bool FrustumVolume::intersect(const Line &line, Real32 &enter, Real32 &exit) const
{
    return line.intersect(*this, enter, exit);
}

bool FrustumVolume::intersect(const Volume &volume) const
{
    return osg::intersect(*this, volume);
}

bool FrustumVolume::intersect(const FrustumVolume &frustum) const
{
    return osg::intersect(*this, frustum);
}

bool FrustumVolume::isOnSurface(const Pnt3f &) const
{
    SWARNING << "FrustumVolume::isOnSurface: not implemented!" << endLog;
    return false;
}

void FrustumVolume::transform(const Matrix &m)
{
    for(UInt32 i = 0; i < 6; ++i)
        _planeVec[i].transform(m);
}

void FrustumVolume::dump(UInt32 uiIndent, const BitVector) const
{
    static const Char8 *names[6] = { "near", "far", "left", "right", "top", "bottom" };

    indentLog(uiIndent, PLOG);
    PLOG << "Frustum(" << std::endl;
    for(UInt32 i = 0; i < 6; ++i)
    {
        indentLog(uiIndent + 4, PLOG);
        PLOG << names[i] << ": " << _planeVec[i] << std::endl;
    }
    indentLog(uiIndent, PLOG);
    PLOG << ")" << std::endl;
}

bool intersect(const FrustumVolume &frustum, const Volume &vol,
               FrustumVolume::PlaneSet &inplanes)
{
    const Volume *v = &vol;
    if(const DynamicVolume *dv = dynamic_cast<const DynamicVolume *>(v))
        v = &dv->getInstance();

    if(v->isEmpty())
        return false;
    if(v->isInfinite())
        return true;

    const SphereVolume *sphere = dynamic_cast<const SphereVolume *>(v);

    Pnt3f min, max;
    if(sphere == NULL)
    {
        if(dynamic_cast<const FrustumVolume *>(v) != NULL)
            return intersect(frustum, *v);
        v->getBounds(min, max);
    }

    const Plane *planes = frustum.getPlanes();
    for(UInt32 i = 0; i < 6; ++i)
    {
        const FrustumVolume::PlaneSet mask = FrustumVolume::PlaneSet(1 << i);
        if(inplanes & mask)
            continue;

        bool outside, inside;
        if(sphere != NULL)
        {
            const Real32 d = planes[i].distance(sphere->getCenter());
            outside = d < -sphere->getRadius();
            inside  = d >= sphere->getRadius();
        }
        else
        {
            outside = planes[i].isOutHalfSpace(min, max);
            inside  = planes[i].isInHalfSpace (min, max);
        }

        if(outside)
            return false;
        if(inside)
            inplanes |= mask;
    }
    return true;
}

} // namespace osg
