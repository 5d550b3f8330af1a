#ifndef _OSGMATRIX_H_
#define _OSGMATRIX_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGBaseMathFunctions.h>
#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGLog.h>

#include <cstdlib>
#include <ostream>
#include <type_traits>

namespace osg
{

template <class ValueTypeT> class QuaternionBase;

// Four column vectors; m[c][r] is row r of column c, so the storage is
// column-major and goes to glLoadMatrix unchanged.
template <class ValueTypeT>
class TransformationMatrix
{
  public:
    typedef ValueTypeT                 ValueType;
    typedef Vector<ValueTypeT, 4>      VectorType;
    typedef Vector<ValueTypeT, 3>      VectorType3f;
    typedef Point <ValueTypeT, 4>      PointType;
    typedef Point <ValueTypeT, 3>      PointType3f;
    typedef QuaternionBase<ValueTypeT> QuaternionType;

    TransformationMatrix(void) { setIdentity(); }

    TransformationMatrix(const VectorType3f &c0, const VectorType3f &c1,
                         const VectorType3f &c2)
    {
        setZero();
        setValue(c0, c1, c2);
    }

    TransformationMatrix(const VectorType3f &c0, const VectorType3f &c1,
                         const VectorType3f &c2, const VectorType3f &c3)
    {
        setZero();
        setValue(c0, c1, c2, c3);
    }

    TransformationMatrix(const ValueTypeT rVal00, const ValueTypeT rVal10,
                         const ValueTypeT rVal20, const ValueTypeT rVal30,
                         const ValueTypeT rVal01, const ValueTypeT rVal11,
                         const ValueTypeT rVal21, const ValueTypeT rVal31,
                         const ValueTypeT rVal02, const ValueTypeT rVal12,
                         const ValueTypeT rVal22, const ValueTypeT rVal32,
                         const ValueTypeT rVal03, const ValueTypeT rVal13,
                         const ValueTypeT rVal23, const ValueTypeT rVal33)
    {
        setValue(rVal00, rVal10, rVal20, rVal30,
                 rVal01, rVal11, rVal21, rVal31,
                 rVal02, rVal12, rVal22, rVal32,
                 rVal03, rVal13, rVal23, rVal33);
    }

    static const TransformationMatrix &identity(void)
    {
        static const TransformationMatrix id;
        return id;
    }

    void setIdentity(void)
    {
        for(UInt32 c = 0; c < 4; ++c)
            for(UInt32 r = 0; r < 4; ++r)
                _matrix[c][r] = ValueTypeT(c == r ? 1 : 0);
    }

    void setValue(const TransformationMatrix &mat) { *this = mat; }

    void setValue(const VectorType3f &c0, const VectorType3f &c1,
                  const VectorType3f &c2)
    {
        for(UInt32 r = 0; r < 3; ++r)
        {
            _matrix[0][r] = c0[r];
            _matrix[1][r] = c1[r];
            _matrix[2][r] = c2[r];
        }
    }

    void setValue(const VectorType3f &c0, const VectorType3f &c1,
                  const VectorType3f &c2, const VectorType3f &c3)
    {
        setValue(c0, c1, c2);
        for(UInt32 r = 0; r < 3; ++r)
            _matrix[3][r] = c3[r];
    }

    void setValue(const ValueTypeT rVal00, const ValueTypeT rVal10,
                  const ValueTypeT rVal20, const ValueTypeT rVal30,
                  const ValueTypeT rVal01, const ValueTypeT rVal11,
                  const ValueTypeT rVal21, const ValueTypeT rVal31,
                  const ValueTypeT rVal02, const ValueTypeT rVal12,
                  const ValueTypeT rVal22, const ValueTypeT rVal32,
                  const ValueTypeT rVal03, const ValueTypeT rVal13,
                  const ValueTypeT rVal23, const ValueTypeT rVal33)
    {
        _matrix[0].setValues(rVal00, rVal01, rVal02, rVal03);
        _matrix[1].setValues(rVal10, rVal11, rVal12, rVal13);
        _matrix[2].setValues(rVal20, rVal21, rVal22, rVal23);
        _matrix[3].setValues(rVal30, rVal31, rVal32, rVal33);
    }

    void setValueTransposed(const ValueTypeT rVal00, const ValueTypeT rVal01,
                            const ValueTypeT rVal02, const ValueTypeT rVal03,
                            const ValueTypeT rVal10, const ValueTypeT rVal11,
                            const ValueTypeT rVal12, const ValueTypeT rVal13,
                            const ValueTypeT rVal20, const ValueTypeT rVal21,
                            const ValueTypeT rVal22, const ValueTypeT rVal23,
                            const ValueTypeT rVal30, const ValueTypeT rVal31,
                            const ValueTypeT rVal32, const ValueTypeT rVal33)
    {
        _matrix[0].setValues(rVal00, rVal01, rVal02, rVal03);
        _matrix[1].setValues(rVal10, rVal11, rVal12, rVal13);
        _matrix[2].setValues(rVal20, rVal21, rVal22, rVal23);
        _matrix[3].setValues(rVal30, rVal31, rVal32, rVal33);
    }

    void setValue(const ValueTypeT *pMat, bool bTransposed = true)
    {
        for(UInt32 c = 0; c < 4; ++c)
            for(UInt32 r = 0; r < 4; ++r)
                _matrix[c][r] = bTransposed ? pMat[c * 4 + r] : pMat[r * 4 + c];
    }

    void setValue(const VectorType *pMat)
    {
        for(UInt32 c = 0; c < 4; ++c)
            _matrix[c] = pMat[c];
    }

    // Sixteen numbers separated by blanks or commas.
    void setValue(const Char8 *string, bool bTransposed = true)
    {
        ValueTypeT  v[16];
        const Char8 *p = string;
        for(UInt32 i = 0; i < 16; ++i)
        {
            while(p != NULL && (*p == ' ' || *p == ',' || *p == '\t' || *p == '\n'))
                ++p;
            Char8 *end = NULL;
            v[i] = p != NULL ? ValueTypeT(std::strtod(p, &end)) : ValueTypeT(0);
            if(p == NULL || end == p)
            {
                SWARNING << "TransformationMatrix::setValue: cannot read 16 values from '"
                         << (string != NULL ? string : "") << "'" << endLog;
                return;
            }
            p = end;
        }
        setValue(v, bTransposed);
    }

          ValueTypeT *getValues(void)       { return _matrix[0].getValues(); }
    const ValueTypeT *getValues(void) const { return _matrix[0].getValues(); }

    void setScale(const ValueTypeT s) { setScale(s, s, s); }

    void setScale(const ValueTypeT sx, const ValueTypeT sy, const ValueTypeT sz)
    {
        _matrix[0][0] = sx;
        _matrix[1][1] = sy;
        _matrix[2][2] = sz;
    }

    void setScale(const VectorType3f &s) { setScale(s[0], s[1], s[2]); }

    void setTranslate(const ValueTypeT tx, const ValueTypeT ty, const ValueTypeT tz)
    {
        _matrix[3][0] = tx;
        _matrix[3][1] = ty;
        _matrix[3][2] = tz;
    }

    void setTranslate(const VectorType3f &t) { setTranslate(t[0], t[1], t[2]); }
    void setTranslate(const PointType3f  &t) { setTranslate(t[0], t[1], t[2]); }

    void setRotate(const QuaternionType &q) { q.getValuesOnly(*this); }

    void setTransform(const VectorType3f &t)
    {
        setIdentity();
        setTranslate(t);
    }

    void setTransform(const QuaternionType &r) { r.getValue(*this); }

    void setTransform(const VectorType3f &t, const QuaternionType &r)
    {
        r.getValue(*this);
        setTranslate(t);
    }

    void setTransform(const VectorType3f &t, const QuaternionType &r,
                      const VectorType3f &s)
    {
        setTransform(t, r, s, QuaternionType::identity(), VectorType3f());
    }

    void setTransform(const VectorType3f &t, const QuaternionType &r,
                      const VectorType3f &s, const QuaternionType &so)
    {
        setTransform(t, r, s, so, VectorType3f());
    }

    // T * C * R * SO * S * SO^-1 * C^-1
    void setTransform(const VectorType3f   &translation,
                      const QuaternionType &rotation,
                      const VectorType3f   &scaleFactor,
                      const QuaternionType &scaleOrientation,
                      const VectorType3f   &center)
    {
        TransformationMatrix tmp;

        setIdentity();
        setTranslate(translation + center);

        rotation.getValue(tmp);
        mult(tmp);

        scaleOrientation.getValue(tmp);
        mult(tmp);

        tmp.setIdentity();
        tmp.setScale(scaleFactor);
        mult(tmp);

        scaleOrientation.inverse().getValue(tmp);
        mult(tmp);

        tmp.setIdentity();
        tmp.setTranslate(-center);
        mult(tmp);
    }

    void getTransform(VectorType3f   &translation,
                      QuaternionType &rotation,
                      VectorType3f   &scaleFactor,
                      QuaternionType &scaleOrientation) const;

    void getTransform(VectorType3f   &translation,
                      QuaternionType &rotation,
                      VectorType3f   &scaleFactor,
                      QuaternionType &scaleOrientation,
                      const VectorType3f &center) const
    {
        getTransform(translation, rotation, scaleFactor, scaleOrientation);

        // t0 = t + c - A c, so t = t0 - c + A c.
        VectorType3f ac;
        multMatrixVec(center, ac);
        translation += ac - center;
    }

    void mult(const TransformationMatrix &m)
    {
        TransformationMatrix r;
        product(*this, m, r);
        *this = r;
    }

    void multLeft(const TransformationMatrix &m)
    {
        TransformationMatrix r;
        product(m, *this, r);
        *this = r;
    }

    void multMatrixPnt(const PointType3f &src, PointType3f &dst) const
    {
        const PointType3f s(src);
        for(UInt32 r = 0; r < 3; ++r)
            dst[r] = _matrix[0][r] * s[0] + _matrix[1][r] * s[1] +
                     _matrix[2][r] * s[2] + _matrix[3][r];
    }

    void multFullMatrixPnt(const PointType3f &src, PointType3f &dst) const
    {
        const ValueTypeT w = _matrix[0][3] * src[0] + _matrix[1][3] * src[1] +
                             _matrix[2][3] * src[2] + _matrix[3][3];
        if(w == TypeTraits<ValueTypeT>::getZeroElement())
        {
            SWARNING << "multFullMatrixPnt: w == 0.0f!" << endLog;
            dst.setValues(0, 0, 0);
            return;
        }
        multMatrixPnt(src, dst);
        dst *= ValueTypeT(1) / w;
    }

    void multMatrixVec(const VectorType3f &src, VectorType3f &dst) const
    {
        const VectorType3f s(src);
        for(UInt32 r = 0; r < 3; ++r)
            dst[r] = _matrix[0][r] * s[0] + _matrix[1][r] * s[1] +
                     _matrix[2][r] * s[2];
    }

    void multMatrixVec(const VectorType &src, VectorType &dst) const
    {
        const VectorType s(src);
        for(UInt32 r = 0; r < 4; ++r)
            dst[r] = _matrix[0][r] * s[0] + _matrix[1][r] * s[1] +
                     _matrix[2][r] * s[2] + _matrix[3][r] * s[3];
    }

    void multMatrixPnt    (PointType3f  &pnt) const { multMatrixPnt    (pnt, pnt); }
    void multFullMatrixPnt(PointType3f  &pnt) const { multFullMatrixPnt(pnt, pnt); }
    void multMatrixVec    (VectorType3f &vec) const { multMatrixVec    (vec, vec); }
    void multMatrixVec    (VectorType   &vec) const { multMatrixVec    (vec, vec); }

    void mult(const PointType3f  &src, PointType3f  &dst) const { multMatrixPnt(src, dst); }
    void mult(const VectorType3f &src, VectorType3f &dst) const { multMatrixVec(src, dst); }
    void mult(const VectorType   &src, VectorType   &dst) const { multMatrixVec(src, dst); }
    void mult(const PointType    &src, PointType    &dst) const
    {
        const PointType s(src);
        for(UInt32 r = 0; r < 4; ++r)
            dst[r] = _matrix[0][r] * s[0] + _matrix[1][r] * s[1] +
                     _matrix[2][r] * s[2] + _matrix[3][r] * s[3];
    }
    void mult(PointType3f  &pnt) const { multMatrixPnt(pnt, pnt); }
    void mult(VectorType3f &vec) const { multMatrixVec(vec, vec); }
    void mult(VectorType   &vec) const { multMatrixVec(vec, vec); }
    void mult(PointType    &pnt) const { mult(pnt, pnt); }

    void multFull(const PointType3f &src, PointType3f &dst) const { multFullMatrixPnt(src, dst); }
    void multFull(PointType3f &pnt) const { multFullMatrixPnt(pnt, pnt); }

    void mult3x3(const PointType3f  &src, PointType3f  &dst) const
    {
        VectorType3f v(src);
        multMatrixVec(v, v);
        dst.setValue(v);
    }
    void mult3x3(const VectorType3f &src, VectorType3f &dst) const { multMatrixVec(src, dst); }
    void mult3x3(PointType3f  &pnt) const { mult3x3(pnt, pnt); }
    void mult3x3(VectorType3f &vec) const { multMatrixVec(vec, vec); }

    // Row-vector forms: dst = src * M.
    void multPntMatrix(const PointType3f &src, PointType3f &dst) const
    {
        const PointType3f s(src);
        for(UInt32 c = 0; c < 3; ++c)
            dst[c] = s[0] * _matrix[c][0] + s[1] * _matrix[c][1] +
                     s[2] * _matrix[c][2] + _matrix[c][3];
    }

    void multVecMatrix(const VectorType3f &src, VectorType3f &dst) const
    {
        const VectorType3f s(src);
        for(UInt32 c = 0; c < 3; ++c)
            dst[c] = s[0] * _matrix[c][0] + s[1] * _matrix[c][1] +
                     s[2] * _matrix[c][2];
    }

    void multPntMatrix(PointType3f  &pnt) const { multPntMatrix(pnt, pnt); }
    void multVecMatrix(VectorType3f &vec) const { multVecMatrix(vec, vec); }

    void multLeft(const PointType3f  &src, PointType3f  &dst) const { multPntMatrix(src, dst); }
    void multLeft(const VectorType3f &src, VectorType3f &dst) const { multVecMatrix(src, dst); }
    void multLeft(PointType3f  &pnt) const { multPntMatrix(pnt, pnt); }
    void multLeft(VectorType3f &vec) const { multVecMatrix(vec, vec); }

    PointType3f operator *(const PointType3f &pnt) const
    {
        PointType3f r;
        multMatrixPnt(pnt, r);
        return r;
    }

    VectorType3f operator *(const VectorType3f &vec) const
    {
        VectorType3f r;
        multMatrixVec(vec, r);
        return r;
    }

    PointType operator *(const PointType &pnt) const
    {
        PointType r;
        mult(pnt, r);
        return r;
    }

    VectorType operator *(const VectorType &vec) const
    {
        VectorType r;
        multMatrixVec(vec, r);
        return r;
    }

    bool equals(const TransformationMatrix &m, const ValueType tol) const
    {
        for(UInt32 c = 0; c < 4; ++c)
            if(!_matrix[c].equals(m._matrix[c], tol))
                return false;
        return true;
    }

    // Determinants and inverses by cofactors in the matrix's own precision,
    // summed in the order 1.8 sums them, so that results agree to the bit.
    ValueTypeT det3(void) const
    {
        return _matrix[0][0] * _matrix[1][1] * _matrix[2][2] +
               _matrix[0][1] * _matrix[1][2] * _matrix[2][0] +
               _matrix[0][2] * _matrix[1][0] * _matrix[2][1] -
               _matrix[0][2] * _matrix[1][1] * _matrix[2][0] -
               _matrix[0][1] * _matrix[1][0] * _matrix[2][2] -
               _matrix[0][0] * _matrix[1][2] * _matrix[2][1];
    }

    // Expanded along the first row.
    ValueTypeT det(void) const
    {
        return _matrix[0][0] * minor3(0, 0) - _matrix[1][0] * minor3(1, 0) +
               _matrix[2][0] * minor3(2, 0) - _matrix[3][0] * minor3(3, 0);
    }

    // A singular matrix gives the identity and false, silently as in 1.8.
    bool inverse(TransformationMatrix &result) const
    {
        ValueTypeT d = det();
        if(osgabs(d) < ValueTypeT(1e-30))
        {
            result.setIdentity();
            return false;
        }
        d = ValueTypeT(1) / d;

        TransformationMatrix r;
        for(UInt32 c = 0; c < 4; ++c)
        {
            for(UInt32 row = 0; row < 4; ++row)
            {
                const ValueTypeT cofactor = minor3(row, c);
                r._matrix[c][row] = ((c + row) % 2 == 0 ? cofactor : -cofactor) * d;
            }
        }
        result = r;
        return true;
    }

    bool invert(void) { return inverse(*this); }

    bool invertFrom(const TransformationMatrix &m) { return m.inverse(*this); }

    // Inverse of the upper 3x3. The last row becomes (0, 0, 0, 1); the last
    // column is left as it was, as in 1.8.
    bool inverse3(TransformationMatrix &result) const
    {
        ValueTypeT d = det3();
        if(osgabs(d) < ValueTypeT(1e-20))
        {
            result.setIdentity();
            return false;
        }
        d = ValueTypeT(1) / d;

        ValueTypeT r[3][3];
        for(UInt32 c = 0; c < 3; ++c)
        {
            for(UInt32 row = 0; row < 3; ++row)
            {
                // Without column row and row c of the upper 3x3.
                const UInt32 c0 = row == 0 ? 1 : 0, c1 = row == 2 ? 1 : 2;
                const UInt32 r0 = c   == 0 ? 1 : 0, r1 = c   == 2 ? 1 : 2;
                const ValueTypeT cofactor = _matrix[c0][r0] * _matrix[c1][r1] -
                                            _matrix[c0][r1] * _matrix[c1][r0];
                r[c][row] = ((c + row) % 2 == 0 ? cofactor : -cofactor) * d;
            }
        }
        for(UInt32 c = 0; c < 3; ++c)
            for(UInt32 row = 0; row < 3; ++row)
                result._matrix[c][row] = r[c][row];
        result._matrix[3][0] = result._matrix[3][1] = result._matrix[3][2] = ValueTypeT(0);
        result._matrix[3][3] = ValueTypeT(1);
        return true;
    }

    bool invert3(void) { return inverse3(*this); }

    bool invertFrom3(const TransformationMatrix &m) { return m.inverse3(*this); }

    bool transposed(TransformationMatrix &result) const
    {
        TransformationMatrix r;
        for(UInt32 c = 0; c < 4; ++c)
            for(UInt32 row = 0; row < 4; ++row)
                r._matrix[c][row] = _matrix[row][c];
        result = r;
        return true;
    }

    bool transpose(void) { return transposed(*this); }

    bool transposeFrom(const TransformationMatrix &m) { return m.transposed(*this); }

          VectorType &operator [](UInt32 column)       { return _matrix[column]; }
    const VectorType &operator [](UInt32 column) const { return _matrix[column]; }

    bool operator ==(const TransformationMatrix &m) const { return  equals(m, ValueTypeT(Eps)); }
    bool operator !=(const TransformationMatrix &m) const { return !equals(m, ValueTypeT(Eps)); }

  private:
    // The 3x3 determinant left without column skipCol and row skipRow.
    ValueTypeT minor3(UInt32 skipCol, UInt32 skipRow) const
    {
        UInt32 cols[3], rows[3];
        for(UInt32 i = 0, n = 0; i < 4; ++i)
            if(i != skipCol)
                cols[n++] = i;
        for(UInt32 i = 0, n = 0; i < 4; ++i)
            if(i != skipRow)
                rows[n++] = i;
        const ValueTypeT a1 = _matrix[cols[0]][rows[0]], a2 = _matrix[cols[0]][rows[1]],
                         a3 = _matrix[cols[0]][rows[2]];
        const ValueTypeT b1 = _matrix[cols[1]][rows[0]], b2 = _matrix[cols[1]][rows[1]],
                         b3 = _matrix[cols[1]][rows[2]];
        const ValueTypeT c1 = _matrix[cols[2]][rows[0]], c2 = _matrix[cols[2]][rows[1]],
                         c3 = _matrix[cols[2]][rows[2]];
        return (a1 * b2 * c3) + (a2 * b3 * c1) + (a3 * b1 * c2) -
               (a1 * b3 * c2) - (a2 * b1 * c3) - (a3 * b2 * c1);
    }

    void setZero(void)
    {
        for(UInt32 c = 0; c < 4; ++c)
            _matrix[c].setNull();
    }

    static void product(const TransformationMatrix &l, const TransformationMatrix &r,
                        TransformationMatrix &res)
    {
        for(UInt32 c = 0; c < 4; ++c)
            for(UInt32 row = 0; row < 4; ++row)
                res._matrix[c][row] = l._matrix[0][row] * r._matrix[c][0] +
                                      l._matrix[1][row] * r._matrix[c][1] +
                                      l._matrix[2][row] * r._matrix[c][2] +
                                      l._matrix[3][row] * r._matrix[c][3];
    }

    VectorType _matrix[4];
};

typedef TransformationMatrix<Real32> Matrix;
typedef TransformationMatrix<Real32> Matrix4f;
typedef TransformationMatrix<Real64> Matrix4d;

template <class ValueTypeT>
inline std::ostream &operator <<(std::ostream &os, const TransformationMatrix<ValueTypeT> &m)
{
    for(UInt32 r = 0; r < 4; ++r)
    {
        for(UInt32 c = 0; c < 4; ++c)
            os << (c != 0 ? ", " : "") << m[c][r];
        os << "\n";
    }
    return os;
}

} // namespace osg

#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGMatrix.inl>

#endif
