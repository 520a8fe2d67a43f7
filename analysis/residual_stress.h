// Thermal and moisture residual stresses of a prepared laminate.
//
// Under a temperature change dT (from the stress-free temperature) and a
// moisture change dM each layer would expand freely by
// e_free = alpha_xy dT + beta_xy dM, with alpha_xy and beta_xy its layer-axes
// coefficients (alpha1 alpha2, beta1 beta2; no shear) turned into laminate
// axes by the layer's own T (layerFreeStrains).  Bonded, the layers cannot:
//   N_T = sum_k Qbar_k e_free,k (z1 - z0),
//   M_T = 1/2 sum_k Qbar_k e_free,k (z1^2 - z0^2),
// and the free laminate takes the mid-plane strains and curvatures
// (e0, kappa) = [[A B][B D]]^-1 (N_T, M_T).  The residual stress at height z
// of layer k is then
//   sigma_res = Qbar_k (e0 + z kappa - e_free,k)     (laminate axes),
// turned into layer axes by T_k.  Every quantity is linear in (dT, dM), so
// the object keeps each one per unit dT and per unit dM and scales on
// demand.  Mechanical and residual stresses add: total = mechanical +
// residual.
//
// Layers are counted from 1; layer 1 lies at the lowest z, its "top" face
// at the lower z (the faces named as LaminateAnalysis names them).
//
// Misuse: nothing here ends the process.  An analysis that is not prepared
// or a singular [[A B][B D]] gives status() not Ok and zero stresses;
// non-finite coefficients pass NaN through.  Asking for a change whose
// coefficients were not given (hasThermal() or hasMoisture() false) gives
// no contribution from it: the caller refuses such a load first.
#ifndef LAMINATE_ANALYSIS_RESIDUAL_STRESS_H
#define LAMINATE_ANALYSIS_RESIDUAL_STRESS_H

#include <vector>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/laminate_analysis.h"

namespace laminate::analysis {

class ResidualStress {
public:
    enum Status { Ok = 0, NotPrepared, Singular };

    ResidualStress() = default;
    // alpha, beta: layers() pairs (layer axes, layer 1 first), or null when
    // not known.  Not kept.
    ResidualStress(LaminateAnalysis const& an, double const* alpha, double const* beta);

    Status status() const { return status_; }
    bool hasThermal() const { return hasAlpha_; }
    bool hasMoisture() const { return hasBeta_; }
    int layers() const { return static_cast<int>(faces_.size() / 2); }

    // The thermal and moisture resultants (N1 N2 N12 M1 M2 M12) of dT, dM.
    void resultants(double dT, double dM, double out[6]) const;
    // The free laminate's mid-plane strains and curvatures
    // (ex ey gxy kx ky kxy) under dT, dM.
    void freeStrains(double dT, double dM, double out[6]) const;

    // The residual stresses of a face of layer (1..layers()) under dT, dM:
    // laminate axes (sx sy txy) and layer axes.
    void stressLaminateAxes(int layer, Face face, double dT, double dM, double out[3]) const;
    PlyStress stress(int layer, Face face, double dT, double dM) const
    {
        FaceUnit const& f = faces_[index(layer, face)];
        return PlyStress{f.ply[0] * dT + f.ply[3] * dM, f.ply[1] * dT + f.ply[4] * dM,
                         f.ply[2] * dT + f.ply[5] * dM};
    }

private:
    // One face's stresses per unit dT (0..2) and per unit dM (3..5).
    struct FaceUnit {
        double lam[6];
        double ply[6];
    };
    static int index(int layer, Face face) { return 2 * (layer - 1) + (face == Face::Bottom); }

    Status status_ = NotPrepared;
    bool hasAlpha_ = false, hasBeta_ = false;
    double resultant_[2][6] = {};  // per unit dT, per unit dM
    double free_[2][6] = {};
    std::vector<FaceUnit> faces_;  // layer 1 top, layer 1 bottom, layer 2 top ...
};

}  // namespace laminate::analysis

#endif
