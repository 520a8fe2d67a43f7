// Interlaminar shear by equilibrium: the parabola of a homogeneous plate,
// the beam formula of laminates that bend as beams (with and without
// coupling), and the identities every laminate must satisfy.
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/lamina_build.h"

using analysis::InterlaminarShear;
using analysis::LaminateAnalysis;
using analysis::ShearPoint;
using lamtest::near;

namespace {

// The integrals over the thickness of both stresses.  The profile holds
// each layer's faces and middle and the stresses are quadratic within a
// layer, so Simpson's rule on each layer is the exact integral.
void resultants(std::vector<ShearPoint> const& pts, double& xz, double& yz)
{
    xz = yz = 0;
    for (size_t i = 0; i + 2 < pts.size(); i += 2) {
        double const w = (pts[i + 2].z - pts[i].z) / 6;
        xz += w * (pts[i].xz + 4 * pts[i + 1].xz + pts[i + 2].xz);
        yz += w * (pts[i].yz + 4 * pts[i + 1].yz + pts[i + 2].yz);
    }
}

// Random laminates: 2 to 12 plies of several materials, angles and
// thicknesses, mostly unsymmetric.
std::vector<lamtest::Ply> randomStack(std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    int const n = 2 + static_cast<int>(u(gen) * 11);
    std::vector<lamtest::Ply> plies(n);
    for (lamtest::Ply& p : plies) {
        p.E1 = 40000 + 160000 * u(gen);
        p.E2 = 5000 + 10000 * u(gen);
        p.nu12 = 0.2 + 0.15 * u(gen);
        p.G12 = p.G13 = 3000 + 3000 * u(gen);
        p.G23 = 2000 + 2000 * u(gen);
        p.angle = -90 + 180 * u(gen);
        p.t = 0.05 + 0.5 * u(gen);
    }
    return plies;
}

}  // namespace

TEST(InterlaminarShear, HomogeneousPlateGivesTheParabola)
{
    // Five equal plies of one material at 0 degrees, with Poisson coupling:
    // tau = 1.5 Q / h (1 - 4 z^2 / h^2), peak 1.5 Q / h at the mid-plane.
    // Membrane forces and moments give no gradient and change nothing.
    lamtest::Lam lam(std::vector<lamtest::Ply>(5, lamtest::ply(0, 0.2)));
    LaminateAnalysis an(lam);
    InterlaminarShear const shear(an);
    ASSERT_EQ(shear.status(), InterlaminarShear::Ok);
    ASSERT_EQ(shear.points(), 11);
    double const h = 1.0;
    for (int q = 0; q < 2; q++) {
        double loads[8] = {300, -50, 20, 4, -3, 1, 0, 0};
        loads[6 + q] = q == 0 ? 6.0 : -5.0;
        double const Q = loads[6 + q];
        std::vector<ShearPoint> pts;
        shear.profile(loads, pts);
        ASSERT_EQ(pts.size(), 11u);
        for (int i = 0; i < 11; i++) {
            double const z = pts[i].z;
            EXPECT_TRUE(near(z, -0.5 + 0.1 * i, 1e-12)) << i;
            double const along = q == 0 ? pts[i].xz : pts[i].yz;
            double const across = q == 0 ? pts[i].yz : pts[i].xz;
            EXPECT_TRUE(near(along, 1.5 * Q / h * (1 - 4 * z * z / (h * h)), 1e-12, std::fabs(Q))) << i;
            EXPECT_NEAR(across, 0.0, 1e-12 * std::fabs(Q)) << i;
        }
        EXPECT_TRUE(near(pts[5].z, 0.0, 1e-12));
        EXPECT_TRUE(near(pts[5].xz + pts[5].yz, 1.5 * Q / h, 1e-12));
        EXPECT_NEAR(pts.front().xz + pts.front().yz, 0.0, 0.0);
        EXPECT_NEAR(pts.back().xz + pts.back().yz, 0.0, 1e-13 * std::fabs(Q));
        double xz, yz;
        resultants(pts, xz, yz);
        EXPECT_TRUE(near(q == 0 ? xz : yz, Q, 1e-9));
        EXPECT_NEAR(q == 0 ? yz : xz, 0.0, 1e-12);
    }
}

TEST(InterlaminarShear, LaminatesThatBendAsBeamsGiveTheBeamFormula)
{
    // 0 degree plies without Poisson coupling bend along x as a beam of
    // modulus E1(z): tau_xz(z) = -Q1 / EI * integral from the lowest face to z
    // of E1 (z' - zn), about the modulus-weighted neutral axis zn, EI the
    // bending stiffness about it.  Symmetric: zn = 0.  Unsymmetric: zn != 0,
    // which only the coupling stiffness B brings in.
    lamtest::Ply soft = lamtest::ply(0, 0.3), stiff = lamtest::ply(0, 0.15);
    soft.nu12 = stiff.nu12 = 0;
    soft.E1 = 10000, stiff.E1 = 180000;
    std::vector<std::vector<lamtest::Ply>> stacks = {{stiff, soft, stiff}, {stiff, soft}};
    for (auto const& stack : stacks) {
        lamtest::Lam lam(stack);
        LaminateAnalysis an(lam);
        InterlaminarShear const shear(an);
        double const loads[8] = {0, 0, 0, 0, 0, 0, 7, 0};
        std::vector<ShearPoint> pts;
        shear.profile(loads, pts);
        ASSERT_EQ(pts.size(), 2 * stack.size() + 1);

        // The faces, from the thicknesses alone.
        std::vector<double> z = {0};
        for (lamtest::Ply const& p : stack) z.push_back(z.back() + p.t);
        for (double& v : z) v -= z.back() / 2;
        double EA = 0, S = 0, EI0 = 0;
        for (size_t k = 0; k < stack.size(); k++) {
            double const E = stack[k].E1, a = z[k], b = z[k + 1];
            EA += E * (b - a);
            S += E * (b * b - a * a) / 2;
            EI0 += E * (b * b * b - a * a * a) / 3;
        }
        double const zn = S / EA, EI = EI0 - EA * zn * zn;
        EXPECT_EQ(zn == 0.0, stack.size() == 3);
        for (size_t i = 0; i < pts.size(); i++) {
            double const zi = pts[i].z;
            double moment = 0;  // integral of E (z' - zn) up to zi
            for (size_t k = 0; k < stack.size() && z[k] < zi; k++) {
                double const a = z[k], b = std::fmin(z[k + 1], zi);
                moment += stack[k].E1 * ((b * b - a * a) / 2 - zn * (b - a));
            }
            EXPECT_TRUE(near(pts[i].xz, -7 * moment / EI, 1e-10, 7 / 0.75)) << i;
            EXPECT_NEAR(pts[i].yz, 0.0, 1e-12) << i;
        }
    }
}

TEST(InterlaminarShear, AnyLaminateIsContinuousClosesAndCarriesQ)
{
    // Several materials, angles and thicknesses, unsymmetric: the stresses
    // agree from both sides of every interface, vanish at both faces, and
    // integrate to Q1 and Q2.
    std::mt19937 gen(22);
    std::uniform_real_distribution<double> u(-10.0, 10.0);
    for (int m = 0; m < 60; m++) {
        std::vector<lamtest::Ply> const stack = randomStack(gen);
        lamtest::Lam lam(stack);
        LaminateAnalysis an(lam);
        ASSERT_EQ(an.status(), LaminateAnalysis::Ok);
        InterlaminarShear const shear(an);
        ASSERT_EQ(shear.status(), InterlaminarShear::Ok);
        double const loads[8] = {u(gen), u(gen), u(gen), u(gen), u(gen), u(gen), u(gen), u(gen)};
        std::vector<ShearPoint> pts;
        shear.profile(loads, pts);
        int const n = an.layers();
        ASSERT_EQ(static_cast<int>(pts.size()), 2 * n + 1);
        double const h = an.thickness(), Q = std::hypot(loads[6], loads[7]);
        double const scale = Q / h;

        EXPECT_EQ(pts.front().xz, 0.0);
        EXPECT_EQ(pts.front().yz, 0.0);
        EXPECT_NEAR(pts.back().xz, 0.0, 1e-12 * scale) << m;
        EXPECT_NEAR(pts.back().yz, 0.0, 1e-12 * scale) << m;
        double xz, yz;
        resultants(pts, xz, yz);
        EXPECT_TRUE(near(xz, loads[6], 1e-9, Q)) << m;
        EXPECT_TRUE(near(yz, loads[7], 1e-9, Q)) << m;

        for (int k = 1; k <= n; k++) {
            ShearPoint const& lo = pts[2 * (k - 1)];
            ShearPoint const& mid = pts[2 * k - 1];
            EXPECT_EQ(lo.z, an.zLow(k));
            EXPECT_TRUE(near(mid.z, 0.5 * (an.zLow(k) + an.zHigh(k)), 1e-14, h));
            EXPECT_LT(lo.z, mid.z);
            // Just below and just above each lower face: the polynomials of
            // both layers meet there.
            double const dz = 1e-9 * h;
            ShearPoint const below = shear.at(lo.z - dz, loads);
            ShearPoint const above = shear.at(lo.z + dz, loads);
            ShearPoint const on = shear.at(mid.z, loads);
            EXPECT_TRUE(near(below.xz, above.xz, 1e-7, scale)) << m << " layer " << k;
            EXPECT_TRUE(near(below.yz, above.yz, 1e-7, scale)) << m << " layer " << k;
            EXPECT_TRUE(near(above.xz, lo.xz, 1e-7, scale)) << m << " layer " << k;
            EXPECT_TRUE(near(on.xz, mid.xz, 1e-14, scale));
            EXPECT_TRUE(near(on.yz, mid.yz, 1e-14, scale));
        }
    }
}

TEST(InterlaminarShear, UnpreparedGivesNothingAndOutsideIsZero)
{
    double const loads[8] = {0, 0, 0, 0, 0, 0, 5, 5};
    std::vector<ShearPoint> pts(3);
    InterlaminarShear none;
    EXPECT_EQ(none.status(), InterlaminarShear::NotPrepared);
    none.profile(loads, pts);
    EXPECT_TRUE(pts.empty());
    EXPECT_EQ(none.at(0.0, loads).xz, 0.0);
    EXPECT_EQ(InterlaminarShear(LaminateAnalysis()).status(), InterlaminarShear::NotPrepared);

    lamtest::Lam lam({lamtest::ply(0, 0.125)});
    InterlaminarShear const one{LaminateAnalysis(lam)};
    EXPECT_EQ(one.points(), 3);
    EXPECT_TRUE(near(one.at(0.0, loads).xz, 1.5 * 5 / 0.125, 1e-12));
    for (double z : {-0.07, 0.07, std::nan("")}) {
        ShearPoint const p = one.at(z, loads);
        EXPECT_EQ(p.xz, 0.0);
        EXPECT_EQ(p.yz, 0.0);
    }
}
