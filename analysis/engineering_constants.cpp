#include "laminate/analysis/engineering_constants.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace laminate::analysis {

namespace {

// inv = m^-1 for an N x N row-major m, by Gauss-Jordan elimination with
// partial pivoting.  False when a pivot is 0 or not a number, or an entry of
// the inverse is not finite; inv then holds no meaning.
template <int N>
bool invert(double const* m, double* inv)
{
    double a[N * N];
    std::memcpy(a, m, sizeof a);
    for (int i = 0; i < N * N; i++) inv[i] = 0.0;
    for (int i = 0; i < N; i++) inv[i * N + i] = 1.0;

    for (int col = 0; col < N; col++) {
        int pivot = col;
        for (int r = col + 1; r < N; r++)
            if (std::fabs(a[r * N + col]) > std::fabs(a[pivot * N + col])) pivot = r;
        double const p = a[pivot * N + col];
        if (!(std::fabs(p) > 0.0)) return false;
        if (pivot != col) {
            for (int j = 0; j < N; j++) {
                std::swap(a[pivot * N + j], a[col * N + j]);
                std::swap(inv[pivot * N + j], inv[col * N + j]);
            }
        }
        for (int j = 0; j < N; j++) {
            a[col * N + j] /= p;
            inv[col * N + j] /= p;
        }
        for (int r = 0; r < N; r++) {
            double const f = a[r * N + col];
            if (r == col || f == 0.0) continue;
            for (int j = 0; j < N; j++) {
                a[r * N + j] -= f * a[col * N + j];
                inv[r * N + j] -= f * inv[col * N + j];
            }
        }
    }
    for (int i = 0; i < N * N; i++)
        if (!std::isfinite(inv[i])) return false;
    return true;
}

// Whether the symmetric part of an N x N row-major m is positive definite:
// its Cholesky factorization runs to the end with every pivot > 0.
template <int N>
bool positiveDefinite(double const* m)
{
    double L[N * N] = {};
    for (int j = 0; j < N; j++) {
        for (int i = j; i < N; i++) {
            double sum = 0.5 * (m[i * N + j] + m[j * N + i]);
            for (int k = 0; k < j; k++) sum -= L[i * N + k] * L[j * N + k];
            if (i == j) {
                if (!(sum > 0.0)) return false;
                L[j * N + j] = std::sqrt(sum);
            } else {
                L[i * N + j] = sum / L[j * N + j];
            }
        }
    }
    return true;
}

// The upper-left 6 x 6 block of the 8 x 8 K: [[A B][B D]].
void abdStiffness(LaminateAnalysis const& an, double abd[36])
{
    double const* k = an.K().data;
    for (int i = 0; i < 6; i++)
        for (int j = 0; j < 6; j++) abd[i * 6 + j] = k[i * 8 + j];
}

}  // namespace

bool abdCompliance(LaminateAnalysis const& an, double c[36])
{
    double abd[36];
    if (an.status() == LaminateAnalysis::Ok) {
        abdStiffness(an, abd);
        if (invert<6>(abd, c)) return true;
    }
    for (int i = 0; i < 36; i++) c[i] = 0.0;
    return false;
}

// T turns stresses from laminate into layer axes; applied to strains it
// needs tensor shear.  The laminate-axes tensor strains are therefore
// T^-1 (e1, e2, 0), their shear doubled back to engineering shear.
void layerFreeStrains(LaminateAnalysis::Ply const& p, double e1, double e2, double out[3])
{
    double Tinv[9];
    if (!invert<3>(p.T, Tinv)) {
        out[0] = out[1] = out[2] = std::nan("");
        return;
    }
    double const layer[3] = {e1, e2, 0.0};
    laminate_model::product<3>(Tinv, layer, out);
    out[2] *= 2.0;
}

void freeExpansion(LaminateAnalysis const& an, double const c[36], double const* coeff,
                   double out[6])
{
    double NM[6] = {0, 0, 0, 0, 0, 0};
    std::vector<LaminateAnalysis::Ply> const& plies = an.plies();
    for (size_t k = 0; k < plies.size(); k++) {
        LaminateAnalysis::Ply const& p = plies[k];
        double e[3], s[3];
        layerFreeStrains(p, coeff[2 * k], coeff[2 * k + 1], e);
        laminate_model::product<3>(p.Qbar, e, s);
        double const z0 = p.zTop, z1 = p.zBas;
        for (int i = 0; i < 3; i++) {
            NM[i] += s[i] * (z1 - z0);
            NM[i + 3] += 0.5 * s[i] * ((z1 - z0) * (z1 + z0));
        }
    }
    laminate_model::product<6>(c, NM, out);
}

EngineeringConstants engineeringConstants(LaminateAnalysis const& an, PlyProperties const& props)
{
    EngineeringConstants e{};  // every number 0, every flag false
    if (an.status() != LaminateAnalysis::Ok) {
        e.status = EngineeringConstants::NotPrepared;
        return e;
    }
    if (!abdCompliance(an, e.compliance)) {
        e.status = EngineeringConstants::Singular;
        return e;
    }
    double const t = an.thickness();
    e.thickness = t;
    double abd[36];
    abdStiffness(an, abd);
    if (!(t > 0.0) || !std::isfinite(t) || !positiveDefinite<6>(abd)) {
        e.status = EngineeringConstants::NotPositive;
        return e;
    }
    e.status = EngineeringConstants::Ok;

    double const* c = e.compliance;
    double const a11 = c[0], a12 = c[1], a22 = c[7], a66 = c[14];
    double const d11 = c[21], d12 = c[22], d22 = c[28], d66 = c[35];
    e.Ex = 1.0 / (t * a11);
    e.Ey = 1.0 / (t * a22);
    e.Gxy = 1.0 / (t * a66);
    e.nuxy = -a12 / a11;
    e.nuyx = -a12 / a22;
    double const t3 = t * t * t;
    e.Exb = 12.0 / (t3 * d11);
    e.Eyb = 12.0 / (t3 * d22);
    e.Gxyb = 12.0 / (t3 * d66);
    e.nuxyb = -d12 / d11;
    e.nuyxb = -d12 / d22;

    if (props.sw != nullptr) {
        e.hasWeight = true;
        std::vector<LaminateAnalysis::Ply> const& plies = an.plies();
        for (size_t k = 0; k < plies.size(); k++)
            e.weight += props.sw[k] * plies[k].data.t;
    }
    if (props.alpha != nullptr) {
        e.hasThermal = true;
        freeExpansion(an, c, props.alpha, e.thermal);
    }
    if (props.beta != nullptr) {
        e.hasMoisture = true;
        freeExpansion(an, c, props.beta, e.moisture);
    }
    return e;
}

}  // namespace laminate::analysis
