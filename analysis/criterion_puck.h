// The constants of Puck's plane-stress action-plane criterion for one ply,
// for callers that show or check them.
#ifndef LAMINATE_ANALYSIS_CRITERION_PUCK_H
#define LAMINATE_ANALYSIS_CRITERION_PUCK_H

#include "laminate/analysis/criterion.h"

namespace laminate::analysis {

struct PuckConstants {
    double pParT, pParC;  // inclinations p(+) and p(-) perpendicular-parallel, as used
    double RA;            // fracture resistance of the action plane against transverse shear
    double pPerpC;        // p(-) perpendicular-perpendicular that joins modes B and C
    double tau21c;        // shear stress at the mode B / mode C boundary
};

// False when the ply lacks Yc or S12, or the inclinations (neither given
// nor defaulted by the fibre kind).
bool puckConstants(CriterionPly const& ply, PuckConstants& out);

}  // namespace laminate::analysis

#endif
