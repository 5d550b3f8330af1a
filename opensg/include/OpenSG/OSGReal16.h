#ifndef _OSGREAL16_H_
#define _OSGREAL16_H_

#include <OpenSG/OSGBaseTypes.h>

#include <cstring>
#include <istream>
#include <ostream>

namespace osg
{

// IEEE 754 binary16, as GL_HALF_FLOAT textures store it.
class Real16
{
  public:
    Real16(void) : _h(0) {}
    Real16(const Real32 f) : _h(floatToHalf(f)) {}

    operator Real32(void) const { return halfToFloat(_h); }

    Real16 &operator  =(const Real32 f) { _h = floatToHalf(f); return *this; }
    Real16 &operator +=(const Real16 h) { return *this = Real32(*this) + Real32(h); }
    Real16 &operator -=(const Real16 h) { return *this = Real32(*this) - Real32(h); }
    Real16 &operator *=(const Real16 h) { return *this = Real32(*this) * Real32(h); }
    Real16 &operator /=(const Real16 h) { return *this = Real32(*this) / Real32(h); }
    Real16  operator - (void) const     { return fromBits(UInt16(_h ^ 0x8000)); }

    UInt16 bits   (void) const    { return _h; }
    void   setBits(const UInt16 b) { _h = b;   }

    bool isInfinity(void) const { return (_h & 0x7fff) == 0x7c00; }
    bool isNan     (void) const { return (_h & 0x7c00) == 0x7c00 && (_h & 0x03ff) != 0; }
    bool isZero    (void) const { return (_h & 0x7fff) == 0; }
    bool isNegative(void) const { return (_h & 0x8000) != 0; }

    static Real16 fromBits(const UInt16 b) { Real16 h; h._h = b; return h; }

    static UInt16 floatToHalf(const Real32 f);
    static Real32 halfToFloat(const UInt16 h);

  private:
    UInt16 _h;
};

inline UInt16 Real16::floatToHalf(const Real32 f)
{
    UInt32 x;
    std::memcpy(&x, &f, sizeof(x));

    const UInt32 sign = (x >> 16) & 0x8000;
    const UInt32 exp  = (x >> 23) & 0xff;
    UInt32       mant = x & 0x7fffff;

    if(exp == 0xff)
        return UInt16(sign | 0x7c00 | (mant ? 0x200 | (mant >> 13) : 0));

    Int32 e = Int32(exp) - 127 + 15;

    if(e >= 0x1f)
        return UInt16(sign | 0x7c00);

    if(e <= 0)
    {
        if(e < -10)
            return UInt16(sign);

        // Subnormal half: shift in the implicit bit, round to nearest even.
        mant |= 0x800000;
        const UInt32 shift = UInt32(14 - e);
        UInt32       h     = mant >> shift;
        const UInt32 rem   = mant & ((1u << shift) - 1);
        const UInt32 half  = 1u << (shift - 1);
        if(rem > half || (rem == half && (h & 1)))
            ++h;
        return UInt16(sign | h);
    }

    UInt32       h   = (UInt32(e) << 10) | (mant >> 13);
    const UInt32 rem = mant & 0x1fff;
    // A carry out of the mantissa correctly bumps the exponent, up to Inf.
    if(rem > 0x1000 || (rem == 0x1000 && (h & 1)))
        ++h;
    return UInt16(sign | h);
}

inline Real32 Real16::halfToFloat(const UInt16 h)
{
    const UInt32 sign = UInt32(h & 0x8000) << 16;
    UInt32       exp  = (h >> 10) & 0x1f;
    UInt32       mant = h & 0x3ff;
    UInt32       x;

    if(exp == 0x1f)
    {
        x = sign | 0x7f800000 | (mant << 13);
    }
    else if(exp == 0)
    {
        if(mant == 0)
        {
            x = sign;
        }
        else
        {
            Int32 e = -1;
            do
            {
                ++e;
                mant <<= 1;
            }
            while((mant & 0x400) == 0);

            x = sign | (UInt32(127 - 15 - e) << 23) | ((mant & 0x3ff) << 13);
        }
    }
    else
    {
        x = sign | ((exp + 127 - 15) << 23) | (mant << 13);
    }

    Real32 f;
    std::memcpy(&f, &x, sizeof(f));
    return f;
}

inline std::ostream &operator <<(std::ostream &os, const Real16 h)
{
    return os << Real32(h);
}

inline std::istream &operator >>(std::istream &is, Real16 &h)
{
    Real32 f;
    if(is >> f)
        h = f;
    return is;
}

template <>
struct TypeTraits<Real16>
{
    typedef Real32 RealReturnType;

    static Real16 getZeroElement(void) { return Real16(0.f);      }
    static Real16 getOneElement (void) { return Real16(1.f);      }
    static Real16 getMax        (void) { return Real16::fromBits(0x7bff); }
    static Real16 getMin        (void) { return Real16::fromBits(0xfbff); }
};

} // namespace osg

#endif
