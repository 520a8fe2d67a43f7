// Reserve factors of a laminate's plies under the criteria of the catalogue
// (criterion.h), with the thermal and moisture residual stresses held.
//
// Prepared once from a LaminateAnalysis and one CriterionPly per layer: every
// criterion of kCriteria is prepared for every layer (default parameters),
// each face's map from the 8 load resultants to its layer-axes mechanical
// stresses is worked out, and the residual stresses per unit dT and dM
// (ResidualStress).  Rating a load case then allocates nothing.
//
// For a face with residual stresses res (dT, dM held) and mechanical
// stresses mech (the loads) the reserve factor RF is the smallest factor on
// the loads at which the criterion reaches 1: f(res + RF mech) = 1.  A ply is
// rated by its worse face (the smaller RF); the laminate's first-ply failure
// is the smallest RF of every face of every layer.
//
// Layers are counted from 1; layer 1 lies at the lowest z and its "top" face
// is its face at the lower z.  Criteria are given by their position in
// kCriteria.
//
// Misuse: nothing here ends the process.  A layer or criterion out of range
// is the caller's to avoid (checked only by assertion in debug builds); an
// analysis that is not prepared gives status() not Ok, and rating it answers
// the verdict nodata.  Stresses that are not finite give the verdict
// nonfinite, never NaN.
#ifndef LAMINATE_ANALYSIS_LAMINATE_RATING_H
#define LAMINATE_ANALYSIS_LAMINATE_RATING_H

#include <vector>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/analysis/ply_material.h"
#include "laminate/analysis/residual_stress.h"

namespace laminate::analysis {

// Where layer (1..layers) sits for LaRC03's in-situ strengths: a laminate of
// one layer is a ply on its own (Unidirectional), layer 1 and the last one
// are Outer, every other layer Embedded.
PlySite plySite(int layer, int layers);

// What the criteria read of a ply material, for a ply of thickness t at
// site: the moduli, every strength, strain allowable, toughness and Puck
// inclination the material has (given or by its own defaults), alpha0, the
// fibre kind (aramid and unspecified: Other) and the unit system's length
// unit.
CriterionPly criterionPly(PlyMaterial const& m, double t, PlySite site);

// The same from a layer of a material record: the moduli, the strengths that
// are above 0 (0 means not given in a record) and the thickness.  A record
// holds no fibre kind (Other: Puck has no default inclinations for it), no
// toughness and no strain allowables, and is taken in N-mm-MPa.
CriterionPly criterionPly(laminate_model::PlyData const& d, PlySite site);

// A load case: the 8 resultants N1 N2 N12 M1 M2 M12 Q1 Q2 (the transverse
// shear resultants enter the plane stresses only through the coupled
// stiffness, as in the stress recovery) and the changes of temperature and
// moisture from the stress-free state.
struct RatingLoad {
    double const* loads;  // 8 values, not owned
    double dT, dM;
};

// One face or ply under one criterion.  face: the face rated (the worse one
// of a ply), Face::None when the ply could not be rated at all.  res and
// mech: that face's residual and mechanical stresses, layer axes.
struct FaceRating {
    Rating rating;
    Face face;
    PlyStress res, mech;
};

// The first-ply failure of a laminate under one criterion.
//  verdict ok: 0 < rf < inf at layer ply, face, mode;
//  residual: rf = 0, the residual stresses alone reach 1 at ply, face, mode;
//  never: rf = +inf, no face reaches 1 along the path; ply 0, Face::None,
//    mode -1;
//  nostrength, nodata, nonfinite, badparameter: a face could not be rated and
//    no face fails on residual stresses alone (which no other ply could
//    precede); rf = 0, ply and face name the first such face, mode -1.
struct LaminateFailure {
    Verdict verdict;
    double rf;
    int ply;
    Face face;
    int mode;
};

class LaminateRating {
public:
    enum Status { Ok = 0, NotPrepared, Singular };

    LaminateRating() = default;
    // plies: one per layer, layer 1 first.  alpha, beta: layers() pairs of
    // expansion coefficients (layer axes), or null when not known; not kept.
    LaminateRating(LaminateAnalysis const& an, std::vector<CriterionPly> const& plies,
                   double const* alpha, double const* beta);

    // Follows a change of the laminate's stiffness: the face maps and the
    // residual stresses are worked out again from an, a laminate of the same
    // layers with other moduli (LaminateAnalysis::prepareScaled); each ply
    // keeps its criteria as prepared.  alpha, beta as for the constructor;
    // both null leave the residual stresses as they were (enough for load
    // cases without dT and dM, and allocation-free).  An analysis that is not Ok or of another layer count leaves status()
    // NotPrepared; a residual stress that cannot be formed, Singular.
    Status remap(LaminateAnalysis const& an, double const* alpha, double const* beta);

    Status status() const { return status_; }
    int layers() const { return layers_; }
    ResidualStress const& residual() const { return residual_; }
    CriterionPly const& ply(int layer) const { return plies_[layer - 1]; }
    PreparedCriterion const& prepared(int criterion, int layer) const
    {
        return prepared_[criterion * layers_ + layer - 1];
    }

    // The layer-axes mechanical stresses of a face under loads (8 values).
    PlyStress mechanical(int layer, Face face, double const loads[8]) const;

    // One face; the worse face of a layer (the smaller RF; between equal
    // ones the face whose index at res + mech is the larger, then the top).
    FaceRating rateFace(int criterion, int layer, Face face, RatingLoad const& load) const;
    FaceRating ratePly(int criterion, int layer, RatingLoad const& load) const;

    LaminateFailure firstPlyFailure(int criterion, RatingLoad const& load) const;

    // Prepares criterion again for every layer with params (its nparams
    // values, each within its range: the caller checks them); the other
    // criteria keep theirs.
    void setParams(int criterion, double const* params);

private:
    // Layer-axes stresses of one face per unit of each load: 3 x 8, row-major.
    struct FaceMap {
        double m[24];
    };

    Status status_ = NotPrepared;
    int layers_ = 0;
    std::vector<CriterionPly> plies_;
    std::vector<PreparedCriterion> prepared_;  // criterion-major
    std::vector<unsigned char> assessed_;      // per layer: its failure flag is not 0
    std::vector<FaceMap> maps_;                // layer 1 top, layer 1 bottom, ...
    ResidualStress residual_;
};

// The criteria of kCriteria.
int criterionCount();

// A point of the first-ply-failure envelope under a catalogue criterion:
// the failure load (the reserve factor times the ray's direction) and how
// the ray fails.  x and y are NaN when the verdict is not ok, residual or
// never (a ply that cannot be rated); never read them as a load then.
struct RatedEnvelopePoint {
    double x, y;
    LaminateFailure failure;
};

// The envelope of the mechanical loads in the plane of load components i
// and j (1..8) under criterion, dT and dM held: points rays, ray r at the
// angle 2 pi r / points from the axis of i, each at its reserve factor.  A
// ray that never fails gives infinite coordinates (0 where its direction
// has no component); a laminate that fails on residual stresses alone
// gives the origin.  Returns nothing unless 1 <= i, j <= 8, i != j and
// points > 0.
std::vector<RatedEnvelopePoint> ratedEnvelope(LaminateRating const& rating, int i, int j,
                                              int criterion, int points, double dT, double dM);

}  // namespace laminate::analysis

#endif
