// Failure criteria of one ply at one face, on plain numbers: the Tsai-Wu,
// Hashin and LaRC04 indices of a stress state.  The lamina1 criteria and the
// analysis floor both evaluate through these functions, so that their
// answers agree to the last bit.
//
// Faces carry (s1, s2, t12) in layer axes; ta and tb are the layer-axes
// transverse shear stresses (constant through the layer).  Zero strengths
// are not tested here: they pass infinities and NaN through the arithmetic.
#ifndef LAMINATE_LAMINATE_PLY_CRITERIA_H
#define LAMINATE_LAMINATE_PLY_CRITERIA_H

class lamina1;

namespace laminate_model {

// Marks a layer that is not assessed; the results command shows it as 0.
const double kNotAssessed = 1000000.0;

// The LaRC04 fracture plane at 53 degrees (converted with 0.0174532925 rad
// per degree); the values are fixed, not recomputed, so that results are
// reproducible.
const double kCosA0 = 0.6018150239962017;
const double kSinA0 = 0.7986355094111777;
const double kCos2A0 = -0.27563735378490245;
const double kSin2A0 = 0.9612616965210132;
const double kEtaT = 0.2867453834710005;  // -1 / tan(2 a0)

// The record data of one ply that the criteria read.  S23 and S13 are also
// the fracture toughnesses GIc and GIIc of LaRC04.
struct PlyData {
    double E1, E2, nu12, G12;
    double Xc, Yc, Xt, Yt, S12, S23, S13;
    double t;
    int flag;  // 0: not assessed
};

// Layer k counted from 1.
PlyData plyData(lamina1 const& lam, int layer);

// Flag 0, or no stress at all at mid-thickness (in-plane and transverse
// shear): the layer is not assessed.
bool notAssessed(PlyData const& p, double const mid[3], double const shear[2]);

// Tsai-Wu strength coefficients of one ply.
struct TsaiWu {
    double F1, F2, F11, F22, F66, F12;

    explicit TsaiWu(PlyData const& p);
    // In-plane quadratic part; the interaction enters as 2 F12 s1 s2.
    double quadratic(double s1, double s2, double t12) const
    {
        return F11 * (s1 * s1) + F22 * (s2 * s2) + F66 * (t12 * t12) + 2.0 * F12 * s1 * s2;
    }
    double linear(double s1, double s2) const { return F1 * s1 + F2 * s2; }
};

// Complete Tsai-Wu index of one face, with the transverse shear terms.
double tsaiWuComplete(PlyData const& p, double const face[3], double ta, double tb);

// Simple Tsai-Wu load factor from mid-thickness stresses, uncapped: false when
// a strength is 0 or the top face carries no in-plane stress.  A and B are
// the quadratic and linear parts, R the root of smaller magnitude of
// A R^2 + B R - 1 = 0.
bool tsaiWuSimple(PlyData const& p, double const mid[3], double const top[3], double& A,
                  double& B, double& R);

// Hashin matrix index of one face.
double hashinMatrix(PlyData const& p, double s2, double t12, double ta, double tb);
// Hashin fibre index of one face; tBottom is the bottom face's in-plane shear
// stress, which both faces use in tension.
double hashinFibre(PlyData const& p, double s1, double tBottom, double tb);

// LaRC04 indices of one ply, face by face: construct once per layer, then
// call face() for the bottom face first and the top face second (a thick ply
// may clear its compliance term at the first face for both).
class LaRC04 {
public:
    LaRC04(PlyData const& p, double ta, double tb);

    // The kink-plane frame of a face with transverse stress s2.  It depends on
    // the ratio of ta to s2 only, so it serves every load level of a face
    // whose stresses all scale together.
    struct Kink {
        double cpsi, spsi, c2psi;  // cos psi, sin psi, cos 2 psi
    };
    Kink kink(double s2) const;

    // The indices of modes 1..6 at a face into index[0..5]; 0 where a mode's
    // condition does not hold.
    void face(double s1, double s2, double t12, double index[6])
    {
        face(s1, s2, t12, kink(s2), index);
    }
    void face(double s1, double s2, double t12, Kink const& k, double index[6]);

    // What face() uses that does not change with the load level, for callers
    // that bound the indices over a range of load levels.  Lambda is the
    // compliance term after the thick-ply floor.  A thin ply's g and W are
    // fixed; a thick ply's follow its face's in-plane shear: g = gThick / t12
    // (gThick 0 below the floor) and W = 2 t12.
    struct Constants {
        bool thin;
        double Lambda, YTis, g, gThick, W, ST, etaL, SLis, phi0;
    };
    Constants constants() const;

    // For the same ply at another load level: the transverse shear stresses
    // at that level, and the compliance term as the constructor set it.
    void restart(double ta, double tb)
    {
        ta_ = ta;
        tb_ = tb;
        Lambda_ = Lambda0_;
    }

private:
    double fracture(double sn, double tT, double tL) const;

    PlyData p_;
    double ta_, tb_;
    bool thin_;
    double Lambda0_, Lambda_, ST_, etaL_, SLis_;
    double phiC_, phi0_;  // fibre-kinking and initial misalignment angles
};

}  // namespace laminate_model

#endif
