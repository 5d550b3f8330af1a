#ifndef _OSGVECTOR_H_
#define _OSGVECTOR_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGBaseMathFunctions.h>

#include <istream>
#include <ostream>
#include <type_traits>

namespace osg
{

template <class ValueTypeT, UInt32 SizeI> class Point;
template <class ValueTypeT, UInt32 SizeI> class Vector;

// Lengths and distances of integer and float vectors come back as Real32.
template <class ValueTypeT> struct VecRealReturn              { typedef Real32  type; };
template <>                 struct VecRealReturn<Real64>      { typedef Real64  type; };
template <>                 struct VecRealReturn<Real128>     { typedef Real128 type; };

// Storage with the named accessors that exist for the size.
template <class ValueTypeT, UInt32 SizeI>
class VecStorage
{
  protected:
    ValueTypeT _values[SizeI];
};

template <class ValueTypeT>
class VecStorage<ValueTypeT, 2>
{
  public:
    void setValues(const ValueTypeT v1, const ValueTypeT v2)
    {
        _values[0] = v1; _values[1] = v2;
    }
    void getSeparateValues(ValueTypeT &v1, ValueTypeT &v2) const
    {
        v1 = _values[0]; v2 = _values[1];
    }
    ValueTypeT x(void) const { return _values[0]; }
    ValueTypeT y(void) const { return _values[1]; }

  protected:
    ValueTypeT _values[2];
};

template <class ValueTypeT>
class VecStorage<ValueTypeT, 3>
{
  public:
    void setValues(const ValueTypeT v1, const ValueTypeT v2, const ValueTypeT v3)
    {
        _values[0] = v1; _values[1] = v2; _values[2] = v3;
    }
    void getSeparateValues(ValueTypeT &v1, ValueTypeT &v2, ValueTypeT &v3) const
    {
        v1 = _values[0]; v2 = _values[1]; v3 = _values[2];
    }
    ValueTypeT x(void) const { return _values[0]; }
    ValueTypeT y(void) const { return _values[1]; }
    ValueTypeT z(void) const { return _values[2]; }

  protected:
    ValueTypeT _values[3];
};

template <class ValueTypeT>
class VecStorage<ValueTypeT, 4>
{
  public:
    void setValues(const ValueTypeT v1, const ValueTypeT v2,
                   const ValueTypeT v3, const ValueTypeT v4)
    {
        _values[0] = v1; _values[1] = v2; _values[2] = v3; _values[3] = v4;
    }
    void getSeparateValues(ValueTypeT &v1, ValueTypeT &v2,
                           ValueTypeT &v3, ValueTypeT &v4) const
    {
        v1 = _values[0]; v2 = _values[1]; v3 = _values[2]; v4 = _values[3];
    }
    ValueTypeT x(void) const { return _values[0]; }
    ValueTypeT y(void) const { return _values[1]; }
    ValueTypeT z(void) const { return _values[2]; }
    ValueTypeT w(void) const { return _values[3]; }

  protected:
    ValueTypeT _values[4];
};

template <class ValueTypeT, UInt32 SizeI>
class Point : public VecStorage<ValueTypeT, SizeI>
{
  protected:
    using VecStorage<ValueTypeT, SizeI>::_values;

  public:
    typedef ValueTypeT                                  ValueType;
    typedef typename VecRealReturn<ValueTypeT>::type    RealReturnType;
    typedef Point <ValueTypeT, SizeI>                   PointType;
    typedef Vector<ValueTypeT, SizeI>                   VectorType;

    static const UInt32 _iSize = SizeI;
    static const Point  Null;

    Point(void) { setNull(); }

    Point(const ValueTypeT *pVals) { setValue(pVals); }

    explicit Point(const ValueTypeT v1)
    {
        const ValueTypeT v[] = { v1 };
        setValuesN(v, 1);
    }
    Point(const ValueTypeT v1, const ValueTypeT v2)
    {
        const ValueTypeT v[] = { v1, v2 };
        setValuesN(v, 2);
    }
    Point(const ValueTypeT v1, const ValueTypeT v2, const ValueTypeT v3)
    {
        const ValueTypeT v[] = { v1, v2, v3 };
        setValuesN(v, 3);
    }
    Point(const ValueTypeT v1, const ValueTypeT v2,
          const ValueTypeT v3, const ValueTypeT v4)
    {
        const ValueTypeT v[] = { v1, v2, v3, v4 };
        setValuesN(v, 4);
    }

    template <class V2, UInt32 S2>
    Point(const Point<V2, S2> &other) { setValue(other); }

    template <class V2, UInt32 S2>
    Point(const Vector<V2, S2> &other) { setValue(other); }

    void setNull(void)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] = TypeTraits<ValueTypeT>::getZeroElement();
    }

    void setValue(const Point &other)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] = other._values[i];
    }

    void setValue(const ValueTypeT *pVals)
    {
        if(pVals == NULL)
            setNull();
        else
            setValuesN(pVals, SizeI);
    }

    template <class V2, UInt32 S2>
    void setValue(const Point<V2, S2> &other)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] = i < S2 ? ValueTypeT(other[i])
                                : TypeTraits<ValueTypeT>::getZeroElement();
    }

          ValueTypeT *getValues(void)       { return _values; }
    const ValueTypeT *getValues(void) const { return _values; }

    bool isZero(void) const
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            if(_values[i] != TypeTraits<ValueTypeT>::getZeroElement())
                return false;
        return true;
    }

    void negate(void)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] = -_values[i];
    }

    bool equals(const Point &other, const ValueTypeT tolerance) const
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            if(_values[i] - other._values[i] >  tolerance ||
               other._values[i] - _values[i] >  tolerance)
                return false;
        return true;
    }

          VectorType &subZero(void)       { return static_cast<VectorType &>(*this); }
    const VectorType &subZero(void) const { return static_cast<const VectorType &>(*this); }

    RealReturnType dist2(const Point &other) const
    {
        RealReturnType r = 0;
        for(UInt32 i = 0; i < SizeI; ++i)
        {
            const RealReturnType d = RealReturnType(_values[i]) -
                                     RealReturnType(other._values[i]);
            r += d * d;
        }
        return r;
    }

    RealReturnType dist(const Point &other) const { return osgsqrt(dist2(other)); }

    ValueTypeT maxValue(void) const
    {
        ValueTypeT r = _values[0];
        for(UInt32 i = 1; i < SizeI; ++i)
            if(_values[i] > r)
                r = _values[i];
        return r;
    }

    void operator *=(const ValueTypeT s)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] *= s;
    }

    void operator /=(const ValueTypeT s)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] /= s;
    }

    VectorType operator -(const Point &other) const
    {
        VectorType r;
        for(UInt32 i = 0; i < SizeI; ++i)
            r[i] = _values[i] - other._values[i];
        return r;
    }

    Point operator +(const VectorType &v) const
    {
        Point r(*this);
        r += v;
        return r;
    }

    Point operator -(const VectorType &v) const
    {
        Point r(*this);
        r -= v;
        return r;
    }

    Point operator *(const ValueTypeT s) const
    {
        Point r(*this);
        r *= s;
        return r;
    }

    Point operator -(void)
    {
        Point r(*this);
        r.negate();
        return r;
    }

    void operator +=(const VectorType &v)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] += v[i];
    }

    void operator -=(const VectorType &v)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] -= v[i];
    }

          ValueTypeT &operator [](const UInt32 i)       { return _values[i]; }
    const ValueTypeT &operator [](const UInt32 i) const { return _values[i]; }

    bool operator <(const Point &other) const
    {
        for(UInt32 i = 0; i < SizeI; ++i)
        {
            if(_values[i] < other._values[i])
                return true;
            if(other._values[i] < _values[i])
                return false;
        }
        return false;
    }

    bool operator ==(const Point &other) const { return  equals(other, ValueTypeT(Eps)); }
    bool operator !=(const Point &other) const { return !equals(other, ValueTypeT(Eps)); }

  protected:
    void setValuesN(const ValueTypeT *pVals, const UInt32 count)
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] = i < count ? pVals[i]
                                   : TypeTraits<ValueTypeT>::getZeroElement();
    }
};

template <class ValueTypeT, UInt32 SizeI>
const Point<ValueTypeT, SizeI> Point<ValueTypeT, SizeI>::Null;

template <class ValueTypeT, UInt32 SizeI>
class Vector : public Point<ValueTypeT, SizeI>
{
    typedef Point<ValueTypeT, SizeI> Inherited;

  protected:
    using Inherited::_values;

  public:
    typedef ValueTypeT                       ValueType;
    typedef typename Inherited::RealReturnType RealReturnType;
    typedef Point <ValueTypeT, SizeI>        PointType;
    typedef Vector<ValueTypeT, SizeI>        VectorType;

    static const Vector Null;

    Vector(void) : Inherited() {}
    Vector(const ValueTypeT *pVals) : Inherited(pVals) {}
    explicit Vector(const ValueTypeT v1) : Inherited(v1) {}
    Vector(const ValueTypeT v1, const ValueTypeT v2) : Inherited(v1, v2) {}
    Vector(const ValueTypeT v1, const ValueTypeT v2, const ValueTypeT v3)
        : Inherited(v1, v2, v3) {}
    Vector(const ValueTypeT v1, const ValueTypeT v2,
           const ValueTypeT v3, const ValueTypeT v4)
        : Inherited(v1, v2, v3, v4) {}

    template <class V2, UInt32 S2>
    Vector(const Point<V2, S2> &other) : Inherited(other) {}

    template <class V2, UInt32 S2>
    Vector(const Vector<V2, S2> &other) : Inherited(other) {}

    RealReturnType squareLength(void) const
    {
        RealReturnType r = 0;
        for(UInt32 i = 0; i < SizeI; ++i)
            r += RealReturnType(_values[i]) * RealReturnType(_values[i]);
        return r;
    }

    RealReturnType length(void) const { return osgsqrt(squareLength()); }

    // By the reciprocal, as 1.8 does, so that results agree to the bit.
    void normalize(void)
    {
        const ValueTypeT len = ValueTypeT(length());
        if(osgabs(len) < ValueTypeT(Eps))
            return;
        const ValueTypeT inverse = ValueTypeT(1) / len;
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] *= inverse;
    }

    Vector cross(const Vector &v) const
    {
        Vector r;
        if constexpr(SizeI >= 3)
        {
            r[0] = _values[1] * v[2] - _values[2] * v[1];
            r[1] = _values[2] * v[0] - _values[0] * v[2];
            r[2] = _values[0] * v[1] - _values[1] * v[0];
        }
        return r;
    }

    Vector operator %(const Vector &v) const { return cross(v); }

    void crossThis(const Vector &v) { *this = cross(v); }

    ValueTypeT dot(const Point<ValueTypeT, SizeI> &v) const
    {
        ValueTypeT r = TypeTraits<ValueTypeT>::getZeroElement();
        for(UInt32 i = 0; i < SizeI; ++i)
            r += _values[i] * v[i];
        return r;
    }

    ValueTypeT operator *(const Vector    &v) const { return dot(v); }
    ValueTypeT operator *(const PointType &p) const { return dot(p); }

    RealReturnType enclosedAngle(const Vector &v) const
    {
        const RealReturnType l = length() * v.length();
        if(l < RealReturnType(Eps))
            return 0;
        RealReturnType c = dot(v) / l;
        c = osgClamp(RealReturnType(-1), c, RealReturnType(1));
        return osgacos(c);
    }

    // Replaces this by its projection onto toVec; returns the scale factor.
    // As 1.8, a near-null toVec leaves this alone and returns 1.
    RealReturnType projectTo(const Vector &toVec)
    {
        const RealReturnType sl = toVec.squareLength();
        if(sl <= RealReturnType(Eps))
            return 1;
        const RealReturnType f = dot(toVec) / sl;
        if(osgabs(f) <= RealReturnType(Eps))
        {
            this->setNull();
            return 0;
        }
        for(UInt32 i = 0; i < SizeI; ++i)
            _values[i] = ValueTypeT(toVec[i] * ValueTypeT(f));
        return f;
    }

          PointType &addToZero(void)       { return static_cast<PointType &>(*this); }
    const PointType &addToZero(void) const { return static_cast<const PointType &>(*this); }

    Vector operator -(const Vector &v) const
    {
        Vector r(*this);
        r -= v;
        return r;
    }

    Vector operator +(const Vector &v) const
    {
        Vector r(*this);
        r += v;
        return r;
    }

    Vector operator *(const ValueTypeT s) const
    {
        Vector r(*this);
        r *= s;
        return r;
    }

    Vector operator -(void) const
    {
        Vector r(*this);
        r.negate();
        return r;
    }
};

template <class ValueTypeT, UInt32 SizeI>
const Vector<ValueTypeT, SizeI> Vector<ValueTypeT, SizeI>::Null;

template <class ScalarT, class ValueTypeT, UInt32 SizeI,
          class = typename std::enable_if<std::is_arithmetic<ScalarT>::value>::type>
inline Point<ValueTypeT, SizeI> operator *(const ScalarT s,
                                           const Point<ValueTypeT, SizeI> &p)
{
    return p * ValueTypeT(s);
}

template <class ScalarT, class ValueTypeT, UInt32 SizeI,
          class = typename std::enable_if<std::is_arithmetic<ScalarT>::value>::type>
inline Vector<ValueTypeT, SizeI> operator *(const ScalarT s,
                                            const Vector<ValueTypeT, SizeI> &v)
{
    return v * ValueTypeT(s);
}

template <class ValueTypeT, UInt32 SizeI>
inline std::ostream &operator <<(std::ostream &os, const Point<ValueTypeT, SizeI> &p)
{
    for(UInt32 i = 0; i < SizeI; ++i)
    {
        if(i != 0)
            os << ", ";
        // Byte vectors print as numbers, not characters.
        os << +p[i];
    }
    return os;
}

template <class ValueTypeT, UInt32 SizeI>
inline std::istream &operator >>(std::istream &is, Point<ValueTypeT, SizeI> &p)
{
    for(UInt32 i = 0; i < SizeI && is; ++i)
    {
        if(i != 0 && (is >> std::ws).peek() == ',')
            is.get();
        if(sizeof(ValueTypeT) == 1)
        {
            Int32 v;
            is >> v;
            p[i] = ValueTypeT(v);
        }
        else
        {
            is >> p[i];
        }
    }
    return is;
}

#define OSG_VECTOR_TYPEDEFS(SUFFIX, TYPE)                 \
    typedef Vector<TYPE, 2> Vec2##SUFFIX;                 \
    typedef Vector<TYPE, 3> Vec3##SUFFIX;                 \
    typedef Vector<TYPE, 4> Vec4##SUFFIX;                 \
    typedef Point <TYPE, 2> Pnt2##SUFFIX;                 \
    typedef Point <TYPE, 3> Pnt3##SUFFIX;                 \
    typedef Point <TYPE, 4> Pnt4##SUFFIX;

OSG_VECTOR_TYPEDEFS(ub, UInt8)
OSG_VECTOR_TYPEDEFS(b,  Int8)
OSG_VECTOR_TYPEDEFS(us, UInt16)
OSG_VECTOR_TYPEDEFS(s,  Int16)
OSG_VECTOR_TYPEDEFS(f,  Real32)
OSG_VECTOR_TYPEDEFS(d,  Real64)
OSG_VECTOR_TYPEDEFS(ld, Real128)

#undef OSG_VECTOR_TYPEDEFS

} // namespace osg

#endif
