// What the failure criteria of lamina1 share: the not-assessed test of the
// layer CalcTD has just recovered, and the walk over all layers.  Internal to
// laminate/.
#ifndef LAMINATE_LAMINATE_CRITERIA_H
#define LAMINATE_LAMINATE_CRITERIA_H

#include "laminate/laminate/lamina1.h"
#include "laminate/laminate/ply_criteria.h"

namespace criteria {

using laminate_model::kNotAssessed;

// After CalcTD of the layer: unflagged layers and layers carrying no stress
// at all (mid-thickness in-plane and transverse shear) are not assessed.
inline bool notAssessed(lamina1& lam, int layer)
{
    return laminate_model::notAssessed(laminate_model::plyData(lam, layer), lam.stressesLam.data,
                                       lam.shearStressesLam.data);
}

// Recovers every layer in turn and returns the largest layerValue(lam, k);
// kNotAssessed at once for the first layer that is not assessed.
template <class LayerValue>
double worstLayer(lamina1& lam, vantrel::ReaVecV& loads, LayerValue layerValue)
{
    vantrel::ReaVecV value(0);
    value.resize(lam.nlayers, 0.0);
    for (int k = 1; k <= lam.nlayers; k++) {
        lam.CalcTD(k, loads);
        if (notAssessed(lam, k)) return kNotAssessed;
        value[k - 1] = layerValue(lam, k);
    }
    return value.max_val();
}

}  // namespace criteria

#endif
