// Stress and strain recovery: from eight load resultants to the strains and
// stresses of one layer, at its two faces and its mid-thickness, in laminate
// and in layer axes.  Nothing is cached: every accessor recovers afresh.
#include "laminate/lamina1.h"

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
    double const theta = angleDeg[k] * 0.0174532925;
    angleRad[k] = theta;
    double s = sin(theta);
    double c = cos(theta);
    if (-0.001 < c && c < 0.001) {
        c = 0.0;
    }
    if (-0.001 < s && s < 0.001) {
        s = 0.0;
    }

    generalizedStrains.resize(8, 0.0);
    membraneStrains.resize(3, 0.0);
    curvatures.resize(3, 0.0);
    transverseShearStrains.resize(2, 0.0);
    shearStressesLam.resize(2, 0.0);
    shearStressesGlob.resize(2, 0.0);
    shearStrainsLam.resize(2, 0.0);
    strainsTop.resize(3, 0.0);
    strainsTopLam.resize(3, 0.0);
    stressesTop.resize(3, 0.0);
    stressesTopLam.resize(3, 0.0);
    strainsBas.resize(3, 0.0);
    strainsBasLam.resize(3, 0.0);
    stressesBas.resize(3, 0.0);
    stressesBasLam.resize(3, 0.0);
    stressesLam.resize(3, 0.0);
    strainsLam.resize(3, 0.0);

    calcQ_st(layer);
    calcQstar(layer);
    calcK();

    // K is inverted in full on every call.  Only the first 8 load entries are
    // read.
    Matriu const Kinv = K.i();
    generalizedStrains.product(Kinv, loads);

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
    stressesTop.product(Q, strainsTop);
    stressesTopLam.product(T, stressesTop);
    strainsTop[2] *= 0.5;
    strainsTopLam.product(T, strainsTop);
    strainsTopLam[2] *= 2.0;
    strainsTop[2] *= 2.0;

    double const zBas = zInterface[k] + layerThickness[k];
    strainsAt(zBas, membraneStrains, curvatures, strainsBas);
    stressesBas.product(Q, strainsBas);
    stressesBasLam.product(T, stressesBas);
    strainsBas[2] *= 0.5;
    strainsBasLam.product(T, strainsBas);
    strainsBasLam[2] *= 2.0;
    strainsBas[2] *= 2.0;

    shearStressesGlob.product(Qstar, transverseShearStrains);
    shearStressesLam.product(Q_st, transverseShearStrains);

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
