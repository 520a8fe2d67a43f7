// The catalogue of published ply failure criteria: each one's index at a
// plane ply stress state, its reserve factor along a load path with residual
// stresses held, its mode words, extra outputs and parameters.
//
// One table (kCriteria) lists the criteria; every caller reads it.  A
// criterion is used in three steps, as a decomposition is: prepare() once per
// ply (it checks the ply's data and works out every constant the criterion
// needs), then assess() at a stress state and rate() along a load path, as
// many times as wanted, allocation-free.
//
// Stresses are in ply axes: s1 along the fibres, s2 across them, t12 the
// in-plane shear stress; tension positive.  Strengths are positive
// magnitudes.  Every number is in the ply's own unit system.
//
// Misuse: nothing here ends the process.  A ply that lacks what a criterion
// needs, a parameter out of its range and a non-finite stress each give their
// verdict word; no index, factor or extra output is ever NaN.
#ifndef LAMINATE_ANALYSIS_CRITERION_H
#define LAMINATE_ANALYSIS_CRITERION_H

namespace laminate::analysis {

// A plane stress state in ply axes.
struct PlyStress {
    double s1, s2, t12;
};

// Picks the default Puck inclination parameters.
enum class FibreKind { Carbon, Glass, Other };

// Where a ply sits in its laminate, for the in-situ strengths of LaRC03.
// Unidirectional: a ply on its own (a unidirectional coupon), which keeps the
// measured strengths.
enum class PlySite { Embedded, Outer, Unidirectional };

// The values of a CriterionPly that may be left out; CriterionPly::given
// holds one bit per value given.
enum PlyValue : unsigned {
    kGivenXt = 1u << 0,
    kGivenXc = 1u << 1,
    kGivenYt = 1u << 2,
    kGivenYc = 1u << 3,
    kGivenS12 = 1u << 4,
    kGivenS23 = 1u << 5,
    kGivenE1t = 1u << 6,  // strain allowables
    kGivenE1c = 1u << 7,
    kGivenE2t = 1u << 8,
    kGivenE2c = 1u << 9,
    kGivenG12u = 1u << 10,  // shear strain allowable
    kGivenGIc = 1u << 11,
    kGivenGIIc = 1u << 12,
    kGivenPParT = 1u << 13,  // Puck p(+) perpendicular-parallel
    kGivenPParC = 1u << 14   // Puck p(-) perpendicular-parallel
};
const unsigned kGivenStrengths = kGivenXt | kGivenXc | kGivenYt | kGivenYc | kGivenS12;

// What the criteria read of one ply, independent of how a material is stored.
// A value counts only where its bit in given is set and it is finite and
// positive (the Puck inclinations: finite, 0 to 1); anything else is "not
// given".  The elastic constants, the thickness, the site, the fibre kind,
// alpha0 and mmPerLength are always read as they stand.
struct CriterionPly {
    // Elastic constants: moduli in the stress unit, nu12 the major Poisson's
    // ratio (strain across the fibres under stress along them).
    double E1 = 0, E2 = 0, nu12 = 0, G12 = 0;
    // Strengths: along the fibres in tension and compression, across them,
    // in-plane shear, and transverse (2-3) shear.
    double Xt = 0, Xc = 0, Yt = 0, Yc = 0, S12 = 0, S23 = 0;
    // Strain allowables (engineering shear strain for g12u); one not given
    // is its strength over its modulus: Xt/E1, Xc/E1, Yt/E2, Yc/E2, S12/G12.
    double e1t = 0, e1c = 0, e2t = 0, e2c = 0, g12u = 0;
    // Fracture toughnesses in modes I and II, energy per area (N/mm in
    // N-mm-MPa, J/m^2 in N-m-Pa).
    double GIc = 0, GIIc = 0;
    double t = 0;            // ply thickness, in the length unit
    double mmPerLength = 1;  // millimetres per length unit: 1 (N-mm-MPa), 1000 (N-m-Pa)
    PlySite site = PlySite::Embedded;
    FibreKind fibre = FibreKind::Carbon;
    // Puck inclinations p(+) and p(-) of the perpendicular-parallel fracture
    // envelope; not given, they follow the fibre kind.
    double pParT = 0, pParC = 0;
    double alpha0 = 53;  // fracture-plane angle under transverse compression, degrees (LaRC03)
    unsigned given = 0;  // PlyValue bits

    // Sets a value that may be left out and marks it given.
    void set(PlyValue which, double value);
    // True when every value of mask is given (and usable, see above).
    bool has(unsigned mask) const;
};

// Verdict words.  ok: rated; never: the criterion does not reach 1 along the
// path (RF = +inf); residual: the residual stresses alone reach it (RF = 0);
// nostrength: a strength the criterion needs is not given; nodata: another
// value it needs is missing or out of its range; nonfinite: a stress is not
// finite (or beyond 1e100 in magnitude); badparameter: a criterion parameter
// is out of its range; unassessed: the ply is not to be assessed (failure
// flag 0: a core, a filler), so it never fails and is never refused.
enum class Verdict { Ok, Never, Residual, NoStrength, NoData, NonFinite, BadParameter, Unassessed };
char const* verdictWord(Verdict v);

const int kMaxExtras = 2;

// A criterion at one stress state.  index: the criterion's own value, 1 at
// failure (the quadratic criteria may go below 0 where their linear terms
// dominate); mode: position in the criterion's mode words, -1 unless the
// verdict is ok; extra[i] holds extra output i where bit i of extraValid is
// set, 0 elsewhere.
struct Assessment {
    Verdict verdict;
    double index;
    int mode;
    double extra[kMaxExtras];
    unsigned extraValid;
};

// The reserve factor of one ply face along the path s(RF) = res + RF * mech:
// the smallest RF >= 0 at which the index reaches 1.  verdict ok:
// 0 < rf < inf; never: rf = +inf; residual: rf = 0; any other verdict: rf = 0
// and nothing was rated.  mode: the mode that reaches 1 first (for the
// criteria without modes of their own, the dominant stress of the failure
// state), -1 when none does or nothing was rated.  The index and extra
// outputs at the failure state are assess(p, failureState(res, mech, r)).
struct Rating {
    Verdict verdict;
    double rf;
    int mode;
};

// res + rf * mech; res + mech (the whole load) when rf is +inf.
PlyStress failureState(PlyStress const& res, PlyStress const& mech, Rating const& r);

// Margin of safety under a factor of safety fos > 0: rf / fos - 1.
double marginOfSafety(double rf, double fos);

// A criterion parameter: its name word, default and inclusive range.
struct CriterionParam {
    char const* name;
    double def, min, max;
};
const int kMaxCriterionParams = 4;

// The constants of one ply under one criterion and its parameters; the
// layout of k belongs to the criterion.
struct PreparedCriterion;
const int kPreparedSize = 48;

// One row of the catalogue.
struct CriterionInfo {
    char const* name;              // the criterion's word
    char const* const* modes;      // mode words, NULL-terminated
    char const* const* extras;     // extra output words, NULL-terminated
    CriterionParam const* params;  // nparams entries
    int nparams;
    // Fills out.k from ply and params (nparams values); the verdict is ok,
    // nostrength, nodata or badparameter.
    Verdict (*prepare)(CriterionPly const& ply, double const* params, PreparedCriterion& out);
    // Only called on an ok preparation with finite stresses.
    Assessment (*assess)(PreparedCriterion const& p, PlyStress const& s);
    Rating (*rate)(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech);
    // True only when the index stays below 1 (by a small margin) at every
    // state of the straight segment from a to b; false whenever it cannot
    // tell.  Only called on an ok preparation with finite stresses.  Null
    // for a criterion that has no such bound.
    bool (*below)(PreparedCriterion const& p, PlyStress const& a, PlyStress const& b);
};

struct PreparedCriterion {
    CriterionInfo const* info;  // not owned; a row of kCriteria
    Verdict status;             // ok, or why the ply cannot be rated
    double k[kPreparedSize];
};

// The catalogue, in its interface order, NULL-terminated.
extern CriterionInfo const* const kCriteria[];
// The row named name, or NULL.
CriterionInfo const* findCriterion(char const* name);
// The position of word in a NULL-terminated word list, or -1.
int wordIndex(char const* const* words, char const* word);

// The default parameters of c into params[0 .. c.nparams - 1].
void defaultParams(CriterionInfo const& c, double* params);

// Prepares ply under c with params (NULL: the defaults); see
// PreparedCriterion::status.
Verdict prepare(CriterionInfo const& c, CriterionPly const& ply, double const* params,
                PreparedCriterion& out);
// The criterion at s.  A preparation that is not ok gives its status; a
// non-finite stress gives nonfinite; the index is then 0 and the mode -1.
Assessment assess(PreparedCriterion const& p, PlyStress const& s);
// The reserve factor along res + RF * mech; the same guards as assess().
Rating rate(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech);

}  // namespace laminate::analysis

#endif
