// The arithmetic below is kept in the order written (products, sums and the
// grouping of each expression) so that results are reproducible to the last
// digit: do not regroup or simplify.
#include "laminate/laminate/ply_criteria.h"

#include <cmath>

#include "laminate/laminate/lamina1.h"

namespace laminate_model {

namespace {

// The fracture plane's constants are in the header.
const double kShearFactor = 0.6260678295767774;  // sin a0 + cos a0 / tan(2 a0)

const double kThinPly = 0.0007;  // in the unit of the record's thicknesses
const double kPi = 3.14159265;
const double kSqrt2 = 1.4142135623730951;
const double kThickYt = 1.5839191898578666;  // 1.12 sqrt(2)
const double kThickG = 1.2544;               // 1.12^2
const double kComplianceFloor = 1e-5;

}  // namespace

PlyData plyData(lamina1 const& lam, int layer)
{
    int const i = layer - 1;
    PlyData p;
    p.E1 = lam.E1.data[i];
    p.E2 = lam.E2.data[i];
    p.nu12 = lam.nu12.data[i];
    p.G12 = lam.G12.data[i];
    p.Xc = lam.strength1.data[i];
    p.Yc = lam.strength2.data[i];
    p.Xt = lam.strength3.data[i];
    p.Yt = lam.strength4.data[i];
    p.S12 = lam.strength5.data[i];
    p.S23 = lam.strength6.data[i];
    p.S13 = lam.strength7.data[i];
    p.t = lam.layerThickness.data[i];
    p.flag = lam.layerFlag.data[i];
    return p;
}

bool notAssessed(PlyData const& p, double const mid[3], double const shear[2])
{
    return p.flag == 0 || (mid[0] == 0.0 && mid[1] == 0.0 && mid[2] == 0.0 && shear[0] == 0.0 &&
                           shear[1] == 0.0);
}

TsaiWu::TsaiWu(PlyData const& p)
{
    F1 = 1.0 / p.Xt - 1.0 / p.Xc;
    F2 = 1.0 / p.Yt - 1.0 / p.Yc;
    F11 = 1.0 / (p.Xt * p.Xc);
    F22 = 1.0 / (p.Yt * p.Yc);
    F66 = 1.0 / (p.S12 * p.S12);
    F12 = -0.5 * std::sqrt(F11 * F22);
}

double tsaiWuComplete(PlyData const& p, double const face[3], double ta, double tb)
{
    TsaiWu const f(p);
    double const s1 = face[0], s2 = face[1], t12 = face[2];
    double const qa = ta / p.S23;
    double const qb = tb / p.S13;
    return std::fabs(f.quadratic(s1, s2, t12) + f.linear(s1, s2) + qa * qa + qb * qb);
}

bool tsaiWuSimple(PlyData const& p, double const mid[3], double const top[3], double& A,
                  double& B, double& R)
{
    // The guard looks at the top face, the factor at mid-thickness.
    if (p.Xc == 0.0 || p.Yc == 0.0 || p.Xt == 0.0 || p.Yt == 0.0 || p.S12 == 0.0 ||
        (top[0] == 0.0 && top[1] == 0.0 && top[2] == 0.0))
        return false;
    TsaiWu const f(p);
    A = f.quadratic(mid[0], mid[1], mid[2]);
    B = f.linear(mid[0], mid[1]);
    // The discriminant's magnitude keeps the roots real.
    double const D = std::fabs(B * B + 4.0 * A);
    double const R1 = std::fabs((std::sqrt(D) - B) / (2.0 * A));
    double const R2 = std::fabs((-B - std::sqrt(D)) / (2.0 * A));
    R = R1 <= R2 ? R1 : R2;
    return true;
}

double hashinMatrix(PlyData const& p, double s2, double t12, double ta, double tb)
{
    double const P = (t12 * t12 + tb * tb) / (p.S12 * p.S12);
    double const qa = ta / p.S23;
    double const Q = qa * qa;
    if (s2 <= 0.0) {
        double const r = s2 / (2.0 * p.S23);
        double const c = p.Yc / (2.0 * p.S23);
        return P + r * r + s2 * (c * c - 1.0) / p.Yc + Q;
    }
    double const r = s2 / p.Yt;
    return P + r * r + Q;
}

double hashinFibre(PlyData const& p, double s1, double tBottom, double tb)
{
    if (s1 <= 0.0) return -s1 / p.Xc;  // linear in compression
    double const r = s1 / p.Xt;
    return r * r + (tBottom * tBottom + tb * tb) / (p.S12 * p.S12);
}

LaRC04::LaRC04(PlyData const& p, double ta, double tb) : p_(p), ta_(ta), tb_(tb)
{
    thin_ = p.t <= kThinPly;
    Lambda_ = Lambda0_ = 2.0 * (1.0 / p.E2 - p.nu12 * p.nu12 / p.E1);
    ST_ = p.Yc * kCosA0 * kShearFactor;
    etaL_ = p.S12 * kEtaT / ST_;
    if (thin_)
        SLis_ = std::sqrt(8.0 * p.G12 * p.S13 / (kPi * p.t));
    else
        SLis_ = kSqrt2 * p.S12;

    // Fibre-kinking angle: only the root is divided, 1 stays outside.
    double const a = p.S12 / p.Xc;
    phiC_ = std::atan(1.0 - std::sqrt(std::fabs(1.0 - 4.0 * (etaL_ + a) * a)) /
                                (2.0 * (etaL_ + a)));
    phi0_ = phiC_ - p.Xc * phiC_ / p.G12;
}

LaRC04::Constants LaRC04::constants() const
{
    Constants k;
    k.thin = thin_;
    k.ST = ST_;
    k.etaL = etaL_;
    k.SLis = SLis_;
    k.phi0 = phi0_;
    double const GIc = p_.S23, GIIc = p_.S13, t = p_.t, Yt = p_.Yt;
    if (thin_) {
        k.Lambda = Lambda0_;
        k.YTis = std::sqrt(8.0 * GIc / (kPi * t * Lambda0_));
        k.g = GIc / GIIc;
        k.gThick = 0.0;
        k.W = 8.0 * GIIc / (kPi * t);
    } else {
        k.Lambda = Lambda0_ > kComplianceFloor ? Lambda0_ : 0.0;
        k.YTis = kThickYt * Yt;
        k.g = 0.0;
        k.gThick = k.Lambda > 0.0 ? kThickG * k.Lambda * (Yt * Yt) : 0.0;
        k.W = 0.0;
    }
    return k;
}

LaRC04::Kink LaRC04::kink(double s2) const
{
    double const psi = 0.5 * std::atan(2.0 * ta_ / s2);
    return Kink{std::cos(psi), std::sin(psi), std::cos(2.0 * psi)};
}

void LaRC04::face(double s1, double s2, double t12, Kink const& k, double index[6])
{
    double const GIc = p_.S23, GIIc = p_.S13, t = p_.t;
    double const Xt = p_.Xt, Yc = p_.Yc, Yt = p_.Yt, G12 = p_.G12;
    double const ta = ta_, tb = tb_;
    double const phi0 = phi0_;

    // In-situ transverse values.  The thick-ply g and W use the face's own
    // in-plane shear stress.
    double YTis, g, W;
    if (thin_) {
        YTis = std::sqrt(8.0 * GIc / (kPi * t * Lambda_));
        g = GIc / GIIc;
        W = 8.0 * GIIc / (kPi * t);
    } else {
        YTis = kThickYt * Yt;
        if (Lambda_ > kComplianceFloor) {
            g = kThickG * Lambda_ * (Yt * Yt) / t12;
        } else {
            Lambda_ = 0.0;
            g = 0.0;
        }
        W = 2.0 * t12;
    }

    // Kink-plane frame.
    double const cpsi = k.cpsi, spsi = k.spsi;
    double const s2psi = s2 / 2.0 + (s2 / 2.0) * k.c2psi;
    double const t12psi = cpsi * t12 + spsi * tb;
    double const t13psi = cpsi * tb - spsi * t12;

    // Misalignment angle, from the face's raw t12 and s2.
    double const sign = t12 / std::fabs(t12);
    double const phi = sign * (phi0 + (std::fabs(t12) + G12 * phi0) / (G12 + s1 - s2) - phi0);

    // Misalignment frame.
    double const c2phi = std::cos(2.0 * phi), s2phi = std::sin(2.0 * phi);
    double const s2m =
        (s1 + s2psi) - ((s1 - s2psi) / 2.0 * c2phi + (s1 + s2psi) / 2.0 + t12psi * s2phi);
    double const t12m = -(s1 - s2psi) / 2.0 * s2phi + t12psi * c2phi;
    double const t23m = -std::sin(phi) * t13psi;

    // 1: matrix tension; t12 enters unsquared.
    index[0] = 0.0;
    if (s2 >= 0.0) {
        double const r = s2 / YTis;
        index[0] = (t12 + Lambda_ * (ta * ta)) / W + g * (r * r) + (1.0 - g) * s2 / YTis;
    }
    // 2: matrix compression.
    index[1] = 0.0;
    if (s2 < 0.0 && s1 >= -Yc) {
        double const sn = s2 / 2.0 + (s2 / 2.0) * kCos2A0 + ta * kSin2A0;
        double const tT = s2 / 2.0 - (s2 / 2.0) * kSin2A0 + ta * kCos2A0;
        double const tL = kCosA0 * t12 + kSinA0 * tb;
        index[1] = fracture(sn, tT, tL);
    }
    // 3: fibre tension, linear.
    index[2] = s1 >= 0.0 ? s1 / Xt : 0.0;
    // 4: fibre kinking.
    index[3] = 0.0;
    if (s1 < 0.0 && s2m < 0.0) {
        double const r = t12m / (SLis_ - etaL_ * s2m);
        index[3] = r * r;
    }
    // 5: matrix compression under high fibre compression.
    index[4] = 0.0;
    if (s2 < 0.0 && s1 < -Yc) {
        double const d = s2 - s2psi;
        double const e = s2m - d;
        double const sn = (s2m + d) / 2.0 + (e / 2.0) * kCos2A0 + t23m * kSin2A0;
        double const tT = t23m * kCos2A0 - (e / 2.0) * kSin2A0;
        double const tL = kCosA0 * t12m + kSinA0 * std::cos(phi) * t13psi;
        index[4] = fracture(sn, tT, tL);
    }
    // 6: matrix tension under fibre compression; t12 unsquared.
    index[5] = 0.0;
    if (s1 < 0.0 && s2m >= 0.0) {
        double const r = s2m / YTis;
        index[5] = (Lambda_ * (t23m * t23m) + t12) / W + g * (r * r) + (1.0 - g) * s2m / YTis;
    }
}

// Fracture-plane index from the normal and the two shear tractions.
double LaRC04::fracture(double sn, double tT, double tL) const
{
    double const rT = tT / (ST_ - kEtaT * sn);
    double const rL = tL / (SLis_ - etaL_ * sn);
    return rT * rT + rL * rL;
}

}  // namespace laminate_model
