// Tsai-Wu (1971) in plane stress, as published: the strength tensor
//   F1 s1 + F2 s2 + F11 s1^2 + F22 s2^2 + F66 t12^2 + 2 F12 s1 s2 = 1,
// F1 = 1/Xt - 1/Xc, F2 = 1/Yt - 1/Yc, F11 = 1/(Xt Xc), F22 = 1/(Yt Yc),
// F66 = 1/S12^2 and F12 = F12* sqrt(F11 F22).  F12* (parameter f12star) is
// -1/2 unless a biaxial test gives another value (Tsai and Hahn 1980).
//
// The index is the polynomial itself, below 0 where the linear terms
// dominate; the mode word names the dominant stress of the failure state.
// This is not the model's own Tsai-Wu index, which takes the polynomial's
// magnitude and adds the transverse shear terms.
#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};
CriterionParam const kParams[] = {{"f12star", -0.5, -1.0, 1.0}};

// F12 = F12* sqrt(F11 F22), F12* the normalized interaction (default -1/2).
Verdict prepareCriterion(CriterionPly const& ply, double const* params, PreparedCriterion& out)
{
    return prepareGeneralQuadratic(ply, 0.0, params[0], out);
}

}  // namespace

extern CriterionInfo const kTsaiWu2d = {"tsaiwu2d",       kModes,           kNoExtras,
                                        kParams,          1,                prepareCriterion,
                                        assessGeneralQuadratic, rateGeneralQuadratic, nullptr};

}  // namespace laminate::analysis
