// LaRC04 failure indices of the laminate model, one of six modes at a time,
// for one layer and over the whole stack.  1 marks the onset of failure.
//
// Modes: 1 matrix tension, 2 matrix compression, 3 fibre tension, 4 fibre
// kinking, 5 matrix compression under high fibre compression, 6 matrix
// tension under fibre compression.  In-situ strengths depend on the ply
// thickness; the strength fields S23 and S13 double as the fracture
// toughnesses GIc and GIIc.
#include "laminate/laminate/criteria.h"

#include <cmath>

using criteria::kNotAssessed;
using criteria::notAssessed;
using vantrel::ReaVecV;

namespace {

// Fracture plane at 53 degrees (converted with 0.0174532925 rad per degree);
// the values are fixed, not recomputed, so that results are reproducible.
const double kCosA0 = 0.6018150239962017;
const double kSinA0 = 0.7986355094111777;
const double kCos2A0 = -0.27563735378490245;
const double kSin2A0 = 0.9612616965210132;
const double kEtaT = 0.2867453834710005;        // -1 / tan(2 a0)
const double kShearFactor = 0.6260678295767774; // sin a0 + cos a0 / tan(2 a0)

const double kThinPly = 0.0007;  // in the unit of the record's thicknesses
const double kPi = 3.14159265;
const double kSqrt2 = 1.4142135623730951;
const double kThickYt = 1.5839191898578666;   // 1.12 sqrt(2)
const double kThickG = 1.2544;                // 1.12^2
const double kComplianceFloor = 1e-5;

// Quantities of one layer shared by both faces.  Lambda may be cleared by
// the first face and then stays cleared for the second.
struct Layer {
    double E1, E2, nu, G12;
    double Xc, Yc, Xt, Yt, S12;
    double GIc, GIIc, t;
    bool thin;
    double Lambda, ST, etaL, SLis;
    double ta, tb;  // transverse shear stresses, the same at both faces

    Layer(lamina1& lam, int i)
    {
        E1 = lam.E1[i];
        E2 = lam.E2[i];
        nu = lam.nu12[i];
        G12 = lam.G12[i];
        Xc = lam.strength1[i];
        Yc = lam.strength2[i];
        Xt = lam.strength3[i];
        Yt = lam.strength4[i];
        S12 = lam.strength5[i];
        GIc = lam.strength6[i];
        GIIc = lam.strength7[i];
        t = lam.layerThickness[i];
        ta = lam.shearStressesLam[0];
        tb = lam.shearStressesLam[1];
        thin = t <= kThinPly;
        Lambda = 2.0 * (1.0 / E2 - nu * nu / E1);
        ST = Yc * kCosA0 * kShearFactor;
        etaL = S12 * kEtaT / ST;
        if (thin)
            SLis = std::sqrt(8.0 * G12 * GIIc / (kPi * t));
        else
            SLis = kSqrt2 * S12;
    }

    // Index of the requested mode at one face; 0 when the mode's condition
    // does not hold or the mode is not one of 1..6.
    double face(double s1, double s2, double t12, int mode)
    {
        // In-situ transverse values.  The thick-ply g and W use the face's
        // own in-plane shear stress.
        double YTis, g, W;
        if (thin) {
            YTis = std::sqrt(8.0 * GIc / (kPi * t * Lambda));
            g = GIc / GIIc;
            W = 8.0 * GIIc / (kPi * t);
        } else {
            YTis = kThickYt * Yt;
            if (Lambda > kComplianceFloor) {
                g = kThickG * Lambda * (Yt * Yt) / t12;
            } else {
                Lambda = 0.0;
                g = 0.0;
            }
            W = 2.0 * t12;
        }

        // Fibre-kinking angle: only the root is divided, 1 stays outside.
        double a = S12 / Xc;
        double phiC = std::atan(1.0 - std::sqrt(std::fabs(1.0 - 4.0 * (etaL + a) * a)) /
                                          (2.0 * (etaL + a)));
        double phi0 = phiC - Xc * phiC / G12;

        // Kink-plane frame.
        double psi = 0.5 * std::atan(2.0 * ta / s2);
        double cpsi = std::cos(psi), spsi = std::sin(psi);
        double s2psi = s2 / 2.0 + (s2 / 2.0) * std::cos(2.0 * psi);
        double t12psi = cpsi * t12 + spsi * tb;
        double t13psi = cpsi * tb - spsi * t12;

        // Misalignment angle, from the face's raw t12 and s2.
        double sign = t12 / std::fabs(t12);
        double phi = sign * (phi0 + (std::fabs(t12) + G12 * phi0) / (G12 + s1 - s2) - phi0);

        // Misalignment frame.
        double c2phi = std::cos(2.0 * phi), s2phi = std::sin(2.0 * phi);
        double s2m = (s1 + s2psi) -
                     ((s1 - s2psi) / 2.0 * c2phi + (s1 + s2psi) / 2.0 + t12psi * s2phi);
        double t12m = -(s1 - s2psi) / 2.0 * s2phi + t12psi * c2phi;
        double t23m = -std::sin(phi) * t13psi;

        switch (mode) {
        case 1:  // matrix tension; t12 enters unsquared
            if (s2 >= 0.0) {
                double r = s2 / YTis;
                return (t12 + Lambda * (ta * ta)) / W + g * (r * r) + (1.0 - g) * s2 / YTis;
            }
            return 0.0;
        case 2:  // matrix compression
            if (s2 < 0.0 && s1 >= -Yc) {
                double sn = s2 / 2.0 + (s2 / 2.0) * kCos2A0 + ta * kSin2A0;
                double tT = s2 / 2.0 - (s2 / 2.0) * kSin2A0 + ta * kCos2A0;
                double tL = kCosA0 * t12 + kSinA0 * tb;
                return fracture(sn, tT, tL);
            }
            return 0.0;
        case 3:  // fibre tension, linear
            if (s1 >= 0.0) return s1 / Xt;
            return 0.0;
        case 4:  // fibre kinking
            if (s1 < 0.0 && s2m < 0.0) {
                double r = t12m / (SLis - etaL * s2m);
                return r * r;
            }
            return 0.0;
        case 5:  // matrix compression under high fibre compression
            if (s2 < 0.0 && s1 < -Yc) {
                double d = s2 - s2psi;
                double e = s2m - d;
                double sn = (s2m + d) / 2.0 + (e / 2.0) * kCos2A0 + t23m * kSin2A0;
                double tT = t23m * kCos2A0 - (e / 2.0) * kSin2A0;
                double tL = kCosA0 * t12m + kSinA0 * std::cos(phi) * t13psi;
                return fracture(sn, tT, tL);
            }
            return 0.0;
        case 6:  // matrix tension under fibre compression; t12 unsquared
            if (s1 < 0.0 && s2m >= 0.0) {
                double r = s2m / YTis;
                return (Lambda * (t23m * t23m) + t12) / W + g * (r * r) + (1.0 - g) * s2m / YTis;
            }
            return 0.0;
        default:
            return 0.0;
        }
    }

    // Fracture-plane index from the normal and the two shear tractions.
    double fracture(double sn, double tT, double tL) const
    {
        double rT = tT / (ST - kEtaT * sn);
        double rL = tL / (SLis - etaL * sn);
        return rT * rT + rL * rL;
    }
};

// Index of the layer CalcTD has just recovered: bottom face first, then top,
// the worse of the two.
double layerIndex(lamina1& lam, int layer, int mode)
{
    Layer ply(lam, layer - 1);
    ReaVecV& bas = lam.stressesBasLam;
    ReaVecV& top = lam.stressesTopLam;
    double bottom = ply.face(bas[0], bas[1], bas[2], mode);
    double upper = ply.face(top[0], top[1], top[2], mode);
    return upper > bottom ? upper : bottom;
}

}  // namespace

double lamina1::FasLaRC04_layer(int layer, ReaVecV& loads, int mode)
{
    CalcTD(layer, loads);
    if (notAssessed(*this, layer)) return kNotAssessed;
    return layerIndex(*this, layer, mode);
}

double lamina1::FasLaRC04(ReaVecV& loads, int mode)
{
    return criteria::worstLayer(*this, loads, [mode](lamina1& lam, int k) {
        return layerIndex(lam, k, mode);
    });
}
