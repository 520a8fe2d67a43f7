// Construction, the material record parser, the small accessors and teardown
// of the laminate model and of its registry node.
#include "laminate/laminate/lamina1.h"

#include <cstdio>
#include <cstring>

using vantrel::Matriu;
using vantrel::ReaVecV;

// Every vector starts empty and both per-layer matrix arrays absent.  The
// scalars are set to 0 so that a record without a layer count reads as a
// laminate of no layers.
lamina1::lamina1()
    : specificWeight(0.0), thickness(0.0), nlayers(0), nlayersRead(0),
      Qbar(nullptr), Tmat(nullptr), totalThickness(0.0)
{
}

// The per-layer matrix arrays came from array-new, so every layer's storage
// is returned with them.  Vectors and matrix members release themselves.
lamina1::~lamina1()
{
    delete[] Qbar;
    delete[] Tmat;
}

// The record is a run of numbers separated by white space: the layer count,
// then per layer E1 E2 nu12 G12 G13 G23, seven strengths, an eighth unscaled
// value, the angle in degrees, the thickness, the specific weight and an
// integer failure flag.  Text after the last layer is ignored.
int lamina1::LeerCampoMater(char* record, double forceFactor,
                            double lengthFactor, double /*unusedFactor*/)
{
    int consumed = 0;
    char const* pos = record;

    // An empty or all-blank record gives EOF here, not 0, and keeps the
    // count the model already held.
    if (sscanf(pos, "%d%n", &nlayersRead, &consumed) == 0) {
        return -1;
    }
    // A negative count cannot size the vectors, and a count whose layers
    // cannot fit in the text left (each of the 18 fields takes at least one
    // character) is bound to fail: both are refused before anything is
    // allocated.
    if (nlayersRead < 0
        || static_cast<size_t>(nlayersRead) > strlen(pos + consumed) / 18) {
        return -1;
    }
    nlayers = nlayersRead;

    ReaVecV* const perLayer[] = {
        &E1, &E2, &nu12, &nu21, &G12, &G13, &G23, &angleDeg, &layerThickness,
        &layerSpecificWeight, &strength1, &strength2, &strength3, &strength4,
        &strength5, &strength6, &strength7, &strength8};
    for (ReaVecV* v : perLayer) {
        v->resize(nlayers, 0.0);
    }
    layerFlag.resize(static_cast<unsigned int>(nlayers), 0);

    specificWeight = 0.0;
    thickness = 0.0;

    for (int i = 0; i < nlayers; i++) {
        pos += consumed;
        int const got = sscanf(
            pos,
            "%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%lf%d%n",
            &E1[i], &E2[i], &nu12[i], &G12[i], &G13[i], &G23[i],
            &strength1[i], &strength2[i], &strength3[i], &strength4[i],
            &strength5[i], &strength6[i], &strength7[i], &strength8[i],
            &angleDeg[i], &layerThickness[i], &layerSpecificWeight[i],
            &layerFlag[i], &consumed);
        // The sums take whatever was read, even from a layer about to be
        // rejected.
        specificWeight += layerSpecificWeight[i] * layerThickness[i];
        thickness += layerThickness[i];
        if (got != 18) {
            return -1;
        }
    }

    double const stressFactor = (forceFactor / lengthFactor) / lengthFactor;
    specificWeight = (specificWeight / thickness) * (stressFactor / lengthFactor);
    thickness = thickness * lengthFactor;

    ReaVecV* const scaled[] = {&E1, &E2, &G12, &G13, &G23, &strength1,
                               &strength2, &strength3, &strength4, &strength5,
                               &strength6, &strength7};
    for (ReaVecV* v : scaled) {
        for (int i = 0; i < nlayers; i++) {
            (*v)[i] *= stressFactor;
        }
    }
    return 0;
}

double lamina1::GiveSpecificWeight() { return specificWeight; }

double lamina1::GiveShellThickness() { return thickness; }

double lamina1::GiveSpecificWeightPerthicknessMT() { return 1.0; }

lam_mat::lam_mat(char* name_)
    : name(new char[strlen(name_) + 1]), lamina(new lamina1), next(nullptr)
{
    strcpy(name, name_);
}

// Destroys the rest of the list too.
lam_mat::~lam_mat()
{
    delete[] name;
    delete lamina;
    delete next;
}
