#ifndef _OSGBASEMATHFUNCTIONS_H_
#define _OSGBASEMATHFUNCTIONS_H_

#include <OpenSG/OSGBaseTypes.h>

#include <cmath>
#include <cstdlib>

namespace osg
{

// The templates keep the precision of their argument: float stays float.

template <class T> inline T osgsqrt (const T v)              { return std::sqrt (v);    }
template <class T> inline T osgabs  (const T v)              { return v < T(0) ? T(-v) : v; }
template <class T> inline T osgpow  (const T v, const T e)   { return std::pow  (v, e); }
template <class T> inline T osgsin  (const T v)              { return std::sin  (v);    }
template <class T> inline T osgcos  (const T v)              { return std::cos  (v);    }
template <class T> inline T osgtan  (const T v)              { return std::tan  (v);    }
template <class T> inline T osgasin (const T v)              { return std::asin (v);    }
template <class T> inline T osgacos (const T v)              { return std::acos (v);    }
template <class T> inline T osgatan (const T v)              { return std::atan (v);    }
template <class T> inline T osgatan2(const T y, const T x)   { return std::atan2(y, x); }
template <class T> inline T osgexp  (const T v)              { return std::exp  (v);    }
template <class T> inline T osglog  (const T v)              { return std::log  (v);    }
template <class T> inline T osgfloor(const T v)              { return std::floor(v);    }
template <class T> inline T osgceil (const T v)              { return std::ceil (v);    }

template <class T> inline T osgMin(const T a, const T b) { return a < b ? a : b; }
template <class T> inline T osgMax(const T a, const T b) { return a > b ? a : b; }

template <class T> inline T osgClamp(const T lo, const T v, const T hi)
{
    return v < lo ? lo : (v > hi ? hi : v);
}

template <class T> inline T osgdegree2rad(const T deg) { return deg * T(Pi / 180.0); }
template <class T> inline T osgrad2degree(const T rad) { return rad * T(180.0 / Pi); }
template <class T> inline T deg2rad      (const T deg) { return osgdegree2rad(deg);  }
template <class T> inline T rad2deg      (const T rad) { return osgrad2degree(rad);  }

} // namespace osg

#endif
