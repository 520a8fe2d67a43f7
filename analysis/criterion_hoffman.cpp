// Hoffman (1967): Hill's form with linear terms for unequal tension and
// compression strengths, in plane stress with transverse isotropy
//   s1^2/(Xt Xc) - s1 s2/(Xt Xc) + s2^2/(Yt Yc) + (1/Xt - 1/Xc) s1
//     + (1/Yt - 1/Yc) s2 + (t12/S12)^2 = 1.
// One quadratic everywhere; the mode word names the dominant stress of the
// failure state.
#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};

// F12 = -F11 / 2: Hill's coupling term of a transversely isotropic ply.
Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    return prepareGeneralQuadratic(ply, -0.5, 0.0, out);
}

}  // namespace

extern CriterionInfo const kHoffman = {"hoffman",        kModes,           kNoExtras,
                                       nullptr,          0,                prepareCriterion,
                                       assessGeneralQuadratic, rateGeneralQuadratic, nullptr};

}  // namespace laminate::analysis
