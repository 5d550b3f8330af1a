#ifndef _OSGBASEMATHFUNCTIONS_H_
#define _OSGBASEMATHFUNCTIONS_H_

#include <OpenSG/OSGBaseTypes.h>

#include <cmath>
#include <cstdlib>

namespace osg
{

// The result type is TypeTraits<T>::RealReturnType: Real32 for integers and
// Real32, otherwise the argument's own floating type.
#define OSG_REAL_RETURN typename TypeTraits<T>::RealReturnType

template <class T> inline OSG_REAL_RETURN osgsqrt(const T v)  { return std::sqrt (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgsin (const T v)  { return std::sin  (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgcos (const T v)  { return std::cos  (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgtan (const T v)  { return std::tan  (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgasin(const T v)  { return std::asin (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgacos(const T v)  { return std::acos (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgatan(const T v)  { return std::atan (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgexp (const T v)  { return std::exp  (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osglog (const T v)  { return std::log  (OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgfloor(const T v) { return std::floor(OSG_REAL_RETURN(v)); }
template <class T> inline OSG_REAL_RETURN osgceil (const T v) { return std::ceil (OSG_REAL_RETURN(v)); }

template <class T> inline OSG_REAL_RETURN osgpow(const T v, const T e)
{
    return std::pow(OSG_REAL_RETURN(v), OSG_REAL_RETURN(e));
}

template <class T> inline OSG_REAL_RETURN osgatan2(const T y, const T x)
{
    return std::atan2(OSG_REAL_RETURN(y), OSG_REAL_RETURN(x));
}

template <class T> inline T osgabs(const T v) { return v < T(0) ? T(-v) : v; }

template <class T> inline T osgMin(const T a, const T b) { return a < b ? a : b; }
template <class T> inline T osgMax(const T a, const T b) { return a > b ? a : b; }

template <class T> inline T osgClamp(const T lo, const T v, const T hi)
{
    return v < lo ? lo : (v > hi ? hi : v);
}

// Divided by a full turn and scaled by a ten-digit pi in the argument's own
// precision, as 1.8 does, so that angles agree to the bit.
template <class T> inline OSG_REAL_RETURN osgdegree2rad(const T deg)
{
    typedef OSG_REAL_RETURN R;
    return (R(deg) / R(360)) * R(2) * R(3.1415926535);
}

template <class T> inline OSG_REAL_RETURN osgrad2degree(const T rad)
{
    typedef OSG_REAL_RETURN R;
    return (R(rad) / (R(2) * R(3.1415926535))) * R(360);
}

template <class T> inline OSG_REAL_RETURN deg2rad(const T deg) { return osgdegree2rad(deg); }
template <class T> inline OSG_REAL_RETURN rad2deg(const T rad) { return osgrad2degree(rad); }

#undef OSG_REAL_RETURN

} // namespace osg

#endif
