// Inverse, determinant, reductions and the linear solvers of Matriu.
#include <random>

#include <gtest/gtest.h>

#include "fatal.h"
#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reavecv.h"
#include "linalg/matriu_rows.h"

using namespace vantrel;

namespace {

// Entries in [-1, 1] plus n on the diagonal: diagonally dominant, so well
// conditioned and free of zero pivots.
Matriu WellConditioned(int n, std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Matriu m(n, n);
    for (int k = 0; k < m.size; ++k) m.data[k] = u(gen) + (k % (n + 1) == 0 ? n : 0.0);
    return m;
}

}  // namespace

TEST(MatriuInverse, TimesMatrixIsIdentityForOrdersOneToTen)
{
    std::mt19937 gen(20240611);
    for (int n = 1; n <= 10; ++n) {
        Matriu A = WellConditioned(n, gen);
        Matriu Ai = A.i();
        EXPECT_TRUE(AreVeryEqual(A * Ai, I(n), 1e-14 * n)) << "n=" << n;
        EXPECT_TRUE(AreVeryEqual(Ai * A, I(n), 1e-14 * n)) << "n=" << n;
    }
}

TEST(MatriuInverse, ExactOnUnimodularMatrices)
{
    EXPECT_TRUE(Rows({{4}}).i() == Rows({{0.25}}));
    EXPECT_TRUE(Rows({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}}).i() ==
                Rows({{-24, 18, 5}, {20, -15, -4}, {-5, 4, 1}}));
    EXPECT_TRUE(Rows({{1, 2, 0, 1}, {0, 1, 3, 0}, {2, 4, 1, 2}, {1, 0, 0, 2}}).i() ==
                Rows({{-22, -4, 12, -1}, {6, 1, -3, 0}, {-2, 0, 1, 0}, {11, 2, -6, 1}}));
    // Elimination with unit pivots stays in exact integer arithmetic.
    Matriu L = Rows({{1, 0, 0, 0, 0}, {2, 1, 0, 0, 0}, {0, 3, 1, 0, 0}, {1, 0, 2, 1, 0},
                     {0, 1, 0, 4, 1}});
    EXPECT_TRUE(L.i() == Rows({{1, 0, 0, 0, 0}, {-2, 1, 0, 0, 0}, {6, -3, 1, 0, 0},
                               {-13, 6, -2, 1, 0}, {54, -25, 8, -4, 1}}));
    // No tolerance: a tiny determinant is inverted as it is.
    EXPECT_EQ(Rows({{0x1p-1000}}).i()(1, 1), 0x1p1000);
    EXPECT_EQ(Rows({{1, 1}, {1, 1 + 0x1p-52}}).i()(1, 2), -0x1p52);
}

TEST(MatriuInverse, EliminationAgreesWithClosedForms)
{
    // diag(A, I) of order 5 and more is eliminated; its leading block must
    // match the closed-form inverse of A.
    std::mt19937 gen(7);
    for (int n = 1; n <= 4; ++n) {
        Matriu A = WellConditioned(n, gen), big = I(n + 5);
        big.AddSubmatriu(1, 1, A);
        EXPECT_TRUE(AreVeryEqual(big.i().subMatriu(1, n, 1, n), A.i(), 1e-15)) << "n=" << n;
    }
}

TEST(MatriuInverse, NonFatalFormAgreesBitForBitOrRefuses)
{
    std::mt19937 gen(11);
    for (int n = 1; n <= 9; ++n) {
        Matriu A = WellConditioned(n, gen), out;
        EXPECT_EQ(A.inverse(out), 0) << "n=" << n;
        EXPECT_TRUE(out == A.i()) << "n=" << n;
    }
    // Singular at every order band (closed forms and elimination), empty and
    // rectangular: refused, out untouched.
    Matriu keep = Rows({{7}});
    for (Matriu const& bad : {Rows({{0}}), Rows({{1, 2}, {2, 4}}), Rows({{1, 2, 3}, {2, 4, 6}, {0, 0, 1}}),
                              Matriu(I(6) - I(6)), Rows({{1, 2}}), Matriu()}) {
        Matriu out = keep;
        EXPECT_EQ(bad.inverse(out), 1);
        EXPECT_TRUE(out == keep);
    }
}

TEST(MatriuInverse, TransposeViewInvertsTheHeldMatrix)
{
    Matriu A = Rows({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}}), original(A);
    Transpose t(A);
    t.i();
    EXPECT_TRUE(A == original);  // the borrowed array is left alone
    MatriuT inv = t;
    EXPECT_TRUE(Matriu(inv) == Rows({{-24, 20, -5}, {18, -15, 4}, {5, -4, 1}}));
    t.i();  // inverting again releases the owned inverse
    MatriuT back = t;
    EXPECT_TRUE(Matriu(back) == Rows({{1, 0, 5}, {2, 1, 6}, {3, 4, 0}}));
}

TEST(MatriuReductions, DeterminantTraceAndSignedNorms)
{
    EXPECT_EQ(Rows({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}}).det(), 1.0);
    EXPECT_EQ(Rows({{2, 1, 0, 1}, {1, 1, 1, 0}, {0, 1, 2, 1}, {1, 0, 1, 1}}).det(), -4.0);

    Matriu A = Rows({{1, -3}, {2, 2}});
    EXPECT_EQ(A.trace(), 3.0);
    EXPECT_EQ(A.rowNorm(), 4.0);  // row sums -2 and 4
    EXPECT_EQ(A.colNorm(), 3.0);  // column sums 3 and -1
    EXPECT_EQ(A.sumSquare(), 18.0);
    // Negative sums floor the norms at zero: no absolute values are taken.
    Matriu N = Rows({{-1, -2}, {-3, -4}});
    EXPECT_EQ(N.rowNorm(), 0.0);
    EXPECT_EQ(N.colNorm(), 0.0);
}

TEST(MatriuLinSolve, ThresholdPivotingExchangesOnlyBelowTheThreshold)
{
    // a(1,1) = 1e-16 is exchanged (the working storage shows it), 1e-15 is not.
    Matriu tiny = Rows({{1e-16, 1}, {1, 0}}), small = Rows({{1e-15, 1}, {1, 0}});
    ReaVecV b = Vec({2, 3}), x(2), bs = Vec({2, 3}), xs(2);
    EXPECT_EQ(tiny.LinSolve(b, x), 0);
    EXPECT_EQ(tiny(1, 1), 1.0);
    EXPECT_EQ(x[0], 3.0);
    EXPECT_DOUBLE_EQ(x[1], 2.0);
    EXPECT_EQ(small.LinSolve(bs, xs), 0);
    EXPECT_EQ(small(1, 1), 1e-15);

    // The first acceptable row is taken, not the largest; ReaVec alike.
    Matriu P = Rows({{0, 1, 1}, {1, 0, 0}, {5, 0, 1}});
    ReaVec bp = Vec<ReaVec>({2, 1, 6}), xp(3);
    EXPECT_EQ(P.LinSolve(bp, xp), 0);
    EXPECT_EQ(P(1, 1), 1.0);
    EXPECT_TRUE(xp == 1.0);

    // No usable pivot: a dependent pair, a zero column, a tiny scalar.
    for (Matriu M : {Rows({{1, 2}, {2, 4}}), Rows({{0, 1}, {0, 1}}), Rows({{1e-16}})}) {
        ReaVecV c(M.nrows), y(M.nrows);
        c = 1.0;
        EXPECT_EQ(M.LinSolve(c, y), 1);
    }
}

TEST(MatriuLinSolve, EliminationAndCroutAgree)
{
    std::mt19937 gen(11);
    std::uniform_real_distribution<double> u(-5.0, 5.0);
    for (int n = 1; n <= 8; ++n) {
        Matriu A = WellConditioned(n, gen), work(A), F = A.LU();
        // L times unit-upper U gives A back.
        Matriu L(n, n), U = I(n);
        L = 0.0;
        for (int i = 1; i <= n; ++i)
            for (int j = 1; j <= n; ++j) (j <= i ? L(i, j) : U(i, j)) = F(i, j);
        EXPECT_TRUE(AreVeryEqual(L * U, A, 1e-13 * n)) << "n=" << n;

        ReaVecV b(n), x(n);
        for (int k = 0; k < n; ++k) b[k] = u(gen);
        ReaVecV rhs(b), lub(b);
        ASSERT_EQ(work.LinSolve(rhs, x), 0);
        ASSERT_EQ(LULinSolve(F, lub), 0);
        EXPECT_TRUE(AreVeryEqual(A * Matriu(x), Matriu(b), 1e-12 * n)) << "n=" << n;
        EXPECT_TRUE(AreVeryEqual(Matriu(lub), Matriu(x), 1e-13)) << "n=" << n;
    }
    // Crout's threshold is 1e-30: 2^-80 passes there but not in elimination.
    Matriu f = Rows({{0x1p-80}}), e = Rows({{0x1p-80}}), tinyL = Rows({{1, 0}, {0, 1e-31}});
    ReaVecV one = Vec({1}), x1(1), two = Vec({1, 1});
    EXPECT_EQ(LULinSolve(f, one), 0);
    EXPECT_EQ(one[0], 0x1p80);
    EXPECT_EQ(e.LinSolve(one, x1), 1);
    EXPECT_EQ(LULinSolve(tinyL, two), 1);
}

TEST(MatriuSolveDeathTest, ShapeSizeAndSingularity)
{
    Matriu empty;
    EXPECT_FATAL(empty.i(), "Can't compute the inverse of a zero size Matriu");
    EXPECT_FATAL(Matriu(2, 3).i(),
                 "Can't compute the inverse of a rectangular Matriu\n\tnrows =2, ncols =3");
    EXPECT_FATAL(Rows({{0}}).i(), "Inverse of a singular Matriu\\. Size = \\(1 X 1\\)");
    // Invertible, but the first pivot is zero and rows are never exchanged.
    Matriu swapped = I(5);
    swapped(1, 1) = swapped(2, 2) = 0.0;
    swapped(1, 2) = swapped(2, 1) = 1.0;
    EXPECT_FATAL(swapped.i(), "Inverse of a singular Matriu\\. Size = \\(5 X 5\\)");

    EXPECT_FATAL(Matriu(3, 2).det(),
                 "Can't compute the determinant of a rectangular Matriu\n\tnrows =3, ncols =2");
    EXPECT_FATAL(I(5).det(), "Not implemented yet determinant for a Matriu greater than 4");
    EXPECT_FATAL(Matriu(2, 3).trace(), "Can't compute the trace of a non square Matriu");
    EXPECT_FATAL(empty.sumSquare(), "Can't compute the sumSquare of a zero size Matriu");
}
