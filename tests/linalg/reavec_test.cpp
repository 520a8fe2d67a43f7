#include "linalg/reavec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <vector>

#include "fatal.h"
#include "linalg/matriu.h"
#include "linalg/reavecv.h"

using vantrel::Matriu;
using vantrel::MatriuT;
using vantrel::ReaVec;
using vantrel::ReaVecV;
using vantrel::ReaVecVT;

namespace {

using V = std::vector<double>;

ReaVec rv(std::vector<double> const& x)
{
    ReaVec v(static_cast<int>(x.size()));
    for (int i = 0; i < v.n; ++i) v[i] = x[i];
    return v;
}

std::vector<double> values(ReaVec const& v)
{
    return std::vector<double>(v.elements, v.elements + v.n);
}

std::vector<double> values(ReaVecV const& v)
{
    return std::vector<double>(v.data, v.data + v.n);
}

ReaVecV big(std::vector<double> const& x)
{
    ReaVecV v(static_cast<int>(x.size()));
    for (int i = 0; i < v.n; ++i) v[i] = x[i];
    return v;
}

// 2 x 3: (1 2 3; 4 5 6)
Matriu m23()
{
    Matriu M(2, 3);
    M(1, 1) = 1; M(1, 2) = 2; M(1, 3) = 3;
    M(2, 1) = 4; M(2, 2) = 5; M(2, 3) = 6;
    return M;
}

}  // namespace

TEST(ReaVecStorage, CopiesAndMatrices)
{
    ReaVec a = rv({1, 2, 3});
    ReaVec b(a);
    b[0] = 9;
    EXPECT_EQ(values(a), (V{1, 2, 3}));
    b = a;
    EXPECT_EQ(values(b), (V{1, 2, 3}));
    b = b;
    EXPECT_EQ(values(b), (V{1, 2, 3}));

    // nrows values from the start of the array; the column count is ignored.
    Matriu M = m23();
    EXPECT_EQ(values(ReaVec(M)), (V{1, 2}));
    MatriuT T(3, 2);
    for (int i = 0; i < T.size; ++i) T.data[i] = i + 1;
    EXPECT_EQ(values(ReaVec(T)), (V{1, 2, 3}));
    ReaVec c;
    c = M;
    EXPECT_EQ(values(c), (V{1, 2}));
    c = T;
    EXPECT_EQ(values(c), (V{1, 2, 3}));
    EXPECT_EQ(T.size, 6);   // read, not taken over

    EXPECT_EQ(values(M.GiveColumn(3)), (V{3, 6}));
    Matriu col(a);
    EXPECT_EQ(col.nrows, 3);
    EXPECT_EQ(col.ncols, 1);
    EXPECT_EQ(col(2, 1), 2.0);
}

TEST(ReaVecStorage, FillResizeAndRuns)
{
    ReaVec e;
    e = 5.0;
    EXPECT_EQ(e.n, 0);

    ReaVec v = rv({1});
    v.resize(3, 7.0);
    EXPECT_EQ(values(v), (V{1, 7, 7}));
    v.resize(2, 0.0);
    EXPECT_EQ(values(v), (V{1, 7}));
    v.resize(3, 4.0);
    EXPECT_EQ(values(v), (V{1, 7, 4}));

    v.fill(9.0, -2, 0);
    EXPECT_EQ(values(v), (V{1, 9, 9}));
    v.fill(0.0, 1, 1);
    EXPECT_EQ(values(v), (V{0, 9, 9}));
    v.fill(2.0);
    EXPECT_TRUE(v == 2.0);

    ReaVec w = rv({1, 2, 3});
    EXPECT_EQ(values(w.subVec(2, 0)), (V{2, 3}));
    EXPECT_EQ(values(w.subVec(-3, 2)), (V{1, 2}));
    EXPECT_EQ(values(w.subVec(-1, 1)), V{3});
}

TEST(ReaVecWhole, SearchOrderAndCombinations)
{
    ReaVec v = rv({3, 1, 1});
    EXPECT_EQ(v.index(1.0), 2);
    EXPECT_EQ(v.index(4.0), 0);
    EXPECT_EQ(values(vantrel::reverse(v)), (V{1, 1, 3}));
    v.reverse();
    EXPECT_EQ(values(v), (V{1, 1, 3}));
    EXPECT_EQ(v.reduce([](double a, double x) { return a * 10 + x; }, 0.0), 113.0);

    EXPECT_TRUE(ReaVec() == 1.0);
    EXPECT_TRUE(rv({1, 2}) == rv({1, 2}));
    EXPECT_FALSE(rv({1, 2}) == rv({1, 2, 0}));
    EXPECT_EQ(values(rv({1}) & rv({2, 3})), (V{1, 2, 3}));
    auto cmp = [](double x, double y) { return x < y ? -1 : x > y ? 1 : 0; };
    EXPECT_EQ(values(vantrel::merge(rv({1, 4}), rv({2}), cmp)), (V{1, 2, 4}));
    EXPECT_EQ(values(vantrel::map([](double x) { return x * x; }, rv({2, 3}))), (V{4, 9}));
    EXPECT_EQ(values(vantrel::combine([](double x, double y) { return x - y; },
                                      rv({5, 5}), rv({1, 2}))),
              (V{4, 3}));
}

TEST(ReaVecArithmetic, OverTheFirstOperandsLength)
{
    ReaVec a = rv({1, 2}), b = rv({4, 8, 100});
    EXPECT_EQ(values(a + b), (V{5, 10}));
    EXPECT_EQ(values(vantrel::add(a, b)), (V{5, 10}));
    EXPECT_EQ(values(a - b), (V{-3, -6}));
    EXPECT_EQ(values(vantrel::product(a, b)), (V{4, 16}));
    EXPECT_EQ(values(vantrel::quotient(a, b)), (V{0.25, 0.25}));
    EXPECT_EQ(a * b, 20.0);
    EXPECT_EQ(values(a - 1.0), (V{0, 1}));
    EXPECT_EQ(values(a / 2.0), (V{0.5, 1}));
    EXPECT_EQ(values(-a), (V{-1, -2}));
    ReaVec z = a / 0.0;   // no check: infinities
    EXPECT_TRUE(std::isinf(z[0]));

    ReaVec c = a;
    c += b;
    c.add(b);
    c -= rv({1, 1});
    c.product(rv({2, 1})).quotient(rv({4, 17}));
    c += 1.0;
    c -= 3.0;
    c *= 2.0;
    c /= 4.0;
    c.product(6.0).quotient(3.0);
    EXPECT_EQ(values(c), (V{2, -1}));
}

TEST(ReaVecReductions, TiesKeepTheEarliest)
{
    EXPECT_EQ(rv({1, 5, 5}).max_index(), 2);
    EXPECT_EQ(rv({4, 1, 1}).min_index(), 2);
    EXPECT_EQ(ReaVec().max_index(), 0);
    EXPECT_EQ(ReaVec().max_val(), 0.0);
    EXPECT_EQ(rv({-3, -1, -2}).max_val(), -1.0);
    EXPECT_EQ(rv({2, 1, 3}).min_val(), 1.0);
    EXPECT_EQ(rv({2, -6, 3}).sum(), -1.0);
    EXPECT_EQ(rv({2, -6, 3}).sumsq(), 49.0);
    EXPECT_EQ(rv({2, -6, 3}).modul(), 7.0);
}

TEST(ReaVecMatrixProducts, ForwardAndTransposed)
{
    Matriu M = m23();
    ReaVec y(2);
    y.product(M, rv({1, 0, -1}));
    EXPECT_EQ(values(y), (V{-2, -2}));
    y.add_product(M, rv({1, 1, 1}));
    EXPECT_EQ(values(y), (V{4, 13}));
    y.sub_product(M, rv({0, 1, 0}));
    EXPECT_EQ(values(y), (V{2, 8}));

    // The first (column count) elements are cleared before accumulating.
    ReaVec t = rv({50, 50, 50});
    t.tproduct(M, rv({1, 2}));
    EXPECT_EQ(values(t), (V{9, 12, 15}));
    t.add_tproduct(M, rv({1, 0}));
    EXPECT_EQ(values(t), (V{10, 14, 18}));
    t.sub_tproduct(M, rv({0, 1}));
    EXPECT_EQ(values(t), (V{6, 9, 12}));

    // A point rotated in place by a quarter turn about z.
    Matriu R(3, 3);
    R = 0.0;
    R(1, 2) = -1; R(2, 1) = 1; R(3, 3) = 1;
    ReaVec p = rv({1, 2, 3});
    p.product(R, p);
    EXPECT_EQ(values(p), (V{-2, 1, 3}));
}

TEST(ReaVecGeometry, CrossProductsAndProjections)
{
    EXPECT_EQ(values(vantrel::VectorProd(rv({1, 0}), rv({0, 1}))), (V{0, 0, 1}));
    EXPECT_EQ(values(vantrel::VectorProd(rv({0, 1, 0}), rv({0, 0, 1}))), (V{1, 0, 0}));
    EXPECT_EQ(values(vantrel::VectorProd(rv({1, 2, 3}), rv({4, 5, 6}))), (V{-3, 6, -3}));
    // A plane operand is lifted to z = 0 even when the other is spatial.
    EXPECT_EQ(values(vantrel::VectorProd(rv({1, 2}), rv({0, 0, 1}))), (V{2, -1, 0}));

    EXPECT_EQ(values(vantrel::VectorProd(big({1, 0}), big({0, 1}))), (V{0, 0, 1}));
    EXPECT_EQ(values(vantrel::VectorProd(big({1, 2, 3}), big({4, 5, 6}))), (V{-3, 6, -3}));
    EXPECT_EQ(values(vantrel::VectorProd(big({1, 2}), big({0, 0, 1}))), (V{2, -1, 0}));

    ReaVec v = rv({1, 2, 3});
    EXPECT_EQ(values(vantrel::ProjectionPlane(v, 3)), (V{1, 2, 0}));
    EXPECT_EQ(values(vantrel::ProjectionPlane(v, 1)), (V{0, 2, 3}));
    EXPECT_EQ(values(vantrel::ProjectionPlane(v, rv({0, 1, 0}))), (V{1, 0, 3}));
    // A normal of length 2 scales the projection by 4.
    EXPECT_EQ(values(vantrel::ProjectionPlane(v, rv({0, 0, 2}))), (V{4, 8, 0}));

    EXPECT_EQ(vantrel::ProjectionAxis(rv({3, 4}), rv({0, 2})), 4.0);
    EXPECT_EQ(vantrel::distance2(rv({1, 2, 3}), rv({4, 6, 3})), 25.0);
    EXPECT_EQ(vantrel::distance2(ReaVec(), rv({4})), 0.0);
    EXPECT_EQ(vantrel::scalarproduct(rv({1, 2}), rv({3, 4, 5})), 11.0);
    EXPECT_EQ(vantrel::scalarproduct(ReaVec(), rv({3})), 0.0);
}

TEST(ReaVecGeometry, CosAngleIsClamped)
{
    EXPECT_EQ(vantrel::Cos_Angle(rv({1, 0}), rv({0, 5})), 0.0);
    EXPECT_NEAR(vantrel::Cos_Angle(rv({1, 0, 0}), rv({1, std::sqrt(3.0), 0})), 0.5, 1e-15);

    // These parallel vectors give a quotient just above 1 (below -1 when
    // opposed) in double arithmetic.
    ReaVec a = rv({0.1, 0.1, 3.3});
    ReaVec b = a * 3.0;
    ASSERT_GT((a * b) / (a.modul() * b.modul()), 1.0);
    EXPECT_EQ(vantrel::Cos_Angle(a, b), 1.0);
    EXPECT_EQ(vantrel::Cos_Angle(a, -b), -1.0);

    // A zero operand makes the quotient NaN, reported as 1.
    EXPECT_EQ(vantrel::Cos_Angle(rv({0, 0, 0}), rv({1, 2, 3})), 1.0);
    EXPECT_EQ(vantrel::Cos_Angle(rv({1, 2, 3}), rv({0, 0, 0})), 1.0);
}

TEST(ReaVecStreams, ExactFormats)
{
    std::ostringstream empty;
    empty << ReaVec();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");

    std::ostringstream two;
    two << rv({1, 2});
    EXPECT_EQ(two.str(), "   1.000000e+00   2.000000e+00");
    EXPECT_TRUE(two.flags() & std::ios::scientific);

    std::ostringstream wide;
    wide.precision(2);
    wide.width(1);
    wide << rv({-0.5});
    EXPECT_EQ(wide.str(), "   -5.00e-01");

    std::istringstream in("4 5.5 6");
    ReaVec r(2);
    in >> r;
    EXPECT_EQ(values(r), (V{4, 5.5}));
}

TEST(ReaVecDeathTest, VectorProdOnlyInTwoOrThreeDimensions)
{
    EXPECT_FATAL(vantrel::VectorProd(big({1, 2, 3, 4}), big({1, 2, 3})),
                 "VectorProd can only be made in 2D or 3D\n");
    EXPECT_FATAL(vantrel::VectorProd(big({1, 2}), big({1})),
                 "VectorProd can only be made in 2D or 3D\n");
}
