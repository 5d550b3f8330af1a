#ifndef _OSGQUATERNION_H_
#define _OSGQUATERNION_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGBaseMathFunctions.h>
#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGMatrix.h>

#include <istream>
#include <ostream>

namespace osg
{

// Stored x, y, z, w with w the scalar part.
template <class ValueTypeT>
class QuaternionBase
{
  public:
    typedef ValueTypeT                       ValueType;
    typedef Vector<ValueTypeT, 3>            VectorType;
    typedef Point <ValueTypeT, 3>            PointType;
    typedef TransformationMatrix<ValueTypeT> MatrixType;

    QuaternionBase(void) { setIdentity(); }

    explicit QuaternionBase(const MatrixType &matrix) { setValue(matrix); }

    QuaternionBase(const VectorType &axis, const ValueTypeT angle)
    {
        setValueAsAxisRad(axis, angle);
    }

    QuaternionBase(const VectorType &rotateFrom, const VectorType &rotateTo)
    {
        setValue(rotateFrom, rotateTo);
    }

    static const QuaternionBase &identity(void)
    {
        static const QuaternionBase id;
        return id;
    }

    static QuaternionBase slerp(const QuaternionBase &rot0,
                                const QuaternionBase &rot1,
                                const ValueTypeT      t)
    {
        QuaternionBase r;
        r.slerpThis(rot0, rot1, t);
        return r;
    }

    void setIdentity(void) { setValueAsQuat(0, 0, 0, 1); }

    void setValueAsAxisRad(const ValueTypeT x, const ValueTypeT y,
                           const ValueTypeT z, const ValueTypeT w)
    {
        const ValueTypeT len = osgsqrt(x * x + y * y + z * z);
        if(len < ValueTypeT(Eps))
        {
            setIdentity();
            return;
        }
        const ValueTypeT s = osgsin(w / ValueTypeT(2)) / len;
        setValueAsQuat(x * s, y * s, z * s, osgcos(w / ValueTypeT(2)));
    }

    void setValueAsAxisDeg(const ValueTypeT x, const ValueTypeT y,
                           const ValueTypeT z, const ValueTypeT w)
    {
        setValueAsAxisRad(x, y, z, osgdegree2rad(w));
    }

    void setValueAsQuat(const ValueTypeT x, const ValueTypeT y,
                        const ValueTypeT z, const ValueTypeT w)
    {
        _quat[0] = x; _quat[1] = y; _quat[2] = z; _quat[3] = w;
    }

    void setValueAsAxisRad(const ValueTypeT *valsP)
    {
        setValueAsAxisRad(valsP[0], valsP[1], valsP[2], valsP[3]);
    }
    void setValueAsAxisDeg(const ValueTypeT *valsP)
    {
        setValueAsAxisDeg(valsP[0], valsP[1], valsP[2], valsP[3]);
    }
    void setValueAsQuat(const ValueTypeT *valsP)
    {
        setValueAsQuat(valsP[0], valsP[1], valsP[2], valsP[3]);
    }

    void setValueAsAxisRad(const VectorType &axis, ValueTypeT angle)
    {
        setValueAsAxisRad(axis[0], axis[1], axis[2], angle);
    }
    void setValueAsAxisDeg(const VectorType &axis, ValueTypeT angle)
    {
        setValueAsAxisDeg(axis[0], axis[1], axis[2], angle);
    }

    // From the upper 3x3, which must be a rotation.
    void setValue(const MatrixType &m)
    {
        const ValueTypeT tr = m[0][0] + m[1][1] + m[2][2];

        if(tr > 0)
        {
            const ValueTypeT s = osgsqrt(tr + ValueTypeT(1)) * ValueTypeT(2);
            _quat[3] = ValueTypeT(0.25) * s;
            _quat[0] = (m[1][2] - m[2][1]) / s;
            _quat[1] = (m[2][0] - m[0][2]) / s;
            _quat[2] = (m[0][1] - m[1][0]) / s;
        }
        else
        {
            // Largest diagonal element keeps the square root well away from 0.
            UInt32 i = 0;
            if(m[1][1] > m[0][0])
                i = 1;
            if(m[2][2] > m[i][i])
                i = 2;
            const UInt32 j = (i + 1) % 3;
            const UInt32 k = (i + 2) % 3;

            const ValueTypeT s = osgsqrt(m[i][i] - m[j][j] - m[k][k] +
                                         ValueTypeT(1)) * ValueTypeT(2);
            _quat[i] = ValueTypeT(0.25) * s;
            _quat[j] = (m[i][j] + m[j][i]) / s;
            _quat[k] = (m[i][k] + m[k][i]) / s;
            _quat[3] = (m[j][k] - m[k][j]) / s;
        }
        normalize();
    }

    // Shortest arc from one direction to the other.
    void setValue(const VectorType &rotateFrom, const VectorType &rotateTo)
    {
        VectorType from(rotateFrom), to(rotateTo);
        from.normalize();
        to.normalize();

        const ValueTypeT c = from.dot(to);

        if(c >= ValueTypeT(1) - ValueTypeT(Eps))
        {
            setIdentity();
            return;
        }

        if(c <= ValueTypeT(-1) + ValueTypeT(Eps))
        {
            // Opposite: half turn about any axis perpendicular to from.
            VectorType axis = from.cross(VectorType(1, 0, 0));
            if(axis.length() < ValueTypeT(1e-3))
                axis = from.cross(VectorType(0, 1, 0));
            setValueAsAxisRad(axis, ValueTypeT(Pi));
            return;
        }

        setValueAsAxisRad(from.cross(to), osgacos(c));
    }

    // Rotations about x by alpha, then y by beta, then z by gamma.
    void setValue(const ValueTypeT alpha, const ValueTypeT beta, const ValueTypeT gamma)
    {
        QuaternionBase qx(VectorType(1, 0, 0), alpha);
        QuaternionBase qy(VectorType(0, 1, 0), beta);
        QuaternionBase qz(VectorType(0, 0, 1), gamma);

        *this = qz;
        mult(qy);
        mult(qx);
    }

    const ValueTypeT *getValues(void) const { return _quat; }

    void getValueAsAxisRad(ValueTypeT &x, ValueTypeT &y,
                           ValueTypeT &z, ValueTypeT &w) const
    {
        const ValueTypeT len = osgsqrt(_quat[0] * _quat[0] + _quat[1] * _quat[1] +
                                       _quat[2] * _quat[2]);
        if(len < ValueTypeT(Eps))
        {
            // No rotation: any axis will do, report z.
            x = 0; y = 0; z = 1; w = 0;
            return;
        }
        x = _quat[0] / len;
        y = _quat[1] / len;
        z = _quat[2] / len;
        w = ValueTypeT(2) * osgatan2(len, _quat[3]);
    }

    void getValueAsAxisDeg(ValueTypeT &x, ValueTypeT &y,
                           ValueTypeT &z, ValueTypeT &w) const
    {
        getValueAsAxisRad(x, y, z, w);
        w = osgrad2degree(w);
    }

    void getValueAsQuat(ValueTypeT &x, ValueTypeT &y,
                        ValueTypeT &z, ValueTypeT &w) const
    {
        x = _quat[0]; y = _quat[1]; z = _quat[2]; w = _quat[3];
    }

    void getValueAsAxisRad(VectorType &axis, ValueTypeT &radians) const
    {
        getValueAsAxisRad(axis[0], axis[1], axis[2], radians);
    }

    void getValueAsAxisDeg(VectorType &axis, ValueTypeT &degrees) const
    {
        getValueAsAxisDeg(axis[0], axis[1], axis[2], degrees);
    }

    void getValue(MatrixType &matrix) const
    {
        matrix.setIdentity();
        getValuesOnly(matrix);
    }

    void getValuesOnly(MatrixType &m) const
    {
        const ValueTypeT x = _quat[0], y = _quat[1], z = _quat[2], w = _quat[3];
        const ValueTypeT one(1), two(2);

        m[0][0] = one - two * (y * y + z * z);
        m[0][1] =       two * (x * y + z * w);
        m[0][2] =       two * (x * z - y * w);

        m[1][0] =       two * (x * y - z * w);
        m[1][1] = one - two * (x * x + z * z);
        m[1][2] =       two * (y * z + x * w);

        m[2][0] =       two * (x * z + y * w);
        m[2][1] =       two * (y * z - x * w);
        m[2][2] = one - two * (x * x + y * y);
    }

    ValueTypeT x(void) const { return _quat[0]; }
    ValueTypeT y(void) const { return _quat[1]; }
    ValueTypeT z(void) const { return _quat[2]; }
    ValueTypeT w(void) const { return _quat[3]; }

    ValueTypeT length(void) const
    {
        return osgsqrt(_quat[0] * _quat[0] + _quat[1] * _quat[1] +
                       _quat[2] * _quat[2] + _quat[3] * _quat[3]);
    }

    void normalize(void)
    {
        const ValueTypeT len = length();
        if(len < ValueTypeT(Eps))
        {
            setIdentity();
            return;
        }
        for(UInt32 i = 0; i < 4; ++i)
            _quat[i] /= len;
    }

    // Conjugate: the inverse of a unit quaternion.
    void invert(void)
    {
        _quat[0] = -_quat[0];
        _quat[1] = -_quat[1];
        _quat[2] = -_quat[2];
    }

    const QuaternionBase inverse(void) const
    {
        QuaternionBase r(*this);
        r.invert();
        return r;
    }

    void multVec(const VectorType &src, VectorType &dst) const
    {
        // v' = v + 2 w (q x v) + 2 q x (q x v)
        const VectorType q(_quat[0], _quat[1], _quat[2]);
        const VectorType v(src);
        const VectorType t = q.cross(v) * ValueTypeT(2);
        dst = v + t * _quat[3] + q.cross(t);
    }

    void multVec(const PointType &src, PointType &dst) const
    {
        VectorType v(src);
        multVec(v, v);
        dst.setValue(v);
    }

    void scaleAngle(ValueTypeT scaleFactor)
    {
        VectorType axis;
        ValueTypeT angle;
        getValueAsAxisRad(axis, angle);
        setValueAsAxisRad(axis, angle * scaleFactor);
    }

    // Takes the shorter arc; nearly equal inputs interpolate linearly; t
    // outside [0, 1] extrapolates. The weights in double and the result not
    // normalised, as in 1.8.
    void slerpThis(const QuaternionBase &rot0, const QuaternionBase &rot1,
                   const ValueTypeT t)
    {
        Real64 cosom = rot0._quat[0] * rot1._quat[0] + rot0._quat[1] * rot1._quat[1] +
                       rot0._quat[2] * rot1._quat[2] + rot0._quat[3] * rot1._quat[3];
        ValueTypeT to1[4];
        for(UInt32 i = 0; i < 4; ++i)
            to1[i] = cosom < 0.0 ? ValueTypeT(-rot1._quat[i]) : rot1._quat[i];
        if(cosom < 0.0)
            cosom = -cosom;

        Real64 scale0 = 1.0 - t, scale1 = t;
        if(1.0 - cosom > 0.00001)
        {
            const Real64 omega = osgacos(cosom);
            const Real64 sinom = osgsin(omega);
            scale0 = osgsin((1.0 - t) * omega) / sinom;
            scale1 = osgsin(t * omega) / sinom;
        }

        ValueTypeT r[4];
        for(UInt32 i = 0; i < 4; ++i)
            r[i] = ValueTypeT(scale0 * rot0._quat[i] + scale1 * to1[i]);
        setValueAsQuat(r[0], r[1], r[2], r[3]);
    }

    void mult(const QuaternionBase &other)
    {
        *this = product(*this, other);
        normalize();
    }

    void multLeft(const QuaternionBase &other)
    {
        *this = product(other, *this);
        normalize();
    }

    void operator *=(const QuaternionBase &other) { mult(other); }

    bool equals(const QuaternionBase &other, const ValueTypeT tolerance) const
    {
        for(UInt32 i = 0; i < 4; ++i)
            if(osgabs(_quat[i] - other._quat[i]) > tolerance)
                return false;
        return true;
    }

          ValueTypeT &operator [](const UInt32 index)       { return _quat[index]; }
    const ValueTypeT &operator [](const UInt32 index) const { return _quat[index]; }

    bool operator ==(const QuaternionBase &other) const { return  equals(other, ValueTypeT(Eps)); }
    bool operator !=(const QuaternionBase &other) const { return !equals(other, ValueTypeT(Eps)); }

  private:
    // Hamilton product: rotating by b, then by a.
    static QuaternionBase product(const QuaternionBase &a, const QuaternionBase &b)
    {
        const ValueTypeT *p = a._quat, *q = b._quat;
        QuaternionBase r;
        r._quat[0] = p[3] * q[0] + p[0] * q[3] + p[1] * q[2] - p[2] * q[1];
        r._quat[1] = p[3] * q[1] - p[0] * q[2] + p[1] * q[3] + p[2] * q[0];
        r._quat[2] = p[3] * q[2] + p[0] * q[1] - p[1] * q[0] + p[2] * q[3];
        r._quat[3] = p[3] * q[3] - p[0] * q[0] - p[1] * q[1] - p[2] * q[2];
        return r;
    }

    ValueTypeT _quat[4];
};

typedef QuaternionBase<Real32> Quaternion;
typedef QuaternionBase<Real64> Quaterniond;

template <class ValueTypeT>
inline std::ostream &operator <<(std::ostream &os, const QuaternionBase<ValueTypeT> &q)
{
    return os << q.x() << ", " << q.y() << ", " << q.z() << ", " << q.w();
}

template <class ValueTypeT>
inline std::istream &operator >>(std::istream &is, QuaternionBase<ValueTypeT> &q)
{
    ValueTypeT v[4];
    for(UInt32 i = 0; i < 4 && is; ++i)
    {
        if(i != 0 && (is >> std::ws).peek() == ',')
            is.get();
        is >> v[i];
    }
    if(is)
        q.setValueAsQuat(v);
    return is;
}

} // namespace osg

#endif
