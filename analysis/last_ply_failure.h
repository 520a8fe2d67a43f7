// Last-ply failure: the load of a laminate followed upward through the
// failures of its plies, each failed ply degraded and the laminate solved
// again, until it can carry no more.
//
// Prepared once from a laminate's LaminateAnalysis and LaminateRating (the
// criteria of its plies) and the degradation rule; run() then follows one
// load case under one criterion of kCriteria, with the residual stresses of
// dT and dM held.  Every re-solve is the analysis' own: the degraded
// laminate is a LaminateAnalysis prepared with per-layer stiffness factors
// (prepareScaled) and its rating the same criteria remapped to it.
//
// The rule, step by step, from the factor 0:
//  - every ply that has not failed in a fibre mode is rated at its two faces
//    (the smaller reserve factor); a ply failed in a matrix mode is rated on
//    its fibre stress alone (the matrix stresses of a cracked ply are taken
//    as 0), and only a fibre mode counts for it there;
//  - the smallest reserve factor r gives the next failure, at the factor
//    max(r, factor of the previous event): a ply that the last degradation
//    overloads fails at once.  Every ply whose reserve factor lies within
//    1e-9 (relative) of r fails in the same step (mirror plies of a
//    symmetric laminate), one event each;
//  - a fibre mode (a mode word beginning "FF" or "fibre") breaks the ply:
//    E1, E2, G12 take the fibre factors; a matrix mode (every other word)
//    cracks it: E2, G12 take the matrix factors.  A cracked ply that then
//    breaks takes the smaller of the two factors of each modulus.  nu12 is
//    scaled with E1.  The criteria keep each ply's intact constants;
//  - it ends when every ply is broken, or when the stiffness with every
//    degraded modulus taken as 0 no longer carries the loads (a singular
//    stiffness: the load depends on what the factors leave), with the event
//    that did it; or when no ply fails any further.
// Each ply changes at most twice, so there are at most 2 layers events.
//
// Layers are counted from 1; layer 1 lies at the lowest z and its "top"
// face is its face at the lower z.
//
// Misuse: nothing here ends the process, no factor is NaN or negative.  A
// face that cannot be rated ends the run with its verdict (End::Unrated).
#ifndef LAMINATE_ANALYSIS_LAST_PLY_FAILURE_H
#define LAMINATE_ANALYSIS_LAST_PLY_FAILURE_H

#include <vector>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/analysis/laminate_rating.h"

namespace laminate::analysis {

// The factors on a ply's moduli when it fails.  Fibre failure: E1 in
// [0, 1), E2 and G12 in [0, 1] (1 leaves the modulus as it is); matrix
// failure: E2 and G12 in [0, 1).  A factor of 0 (or below about 1e-12)
// removes the modulus.
struct Degradation {
    double fibreE1 = 1e-6, fibreE2 = 1e-6, fibreG12 = 1e-6;
    double matrixE2 = 1e-6, matrixG12 = 1e-6;

    bool valid() const;
};

// True for the mode words of fibre failure: those beginning "FF" or "fibre".
bool fibreMode(char const* word);

// One ply failing.  mode: the position in the criterion's mode words;
// strains: the 8 generalized strains of the laminate at factor (the loads
// times factor, with the free strains of dT and dM), from the stiffness in
// force just before the event.
struct LpfEvent {
    double factor;
    int ply;
    Face face;
    int mode;
    bool fibre;  // a fibre mode: the ply is broken
    double strains[8];
};

struct LpfResult {
    enum class End {
        Unloaded,  // no ply ever fails: no event, last = +inf
        Broken,    // every ply failed in a fibre mode
        Singular,  // the stiffness left no longer carries the loads
        Carried,   // after some events no ply fails any further: last = +inf
        Unrated    // a face could not be rated: verdict, ply and face say
                   // which; events holds those before it, last = 0
    };
    std::vector<LpfEvent> events;  // in load order
    End end = End::Unloaded;
    double last = 0;  // the factor of the last event (see End)
    Verdict verdict = Verdict::Never;  // Unrated: why
    int ply = 0;                       // Unrated: where
    Face face = Face::None;
};

class LastPlyFailure {
public:
    enum Status { Ok = 0, NotPrepared, BadDegradation };

    LastPlyFailure() = default;
    // rating: made from an with the plies' criteria; alpha, beta: the
    // expansion coefficients it was made with (or null), copied.
    LastPlyFailure(LaminateAnalysis const& an, LaminateRating const& rating, double const* alpha,
                   double const* beta, Degradation const& degradation);

    Status status() const { return status_; }
    int layers() const { return layers_; }

    // Follows load under criterion (a position in kCriteria; out of range is
    // the caller's to avoid) into out.  Uses
    // this object's working copies: one run at a time per object; reusing
    // the object and out allocates nothing for load cases without dT and dM.
    // A status() that is not Ok gives End::Unrated, verdict nodata.
    void run(int criterion, RatingLoad const& load, LpfResult& out);

private:
    // Bits of a ply's state: failed in a matrix mode, in a fibre mode.
    enum PlyState : unsigned char { Intact = 0, Cracked = 1, Broken = 2 };
    struct PlyRating {
        Rating rating;
        Face face;
    };

    PlyRating ratePly(LaminateRating const& r, int criterion, int layer,
                      RatingLoad const& load) const;
    // Prepares current_, discounted_ and work_ from the plies' states.
    bool degrade(RatingLoad const& load);

    Status status_ = NotPrepared;
    int layers_ = 0;
    Degradation degradation_;
    LaminateAnalysis const* intact_ = nullptr;      // not owned
    LaminateRating const* intactRating_ = nullptr;  // not owned
    std::vector<double> alpha_, beta_;
    // Working state of run().
    std::vector<unsigned char> state_;  // PlyState bits per layer
    std::vector<double> factors_, zeroed_;  // 3 per layer: E1 E2 G12
    std::vector<PlyRating> ratings_;
    LaminateAnalysis current_, discounted_;
    LaminateRating work_;
};

}  // namespace laminate::analysis

#endif
