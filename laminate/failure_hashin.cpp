// Hashin failure indices of the laminate model, in a matrix mode and a fibre
// mode, for one layer and over the whole stack.  1 marks the onset of failure.
#include "laminate/laminate/criteria.h"

using criteria::kNotAssessed;
using criteria::notAssessed;
using vantrel::ReaVecV;

namespace {

// Matrix mode at one face (s2, t12 of that face).
double matrixIndex(lamina1& lam, int i, double s2, double t12)
{
    double Yc = lam.strength2[i], Yt = lam.strength4[i];
    double S12 = lam.strength5[i], S23 = lam.strength6[i];
    double ta = lam.shearStressesLam[0], tb = lam.shearStressesLam[1];
    double P = (t12 * t12 + tb * tb) / (S12 * S12);
    double qa = ta / S23;
    double Q = qa * qa;
    if (s2 <= 0.0) {
        double r = s2 / (2.0 * S23);
        double c = Yc / (2.0 * S23);
        return P + r * r + s2 * (c * c - 1.0) / Yc + Q;
    }
    double r = s2 / Yt;
    return P + r * r + Q;
}

// Fibre mode at one face.  In tension both faces take the bottom face's
// in-plane shear stress (tBottom), the top face's own is not used.
double fibreIndex(lamina1& lam, int i, double s1, double tBottom)
{
    if (s1 <= 0.0) return -s1 / lam.strength1[i];  // linear in compression
    double Xt = lam.strength3[i], S12 = lam.strength5[i];
    double tb = lam.shearStressesLam[1];
    double r = s1 / Xt;
    return r * r + (tBottom * tBottom + tb * tb) / (S12 * S12);
}

// Index of the layer CalcTD has just recovered: the worse face.
double layerIndex(lamina1& lam, int layer, int mode)
{
    int i = layer - 1;
    ReaVecV& bas = lam.stressesBasLam;
    ReaVecV& top = lam.stressesTopLam;
    double bottom, upper;
    if (mode == 0) {
        bottom = matrixIndex(lam, i, bas[1], bas[2]);
        upper = matrixIndex(lam, i, top[1], top[2]);
    } else {
        bottom = fibreIndex(lam, i, bas[0], bas[2]);
        upper = fibreIndex(lam, i, top[0], bas[2]);
    }
    return upper > bottom ? upper : bottom;
}

}  // namespace

double lamina1::FasHashinM_layer(int layer, ReaVecV& loads, int mode)
{
    CalcTD(layer, loads);
    if (notAssessed(*this, layer)) return kNotAssessed;
    return layerIndex(*this, layer, mode);
}

double lamina1::FasHashinM(ReaVecV& loads, int mode)
{
    return criteria::worstLayer(*this, loads, [mode](lamina1& lam, int k) {
        return layerIndex(lam, k, mode);
    });
}
