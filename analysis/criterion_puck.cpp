// Puck's action-plane criterion in plane stress (Puck and Schuermann 2002;
// VDI 2014 Part 3), with the stress exposure f as index.
//
// Fibre fracture, the simple form: f = s1/Xt (s1 >= 0) or -s1/Xc.
// Inter-fibre fracture, S = S12 (R perpendicular-parallel):
//   mode A (s2 >= 0):
//     f = sqrt((t12/S)^2 + (1 - pT Yt/S)^2 (s2/Yt)^2) + pT s2/S
//   mode B (s2 < 0, |s2| tau21c <= RA |t12|):
//     f = (sqrt(t12^2 + (pC s2)^2) + pC s2) / S
//   mode C (s2 < 0 otherwise):
//     f = ((t12 / (2 (1 + pPC) S))^2 + (s2/Yc)^2) Yc / (-s2)
// with RA = S/(2 pC) (sqrt(1 + 2 pC Yc/S) - 1), pPC = pC RA/S and
// tau21c = S sqrt(1 + 2 pPC): the perpendicular-perpendicular inclination of
// the plane form follows from pC so that modes B and C meet at (-RA, tau21c).
// The fracture plane lies at theta_fp = 0 in modes A and B and at
//   cos theta_fp = sqrt((1/(2 (1 + pPC))) ((RA/S)^2 (t12/s2)^2 + 1))
// in mode C.
//
// Weakening of inter-fibre fracture by s1 (parameter weakening = 1, off by
// default): the inter-fibre exposure is divided by eta, 1 while the fibre
// exposure at the inter-fibre failure point stays below s, then falling on
// the ellipse ((x - s)/a)^2 + eta^2 = 1, a = (1 - s)/sqrt(1 - m^2), to m at
// x = 1.
//
// Along a load path each mode is solved in closed form between the points at
// which s1 or s2 changes sign or the path crosses the mode B / mode C
// boundary: each mode's condition f >= 1 is a quadratic in the stresses
// there.  With weakening, f - eta is convex on each such piece (f convex,
// eta concave) and is bracketed by the piece's ends and refined with TOMS 748.
#include "laminate/analysis/criterion_puck.h"

#include <algorithm>
#include <cmath>

#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

const double kPi = 3.14159265358979323846;

char const* const kModes[] = {"FF-t", "FF-c", "IFF-A", "IFF-B", "IFF-C", nullptr};
char const* const kExtras[] = {"theta_fp", nullptr};
CriterionParam const kParams[] = {
    {"weakening", 0.0, 0.0, 1.0}, {"s", 0.5, 0.0, 0.99}, {"m", 0.5, 0.0, 0.99}};

enum { kModeFFt, kModeFFc, kModeA, kModeB, kModeC };
// kQ: the quadratics of modes A, B and C (see iffQuad).
enum { kXt, kXc, kYt, kYc, kS, kPT, kPC, kRA, kPPC, kTau21c, kWeak, kWs, kWa, kAquad, kQ };

// Inclination defaults by fibre kind (Puck, Kopp and Knops 2002; VDI 2014).
bool defaultInclinations(FibreKind kind, double& pT, double& pC)
{
    switch (kind) {
        case FibreKind::Carbon:
            pT = 0.35;
            pC = 0.30;
            return true;
        case FibreKind::Glass:
            pT = 0.30;
            pC = 0.25;
            return true;
        case FibreKind::Other: break;
    }
    return false;
}

}  // namespace

bool puckConstants(CriterionPly const& ply, PuckConstants& out)
{
    if (!ply.has(kGivenYc | kGivenS12)) return false;
    double pT, pC;
    bool const defaults = defaultInclinations(ply.fibre, pT, pC);
    if (ply.has(kGivenPParT))
        pT = ply.pParT;
    else if (!defaults)
        return false;
    if (ply.has(kGivenPParC))
        pC = ply.pParC;
    else if (!defaults)
        return false;
    double const S = ply.S12, Yc = ply.Yc;
    out.pParT = pT;
    out.pParC = pC;
    // RA in the form without cancellation: S/(2p) (sqrt(1 + x) - 1) with
    // x = 2 p Yc/S equals Yc / (sqrt(1 + x) + 1), which also holds at p = 0.
    out.RA = Yc / (std::sqrt(1.0 + 2.0 * pC * Yc / S) + 1.0);
    out.pPerpC = pC * out.RA / S;
    out.tau21c = S * std::sqrt(1.0 + 2.0 * out.pPerpC);
    return true;
}

namespace {

// Each mode's condition f >= 1 as a quadratic reaching its level:
//   A: (t12/S)^2 + ((1 - pT Yt/S)^2/Yt^2 - (pT/S)^2) s2^2 + 2 pT s2/S >= 1
//      (squared: f = 1 where 1 - pT s2/S >= 0, which holds before f reaches 1)
//   B: (t12/S)^2 + 2 pC s2/S >= 1 (squared; S - pC s2 > 0 for s2 < 0)
//   C: (t12/(2 (1 + pPC) S))^2 + (s2/Yc)^2 + s2/Yc >= 0 (times -s2/Yc > 0)
Quad iffQuad(double const* k, int mode)
{
    double const S = k[kS], S2 = 1.0 / (S * S);
    switch (mode) {
        case kModeA: {
            double const a = k[kPT] / S;
            return Quad{0, k[kAquad] - a * a, S2, 0, 0, 2.0 * a, 0, 1};
        }
        case kModeB: return Quad{0, 0, S2, 0, 0, 2.0 * k[kPC] / S, 0, 1};
        default: {
            double const d = 2.0 * (1.0 + k[kPPC]) * S;
            return Quad{0, 1.0 / (k[kYc] * k[kYc]), 1.0 / (d * d), 0, 0, 1.0 / k[kYc], 0, 0};
        }
    }
}

Verdict prepareCriterion(CriterionPly const& ply, double const* params, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    PuckConstants c;
    if (!puckConstants(ply, c)) return Verdict::NoData;
    if (params[0] != 0.0 && params[0] != 1.0) return Verdict::BadParameter;
    double* k = out.k;
    k[kXt] = ply.Xt;
    k[kXc] = ply.Xc;
    k[kYt] = ply.Yt;
    k[kYc] = ply.Yc;
    k[kS] = ply.S12;
    k[kPT] = c.pParT;
    k[kPC] = c.pParC;
    k[kRA] = c.RA;
    k[kPPC] = c.pPerpC;
    k[kTau21c] = c.tau21c;
    k[kWeak] = params[0];
    k[kWs] = params[1];
    k[kWa] = (1.0 - params[1]) / std::sqrt(1.0 - params[2] * params[2]);
    double const lead = 1.0 - c.pParT * ply.Yt / ply.S12;
    k[kAquad] = lead * lead / (ply.Yt * ply.Yt);
    for (int mode : {kModeA, kModeB, kModeC})
        storeQuad(k + kQ + 8 * (mode - kModeA), iffQuad(k, mode));
    return Verdict::Ok;
}

// The inter-fibre mode that holds at s.
int iffMode(double const* k, PlyStress const& s)
{
    if (s.s2 >= 0.0) return kModeA;
    return k[kRA] * std::fabs(s.t12) >= k[kTau21c] * -s.s2 ? kModeB : kModeC;
}

double fibreExposure(double const* k, PlyStress const& s)
{
    return s.s1 >= 0.0 ? s.s1 / k[kXt] : -s.s1 / k[kXc];
}

double iffExposure(double const* k, PlyStress const& s, int mode)
{
    double const S = k[kS], t = s.t12, s2 = s.s2;
    switch (mode) {
        case kModeA: {
            double const a = t / S;
            return std::sqrt(a * a + k[kAquad] * s2 * s2) + k[kPT] * s2 / S;
        }
        case kModeB: {
            double const ps = k[kPC] * s2;
            return (std::sqrt(t * t + ps * ps) + ps) / S;
        }
        default: {
            double const a = t / (2.0 * (1.0 + k[kPPC]) * S), b = s2 / k[kYc];
            return (a * a + b * b) / -b;
        }
    }
}

// Fracture-plane angle in degrees.
double fractureAngle(double const* k, PlyStress const& s, int mode)
{
    if (mode != kModeC) return 0.0;
    double const r = k[kRA] / k[kS] * (s.t12 / s.s2);
    double const c2 = (r * r + 1.0) / (2.0 * (1.0 + k[kPPC]));
    return std::acos(std::sqrt(std::min(1.0, c2))) * (180.0 / kPi);
}

// The weakening factor on the ellipse at fibre exposure x.
double ellipse(double const* k, double x)
{
    if (x <= k[kWs]) return 1.0;
    double const u = (x - k[kWs]) / k[kWa];
    return std::sqrt(std::max(0.0, 1.0 - u * u));
}

// The weakening factor of a state: the ellipse's value at the fibre
// exposure of the point where the state's ray meets inter-fibre fracture.
double weakening(double const* k, double fFF, double fIFF)
{
    if (k[kWeak] == 0.0 || fFF <= 0.0 || fIFF <= 0.0 || fFF / fIFF <= k[kWs]) return 1.0;
    double const c = fIFF / fFF, a = k[kWa], s = k[kWs];
    double const root = std::sqrt(std::max(0.0, c * c * (a * a - s * s) + 1.0));
    return c * (a * root + s) / ((c * a) * (c * a) + 1.0);
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    double const* k = p.k;
    double const fFF = fibreExposure(k, s);
    int const mode = iffMode(k, s);
    double fIFF = iffExposure(k, s, mode);
    fIFF /= weakening(k, fFF, fIFF);
    Assessment a{Verdict::Ok, fIFF, mode, {fractureAngle(k, s, mode), 0.0}, 1u};
    if (fFF > fIFF) {
        a.index = fFF;
        a.mode = s.s1 >= 0.0 ? kModeFFt : kModeFFc;
    }
    return a;
}

Quad fibreQuad(double const* k, PlyStress const& s)
{
    return s.s1 >= 0.0 ? linear(1.0 / k[kXt], 0.0, 0.0) : linear(-1.0 / k[kXc], 0.0, 0.0);
}

// The points where the inter-fibre mode may change.
void addBreaks(double const* k, PlyStress const& res, PlyStress const& mech, Breaks& b)
{
    b.add(res.s2, mech.s2);
    // The mode B / mode C boundary RA |t12| = tau21c (-s2), for either sign
    // of t12.
    double const ra = k[kRA], tc = k[kTau21c];
    b.add(ra * res.t12 + tc * res.s2, ra * mech.t12 + tc * mech.s2);
    b.add(ra * res.t12 - tc * res.s2, ra * mech.t12 - tc * mech.s2);
}

Rating rateWeakened(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Breaks b;
    addBreaks(k, res, mech, b);
    b.add(res.s1, mech.s1);
    // Where the fibre exposure passes s, in tension or compression.
    b.add(res.s1 - k[kWs] * k[kXt], mech.s1);
    b.add(res.s1 + k[kWs] * k[kXc], mech.s1);
    b.finish();
    Assessment const start = assessState(p, res);
    if (start.index >= 1.0) return rating(Crossing{0.0, start.mode});
    double const ratio = stressRatio(mech, k[kXt], k[kXc], k[kYt], k[kYc], k[kS]);
    if (ratio == 0.0) return rating(Crossing{kInf, -1});
    double const step = 1.0 / ratio;
    double const far = 1e6 * (1.0 + stressRatio(res, k[kXt], k[kXc], k[kYt], k[kYc], k[kS])) * step;
    for (int i = 0; i < b.pieces(); i++) {
        double const lo = b.lo(i), hi = b.hi(i);
        PlyStress const in = along(res, mech, b.inside(i));
        int const mode = iffMode(k, in);
        double const rFF = quadCrossing(fibreQuad(k, in), res, mech, lo, hi);
        auto excess = [k, &res, &mech, mode](double r) {
            PlyStress const s = along(res, mech, r);
            return iffExposure(k, s, mode) - ellipse(k, fibreExposure(k, s)) + 1.0;
        };
        double const top = std::min(hi, rFF);
        double const rIFF =
            numericCrossing(IndexAlong(excess), lo, top, excess(lo), step, far, false);
        if (rIFF < kInf && rIFF <= rFF) return rating(Crossing{rIFF, mode});
        if (rFF < kInf) return rating(Crossing{rFF, in.s1 >= 0.0 ? kModeFFt : kModeFFc});
    }
    return rating(Crossing{kInf, -1});
}

Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    if (k[kWeak] != 0.0) return rateWeakened(p, res, mech);
    // Fibre fracture changes branch where s1 changes sign; inter-fibre
    // fracture where s2 does and at the mode B / mode C boundary.
    Breaks bf, bi;
    bf.add(res.s1, mech.s1);
    bf.finish();
    addBreaks(k, res, mech, bi);
    bi.finish();
    Crossing const f = family(res, mech, bf, kInf, [k](PlyStress const& s, int& mode) {
        mode = s.s1 >= 0.0 ? kModeFFt : kModeFFc;
        return fibreQuad(k, s);
    });
    Crossing const i = family(res, mech, bi, f.r, [k](PlyStress const& s, int& mode) {
        mode = iffMode(k, s);
        return loadQuad(k + kQ + 8 * (mode - kModeA));
    });
    return rating(i.r < f.r ? i : f);
}

}  // namespace

extern CriterionInfo const kPuck = {"puck", kModes,           kExtras,     kParams,
                                    3,      prepareCriterion, assessState, ratePath, nullptr};

}  // namespace laminate::analysis
