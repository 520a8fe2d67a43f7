// Stress and strain recovery: from eight load resultants to the strains and
// stresses of one layer, at its two faces and its mid-thickness, in laminate
// and in layer axes.  Nothing is cached: every accessor recovers afresh.
#include "laminate/laminate/lamina1.h"

#include <cmath>

using vantrel::Matriu;
using vantrel::ReaVecV;

namespace {

// Laminate-axes in-plane strains at height z: mid-surface strains plus z
// times the curvatures.
void strainsAt(double z, ReaVecV const& membrane, ReaVecV const& curv,
               ReaVecV& out)
{
    for (int i = 0; i < 3; i++) {
        out[i] = membrane[i] + z * curv[i];
    }
}

// Resizes to n entries (new ones 0); a vector of that length already is left
// alone, as resize would leave it.
// out = M * v for an N x N matrix, each entry summed from 0.0 in column
// order, as ReaVecV::product does; the fixed size lets the loops unroll.
template <int N>
inline void product(Matriu const& M, ReaVecV const& v, ReaVecV& out)
{
    double const* row = M.data;
    double const* x = v.data;
    for (int i = 0; i < N; i++, row += N) {
        double sum = 0.0;
        for (int j = 0; j < N; j++) {
            sum += row[j] * x[j];
        }
        out.data[i] = sum;
    }
}

inline void sized(ReaVecV& v, int n)
{
    if (v.length() != n) {
        v.resize(n, 0.0);
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

    // The shortened degree factor and the 0.001 snap, as for the transverse
    // shear matrices.
    ShortAngle const& a = shortAngle(k);
    angleRad[k] = a.rad;
    double s = a.s;
    double c = a.c;
    if (-0.001 < c && c < 0.001) {
        c = 0.0;
    }
    if (-0.001 < s && s < 0.001) {
        s = 0.0;
    }

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
    product<8>(Kinv, loads, generalizedStrains);

    for (int i = 0; i < 3; i++) {
        membraneStrains[i] = generalizedStrains[i];
        curvatures[i] = generalizedStrains[i + 3];
    }
    transverseShearStrains[0] = generalizedStrains[6];
    transverseShearStrains[1] = generalizedStrains[7];

    Matriu const& Q = Qbar[k];
    Matriu const& T = Tmat[k];

    // T turns stresses; applied to strains it needs tensor shear, so the
    // shear strain is halved around the rotation and doubled back (the
    // laminate-axes vector keeps its engineering shear).
    double const zTop = zInterface[k];
    strainsAt(zTop, membraneStrains, curvatures, strainsTop);
    product<3>(Q, strainsTop, stressesTop);
    product<3>(T, stressesTop, stressesTopLam);
    strainsTop[2] *= 0.5;
    product<3>(T, strainsTop, strainsTopLam);
    strainsTopLam[2] *= 2.0;
    strainsTop[2] *= 2.0;

    double const zBas = zInterface[k] + layerThickness[k];
    strainsAt(zBas, membraneStrains, curvatures, strainsBas);
    product<3>(Q, strainsBas, stressesBas);
    product<3>(T, stressesBas, stressesBasLam);
    strainsBas[2] *= 0.5;
    product<3>(T, strainsBas, strainsBasLam);
    strainsBasLam[2] *= 2.0;
    strainsBas[2] *= 2.0;

    product<2>(Qstar, transverseShearStrains, shearStressesGlob);
    product<2>(Q_st, transverseShearStrains, shearStressesLam);

    double const g1 = transverseShearStrains[0];
    double const g2 = transverseShearStrains[1];
    shearStrainsLam[0] = g1 * c + g2 * s;
    shearStrainsLam[1] = g2 * c - g1 * s;

    // The strain field is linear through the layer, so the mean of the two
    // faces is the mid-thickness value.
    for (int i = 0; i < 3; i++) {
        stressesLam[i] = 0.5 * (stressesTopLam[i] + stressesBasLam[i]);
        strainsLam[i] = 0.5 * (strainsTopLam[i] + strainsBasLam[i]);
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
