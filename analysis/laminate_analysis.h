// Whole-laminate analysis: prepare once from a material, then evaluate load
// cases in one pass each.
//
// A LaminateAnalysis holds everything of a laminate that does not depend on
// the loads: the inverse of the 8 x 8 stiffness, and per layer the in-plane
// stiffness, the stress transformation, the transverse shear matrix, the
// angle's cosine and sine and the z of its faces.  evaluate() then gives, for
// every layer, every quantity the per-layer operations of lamina1 give (the
// same numbers, bit for bit, for the same loads), and firstPlyFailure() the
// load factor at which the first ply fails.
//
// Layers are counted from 1; layer 1 lies at the lowest z.  A layer's "top"
// face is its face nearer layer 1 (lower z), its "bottom" face the other one
// (the faces are named as the layer-axes results name them).  Loads are the
// 8 generalized resultants N1 N2 N12 M1 M2 M12 Q1 Q2, in the record's units.
//
// Misuse: evaluating an object whose status() is not Ok returns zeros and a
// "never fails" answer; nothing here ends the process.  A singular stiffness
// is refused by prepare(), never inverted.  Loads whose stresses overflow give
// a first-ply failure of outcome Overflow; evaluate() then passes the
// infinities and NaN through as the model does.
#ifndef LAMINATE_ANALYSIS_LAMINATE_ANALYSIS_H
#define LAMINATE_ANALYSIS_LAMINATE_ANALYSIS_H

#include <vector>

#include "laminate/laminate/lamina1.h"
#include "laminate/laminate/layer_recovery.h"
#include "laminate/laminate/ply_criteria.h"
#include "laminate/linalg/matriu.h"

namespace laminate::analysis {

// Marks a criterion value of a layer that is not assessed (failure flag 0, or
// no stress at all), as lamina1's criteria do.
const double kNotAssessed = laminate_model::kNotAssessed;

// Everything one layer gives under one load case.
struct PlyResult {
    // Strains and stresses at the two faces (laminate and layer axes), at
    // mid-thickness (layer axes) and the transverse shear values.
    laminate_model::LayerState state;
    double tsaiWu;        // complete Tsai-Wu index, worse face; or kNotAssessed
    double tsaiWuSimple;  // simple Tsai-Wu load factor in [0, 200]; or -1
    double larc04[6];     // LaRC04 indices of modes 1..6, worse face; or kNotAssessed
    double hashinMatrix;  // Hashin matrix index, worse face; or kNotAssessed
    double hashinFibre;   // Hashin fibre index, worse face; or kNotAssessed
};

struct Evaluation {
    double strains[8];  // ex ey gxy (z = 0), kx ky kxy, transverse shear gxz gyz
    std::vector<PlyResult> plies;  // layer 1 first
};

enum class Criterion { TsaiWu, Hashin, LaRC04 };
enum class Face { None, Top, Bottom };

// How a first-ply-failure search ended.
enum class Outcome {
    Fails,      // an index reaches 1 at factor (finite, >= 0), at ply, face, mode
    Never,      // no index ever reaches 1: factor +inf, ply 0, Face::None, mode 0
    Undefined,  // no index that is a number reaches 1, but an index is NaN
                // wherever its mode applies, so "never" cannot be said: factor
                // +inf, ply, face and mode name that index (the first found);
                // or, with ply 0, a LaRC04 search past its budget of intervals
    Overflow    // the stresses of the load case, or the factor itself, lie
                // beyond the largest double: factor +inf, ply 0, Face::None
};

// The first-ply failure of a load case under one criterion: the smallest load
// factor f >= 0 at which f * loads brings an assessed ply to an index of 1.
//
// One rule for the indices of every criterion, at every factor: an index of
// +inf counts as reaching 1 there (a stress divided by a strength of 0), -inf
// as below 1, and a NaN is not counted (0/0: a strength of 0 and no stress
// that it divides, or the LaRC04 modes 1 and 6 of a thick ply without
// in-plane shear).  An index that is NaN wherever its mode applies is
// reported: as the outcome Undefined when nothing else reaches 1, and by
// nanIgnored when a failure was found above a factor where it applies.
//  - factor = 0: an index is 1 or more already as the factor tends to 0
//    (possible for LaRC04 in thick plies, or an index of +inf), at the ply,
//    face and mode given;
//  - a factor is never NaN and never negative; it is +inf only when the
//    outcome is not Fails.
// mode: 0 for Tsai-Wu; 0 matrix or 1 fibre for Hashin (as lamina1 numbers
// them); 1..6 for LaRC04.
struct PlyFailure {
    double factor;
    int ply;
    Face face;
    int mode;
    Outcome outcome = Outcome::Never;
    bool nanIgnored = false;  // Fails only: an index that is NaN was passed over below factor
};

class LaminateAnalysis {
public:
    enum Status {
        Ok = 0,
        NotPrepared,  // default-constructed
        NoLayers,     // a material of no layers
        Singular      // the laminate stiffness cannot be inverted
    };

    LaminateAnalysis();
    // Prepares from lam at once; see status().
    explicit LaminateAnalysis(lamina1& lam);

    // Prepares from the material's current state.  The stiffness is built as
    // the stress recovery builds it, which rewrites lam's per-call members
    // (K, A, B, D, H, Q_st, Qstar) exactly as any recovery does.  A singular
    // stiffness is detected without ending the process.
    Status prepare(lamina1& lam);
    Status status() const { return status_; }
    // True when lam still holds the record data and layer stiffness this
    // object was prepared from; false after a redefinition.
    bool preparedFrom(lamina1 const& lam) const;

    int layers() const { return static_cast<int>(plies_.size()); }
    double thickness() const { return thickness_; }
    double angle(int layer) const { return plies_[layer - 1].angle; }
    double zLow(int layer) const { return plies_[layer - 1].zTop; }
    double zHigh(int layer) const { return plies_[layer - 1].zBas; }

    // The stiffness the recovery uses: A, B, D (3 x 3), H (2 x 2, of which K
    // carries the diagonal only) and K (8 x 8), and K's inverse.
    vantrel::Matriu const& A() const { return A_; }
    vantrel::Matriu const& B() const { return B_; }
    vantrel::Matriu const& D() const { return D_; }
    vantrel::Matriu const& H() const { return H_; }
    vantrel::Matriu const& K() const { return K_; }
    vantrel::Matriu const& Kinv() const { return Kinv_; }

    // Prepares the laminate of intact with each layer's in-plane moduli
    // scaled: factors holds 3 per layer, layer 1 first (E1, E2, G12, each in
    // [0, 1]; nu12 is scaled with E1, so the ply stiffness stays positive).
    // A layer whose factors are all 1 keeps intact's stiffness bit for bit;
    // the others are transformed by the layer's own T.  A, B, D and K are
    // assembled as prepare() assembles them; H and the transverse shear are
    // intact's.  A stiffness that is singular (a pivot below 1e-12 of
    // intact's diagonal, as moduli scaled by 0 give) is inverted on its
    // range only: status Ok, Kinv() its generalized inverse, and carries()
    // tells whether a load lies in that range.  NotPrepared when intact is
    // not Ok.  Allocates nothing when this object was last prepared from a
    // laminate of as many layers.
    Status prepareScaled(LaminateAnalysis const& intact, double const* factors);
    // True when K Kinv loads gives back loads (to 1e-8 relative, scaled by
    // the stiffness): the laminate carries the load case.  Always true for
    // a stiffness that is not singular.
    bool carries(double const loads[8]) const;

    // The 8 generalized strains of a load case.
    void strains(double const loads[8], double g[8]) const;
    // Every layer under one load case.  out.plies is resized only when its
    // size differs, so reusing out allocates nothing.
    void evaluate(double const loads[8], Evaluation& out) const;
    // First-ply failure under one criterion (see PlyFailure for the rule).
    // Tsai-Wu and Hashin indices are quadratics in the factor, solved in
    // closed form; LaRC04 is searched piece by piece (first_ply_failure.cpp).
    PlyFailure firstPlyFailure(double const loads[8], Criterion c) const;

    struct Ply {
        laminate_model::PlyData data;
        double Qbar[9], T[9], Qst[4];
        double c, s;        // the angle's cosine and sine as the recovery uses them
        double zTop, zBas;  // z of the top (lower) and bottom (upper) faces
        double angle;       // degrees, as recorded

        laminate_model::LayerFrame frame() const
        {
            return laminate_model::LayerFrame{Qbar, T, Qst, c, s, zTop, zBas};
        }
    };
    // Layer k at index k - 1.
    std::vector<Ply> const& plies() const { return plies_; }

private:
    std::vector<double> fingerprint(lamina1 const& lam) const;

    Status status_;
    int rank_ = 8;         // of K; below 8 only after prepareScaled
    double scale_[6] = {};  // prepareScaled: 1 / sqrt of intact's diagonal of K
    std::vector<Ply> plies_;
    double thickness_;
    vantrel::Matriu A_, B_, D_, H_, K_, Kinv_;
    std::vector<double> source_;  // the material state prepared from
};

}  // namespace laminate::analysis

#endif
