// What the failure criteria of lamina1 share: the not-assessed marker, its
// test, and the walk over all layers.  Internal to laminate/.
#ifndef LAMINATE_LAMINATE_CRITERIA_H
#define LAMINATE_LAMINATE_CRITERIA_H

#include "laminate/laminate/lamina1.h"

namespace criteria {

// Marks a layer that is not assessed; the results command shows it as 0.
const double kNotAssessed = 1000000.0;

// After CalcTD of the layer: unflagged layers and layers carrying no stress
// at all (mid-thickness in-plane and transverse shear) are not assessed.
inline bool notAssessed(lamina1& lam, int layer)
{
    vantrel::ReaVecV& mid = lam.stressesLam;
    vantrel::ReaVecV& shear = lam.shearStressesLam;
    return lam.layerFlag[layer - 1] == 0 ||
           (mid[0] == 0.0 && mid[1] == 0.0 && mid[2] == 0.0 && shear[0] == 0.0 &&
            shear[1] == 0.0);
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
