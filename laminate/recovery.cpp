// Stress and strain recovery: from eight load resultants to the strains and
// stresses of one layer, at its two faces and its mid-thickness, in laminate
// and in layer axes.  Nothing is cached: every accessor recovers afresh.
#include "laminate/laminate/lamina1.h"
#include "laminate/laminate/layer_recovery.h"

#include <cmath>

using vantrel::Matriu;
using vantrel::ReaVecV;

namespace {

// Resizes to n entries (new ones 0); a vector of that length already is left
// alone, as resize would leave it.
inline void sized(ReaVecV& v, int n)
{
    if (v.length() != n) {
        v.resize(n, 0.0);
    }
}

inline void copy(double const* from, ReaVecV& to, int n)
{
    for (int i = 0; i < n; i++) {
        to.data[i] = from[i];
    }
}

}  // namespace

// The layer's top face is the one at zInterface[layer - 1] (nearer layer 1),
// its bottom face lies one layer thickness further.  Transverse shear is taken
// constant through the layer.
void lamina1::CalcTD(int layer, ReaVecV& loads)
{
    int const k = layer - 1;

    // The per-layer stiffness and the radian angles are built on first need;
    // everything below reads them.
    if (Qbar == nullptr || Tmat == nullptr) {
        calcQI();
    }

    double c, s;
    recoveryCosSin(layer, c, s);

    sized(generalizedStrains, 8);
    sized(membraneStrains, 3);
    sized(curvatures, 3);
    sized(transverseShearStrains, 2);
    sized(shearStressesLam, 2);
    sized(shearStressesGlob, 2);
    sized(shearStrainsLam, 2);
    sized(strainsTop, 3);
    sized(strainsTopLam, 3);
    sized(stressesTop, 3);
    sized(stressesTopLam, 3);
    sized(strainsBas, 3);
    sized(strainsBasLam, 3);
    sized(stressesBas, 3);
    sized(stressesBasLam, 3);
    sized(stressesLam, 3);
    sized(strainsLam, 3);

    calcQ_st(layer);
    calcQstar(layer);
    calcK();

    // K is inverted in full on every call.  Only the first 8 load entries are
    // read.
    Matriu const Kinv = K.i();
    laminate_model::product<8>(Kinv.data, loads.data, generalizedStrains.data);

    for (int i = 0; i < 3; i++) {
        membraneStrains[i] = generalizedStrains[i];
        curvatures[i] = generalizedStrains[i + 3];
    }
    transverseShearStrains[0] = generalizedStrains[6];
    transverseShearStrains[1] = generalizedStrains[7];

    laminate_model::LayerFrame const frame{Qbar[k].data, Tmat[k].data, Q_st.data, c, s,
                                           zInterface[k], zInterface[k] + layerThickness[k]};
    laminate_model::LayerState st;
    laminate_model::recoverLayer(generalizedStrains.data, frame, st);

    copy(st.strainsTop, strainsTop, 3);
    copy(st.strainsTopLam, strainsTopLam, 3);
    copy(st.stressesTop, stressesTop, 3);
    copy(st.stressesTopLam, stressesTopLam, 3);
    copy(st.strainsBas, strainsBas, 3);
    copy(st.strainsBasLam, strainsBasLam, 3);
    copy(st.stressesBas, stressesBas, 3);
    copy(st.stressesBasLam, stressesBasLam, 3);
    copy(st.shearStressesLam, shearStressesLam, 2);
    copy(st.shearStrainsLam, shearStrainsLam, 2);
    copy(st.stressesLam, stressesLam, 3);
    copy(st.strainsLam, strainsLam, 3);

    // Qstar now holds the last layer's matrix: calcK rebuilt it layer by
    // layer after the calcQstar above.
    laminate_model::product<2>(Qstar.data, transverseShearStrains.data, shearStressesGlob.data);
}

// The shortened degree factor and the 0.001 snap, as for the transverse shear
// matrices.
void lamina1::recoveryCosSin(int layer, double& c, double& s)
{
    ShortAngle const& a = shortAngle(layer - 1);
    angleRad[layer - 1] = a.rad;
    c = a.c;
    s = a.s;
    if (-0.001 < c && c < 0.001) {
        c = 0.0;
    }
    if (-0.001 < s && s < 0.001) {
        s = 0.0;
    }
}

void lamina1::GiveStresses(int layer, ReaVecV& loads, ReaVecV& out, int mode)
{
    CalcTD(layer, loads);
    if (mode == 0) {
        out = stressesLam;
    } else {
        out[0] = shearStressesLam[0];
        out[1] = shearStressesLam[1];
        out[2] = stressesLam[2];
    }
}

void lamina1::GiveStrains(int layer, ReaVecV& loads, ReaVecV& out, int mode)
{
    CalcTD(layer, loads);
    if (mode == 0) {
        out = strainsLam;
    } else {
        out[0] = shearStrainsLam[0];
        out[1] = shearStrainsLam[1];
        out[2] = strainsLam[2];
    }
}

void lamina1::GiveStressTop(int layer, ReaVecV& loads, ReaVecV& out)
{
    CalcTD(layer, loads);
    out = stressesTopLam;
}

void lamina1::GiveStressBas(int layer, ReaVecV& loads, ReaVecV& out)
{
    CalcTD(layer, loads);
    out = stressesBasLam;
}

double lamina1::GiveStresses1_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesLam[0];
}

double lamina1::GiveStresses2_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesLam[1];
}

double lamina1::GiveStresses3_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesLam[2];
}

double lamina1::GiveStrains1_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return strainsLam[0];
}

double lamina1::GiveStrains2_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return strainsLam[1];
}

double lamina1::GiveStrains3_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return strainsLam[2];
}

double lamina1::GiveStressest1_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesTopLam[0];
}

double lamina1::GiveStressest2_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesTopLam[1];
}

double lamina1::GiveStressest3_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesTopLam[2];
}

double lamina1::GiveStressesb1_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesBasLam[0];
}

double lamina1::GiveStressesb2_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesBasLam[1];
}

double lamina1::GiveStressesb3_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return stressesBasLam[2];
}

double lamina1::GiveShearStresses1_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return shearStressesLam[0];
}

double lamina1::GiveShearStresses2_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return shearStressesLam[1];
}

double lamina1::GiveShearStrains1_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return shearStrainsLam[0];
}

double lamina1::GiveShearStrains2_layer(int layer, ReaVecV& loads)
{
    CalcTD(layer, loads);
    return shearStrainsLam[1];
}
