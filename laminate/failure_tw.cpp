// Tsai-Wu safety factors of the laminate model: the simple load factor (how
// far the loads may be scaled before the in-plane criterion reaches 1) and the
// complete criterion value with the transverse shear terms, for one layer and
// over the whole stack.
#include "laminate/laminate/criteria.h"

using criteria::kNotAssessed;
using criteria::notAssessed;
using laminate_model::plyData;
using vantrel::ReaVecV;

namespace {

const double kNotRated = -1.0;    // simple variant: guard failed
const double kFactorCap = 200.0;  // ceiling of the simple load factor

// Simple variant for the layer CalcTD has just recovered.
bool rateLayer(lamina1& lam, int layer, double& A, double& B, double& R)
{
    return laminate_model::tsaiWuSimple(plyData(lam, layer), lam.stressesLam.data,
                                        lam.stressesTopLam.data, A, B, R);
}

// Complete criterion of the layer CalcTD has just recovered: the worse face.
double completeValue(lamina1& lam, int layer)
{
    laminate_model::PlyData const p = plyData(lam, layer);
    double const ta = lam.shearStressesLam[0], tb = lam.shearStressesLam[1];
    double const top = laminate_model::tsaiWuComplete(p, lam.stressesTopLam.data, ta, tb);
    double const bottom = laminate_model::tsaiWuComplete(p, lam.stressesBasLam.data, ta, tb);
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
