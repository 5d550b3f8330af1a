// Decomposition of TransformationMatrix; included by OSGMatrix.h once
// QuaternionBase is complete.

namespace osg
{

namespace MatrixDetail
{
    typedef Real64 M3[3][3];   // [row][col]

    inline Real64 det3(const M3 &m)
    {
        return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    }

    // Inverse transpose, via cofactors: (M^-1)^T = cof(M) / det.
    inline void invTranspose(const M3 &m, M3 &r)
    {
        const Real64 i = 1.0 / det3(m);
        for(UInt32 row = 0; row < 3; ++row)
            for(UInt32 col = 0; col < 3; ++col)
            {
                const UInt32 r0 = (row + 1) % 3, r1 = (row + 2) % 3;
                const UInt32 c0 = (col + 1) % 3, c1 = (col + 2) % 3;
                r[row][col] = (m[r0][c0] * m[r1][c1] - m[r0][c1] * m[r1][c0]) * i;
            }
    }

    // Orthogonal factor Q of M = Q S by Newton iteration Q <- (Q + Q^-T) / 2.
    inline void polarRotation(const M3 &m, M3 &q)
    {
        for(UInt32 r = 0; r < 3; ++r)
            for(UInt32 c = 0; c < 3; ++c)
                q[r][c] = m[r][c];

        for(UInt32 iter = 0; iter < 100; ++iter)
        {
            M3     it;
            Real64 diff = 0;
            invTranspose(q, it);
            for(UInt32 r = 0; r < 3; ++r)
                for(UInt32 c = 0; c < 3; ++c)
                {
                    const Real64 n = 0.5 * (q[r][c] + it[r][c]);
                    diff += osgabs(n - q[r][c]);
                    q[r][c] = n;
                }
            if(diff < 1e-14)
                break;
        }
    }

    // Jacobi eigen decomposition of a symmetric s: s = v diag(e) v^T.
    inline void symmetricEigen(M3 s, Real64 *e, M3 &v)
    {
        for(UInt32 r = 0; r < 3; ++r)
            for(UInt32 c = 0; c < 3; ++c)
                v[r][c] = r == c ? 1.0 : 0.0;

        for(UInt32 sweep = 0; sweep < 50; ++sweep)
        {
            const Real64 off = osgabs(s[0][1]) + osgabs(s[0][2]) + osgabs(s[1][2]);
            if(off < 1e-15)
                break;

            for(UInt32 p = 0; p < 2; ++p)
                for(UInt32 q = p + 1; q < 3; ++q)
                {
                    if(osgabs(s[p][q]) < 1e-300)
                        continue;
                    const Real64 theta = (s[q][q] - s[p][p]) / (2.0 * s[p][q]);
                    const Real64 t     = (theta >= 0 ? 1.0 : -1.0) /
                                         (osgabs(theta) + osgsqrt(theta * theta + 1.0));
                    const Real64 c     = 1.0 / osgsqrt(t * t + 1.0);
                    const Real64 sn    = t * c;

                    // s <- J^T s J, v <- v J with J the (p, q) rotation.
                    for(UInt32 k = 0; k < 3; ++k)
                    {
                        const Real64 skp = s[k][p], skq = s[k][q];
                        s[k][p] = c * skp - sn * skq;
                        s[k][q] = sn * skp + c * skq;
                    }
                    for(UInt32 k = 0; k < 3; ++k)
                    {
                        const Real64 spk = s[p][k], sqk = s[q][k];
                        s[p][k] = c * spk - sn * sqk;
                        s[q][k] = sn * spk + c * sqk;
                    }
                    for(UInt32 k = 0; k < 3; ++k)
                    {
                        const Real64 vkp = v[k][p], vkq = v[k][q];
                        v[k][p] = c * vkp - sn * vkq;
                        v[k][q] = sn * vkp + c * vkq;
                    }
                }
        }

        for(UInt32 i = 0; i < 3; ++i)
            e[i] = s[i][i];
    }

    template <class ValueTypeT>
    inline void toQuaternion(const M3 &m, QuaternionBase<ValueTypeT> &q)
    {
        TransformationMatrix<ValueTypeT> tm;
        for(UInt32 r = 0; r < 3; ++r)
            for(UInt32 c = 0; c < 3; ++c)
                tm[c][r] = ValueTypeT(m[r][c]);
        q.setValue(tm);
    }
}

// Polar decomposition A = Q S, S = U K U^T: rotation Q, scale orientation
// U, scale factors K.
template <class ValueTypeT>
void TransformationMatrix<ValueTypeT>::getTransform(VectorType3f   &translation,
                                                    QuaternionType &rotation,
                                                    VectorType3f   &scaleFactor,
                                                    QuaternionType &scaleOrientation) const
{
    using namespace MatrixDetail;

    M3 m;
    for(UInt32 r = 0; r < 3; ++r)
        for(UInt32 c = 0; c < 3; ++c)
            m[r][c] = Real64(_matrix[c][r]);

    translation.setValues(_matrix[3][0], _matrix[3][1], _matrix[3][2]);

    const Real64 d = MatrixDetail::det3(m);
    if(osgabs(d) < 1e-30)
    {
        // Degenerate: no rotation can be recovered, keep the column lengths.
        rotation.setIdentity();
        scaleOrientation.setIdentity();
        for(UInt32 c = 0; c < 3; ++c)
            scaleFactor[c] = ValueTypeT(osgsqrt(m[0][c] * m[0][c] +
                                                m[1][c] * m[1][c] +
                                                m[2][c] * m[2][c]));
        return;
    }

    M3 q;
    polarRotation(m, q);

    // A mirror goes into negative scale factors, Q stays a rotation.
    if(d < 0)
        for(UInt32 r = 0; r < 3; ++r)
            for(UInt32 c = 0; c < 3; ++c)
                q[r][c] = -q[r][c];

    M3 s;
    for(UInt32 r = 0; r < 3; ++r)
        for(UInt32 c = 0; c < 3; ++c)
        {
            s[r][c] = 0;
            for(UInt32 k = 0; k < 3; ++k)
                s[r][c] += q[k][r] * m[k][c];
        }
    // Remove rounding asymmetry.
    for(UInt32 r = 0; r < 3; ++r)
        for(UInt32 c = r + 1; c < 3; ++c)
            s[r][c] = s[c][r] = 0.5 * (s[r][c] + s[c][r]);

    Real64 k[3];
    M3     u;
    symmetricEigen(s, k, u);

    if(MatrixDetail::det3(u) < 0)
        for(UInt32 r = 0; r < 3; ++r)
            u[r][2] = -u[r][2];

    scaleFactor.setValues(ValueTypeT(k[0]), ValueTypeT(k[1]), ValueTypeT(k[2]));
    toQuaternion(q, rotation);
    toQuaternion(u, scaleOrientation);
}

} // namespace osg
