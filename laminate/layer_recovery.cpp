#include "laminate/laminate/layer_recovery.h"

namespace laminate_model {

namespace {

// One face at height z: laminate-axes strains and stresses, then both turned
// into layer axes.  T turns stresses; applied to strains it needs tensor
// shear, so the shear strain is halved around the rotation and doubled back
// (the laminate-axes vector keeps its engineering shear).
void face(double const g[8], LayerFrame const& f, double z, double* strains,
          double* strainsLam, double* stresses, double* stressesLam)
{
    for (int i = 0; i < 3; i++) {
        strains[i] = g[i] + z * g[i + 3];
    }
    product<3>(f.Qbar, strains, stresses);
    product<3>(f.T, stresses, stressesLam);
    strains[2] *= 0.5;
    product<3>(f.T, strains, strainsLam);
    strainsLam[2] *= 2.0;
    strains[2] *= 2.0;
}

}  // namespace

void recoverLayer(double const g[8], LayerFrame const& f, LayerState& out)
{
    face(g, f, f.zTop, out.strainsTop, out.strainsTopLam, out.stressesTop, out.stressesTopLam);
    face(g, f, f.zBas, out.strainsBas, out.strainsBasLam, out.stressesBas, out.stressesBasLam);

    double const* const shear = g + 6;
    product<2>(f.Qst, shear, out.shearStressesLam);
    out.shearStrainsLam[0] = shear[0] * f.c + shear[1] * f.s;
    out.shearStrainsLam[1] = shear[1] * f.c - shear[0] * f.s;

    // The strain field is linear through the layer, so the mean of the two
    // faces is the mid-thickness value.
    for (int i = 0; i < 3; i++) {
        out.stressesLam[i] = 0.5 * (out.stressesTopLam[i] + out.stressesBasLam[i]);
        out.strainsLam[i] = 0.5 * (out.strainsTopLam[i] + out.strainsBasLam[i]);
    }
}

}  // namespace laminate_model
