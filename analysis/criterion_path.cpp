#include "laminate/analysis/criterion_path.h"

#include <algorithm>

namespace analysis {
namespace criterion_path {

double stressRatio(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S)
{
    double const r1 = s.s1 >= 0.0 ? s.s1 / Xt : -s.s1 / Xc;
    double const r2 = s.s2 >= 0.0 ? s.s2 / Yt : -s.s2 / Yc;
    return std::max(std::max(r1, r2), std::fabs(s.t12) / S);
}

int dominantStress(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S)
{
    double const r[3] = {s.s1 >= 0.0 ? s.s1 / Xt : -s.s1 / Xc, s.s2 >= 0.0 ? s.s2 / Yt : -s.s2 / Yc,
                         std::fabs(s.t12) / S};
    int const word[3] = {s.s1 >= 0.0 ? 0 : 1, s.s2 >= 0.0 ? 2 : 3, 4};
    int k = 0;
    for (int i = 1; i < 3; i++)
        if (r[i] > r[k]) k = i;
    return word[k];
}

}  // namespace criterion_path
}  // namespace analysis
