// Plies the criterion tests share.
#ifndef LAMINATE_TESTS_ANALYSIS_CRITERION_PLIES_H
#define LAMINATE_TESTS_ANALYSIS_CRITERION_PLIES_H

#include "laminate/analysis/criterion.h"

namespace criterion_plies {

// A carbon/epoxy ply in N-mm-MPa with every strength and both toughnesses
// given, 0.125 thick.
inline laminate::analysis::CriterionPly carbon()
{
    laminate::analysis::CriterionPly p;
    p.E1 = 161000;
    p.E2 = 11400;
    p.nu12 = 0.32;
    p.G12 = 5170;
    p.set(laminate::analysis::kGivenXt, 2560);
    p.set(laminate::analysis::kGivenXc, 1590);
    p.set(laminate::analysis::kGivenYt, 73);
    p.set(laminate::analysis::kGivenYc, 185);
    p.set(laminate::analysis::kGivenS12, 90);
    p.set(laminate::analysis::kGivenGIc, 0.258);
    p.set(laminate::analysis::kGivenGIIc, 1.08);
    p.t = 0.125;
    return p;
}

}  // namespace criterion_plies

#endif
