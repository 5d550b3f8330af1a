#ifndef _OSGBASETYPES_H_
#define _OSGBASETYPES_H_

#include <OpenSG/OSGConfig.h>

#include <cstdint>
#include <cstddef>
#include <limits>
#include <string>

namespace osg
{

typedef char          Char8;
typedef unsigned char UChar8;
typedef signed char   SChar8;

typedef int8_t   Int8;
typedef uint8_t  UInt8;
typedef int16_t  Int16;
typedef uint16_t UInt16;
typedef int32_t  Int32;
typedef uint32_t UInt32;
typedef int64_t  Int64;
typedef uint64_t UInt64;

typedef float       Real32;
typedef double      Real64;
typedef long double Real128;

typedef double Time;

typedef UInt64  BitVector;
typedef UInt8  *MemoryHandle;

typedef std::string IDString;

const Real32 Eps    = 1E-6f;
const Real32 Pi     = 3.14159265358979323846f;
const Real32 Sqrt2  = 1.41421356237309504880f;
const Real32 Inf    = 1E30f;
const Real32 NegInf = -1E30f;

// Integers compute their angles, roots and lengths in Real32; only the wider
// floating types keep their own precision.
template <class T> struct RealReturnOf              { typedef Real32  type; };
template <>        struct RealReturnOf<Real64>      { typedef Real64  type; };
template <>        struct RealReturnOf<Real128>     { typedef Real128 type; };

template <class T>
struct TypeTraits
{
    typedef typename RealReturnOf<T>::type RealReturnType;

    static T getZeroElement(void) { return T(0); }
    static T getOneElement (void) { return T(1); }
    static T getMax        (void) { return std::numeric_limits<T>::max(); }
    static T getMin        (void) { return std::numeric_limits<T>::is_integer
                                         ? std::numeric_limits<T>::min()
                                         : T(-std::numeric_limits<T>::max()); }
    static constexpr T One = T(1);
    static constexpr T Zero = T(0);
};

} // namespace osg

#endif
