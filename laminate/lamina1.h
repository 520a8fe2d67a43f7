// The laminate model and its registry node.
//
// Layers are numbered from 1 in every operation; per-layer vectors hold layer
// k at index k-1 (ReaVecV::operator[] counts from 0).  Matrices are
// vantrel::Matriu, element (r, c) counted from 1.  Layer 1 lies at the lowest
// z: z runs through the thickness from the first layer to the last, with
// z = 0 at mid-thickness.
//
// Misuse is not checked here: a layer number outside 1..nlayers or a load
// vector shorter than 8 entries reads out of range.  Zero moduli, strengths or
// thicknesses pass infinities and NaN through the arithmetic; only the
// linear-algebra layer (a singular stiffness in Matriu::i()) ends the process.
#ifndef LAMINATE_LAMINATE_LAMINA1_H
#define LAMINATE_LAMINATE_LAMINA1_H

#include <vector>

#include "laminate/intvec/intvec.h"
#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavecv.h"

class lamina1 {
public:
    lamina1();
    ~lamina1();
    lamina1(lamina1 const&) = delete;
    lamina1& operator=(lamina1 const&) = delete;

    // ---- record (lamina1.cpp) ----

    // Parses the material record: the layer count, then per layer 17 reals
    // and one integer.  Moduli and strengths are scaled by
    // forceFactor / lengthFactor^2, the laminate thickness by lengthFactor;
    // the third factor is accepted and ignored.  Returns 0, or -1 when the
    // record cannot be read (the model then holds partial data and is to be
    // discarded).
    int LeerCampoMater(char* record, double forceFactor, double lengthFactor,
                       double unusedFactor);
    double GiveSpecificWeight();                // specificWeight
    double GiveShellThickness();                // thickness
    double GiveSpecificWeightPerthicknessMT();  // always 1.0

    // ---- stiffness (stiffness.cpp) ----
    // Each resets its own results.  calcQI must precede calcA, calcB, calcD,
    // calcBDH and calcK; calcA must precede calcB, calcD, calcH and calcBDH.

    void calcNu21();
    void calcQI();
    void calcA();
    void calcB();
    void calcD();
    void calcH();
    void calcQstar(int layer);  // Qstar of one layer; no range check
    void calcQ_st(int layer);   // Q_st of one layer; no range check
    void calcBDH();
    void calcK();
    // The stiffness of a freshly read record, as a material definition
    // computes it: calcNu21, calcQI, calcA, calcB, calcD, calcH in turn.
    void calcDefinition();

    // ---- stress and strain recovery (recovery.cpp) ----
    // loads: 8 generalized resultants N1 N2 N12 M1 M2 M12 Q1 Q2 (at least 8
    // entries).  Every accessor recovers the state afresh through CalcTD.

    void CalcTD(int layer, vantrel::ReaVecV& loads);
    // The cosine and sine of the layer's angle as the recovery uses them:
    // shortened degree factor, magnitudes below 0.001 snapped to 0.  Stores
    // the radian angle in angleRad, as CalcTD does.
    void recoveryCosSin(int layer, double& c, double& s);

    // mode 0: out = stressesLam.  Otherwise entries 1, 2 of out become the
    // layer-axes transverse shear stresses and entry 3 the in-plane shear,
    // in place: out must already hold 3 entries.
    void GiveStresses(int layer, vantrel::ReaVecV& loads, vantrel::ReaVecV& out,
                      int mode);
    // As GiveStresses, for strains.
    void GiveStrains(int layer, vantrel::ReaVecV& loads, vantrel::ReaVecV& out,
                     int mode);
    void GiveStressTop(int layer, vantrel::ReaVecV& loads, vantrel::ReaVecV& out);
    void GiveStressBas(int layer, vantrel::ReaVecV& loads, vantrel::ReaVecV& out);

    double GiveStresses1_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStresses2_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStresses3_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStrains1_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStrains2_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStrains3_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStressest1_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStressest2_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStressest3_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStressesb1_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStressesb2_layer(int layer, vantrel::ReaVecV& loads);
    double GiveStressesb3_layer(int layer, vantrel::ReaVecV& loads);
    double GiveShearStresses1_layer(int layer, vantrel::ReaVecV& loads);
    double GiveShearStresses2_layer(int layer, vantrel::ReaVecV& loads);
    double GiveShearStrains1_layer(int layer, vantrel::ReaVecV& loads);
    double GiveShearStrains2_layer(int layer, vantrel::ReaVecV& loads);

    // ---- failure criteria (failure_*.cpp) ----
    // 1000000 marks a layer that is not assessed (flag 0, or no stress).

    // Tsai-Wu load factor of one layer, in [0, 200]; -1 when a strength is 0
    // or the top face carries no in-plane stress.
    double FasTWLayer(int layer, vantrel::ReaVecV& loads);
    // Smallest FasTWLayer factor over all layers; -1 at the first failing guard.
    double FasTW(vantrel::ReaVecV& loads);
    // Tsai-Wu criterion value of one layer (worse face), or 1000000.
    double FasTWcompleteLayer(int layer, vantrel::ReaVecV& loads);
    // Largest FasTWcompleteLayer value over all layers, or 1000000.
    double FasTWcomplete(vantrel::ReaVecV& loads);
    // Hashin index of one layer (worse face): mode 0 matrix, otherwise fibre.
    double FasHashinM_layer(int layer, vantrel::ReaVecV& loads, int mode);
    // Largest FasHashinM_layer index over all layers, or 1000000.
    double FasHashinM(vantrel::ReaVecV& loads, int mode);
    // LaRC04 index of mode 1..6 for one layer (worse face); 0 for other modes.
    double FasLaRC04_layer(int layer, vantrel::ReaVecV& loads, int mode);
    // Largest FasLaRC04_layer index over all layers, or 1000000.
    double FasLaRC04(vantrel::ReaVecV& loads, int mode);

    // ---- per-layer record data (record field in brackets) ----
    vantrel::ReaVecV E1;                   // longitudinal modulus [1], scaled
    vantrel::ReaVecV E2;                   // transverse modulus [2], scaled
    vantrel::ReaVecV G12;                  // in-plane shear modulus [4], scaled
    vantrel::ReaVecV G23;                  // transverse shear modulus [6], scaled
    vantrel::ReaVecV G13;                  // transverse shear modulus [5], scaled
    vantrel::ReaVecV nu12;                 // major Poisson ratio [3]
    vantrel::ReaVecV nu21;                 // minor Poisson ratio, calcNu21
    vantrel::ReaVecV angleDeg;             // fibre angle, degrees [15]
    vantrel::ReaVecV angleRad;             // fibre angle, radians, as last converted
    vantrel::ReaVecV layerThickness;       // [16], as read
    vantrel::ReaVecV layerSpecificWeight;  // [17], as read

    double specificWeight;  // thickness-weighted mean specific weight, scaled
    double thickness;       // laminate thickness, scaled by the length factor
    int nlayers;            // layer count used everywhere
    int nlayersRead;        // layer count as read from the record

    // Strengths [7..14]: Xc, Yc, Xt, Yt, S12, S23 (also GIc), S13 (also GIIc),
    // scaled; strength8 is stored unscaled and read by no result.
    vantrel::ReaVecV strength1;
    vantrel::ReaVecV strength2;
    vantrel::ReaVecV strength3;
    vantrel::ReaVecV strength4;
    vantrel::ReaVecV strength5;
    vantrel::ReaVecV strength6;
    vantrel::ReaVecV strength7;
    vantrel::ReaVecV strength8;
    IntVec layerFlag;  // [18]: 0 = layer not assessed by the failure criteria

    // ---- stiffness ----
    vantrel::ReaVecV zInterface;  // nlayers + 1 interfaces, -h/2 .. +h/2
    vantrel::ReaVecV zMid;        // mid-thickness z of each layer (+ a trailing 0)
    vantrel::Matriu* Qbar;        // owned, array of nlayers 3x3; null until calcQI
    vantrel::Matriu* Tmat;        // owned, array of nlayers 3x3; null until calcQI
    vantrel::Matriu Qstar;        // 2x2 transverse shear stiffness, laminate axes
    vantrel::Matriu Q_st;         // 2x2 transverse shear, strains to layer axes
    vantrel::Matriu A;            // 3x3 membrane stiffness
    vantrel::Matriu B;            // 3x3 coupling stiffness
    vantrel::Matriu D;            // 3x3 bending stiffness
    vantrel::Matriu H;            // 2x2 transverse shear stiffness
    vantrel::Matriu K;            // 8x8 assembled laminate stiffness
    double totalThickness;        // sum of layer thicknesses (unscaled), calcA

    // ---- state of the last CalcTD (layer and loads) ----
    vantrel::ReaVecV generalizedStrains;      // 8: K^-1 * loads
    vantrel::ReaVecV membraneStrains;         // 3: ex, ey, gxy at z = 0
    vantrel::ReaVecV curvatures;              // 3: kx, ky, kxy
    vantrel::ReaVecV transverseShearStrains;  // 2: laminate axes
    vantrel::ReaVecV shearStressesLam;        // 2: transverse shear stresses, layer axes
    vantrel::ReaVecV shearStressesGlob;       // 2: transverse shear stresses, laminate axes
    vantrel::ReaVecV shearStrainsLam;         // 2: transverse shear strains, layer axes
    vantrel::ReaVecV strainsTop;              // 3: top face strains, laminate axes
    vantrel::ReaVecV strainsTopLam;           // 3: top face strains, layer axes
    vantrel::ReaVecV stressesTop;             // 3: top face stresses, laminate axes
    vantrel::ReaVecV stressesTopLam;          // 3: top face stresses, layer axes
    vantrel::ReaVecV strainsBas;              // 3: bottom face strains, laminate axes
    vantrel::ReaVecV strainsBasLam;           // 3: bottom face strains, layer axes
    vantrel::ReaVecV stressesBas;             // 3: bottom face stresses, laminate axes
    vantrel::ReaVecV stressesBasLam;          // 3: bottom face stresses, layer axes
    vantrel::ReaVecV stressesLam;             // 3: mid-thickness stresses, layer axes
    vantrel::ReaVecV strainsLam;              // 3: mid-thickness strains, layer axes

private:
    // The radian angle and the unsnapped cosine and sine of a layer with the
    // shortened degree factor.  Every recovery needs them for every layer, so
    // they are kept per layer and recomputed only when the layer's angle
    // changes; the values are those a fresh evaluation would give.
    struct ShortAngle {
        double deg;  // the angle they were computed from
        double rad;
        double c;
        double s;
        bool set;    // false until first computed
    };
    ShortAngle const& shortAngle(int k);  // k counted from 0
    std::vector<ShortAngle> shortAngles;
};

// One node of the material registry.  Destroying a node destroys the whole
// rest of the list behind it.
class lam_mat {
public:
    explicit lam_mat(char* name);  // copies name; creates an empty lamina1
    ~lam_mat();
    lam_mat(lam_mat const&) = delete;
    lam_mat& operator=(lam_mat const&) = delete;

    char* name;        // owned, array-new
    lamina1* lamina;   // owned
    lam_mat* next;     // owned (the rest of the list); null at the end
};

#endif
