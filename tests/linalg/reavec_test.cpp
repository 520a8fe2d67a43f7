#include "laminate/linalg/reavec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "fatal.h"
#include "linalg/matriu_rows.h"

using namespace vantrel;

auto const Small = Vec<ReaVec>;

TEST(ReaVecStorage, CopiesMatricesAndRuns)
{
    ReaVec a = Small({1, 2, 3});
    ReaVec b(a);
    b[0] = 9;
    EXPECT_EQ(Vals(a), (V{1, 2, 3}));

    // nrows values from the start of the array; the column count is ignored.
    Matriu M = Rows({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(Vals(ReaVec(M)), (V{1, 2}));
    MatriuT T;
    T = Rows({{1, 2}, {3, 4}, {5, 6}});
    ReaVec c;
    c = T;
    EXPECT_EQ(Vals(c), (V{1, 2, 3}));
    EXPECT_EQ(T.size, 6);  // read, not taken over
    EXPECT_EQ(Vals(M.GiveColumn(3)), (V{3, 6}));
    EXPECT_TRUE(Matriu(a) == Rows({{1}, {2}, {3}}));

    ReaVec e;
    e = 5.0;  // nothing to fill, and no complaint
    EXPECT_EQ(e.n, 0);
    ReaVec v = Small({1});
    v.resize(3, 7.0);
    v.resize(2, 0.0);
    v.resize(3, 4.0);
    EXPECT_EQ(Vals(v), (V{1, 7, 4}));
    v.fill(9.0, -2, 0);
    EXPECT_EQ(Vals(v), (V{1, 9, 9}));
    EXPECT_EQ(Vals(a.subVec(-3, 2)), (V{1, 2}));
}

TEST(ReaVecWhole, SearchOrderAndCombinations)
{
    ReaVec v = Small({3, 1, 1});
    EXPECT_EQ(v.index(1.0), 2);
    v.reverse();
    EXPECT_EQ(Vals(v), (V{1, 1, 3}));
    EXPECT_EQ(v.reduce([](double a, double x) { return a * 10 + x; }, 0.0), 113.0);
    EXPECT_FALSE(Small({1, 2}) == Small({1, 2, 0}));
    EXPECT_EQ(Vals(Small({1}) & Small({2, 3})), (V{1, 2, 3}));
    auto cmp = [](double x, double y) { return x < y ? -1 : x > y ? 1 : 0; };
    EXPECT_EQ(Vals(merge(Small({1, 4}), Small({2}), cmp)), (V{1, 2, 4}));
    EXPECT_EQ(Vals(map([](double x) { return x * x; }, Small({2, 3}))), (V{4, 9}));
}

TEST(ReaVecArithmetic, OverTheFirstOperandsLength)
{
    ReaVec a = Small({1, 2}), b = Small({4, 8, 100});
    EXPECT_EQ(Vals(a + b), (V{5, 10}));
    EXPECT_EQ(Vals(add(a, b)), (V{5, 10}));
    EXPECT_EQ(Vals(a - b), (V{-3, -6}));
    EXPECT_EQ(Vals(product(a, b)), (V{4, 16}));
    EXPECT_EQ(Vals(quotient(a, b)), (V{0.25, 0.25}));
    EXPECT_EQ(a * b, 20.0);
    EXPECT_EQ(Vals(-(a / 2.0 - 1.0)), (V{0.5, 0}));
    EXPECT_TRUE(std::isinf((a / 0.0)[0]));  // no check: infinities

    ReaVec c = a;
    c += b;
    c -= Small({-3, -7});
    c.product(Small({2, 1})).quotient(Small({4, 17}));
    c += 1.0;
    c -= 3.0;
    c *= 2.0;
    c /= 4.0;
    c.product(6.0).quotient(3.0);
    EXPECT_EQ(Vals(c), (V{2, -1}));
}

TEST(ReaVecReductions, TiesKeepTheEarliest)
{
    EXPECT_EQ(Small({1, 5, 5}).max_index(), 2);
    EXPECT_EQ(Small({4, 1, 1}).min_index(), 2);
    EXPECT_EQ(Small({-3, -1, -2}).max_val(), -1.0);
    EXPECT_EQ(Small({2, -6, 3}).sum(), -1.0);
    EXPECT_EQ(Small({2, -6, 3}).modul(), 7.0);
}

TEST(ReaVecMatrixProducts, ForwardAndTransposed)
{
    Matriu M = Rows({{1, 2, 3}, {4, 5, 6}});
    ReaVec y(2);
    y.product(M, Small({1, 0, -1}));
    EXPECT_EQ(Vals(y), (V{-2, -2}));
    y.add_product(M, Small({1, 1, 1}));
    y.sub_product(M, Small({0, 1, 0}));
    EXPECT_EQ(Vals(y), (V{2, 8}));

    // The first (column count) elements are cleared before accumulating.
    ReaVec t = Small({50, 50, 50});
    t.tproduct(M, Small({1, 2}));
    EXPECT_EQ(Vals(t), (V{9, 12, 15}));
    t.add_tproduct(M, Small({1, 0}));
    t.sub_tproduct(M, Small({0, 1}));
    EXPECT_EQ(Vals(t), (V{6, 9, 12}));

    // A point rotated in place by a quarter turn about z.
    ReaVec p = Small({1, 2, 3});
    p.product(Rows({{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}), p);
    EXPECT_EQ(Vals(p), (V{-2, 1, 3}));
}

TEST(ReaVecGeometry, CrossProductsAndProjections)
{
    EXPECT_EQ(Vals(VectorProd(Small({1, 2, 3}), Small({4, 5, 6}))), (V{-3, 6, -3}));
    // A plane operand is lifted to z = 0 even when the other is spatial.
    EXPECT_EQ(Vals(VectorProd(Small({1, 2}), Small({0, 0, 1}))), (V{2, -1, 0}));
    EXPECT_EQ(Vals(VectorProd(Vec({1, 2}), Vec({0, 0, 1}))), (V{2, -1, 0}));

    ReaVec v = Small({1, 2, 3});
    EXPECT_EQ(Vals(ProjectionPlane(v, 1)), (V{0, 2, 3}));
    EXPECT_EQ(Vals(ProjectionPlane(v, Small({0, 1, 0}))), (V{1, 0, 3}));
    // A normal of length 2 scales the projection by 4.
    EXPECT_EQ(Vals(ProjectionPlane(v, Small({0, 0, 2}))), (V{4, 8, 0}));
    EXPECT_EQ(ProjectionAxis(Small({3, 4}), Small({0, 2})), 4.0);
    EXPECT_EQ(distance2(Small({1, 2, 3}), Small({4, 6, 3})), 25.0);
    EXPECT_EQ(scalarproduct(Small({1, 2}), Small({3, 4, 5})), 11.0);
}

TEST(ReaVecGeometry, CosAngleIsClamped)
{
    EXPECT_NEAR(Cos_Angle(Small({1, 0, 0}), Small({1, std::sqrt(3.0), 0})), 0.5, 1e-15);
    // These parallel vectors give a quotient just above 1 (below -1 when
    // opposed) in double arithmetic.
    ReaVec a = Small({0.1, 0.1, 3.3});
    ReaVec b = a * 3.0;
    ASSERT_GT((a * b) / (a.modul() * b.modul()), 1.0);
    EXPECT_EQ(Cos_Angle(a, b), 1.0);
    EXPECT_EQ(Cos_Angle(a, -b), -1.0);
    // A zero operand makes the quotient NaN, reported as 1.
    EXPECT_EQ(Cos_Angle(Small({0, 0, 0}), Small({1, 2, 3})), 1.0);
}

TEST(ReaVecStreams, ExactFormats)
{
    std::ostringstream empty, two, wide;
    empty << ReaVec();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");
    two << Small({1, 2});
    EXPECT_EQ(two.str(), "   1.000000e+00   2.000000e+00");
    wide.precision(2);
    wide.width(1);
    wide << Small({-0.5});
    EXPECT_EQ(wide.str(), "   -5.00e-01");

    std::istringstream in("4 5.5 6");
    ReaVec r(2);
    in >> r;
    EXPECT_EQ(Vals(r), (V{4, 5.5}));
}

TEST(ReaVecDeathTest, VectorProdOnlyInTwoOrThreeDimensions)
{
    EXPECT_FATAL(VectorProd(Vec({1, 2, 3, 4}), Vec({1, 2, 3})),
                 "VectorProd can only be made in 2D or 3D\n");
}
