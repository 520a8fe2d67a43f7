// Inverse, determinant, reductions and the linear solvers of Matriu.
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <random>

#include <gtest/gtest.h>

#include "fatal.h"
#include "linalg/matriu.h"
#include "linalg/reavec.h"
#include "linalg/reavecv.h"

using vantrel::Matriu;
using vantrel::ReaVec;
using vantrel::ReaVecV;
using vantrel::Transpose;

namespace {

Matriu Rows(std::initializer_list<std::initializer_list<double>> rows)
{
    Matriu m(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int k = 0;
    for (auto const& r : rows)
        for (double v : r) m.data[k++] = v;
    return m;
}

// Entries in [-1, 1] plus n on the diagonal: diagonally dominant, so well
// conditioned and free of zero pivots.
Matriu RandomWellConditioned(int n, std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    Matriu m(n, n);
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) m(i, j) = u(gen) + (i == j ? n : 0.0);
    return m;
}

// Largest |a(i,j) - b(i,j)| over two matrices of one shape.
double MaxDiff(Matriu const& a, Matriu const& b)
{
    double d = 0.0;
    for (int k = 0; k < a.size; ++k) d = std::fmax(d, std::fabs(a.data[k] - b.data[k]));
    return d;
}

Matriu Identity(int n)
{
    Matriu m(n, n);
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) m(i, j) = i == j ? 1.0 : 0.0;
    return m;
}

Matriu Mul(Matriu const& a, Matriu const& b)
{
    Matriu r(a.nrows, b.ncols);
    for (int i = 1; i <= a.nrows; ++i)
        for (int j = 1; j <= b.ncols; ++j) {
            long double s = 0;
            for (int k = 1; k <= a.ncols; ++k) s += (long double)a(i, k) * b(k, j);
            r(i, j) = (double)s;
        }
    return r;
}

ReaVecV Vec(std::initializer_list<double> values)
{
    ReaVecV v(static_cast<int>(values.size()));
    int k = 0;
    for (double x : values) v[k++] = x;
    return v;
}

// L (with its diagonal) times unit-upper U, both packed in one Crout matrix.
Matriu CroutProduct(Matriu const& f)
{
    int const n = f.nrows;
    Matriu r(n, n);
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) {
            double s = 0.0;
            for (int k = 1; k <= std::min(i, j); ++k) s += f(i, k) * (k == j ? 1.0 : f(k, j));
            r(i, j) = s;
        }
    return r;
}

}  // namespace

TEST(MatriuInverse, TimesMatrixIsIdentityForOrdersOneToTen)
{
    std::mt19937 gen(20240611);
    for (int n = 1; n <= 10; ++n)
        for (int trial = 0; trial < 5; ++trial) {
            Matriu A = RandomWellConditioned(n, gen);
            Matriu const copy(A);
            Matriu Ai = A.i();
            EXPECT_TRUE(A == copy) << "i() changed its matrix, n=" << n;
            ASSERT_EQ(Ai.nrows, n);
            ASSERT_EQ(Ai.ncols, n);
            EXPECT_LT(MaxDiff(Mul(A, Ai), Identity(n)), 1e-13 * n) << "n=" << n;
            EXPECT_LT(MaxDiff(Mul(Ai, A), Identity(n)), 1e-13 * n) << "n=" << n;
        }
}

TEST(MatriuInverse, ClosedFormsGiveExactInversesOfUnimodularMatrices)
{
    EXPECT_TRUE(Rows({{4}}).i() == Rows({{0.25}}));
    EXPECT_TRUE(Rows({{0, 1}, {1, 0}}).i() == Rows({{0, 1}, {1, 0}}));
    EXPECT_TRUE(Rows({{2, 1}, {7, 4}}).i() == Rows({{4, -1}, {-7, 2}}));
    EXPECT_TRUE(Rows({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}}).i() ==
                Rows({{-24, 18, 5}, {20, -15, -4}, {-5, 4, 1}}));
    EXPECT_TRUE(Rows({{1, 2, 0, 1}, {0, 1, 3, 0}, {2, 4, 1, 2}, {1, 0, 0, 2}}).i() ==
                Rows({{-22, -4, 12, -1}, {6, 1, -3, 0}, {-2, 0, 1, 0}, {11, 2, -6, 1}}));
    // Determinant -4: the halves are exact as well.
    EXPECT_TRUE(Rows({{2, 1, 0, 1}, {1, 1, 1, 0}, {0, 1, 2, 1}, {1, 0, 1, 1}}).i() ==
                Rows({{0, 0.5, -0.5, 0.5}, {0.5, 0, 0.5, -1}, {-0.5, 0.5, 0, 0.5},
                      {0.5, -1, 0.5, 0}}));
}

TEST(MatriuInverse, GaussJordanAgreesWithClosedForms)
{
    // diag(A, I) from order 5 on goes through elimination; its leading block
    // must match the closed-form inverse of A.
    std::mt19937 gen(7);
    for (int n = 1; n <= 4; ++n)
        for (int trial = 0; trial < 5; ++trial) {
            Matriu A = RandomWellConditioned(n, gen);
            Matriu big = Identity(n + 5);
            big.AddSubmatriu(1, 1, A);
            Matriu block = big.i().subMatriu(1, n, 1, n);
            Matriu closed = A.i();
            for (int k = 0; k < closed.size; ++k)
                EXPECT_NEAR(block.data[k], closed.data[k], 1e-14 * std::fabs(closed.data[k]) + 1e-16)
                    << "n=" << n;
        }
}

TEST(MatriuInverse, GaussJordanIsExactOnUnitTriangularIntegers)
{
    // Every pivot is 1, so elimination stays in exact integer arithmetic.
    Matriu L = Rows({{1, 0, 0, 0, 0},
                     {2, 1, 0, 0, 0},
                     {0, 3, 1, 0, 0},
                     {1, 0, 2, 1, 0},
                     {0, 1, 0, 4, 1}});
    Matriu expected = Rows({{1, 0, 0, 0, 0},
                            {-2, 1, 0, 0, 0},
                            {6, -3, 1, 0, 0},
                            {-13, 6, -2, 1, 0},
                            {54, -25, 8, -4, 1}});
    EXPECT_TRUE(L.i() == expected);
    EXPECT_TRUE(expected.i() == L);
}

TEST(MatriuInverse, HasNoToleranceForTinyValues)
{
    EXPECT_EQ(Rows({{0x1p-1000}}).i()(1, 1), 0x1p1000);
    Matriu nearly = Rows({{1, 1}, {1, 1 + 0x1p-52}});
    Matriu inv = nearly.i();
    EXPECT_EQ(inv(1, 1), (1 + 0x1p-52) * 0x1p52);
    EXPECT_EQ(inv(1, 2), -0x1p52);
}

TEST(MatriuInverse, TransposeViewInvertsTheHeldMatrix)
{
    Matriu A = Rows({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}});
    Matriu const original(A);
    Transpose t(A);
    t.i();
    EXPECT_NE(t.owner, 0);
    EXPECT_TRUE(A == original);  // the borrowed array is left alone
    vantrel::MatriuT carrier = t;
    Matriu invT(carrier);
    EXPECT_TRUE(invT == Rows({{-24, 20, -5}, {18, -15, 4}, {5, -4, 1}}));
    t.i();  // inverting again releases the owned inverse
    vantrel::MatriuT again = t;
    Matriu back(again);
    EXPECT_TRUE(back == Rows({{1, 0, 5}, {2, 1, 6}, {3, 4, 0}}));
}

TEST(MatriuDeterminant, CofactorExpansionValues)
{
    EXPECT_EQ(Rows({{-3}}).det(), -3.0);
    EXPECT_EQ(Rows({{2, 1}, {7, 4}}).det(), 1.0);
    EXPECT_EQ(Rows({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}}).det(), 1.0);
    EXPECT_EQ(Rows({{2, 1, 0, 1}, {1, 1, 1, 0}, {0, 1, 2, 1}, {1, 0, 1, 1}}).det(), -4.0);
    EXPECT_EQ(Rows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}).det(), 0.0);
    std::mt19937 gen(3);
    for (int n = 2; n <= 4; ++n) {
        Matriu A = RandomWellConditioned(n, gen);
        EXPECT_NEAR(A.det() * A.i().det(), 1.0, 1e-13) << "n=" << n;
    }
}

TEST(MatriuReductions, TraceAndSignedNormsAndSums)
{
    Matriu A = Rows({{1, -3}, {2, 2}});
    EXPECT_EQ(A.trace(), 3.0);
    EXPECT_EQ(A.rowNorm(), 4.0);       // row sums -2 and 4
    EXPECT_EQ(A.colNorm(), 3.0);       // column sums 3 and -1
    EXPECT_EQ(A.sumSquare(), 18.0);
    EXPECT_EQ(A.sumAbsVal(), 8.0);
    EXPECT_EQ(A.maxAbsVal(), 3.0);

    // All sums negative: the norms are floored at zero, not absolute values.
    Matriu N = Rows({{-1, -2}, {-3, -4}});
    EXPECT_EQ(N.rowNorm(), 0.0);
    EXPECT_EQ(N.colNorm(), 0.0);
    EXPECT_EQ(N.maxAbsVal(), 4.0);
    EXPECT_EQ(N.sumAbsVal(), 10.0);

    Matriu R = Rows({{1, 2, 3}, {-4, 5, -6}});  // rectangular is fine here
    EXPECT_EQ(R.rowNorm(), 6.0);
    EXPECT_EQ(R.colNorm(), 7.0);
    EXPECT_EQ(R.sumSquare(), 91.0);
}

TEST(MatriuLinSolve, SolvesWellConditionedSystems)
{
    std::mt19937 gen(11);
    std::uniform_real_distribution<double> u(-5.0, 5.0);
    for (int n = 1; n <= 10; ++n) {
        Matriu A = RandomWellConditioned(n, gen);
        ReaVecV b(n), x(n);
        for (int k = 0; k < n; ++k) b[k] = u(gen);
        Matriu work(A);
        ReaVecV rhs(b);
        ASSERT_EQ(work.LinSolve(rhs, x), 0) << "n=" << n;
        for (int i = 1; i <= n; ++i) {
            double s = 0.0;
            for (int j = 1; j <= n; ++j) s += A(i, j) * x[j - 1];
            EXPECT_NEAR(s, b[i - 1], 1e-12 * n) << "n=" << n << " row " << i;
        }
    }
    Matriu one = Rows({{4}});
    ReaVecV b1 = Vec({2}), x1(1);
    EXPECT_EQ(one.LinSolve(b1, x1), 0);
    EXPECT_EQ(x1[0], 0.5);

    // The small fixed vector works the same way.
    Matriu M = Rows({{2, 0, 0}, {1, 1, 0}, {0, 1, 4}});
    ReaVec b(3), x(3);
    b[0] = 4; b[1] = 5; b[2] = 11;
    EXPECT_EQ(M.LinSolve(b, x), 0);
    EXPECT_EQ(x[0], 2.0);
    EXPECT_EQ(x[1], 3.0);
    EXPECT_EQ(x[2], 2.0);
}

TEST(MatriuLinSolve, ThresholdPivotingExchangesOnlyBelowTheThreshold)
{
    Matriu A = Rows({{0, 1}, {1, 0}});
    ReaVecV b = Vec({2, 3}), x(2);
    EXPECT_EQ(A.LinSolve(b, x), 0);
    EXPECT_EQ(x[0], 3.0);
    EXPECT_EQ(x[1], 2.0);

    // 1e-16 is below the threshold: the rows are exchanged, which the
    // working storage shows, and the solution stays accurate.
    Matriu tiny = Rows({{1e-16, 1}, {1, 0}});
    ReaVecV bt = Vec({2, 3}), xt(2);
    EXPECT_EQ(tiny.LinSolve(bt, xt), 0);
    EXPECT_EQ(tiny(1, 1), 1.0);
    EXPECT_EQ(bt[0], 3.0);
    EXPECT_EQ(xt[0], 3.0);
    EXPECT_DOUBLE_EQ(xt[1], 2.0);

    // 1e-15 passes: no exchange.
    Matriu small = Rows({{1e-15, 1}, {1, 0}});
    ReaVecV bs = Vec({2, 3}), xs(2);
    EXPECT_EQ(small.LinSolve(bs, xs), 0);
    EXPECT_EQ(small(1, 1), 1e-15);
    EXPECT_EQ(bs[0], 2.0);

    // The first acceptable row is taken, not the largest one.
    Matriu P = Rows({{0, 1, 1}, {1, 0, 0}, {5, 0, 1}});
    ReaVecV bp = Vec({2, 1, 6}), xp(3);
    EXPECT_EQ(P.LinSolve(bp, xp), 0);
    EXPECT_EQ(P(1, 1), 1.0);
    EXPECT_NEAR(xp[0], 1.0, 1e-15);
    EXPECT_NEAR(xp[1], 1.0, 1e-15);
    EXPECT_NEAR(xp[2], 1.0, 1e-15);
}

TEST(MatriuLinSolve, ReportsUnusablePivots)
{
    Matriu dependent = Rows({{1, 2}, {2, 4}});
    ReaVecV b = Vec({1, 1}), x(2);
    EXPECT_EQ(dependent.LinSolve(b, x), 1);

    Matriu zeroColumn = Rows({{0, 1}, {0, 1}});
    ReaVecV b2 = Vec({1, 1});
    EXPECT_EQ(zeroColumn.LinSolve(b2, x), 1);

    Matriu tinyScalar = Rows({{1e-16}});
    ReaVecV b1 = Vec({1}), x1(1);
    EXPECT_EQ(tinyScalar.LinSolve(b1, x1), 1);

    Matriu empty;
    ReaVecV none;
    EXPECT_EQ(empty.LinSolve(none, none), 1);
}

TEST(MatriuCrout, FactorsMultiplyBackAndSolveLikeElimination)
{
    Matriu A = Rows({{2, 4, -2}, {1, 5, 3}, {3, 1, 4}});
    Matriu F = A.LU();
    // L's first column is A's; U's first row is A's divided by a(1,1).
    EXPECT_EQ(F(1, 1), 2.0);
    EXPECT_EQ(F(2, 1), 1.0);
    EXPECT_EQ(F(3, 1), 3.0);
    EXPECT_EQ(F(1, 2), 2.0);
    EXPECT_EQ(F(1, 3), -1.0);
    EXPECT_TRUE(CroutProduct(F) == A);

    std::mt19937 gen(5);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    for (int n = 1; n <= 8; ++n) {
        Matriu R = RandomWellConditioned(n, gen);
        Matriu G = R.LU();
        EXPECT_LT(MaxDiff(CroutProduct(G), R), 1e-13 * n) << "n=" << n;
        ReaVecV b(n), x(n);
        for (int k = 0; k < n; ++k) b[k] = u(gen);
        ReaVecV lub(b), rhs(b);
        Matriu work(R);
        ASSERT_EQ(work.LinSolve(rhs, x), 0);
        ASSERT_EQ(vantrel::LULinSolve(G, lub), 0);
        for (int k = 0; k < n; ++k) EXPECT_NEAR(lub[k], x[k], 1e-13) << "n=" << n;
    }
}

TEST(MatriuCrout, SolverThresholdIsFarBelowElimination)
{
    Matriu tinyDiagonal = Rows({{1, 0}, {0, 1e-31}});
    ReaVecV b = Vec({1, 1});
    EXPECT_EQ(vantrel::LULinSolve(tinyDiagonal, b), 1);
    EXPECT_EQ(b[0], 1.0);  // the first row was already solved

    Matriu small = Rows({{0x1p-80}});  // about 8e-25: unusable for elimination only
    ReaVecV b1 = Vec({1});
    EXPECT_EQ(vantrel::LULinSolve(small, b1), 0);
    EXPECT_EQ(b1[0], 0x1p80);
    Matriu work(small);
    ReaVecV b2 = Vec({1}), x(1);
    EXPECT_EQ(work.LinSolve(b2, x), 1);
}

TEST(MatriuSolveDeathTest, InverseMisuse)
{
    Matriu empty;
    EXPECT_FATAL(empty.i(), "Can't compute the inverse of a zero size Matriu");
    EXPECT_FATAL(Matriu(2, 3).i(),
                 "Can't compute the inverse of a rectangular Matriu\n\tnrows =2, ncols =3");
    EXPECT_FATAL(Rows({{0}}).i(), "Inverse of a singular Matriu\\. Size = \\(1 X 1\\)");
    EXPECT_FATAL(Rows({{1, 2}, {2, 4}}).i(), "Inverse of a singular Matriu\\. Size = \\(2 X 2\\)");
    EXPECT_FATAL(Rows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}).i(),
                 "Inverse of a singular Matriu\\. Size = \\(3 X 3\\)");
    EXPECT_FATAL(Rows({{1, 2, 3, 4}, {2, 4, 6, 8}, {0, 1, 0, 1}, {1, 0, 1, 0}}).i(),
                 "Inverse of a singular Matriu\\. Size = \\(4 X 4\\)");
    // Invertible, but the first pivot is zero and rows are never exchanged.
    Matriu swapped = Identity(5);
    swapped(1, 1) = swapped(2, 2) = 0.0;
    swapped(1, 2) = swapped(2, 1) = 1.0;
    EXPECT_FATAL(swapped.i(), "Inverse of a singular Matriu\\. Size = \\(5 X 5\\)");
    Transpose t(empty);
    EXPECT_FATAL(t.i(), "Can't compute the inverse of a zero size Matriu");
}

TEST(MatriuSolveDeathTest, DeterminantTraceAndReductionMisuse)
{
    Matriu empty;
    EXPECT_FATAL(empty.det(), "Can't compute the determinant of a zero size Matriu");
    EXPECT_FATAL(Matriu(3, 2).det(),
                 "Can't compute the determinant of a rectangular Matriu\n\tnrows =3, ncols =2");
    EXPECT_FATAL(Identity(5).det(), "Not implemented yet determinant for a Matriu greater than 4");
    EXPECT_FATAL(empty.trace(), "Can't compute the trace of a zero size Matriu");
    EXPECT_FATAL(Matriu(2, 3).trace(), "Can't compute the trace of a non square Matriu");
    EXPECT_FATAL(empty.rowNorm(), "Can't compute the rowNorm of a zero size Matriu");
    EXPECT_FATAL(empty.colNorm(), "Can't compute the colNorm of a zero size Matriu");
    EXPECT_FATAL(empty.sumSquare(), "Can't compute the sumSquare of a zero size Matriu");
    EXPECT_FATAL(empty.sumAbsVal(), "Can't compute the sumAbsVal of a zero size Matriu");
    EXPECT_FATAL(empty.maxAbsVal(), "Can't compute the maxAbsVal of a zero size Matriu");
}

TEST(MatriuSolveDeathTest, CroutMisuse)
{
    Matriu empty;
    EXPECT_FATAL(empty.LU(), "Can't compute the crout decomposition of a zero size Matriu");
    EXPECT_FATAL(Matriu(2, 3).LU(),
                 "Can't compute the crout decomposition of a rectangular Matriu\n\tnrows =2, ncols =3");
}
