#include "laminate/analysis/criterion.h"

#include <cmath>
#include <cstring>

#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

// One row per criterion, each defined in its own file.
extern CriterionInfo const kMaxStress;
extern CriterionInfo const kMaxStrain;
extern CriterionInfo const kTsaiHill;
extern CriterionInfo const kHoffman;
extern CriterionInfo const kTsaiWu2d;
extern CriterionInfo const kHashin2d;
extern CriterionInfo const kPuck;
extern CriterionInfo const kLarc03;

CriterionInfo const* const kCriteria[] = {&kMaxStress, &kMaxStrain, &kTsaiHill,
                                          &kHoffman,   &kTsaiWu2d,  &kHashin2d,
                                          &kPuck,      &kLarc03,    nullptr};

namespace {

char const* const kVerdictWords[] = {"ok",     "never",     "residual",    "nostrength",
                                     "nodata", "nonfinite", "badparameter", "unassessed"};

// Stresses beyond this magnitude would overflow when squared: they count as
// not finite.
const double kLargestStress = 1e100;

// False for NaN and infinities as well.
bool usable(PlyStress const& s)
{
    return std::fabs(s.s1) <= kLargestStress && std::fabs(s.s2) <= kLargestStress &&
           std::fabs(s.t12) <= kLargestStress;
}

Assessment notAssessed(Verdict v)
{
    return Assessment{v, 0.0, -1, {0.0, 0.0}, 0u};
}

}  // namespace

char const* verdictWord(Verdict v)
{
    return kVerdictWords[static_cast<int>(v)];
}

void CriterionPly::set(PlyValue which, double value)
{
    switch (which) {
        case kGivenXt: Xt = value; break;
        case kGivenXc: Xc = value; break;
        case kGivenYt: Yt = value; break;
        case kGivenYc: Yc = value; break;
        case kGivenS12: S12 = value; break;
        case kGivenS23: S23 = value; break;
        case kGivenE1t: e1t = value; break;
        case kGivenE1c: e1c = value; break;
        case kGivenE2t: e2t = value; break;
        case kGivenE2c: e2c = value; break;
        case kGivenG12u: g12u = value; break;
        case kGivenGIc: GIc = value; break;
        case kGivenGIIc: GIIc = value; break;
        case kGivenPParT: pParT = value; break;
        case kGivenPParC: pParC = value; break;
    }
    given |= which;
}

bool CriterionPly::has(unsigned mask) const
{
    if ((given & mask) != mask) return false;
    double const positive[] = {Xt, Xc, Yt, Yc, S12, S23, e1t, e1c, e2t, e2c, g12u, GIc, GIIc};
    for (int i = 0; i < 13; i++)
        if ((mask & (1u << i)) && !(std::isfinite(positive[i]) && positive[i] > 0.0)) return false;
    if ((mask & kGivenPParT) && !(pParT >= 0.0 && pParT <= 1.0)) return false;
    if ((mask & kGivenPParC) && !(pParC >= 0.0 && pParC <= 1.0)) return false;
    return true;
}

PlyStress failureState(PlyStress const& res, PlyStress const& mech, Rating const& r)
{
    return criterion_path::along(res, mech, r.rf < criterion_path::kInf ? r.rf : 1.0);
}

double marginOfSafety(double rf, double fos)
{
    return rf / fos - 1.0;
}

CriterionInfo const* findCriterion(char const* name)
{
    for (int i = 0; kCriteria[i]; i++)
        if (std::strcmp(kCriteria[i]->name, name) == 0) return kCriteria[i];
    return nullptr;
}

int wordIndex(char const* const* words, char const* word)
{
    for (int i = 0; words[i]; i++)
        if (std::strcmp(words[i], word) == 0) return i;
    return -1;
}

void defaultParams(CriterionInfo const& c, double* params)
{
    for (int i = 0; i < c.nparams; i++) params[i] = c.params[i].def;
}

Verdict prepare(CriterionInfo const& c, CriterionPly const& ply, double const* params,
                PreparedCriterion& out)
{
    out.info = &c;
    for (double& k : out.k) k = 0.0;
    double defaults[kMaxCriterionParams];
    if (!params) {
        defaultParams(c, defaults);
        params = defaults;
    }
    for (int i = 0; i < c.nparams; i++)
        if (!(params[i] >= c.params[i].min && params[i] <= c.params[i].max))
            return out.status = Verdict::BadParameter;
    return out.status = c.prepare(ply, params, out);
}

Assessment assess(PreparedCriterion const& p, PlyStress const& s)
{
    if (p.status != Verdict::Ok) return notAssessed(p.status);
    if (!usable(s)) return notAssessed(Verdict::NonFinite);
    return p.info->assess(p, s);
}

Rating rate(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    Verdict v = p.status;
    if (v == Verdict::Ok && !(usable(res) && usable(mech))) v = Verdict::NonFinite;
    if (v != Verdict::Ok) return Rating{v, 0.0, -1};
    Rating const r = p.info->rate(p, res, mech);
    // The criteria keep every value finite for usable stresses; should a
    // factor come out NaN all the same, it is refused rather than shown.
    if (std::isnan(r.rf)) return Rating{Verdict::NonFinite, 0.0, -1};
    return r;
}

namespace criterion_path {

bool staysBelow(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech,
                double cap)
{
    // The segment runs a little past cap, so that a face whose factor lies
    // within the root finders' tolerance of cap is rated rather than skipped.
    const double kBeyond = 1.0 + 1e-6;
    if (p.status != Verdict::Ok || !p.info->below || !(cap > 0.0 && cap < kInf)) return false;
    if (!(usable(res) && usable(mech))) return false;
    PlyStress const end = along(res, mech, kBeyond * cap);
    return usable(end) && p.info->below(p, res, end);
}

}  // namespace criterion_path

}  // namespace laminate::analysis
