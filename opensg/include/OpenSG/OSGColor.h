#ifndef _OSGCOLOR_H_
#define _OSGCOLOR_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGBaseMathFunctions.h>

#include <istream>
#include <ostream>

namespace osg
{

// Full intensity of a channel: 1 for floats, 255 for bytes.
template <class ValueTypeT> struct ColorScale
{
    static Real32 max(void) { return 1.f; }
};
template <> struct ColorScale<UInt8>
{
    static Real32 max(void) { return 255.f; }
};

namespace ColorDetail
{
    template <class ValueTypeT>
    inline ValueTypeT fromUnit(const Real32 v)
    {
        Real32 s = v * ColorScale<ValueTypeT>::max();
        if(ColorScale<ValueTypeT>::max() > 1.f)
            s = osgClamp(0.f, s + 0.5f, ColorScale<ValueTypeT>::max());
        return ValueTypeT(s);
    }

    template <class ValueTypeT>
    inline Real32 toUnit(const ValueTypeT v)
    {
        return Real32(v) / ColorScale<ValueTypeT>::max();
    }

    template <class ValueTypeT>
    inline UInt32 toByte(const ValueTypeT v)
    {
        return UInt32(osgClamp(0.f, toUnit(v), 1.f) * 255.f + 0.5f);
    }

    // h in degrees, s and v in [0, 1].
    inline void hsv2rgb(Real32 h, const Real32 s, const Real32 v,
                        Real32 &r, Real32 &g, Real32 &b)
    {
        if(s <= 0.f)
        {
            r = g = b = v;
            return;
        }
        h = std::fmod(h, 360.f);
        if(h < 0.f)
            h += 360.f;
        h /= 60.f;
        const Int32  i = Int32(h);
        const Real32 f = h - Real32(i);
        const Real32 p = v * (1.f - s);
        const Real32 q = v * (1.f - s * f);
        const Real32 t = v * (1.f - s * (1.f - f));
        switch(i)
        {
            case 0:  r = v; g = t; b = p; break;
            case 1:  r = q; g = v; b = p; break;
            case 2:  r = p; g = v; b = t; break;
            case 3:  r = p; g = q; b = v; break;
            case 4:  r = t; g = p; b = v; break;
            default: r = v; g = p; b = q; break;
        }
    }

    inline void rgb2hsv(const Real32 r, const Real32 g, const Real32 b,
                        Real32 &h, Real32 &s, Real32 &v)
    {
        const Real32 mx = osgMax(r, osgMax(g, b));
        const Real32 mn = osgMin(r, osgMin(g, b));
        const Real32 d  = mx - mn;
        v = mx;
        s = mx > 0.f ? d / mx : 0.f;
        if(d <= 0.f)
        {
            h = 0.f;
            return;
        }
        if(r == mx)
            h = (g - b) / d;
        else if(g == mx)
            h = 2.f + (b - r) / d;
        else
            h = 4.f + (r - g) / d;
        h *= 60.f;
        if(h < 0.f)
            h += 360.f;
    }
}

template <class ValueTypeT, UInt32 SizeI>
class ColorBase
{
  public:
    typedef ValueTypeT ValueType;

          ValueTypeT &operator [](const UInt32 i)       { return _values[i]; }
    const ValueTypeT &operator [](const UInt32 i) const { return _values[i]; }

    ValueTypeT red  (void) const { return _values[0]; }
    ValueTypeT green(void) const { return _values[1]; }
    ValueTypeT blue (void) const { return _values[2]; }

    bool equals(const ColorBase &other, const ValueTypeT tolerance) const
    {
        for(UInt32 i = 0; i < SizeI; ++i)
            if(_values[i] - other._values[i] > tolerance ||
               other._values[i] - _values[i] > tolerance)
                return false;
        return true;
    }

    bool operator ==(const ColorBase &other) const { return  equals(other, ValueTypeT(Eps)); }
    bool operator !=(const ColorBase &other) const { return !equals(other, ValueTypeT(Eps)); }

    bool operator <(const ColorBase &other) const
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

  protected:
    ValueTypeT _values[SizeI];
};

// Arithmetic shared by Color3 and Color4, returning the derived type.
#define OSG_COLOR_ARITHMETIC(CLASS, SIZE)                                     \
    CLASS  operator * (const ValueType s) const { CLASS r(*this); r *= s; return r; } \
    CLASS  operator / (const ValueType s) const { CLASS r(*this); r /= s; return r; } \
    CLASS  operator + (const ValueType s) const { CLASS r(*this); r += s; return r; } \
    CLASS  operator - (const ValueType s) const { CLASS r(*this); r -= s; return r; } \
    CLASS  operator * (const CLASS &c) const { CLASS r(*this); r *= c; return r; }    \
    CLASS  operator / (const CLASS &c) const { CLASS r(*this); r /= c; return r; }    \
    CLASS  operator + (const CLASS &c) const { CLASS r(*this); r += c; return r; }    \
    CLASS  operator - (const CLASS &c) const { CLASS r(*this); r -= c; return r; }    \
    void operator *=(const ValueType s) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] *= s; } \
    void operator /=(const ValueType s) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] /= s; } \
    void operator +=(const ValueType s) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] += s; } \
    void operator -=(const ValueType s) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] -= s; } \
    void operator *=(const CLASS &c) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] *= c._values[i]; } \
    void operator /=(const CLASS &c) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] /= c._values[i]; } \
    void operator +=(const CLASS &c) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] += c._values[i]; } \
    void operator -=(const CLASS &c) { for(UInt32 i = 0; i < SIZE; ++i) this->_values[i] -= c._values[i]; }

template <class ValueTypeT>
class Color3 : public ColorBase<ValueTypeT, 3>
{
  public:
    typedef ValueTypeT ValueType;

    Color3(void) { setValuesRGB(0, 0, 0); }
    Color3(const ValueType r, const ValueType g, const ValueType b)
    {
        setValuesRGB(r, g, b);
    }

    void clear(void) { setValuesRGB(0, 0, 0); }

    void setValuesRGB(const ValueType r, const ValueType g, const ValueType b)
    {
        this->_values[0] = r; this->_values[1] = g; this->_values[2] = b;
    }

    void setValuesHSV(const Real32 h, const Real32 s, const Real32 v)
    {
        Real32 r, g, b;
        ColorDetail::hsv2rgb(h, s, v, r, g, b);
        setValuesRGB(ColorDetail::fromUnit<ValueType>(r),
                     ColorDetail::fromUnit<ValueType>(g),
                     ColorDetail::fromUnit<ValueType>(b));
    }

    void getValuesHSV(Real32 &h, Real32 &s, Real32 &v) const
    {
        ColorDetail::rgb2hsv(ColorDetail::toUnit(this->_values[0]),
                             ColorDetail::toUnit(this->_values[1]),
                             ColorDetail::toUnit(this->_values[2]), h, s, v);
    }

    // As 1.8: packed as 0xBBGGRR, red in the lowest byte.
    void setRGB(UInt32 rgbPack)
    {
        for(Int32 i = 0; i < 3; ++i)
        {
            this->_values[i] = ColorDetail::fromUnit<ValueType>((rgbPack & 255) / 255.f);
            rgbPack >>= 8;
        }
    }

    UInt32 getRGB(void) const
    {
        UInt32 r = 0;
        for(Int32 i = 2; i >= 0; --i)
            r = (r << 8) | ColorDetail::toByte(this->_values[i]);
        return r;
    }

    void getValuesRGB(ValueType &r, ValueType &g, ValueType &b) const
    {
        r = this->_values[0]; g = this->_values[1]; b = this->_values[2];
    }

          ValueType *getValuesRGB(void)       { return this->_values; }
    const ValueType *getValuesRGB(void) const { return this->_values; }

    OSG_COLOR_ARITHMETIC(Color3, 3)
};

template <class ValueTypeT>
class Color4 : public ColorBase<ValueTypeT, 4>
{
  public:
    typedef ValueTypeT ValueType;

    Color4(void) { setValuesRGBA(0, 0, 0, 0); }
    Color4(const ValueType r, const ValueType g, const ValueType b, const ValueType a)
    {
        setValuesRGBA(r, g, b, a);
    }

    void clear(void) { setValuesRGBA(0, 0, 0, 0); }

    void setValuesRGBA(const ValueType r, const ValueType g,
                       const ValueType b, const ValueType a)
    {
        this->_values[0] = r; this->_values[1] = g;
        this->_values[2] = b; this->_values[3] = a;
    }

    // Alpha becomes fully opaque.
    void setValuesHSV(const Real32 h, const Real32 s, const Real32 v)
    {
        Real32 r, g, b;
        ColorDetail::hsv2rgb(h, s, v, r, g, b);
        setValuesRGBA(ColorDetail::fromUnit<ValueType>(r),
                      ColorDetail::fromUnit<ValueType>(g),
                      ColorDetail::fromUnit<ValueType>(b),
                      ColorDetail::fromUnit<ValueType>(1.f));
    }

    void getValuesHSV(Real32 &h, Real32 &s, Real32 &v) const
    {
        ColorDetail::rgb2hsv(ColorDetail::toUnit(this->_values[0]),
                             ColorDetail::toUnit(this->_values[1]),
                             ColorDetail::toUnit(this->_values[2]), h, s, v);
    }

    // As 1.8: packed as 0xAABBGGRR.
    void setRGBA(UInt32 rgbaPack)
    {
        for(Int32 i = 0; i < 4; ++i)
        {
            this->_values[i] = ColorDetail::fromUnit<ValueType>((rgbaPack & 255) / 255.f);
            rgbaPack >>= 8;
        }
    }

    UInt32 getRGBA(void) const
    {
        UInt32 r = 0;
        for(Int32 i = 3; i >= 0; --i)
            r = (r << 8) | ColorDetail::toByte(this->_values[i]);
        return r;
    }

    void getValuesRGBA(ValueType &r, ValueType &g, ValueType &b, ValueType &a) const
    {
        r = this->_values[0]; g = this->_values[1];
        b = this->_values[2]; a = this->_values[3];
    }

          ValueType *getValuesRGBA(void)       { return this->_values; }
    const ValueType *getValuesRGBA(void) const { return this->_values; }

    ValueType alpha(void) const { return this->_values[3]; }

    OSG_COLOR_ARITHMETIC(Color4, 4)
};

#undef OSG_COLOR_ARITHMETIC

template <class ValueTypeT>
inline Color3<ValueTypeT> operator *(const ValueTypeT s, const Color3<ValueTypeT> &c)
{
    return c * s;
}

template <class ValueTypeT>
inline Color4<ValueTypeT> operator *(const ValueTypeT s, const Color4<ValueTypeT> &c)
{
    return c * s;
}

template <class ValueTypeT, UInt32 SizeI>
inline std::ostream &operator <<(std::ostream &os, const ColorBase<ValueTypeT, SizeI> &c)
{
    for(UInt32 i = 0; i < SizeI; ++i)
    {
        if(i != 0)
            os << ", ";
        os << +c[i];
    }
    return os;
}

template <class ValueTypeT, UInt32 SizeI>
inline std::istream &operator >>(std::istream &is, ColorBase<ValueTypeT, SizeI> &c)
{
    for(UInt32 i = 0; i < SizeI && is; ++i)
    {
        if(i != 0 && (is >> std::ws).peek() == ',')
            is.get();
        Real64 v;
        if(is >> v)
            c[i] = ValueTypeT(v);
    }
    return is;
}

typedef Color3<Real32> Color3f;
typedef Color4<Real32> Color4f;
typedef Color3<UInt8>  Color3ub;
typedef Color4<UInt8>  Color4ub;

} // namespace osg

#endif
