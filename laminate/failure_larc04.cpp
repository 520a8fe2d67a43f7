// LaRC04 failure indices of the laminate model, one of six modes at a time,
// for one layer and over the whole stack.  1 marks the onset of failure.
//
// Modes: 1 matrix tension, 2 matrix compression, 3 fibre tension, 4 fibre
// kinking, 5 matrix compression under high fibre compression, 6 matrix
// tension under fibre compression.  In-situ strengths depend on the ply
// thickness; the strength fields S23 and S13 double as the fracture
// toughnesses GIc and GIIc.
#include "laminate/laminate/criteria.h"

using criteria::kNotAssessed;
using criteria::notAssessed;
using vantrel::ReaVecV;

namespace {

// Index of the layer CalcTD has just recovered: bottom face first, then top,
// the worse of the two; 0 for a mode outside 1..6.
double layerIndex(lamina1& lam, int layer, int mode)
{
    if (mode < 1 || mode > 6) return 0.0;
    laminate_model::LaRC04 ply(laminate_model::plyData(lam, layer), lam.shearStressesLam[0],
                               lam.shearStressesLam[1]);
    ReaVecV& bas = lam.stressesBasLam;
    ReaVecV& top = lam.stressesTopLam;
    double bottom[6], upper[6];
    ply.face(bas[0], bas[1], bas[2], bottom);
    ply.face(top[0], top[1], top[2], upper);
    return upper[mode - 1] > bottom[mode - 1] ? upper[mode - 1] : bottom[mode - 1];
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
