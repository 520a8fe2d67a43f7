// Tsai-Wu safety factors of the laminate model: the simple load factor (how
// far the loads may be scaled before the in-plane criterion reaches 1) and the
// complete criterion value with the transverse shear terms, for one layer and
// over the whole stack.
#include "laminate/laminate/criteria.h"

#include <cmath>

using criteria::kNotAssessed;
using criteria::notAssessed;
using vantrel::ReaVecV;

namespace {

const double kNotRated = -1.0;          // simple variant: guard failed
const double kFactorCap = 200.0;        // ceiling of the simple load factor

// Strength-dependent coefficients of one layer, rebuilt on every call.
struct Coefficients {
    double F1, F2, F11, F22, F66, F12;

    Coefficients(lamina1& lam, int i)
    {
        double Xc = lam.strength1[i], Yc = lam.strength2[i];
        double Xt = lam.strength3[i], Yt = lam.strength4[i];
        double S12 = lam.strength5[i];
        F1 = 1.0 / Xt - 1.0 / Xc;
        F2 = 1.0 / Yt - 1.0 / Yc;
        F11 = 1.0 / (Xt * Xc);
        F22 = 1.0 / (Yt * Yc);
        F66 = 1.0 / (S12 * S12);
        F12 = -0.5 * std::sqrt(F11 * F22);
    }

    // In-plane quadratic part; the interaction enters as 2 F12 s1 s2.
    double quadratic(double s1, double s2, double t12) const
    {
        return F11 * (s1 * s1) + F22 * (s2 * s2) + F66 * (t12 * t12) + 2.0 * F12 * s1 * s2;
    }

    double linear(double s1, double s2) const { return F1 * s1 + F2 * s2; }
};

bool allZero(ReaVecV& v3) { return v3[0] == 0.0 && v3[1] == 0.0 && v3[2] == 0.0; }

// Simple variant for the layer CalcTD has just recovered.  Returns false when
// the layer cannot be rated: a strength is missing, or the top face carries no
// in-plane stress.  The guard looks at the top face while the factor is
// evaluated at mid-thickness.
bool rateLayer(lamina1& lam, int layer, double& A, double& B, double& R)
{
    int i = layer - 1;
    if (lam.strength1[i] == 0.0 || lam.strength2[i] == 0.0 || lam.strength3[i] == 0.0 ||
        lam.strength4[i] == 0.0 || lam.strength5[i] == 0.0 || allZero(lam.stressesTopLam))
        return false;
    Coefficients f(lam, i);
    double s1 = lam.stressesLam[0], s2 = lam.stressesLam[1], t12 = lam.stressesLam[2];
    A = f.quadratic(s1, s2, t12);
    B = f.linear(s1, s2);
    // A R^2 + B R - 1 = 0; the discriminant's magnitude keeps the roots real,
    // and the root of smaller magnitude is the factor.
    double D = std::fabs(B * B + 4.0 * A);
    double R1 = std::fabs((std::sqrt(D) - B) / (2.0 * A));
    double R2 = std::fabs((-B - std::sqrt(D)) / (2.0 * A));
    R = R1 <= R2 ? R1 : R2;
    return true;
}

double completeIndex(lamina1& lam, int i, ReaVecV& face)
{
    Coefficients f(lam, i);
    double s1 = face[0], s2 = face[1], t12 = face[2];
    // The transverse shear stresses are constant through the layer.
    double qa = lam.shearStressesLam[0] / lam.strength6[i];
    double qb = lam.shearStressesLam[1] / lam.strength7[i];
    return std::fabs(f.quadratic(s1, s2, t12) + f.linear(s1, s2) + qa * qa + qb * qb);
}

// Complete criterion of the layer CalcTD has just recovered: the worse face.
double completeValue(lamina1& lam, int layer)
{
    double top = completeIndex(lam, layer - 1, lam.stressesTopLam);
    double bottom = completeIndex(lam, layer - 1, lam.stressesBasLam);
    return top > bottom ? top : bottom;
}

}  // namespace

double lamina1::FasTWLayer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    double A, B, R;
    if (!rateLayer(*this, layer, A, B, R)) return kNotRated;
    if (R >= kFactorCap) R = kFactorCap;
    return R;
}

double lamina1::FasTW(ReaVecV& loads)
{
    ReaVecV atUnitLoad(0), factor(0);
    atUnitLoad.resize(nlayers, 0.0);
    factor.resize(nlayers, 0.0);
    for (int k = 1; k <= nlayers; k++) {
        CalcTD(k, loads);
        double A, B, R;
        if (!rateLayer(*this, k, A, B, R)) return kNotRated;
        atUnitLoad[k - 1] = A + B;
        // "Below the cap, else the cap": unlike the one-layer form, a NaN
        // factor becomes the cap here.
        factor[k - 1] = R < kFactorCap ? R : kFactorCap;
    }
    (void)atUnitLoad.min_val();  // the criterion at the unrated load is not reported
    return factor.min_val();
}

double lamina1::FasTWcompleteLayer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    if (notAssessed(*this, layer)) return kNotAssessed;
    return completeValue(*this, layer);
}

double lamina1::FasTWcomplete(ReaVecV& loads)
{
    return criteria::worstLayer(*this, loads, completeValue);
}
