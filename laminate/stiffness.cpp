// Layer and laminate stiffness: per-layer transformed stiffness and stress
// transformation, interface coordinates, the A, B, D and H stiffness and the
// assembled 8 x 8 laminate stiffness K.
//
// The arithmetic is kept exactly in the order written below (products,
// differences, the power function and the rounded third where they appear) so
// that results are reproducible to the last digit: do not regroup or
// simplify an expression.
#include "laminate/laminate/lamina1.h"

#include <cmath>
#include <cstring>

using vantrel::Matriu;

namespace {

// The in-plane stiffness uses the full degree factor and a fine snap; the
// transverse shear terms and the stress recovery keep the shortened factor
// and a coarser snap, so that stored results stay reproducible.
double const kDegToRadFull = 0.01745329251993889;
double const kDegToRadShort = 0.0174532925;

// Zero every element of a matrix that already has its shape.
void clear(Matriu& m)
{
    for (int i = 0; i < m.size; i++) {
        m.data[i] = 0.0;
    }
}

// Gives a matrix the shape nr x nc (it usually has it already: the hot path
// then allocates nothing) and zeroes it.
void reset(Matriu& m, int nr, int nc)
{
    if (m.nrows != nr || m.ncols != nc) {
        m.redimension(nr, nc);
    }
    clear(m);
}

// A nonzero cosine or sine smaller than 0.001 in magnitude becomes exactly 0.
double snapShort(double v)
{
    return v != 0.0 && fabs(v) < 0.001 ? 0.0 : v;
}

}  // namespace

lamina1::ShortAngle const& lamina1::shortAngle(int k)
{
    if (shortAngles.size() != static_cast<size_t>(nlayers)) {
        shortAngles.assign(nlayers, ShortAngle{0.0, 0.0, 0.0, 0.0, false});
    }
    ShortAngle& a = shortAngles[k];
    double const deg = angleDeg[k];
    // Compared bit for bit: -0 and +0 give different signed zeros.
    if (!a.set || std::memcmp(&a.deg, &deg, sizeof deg) != 0) {
        a.set = true;
        a.deg = deg;
        a.rad = a.deg * kDegToRadShort;
        a.c = cos(a.rad);
        a.s = sin(a.rad);
    }
    return a;
}

void lamina1::calcDefinition()
{
    calcNu21();
    calcQI();
    calcA();
    calcB();
    calcD();
    calcH();
}

void lamina1::calcNu21()
{
    nu21.resize(nlayers, 0.0);
    for (int k = 0; k < nlayers; k++) {
        nu21[k] = (nu12[k] / E1[k]) * E2[k];
    }
}

void lamina1::calcQI()
{
    calcNu21();

    // Allocated once, with the layer count of the first call.
    if (Qbar == nullptr) {
        Qbar = new Matriu[nlayers];
    }
    if (Tmat == nullptr) {
        Tmat = new Matriu[nlayers];
    }
    for (int k = 0; k < nlayers; k++) {
        Qbar[k].redimension(3, 3);
        Tmat[k].redimension(3, 3);
    }
    angleRad.resize(nlayers, 0.0);

    // Reuter's matrix: engineering to tensor shear strain.
    Matriu R(3, 3);
    clear(R);
    R(1, 1) = 1.0;
    R(2, 2) = 1.0;
    R(3, 3) = 2.0;
    Matriu const Rinv = R.i();

    Matriu Q(3, 3);
    for (int k = 0; k < nlayers; k++) {
        double const d = 1 - nu12[k] * nu21[k];
        Q(1, 1) = E1[k] / d;
        Q(1, 2) = E2[k] * nu12[k] / d;
        Q(1, 3) = 0.0;
        Q(2, 1) = E2[k] * nu12[k] / d;
        Q(2, 2) = E2[k] / d;
        Q(2, 3) = 0.0;
        Q(3, 1) = 0.0;
        Q(3, 2) = 0.0;
        Q(3, 3) = G12[k];

        double const theta = angleDeg[k] * kDegToRadFull;
        angleRad[k] = theta;
        double c = cos(theta);
        double s = sin(theta);
        // cos of 90 degrees comes out near 4e-13, not 0.
        if (c != 0.0 && fabs(c) < 1e-5) {
            c = 0.0;
        }
        if (s != 0.0 && fabs(s) < 1e-5) {
            s = 0.0;
        }

        Matriu& T = Tmat[k];
        T(1, 1) = c * c;
        T(1, 2) = s * s;
        T(1, 3) = 2 * s * c;
        T(2, 1) = s * s;
        T(2, 2) = c * c;
        T(2, 3) = -2 * s * c;
        T(3, 1) = -s * c;
        T(3, 2) = s * c;
        T(3, 3) = c * c - s * s;

        Matriu const Tinv = T.i();
        Qbar[k] = Tinv * Q * R * T * Rinv;
    }
}

void lamina1::calcA()
{
    reset(A, 3, 3);
    zInterface.resize(nlayers + 1, 0.0);
    zMid.resize(nlayers + 1, 0.0);
    for (int k = 0; k <= nlayers; k++) {
        zInterface[k] = 0.0;
        zMid[k] = 0.0;
    }
    totalThickness = 0.0;

    // Stack the layers upwards from z = 0, then centre the stack.
    for (int k = 1; k <= nlayers; k++) {
        double const t = layerThickness[k - 1];
        zInterface[k] = zInterface[k - 1] + t;
        totalThickness += t;
        zMid[k - 1] = totalThickness - t / 2;
    }
    for (int k = 0; k < nlayers; k++) {
        zMid[k] -= totalThickness / 2;
    }
    for (int k = 0; k <= nlayers; k++) {
        zInterface[k] -= totalThickness / 2;
    }

    double* const a = A.data;
    for (int k = 1; k <= nlayers; k++) {
        double const* const q = Qbar[k - 1].data;
        double const dz = zInterface[k] - zInterface[k - 1];
        for (int e = 0; e < 9; e++) {
            a[e] += dz * q[e];
        }
    }
}

void lamina1::calcB()
{
    reset(B, 3, 3);
    for (int k = 1; k <= nlayers; k++) {
        double const zu = zInterface[k];
        double const zl = zInterface[k - 1];
        Matriu const& Q = Qbar[k - 1];
        for (int i = 1; i <= 3; i++) {
            for (int j = 1; j <= 3; j++) {
                B(i, j) += (zu * zu - zl * zl) * Q(i, j) * 0.5;
            }
        }
    }
}

void lamina1::calcD()
{
    reset(D, 3, 3);
    for (int k = 1; k <= nlayers; k++) {
        double const zu = zInterface[k];
        double const zl = zInterface[k - 1];
        Matriu const& Q = Qbar[k - 1];
        for (int i = 1; i <= 3; i++) {
            for (int j = 1; j <= 3; j++) {
                D(i, j) += (pow(zu, 3.0) - pow(zl, 3.0)) * Q(i, j)
                           * 0.3333333333333333;
            }
        }
    }
}

void lamina1::calcQstar(int layer)
{
    reset(Qstar, 2, 2);
    ShortAngle const& a = shortAngle(layer - 1);
    angleRad[layer - 1] = a.rad;
    double const c = snapShort(a.c);
    double const s = snapShort(a.s);
    double const g23 = G23[layer - 1];
    double const g13 = G13[layer - 1];
    Qstar(1, 1) = g23 * (s * s) + g13 * (c * c);
    Qstar(2, 2) = g23 * (c * c) + g13 * (s * s);
    Qstar(1, 2) = c * s * (g23 - g13);
    Qstar(2, 1) = c * s * (g23 - g13);
}

void lamina1::calcQ_st(int layer)
{
    reset(Q_st, 2, 2);
    ShortAngle const& a = shortAngle(layer - 1);
    angleRad[layer - 1] = a.rad;
    double const c = snapShort(a.c);
    double const s = snapShort(a.s);
    double const g23 = G23[layer - 1];
    double const g13 = G13[layer - 1];
    Q_st(1, 1) = g13 * c;
    Q_st(1, 2) = g13 * s;
    Q_st(2, 1) = -g23 * s;
    Q_st(2, 2) = g23 * c;
}

// Transverse shear stiffness with a parabolic shear distribution, each layer
// weighted about its mid-thickness.
void lamina1::calcH()
{
    reset(H, 2, 2);
    double const h = totalThickness;
    for (int k = 1; k <= nlayers; k++) {
        calcQstar(k);
        double const t = layerThickness[k - 1];
        double const zm = zMid[k - 1];
        double const w = t - (zm * zm * t + pow(t, 3.0) / 12) * (4 / (h * h));
        for (int i = 1; i <= 2; i++) {
            for (int j = 1; j <= 2; j++) {
                H(i, j) += w * (1.25 * Qstar(i, j));
            }
        }
    }
}

// B, D and H in one pass, as K uses them.  Here the shear weight of each layer
// is taken about its lower interface, not its mid-thickness as in calcH, so
// the two H differ for any laminate of more than one layer; K is built from
// this form.
void lamina1::calcBDH()
{
    reset(B, 3, 3);
    reset(D, 3, 3);
    reset(H, 2, 2);
    double* const b = B.data;
    double* const d = D.data;
    double* const hs = H.data;
    double const h = totalThickness;
    for (int k = 1; k <= nlayers; k++) {
        calcQstar(k);
        double const zl = zInterface[k - 1];
        double const zu = zInterface[k];
        double const t = layerThickness[k - 1];
        double const d2 = zu * zu - zl * zl;
        double const d3 = zu * zu * zu - zl * zl * zl;
        double const w = t - (zl * t * zl + t * t * t / 12) * (4 / (h * h));
        // Row-major 3 x 3 and 2 x 2 blocks: element by element, in place.
        double const* const q = Qbar[k - 1].data;
        for (int e = 0; e < 9; e++) {
            b[e] += q[e] * 0.5 * d2;
            d[e] += (q[e] * d3) / 3.0;
        }
        double const* const qs = Qstar.data;
        for (int e = 0; e < 4; e++) {
            hs[e] += qs[e] * 1.25 * w;
        }
    }
}

// K = [A B 0; B D 0; 0 0 diag(H11, H22)].  The lower coupling block is B as
// it stands, and the off-diagonal shear terms are left out: transverse shear
// stays uncoupled in K even for off-axis layers.
void lamina1::calcK()
{
    reset(K, 8, 8);
    calcA();
    calcBDH();
    for (int i = 1; i <= 3; i++) {
        for (int j = 1; j <= 3; j++) {
            K(i, j) = A(i, j);
            K(i, j + 3) = B(i, j);
            K(i + 3, j) = B(i, j);
            K(i + 3, j + 3) = D(i, j);
        }
    }
    K(7, 7) = H(1, 1);
    K(8, 8) = H(2, 2);
}
