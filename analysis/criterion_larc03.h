// The constants of the LaRC03 criteria for one ply, for callers that show or
// check them: the in-situ strengths and the fracture and kinking angles.
#ifndef LAMINATE_ANALYSIS_CRITERION_LARC03_H
#define LAMINATE_ANALYSIS_CRITERION_LARC03_H

#include "laminate/analysis/criterion.h"

namespace laminate::analysis {

struct Larc03Constants {
    bool thin;          // thinner than 0.7 mm (and not a unidirectional ply on its own)
    double Lambda22;    // 2 (1/E2 - nu12^2/E1)
    double YtIs, SLis;  // in-situ transverse tensile and in-plane shear strengths
    double g;           // toughness ratio of the matrix tension criterion
    double ST;          // transverse shear strength from Yc and alpha0
    double etaT, etaL;  // friction coefficients, transverse and longitudinal
    double phiC;        // misalignment angle at failure under pure compression Xc, radians
};

// ok, or nostrength / nodata with the reason the ply cannot be rated.
Verdict larc03Constants(CriterionPly const& ply, Larc03Constants& out);

}  // namespace laminate::analysis

#endif
