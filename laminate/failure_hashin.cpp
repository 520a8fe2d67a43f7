// Hashin failure indices of the laminate model, in a matrix mode and a fibre
// mode, for one layer and over the whole stack.  1 marks the onset of failure.
#include "laminate/laminate/criteria.h"

using criteria::kNotAssessed;
using criteria::notAssessed;
using vantrel::ReaVecV;

namespace {

// Index of the layer CalcTD has just recovered: the worse face.  In fibre
// tension both faces take the bottom face's in-plane shear stress.
double layerIndex(lamina1& lam, int layer, int mode)
{
    laminate_model::PlyData const p = laminate_model::plyData(lam, layer);
    ReaVecV& bas = lam.stressesBasLam;
    ReaVecV& top = lam.stressesTopLam;
    double const ta = lam.shearStressesLam[0], tb = lam.shearStressesLam[1];
    double bottom, upper;
    if (mode == 0) {
        bottom = laminate_model::hashinMatrix(p, bas[1], bas[2], ta, tb);
        upper = laminate_model::hashinMatrix(p, top[1], top[2], ta, tb);
    } else {
        bottom = laminate_model::hashinFibre(p, bas[0], bas[2], tb);
        upper = laminate_model::hashinFibre(p, top[0], bas[2], tb);
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
