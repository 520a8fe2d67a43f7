#include "laminate/linalg/reavecv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <new>
#include <sstream>

#include "fatal.h"
#include "linalg/matriu_rows.h"

using namespace vantrel;

TEST(ReaVecVTakeOver, TemporariesAreLeftEmpty)
{
    ReaVecVT tmp(3);
    tmp = 2.0;
    double* buffer = tmp.data;
    ReaVecV w(tmp);
    EXPECT_EQ(w.data, buffer);
    EXPECT_EQ(tmp.data, nullptr);
    EXPECT_EQ(tmp.n, 0);

    ReaVecVT other(2);
    other = 5.0;
    buffer = other.data;
    w = other;
    EXPECT_EQ(w.data, buffer);
    EXPECT_EQ(other.n, 0);

    // Temporary to temporary, then taken over by itself.
    ReaVecVT a(1), b;
    a = 7.0;
    b = a;
    b = b;
    EXPECT_EQ(Vals(b), V{7});
    EXPECT_EQ(a.n, 0);

    // A one-column matrix temporary gives up its array too.
    MatriuT m(3, 1);
    m = 4.0;
    buffer = m.data;
    ReaVecV v(m);
    EXPECT_EQ(v.data, buffer);
    EXPECT_EQ(m.size, 0);
    EXPECT_EQ(m.data, nullptr);
    MatriuT n(2, 1);
    n = 8.0;
    v = n;
    EXPECT_TRUE(v == 8.0);
    EXPECT_EQ(n.data, nullptr);
}

TEST(ReaVecVStorage, CopiesConversionsAndReuse)
{
    ReaVecV a = Vec({1, 2, 3});
    ReaVecV b(a);
    b[0] = 99;
    EXPECT_EQ(a[0], 1.0);  // deep copy
    EXPECT_EQ(Vals(ReaVecV(Vec<ReaVec>({4, 5}))), (V{4, 5}));
    ReaVecV c;
    c = Rows({{7}, {8}, {9}});
    EXPECT_EQ(Vals(c), (V{7, 8, 9}));
    EXPECT_TRUE(Matriu(a) == Rows({{1}, {2}, {3}}));

    // The array is kept when the length does not change.
    double* buffer = a.data;
    a = Vec({4, 5, 6});
    EXPECT_EQ(a.data, buffer);
    EXPECT_EQ(Vals(a), (V{4, 5, 6}));
    a = Vec({1});
    a = a;
    EXPECT_EQ(Vals(a), V{1});
}

TEST(ReaVecVStorage, ResizeKeepsExistingElements)
{
    ReaVecV v = Vec({1, 2, 3});
    v.resize(5, 7.0);
    EXPECT_EQ(Vals(v), (V{1, 2, 3, 7, 7}));
    v.resize(2, 7.0);
    double* buffer = v.data;
    v.resize(2, 0.0);  // same length: nothing reallocated or overwritten
    EXPECT_EQ(v.data, buffer);
    EXPECT_EQ(Vals(v), (V{1, 2}));
    v.resize(0, 4.0);
    EXPECT_EQ(v.data, nullptr);
    // A negative length reaches the allocator, which refuses it.
    EXPECT_THROW(v.resize(-1, 0.0), std::bad_alloc);
}

TEST(ReaVecVRuns, FillAndSubVecAddressing)
{
    ReaVecV v = Vec({1, 2, 3, 4, 5});
    EXPECT_EQ(Vals(v.subVec(2, 0)), (V{2, 3, 4, 5}));
    EXPECT_EQ(Vals(v.subVec(-1, 1)), V{5});
    EXPECT_EQ(Vals(v.subVec(-3, 2)), (V{3, 4}));
    v.fill(9.0, -2, 0);
    v.fill(0.0, 2, 2);
    EXPECT_EQ(Vals(v), (V{1, 0, 0, 9, 9}));
}

TEST(ReaVecVWhole, SearchReverseFoldCompareMerge)
{
    ReaVecV v = Vec({3, 1, 4, 1});
    EXPECT_EQ(v.index(1.0), 2);
    EXPECT_EQ(Vals(reverse(v)), (V{1, 4, 1, 3}));
    // A left fold: ((10 / 2) / 5) = 1, not 10 / (2 / 5).
    EXPECT_EQ(Vec({2, 5}).reduce([](double a, double x) { return a / x; }, 10.0), 1.0);

    EXPECT_TRUE(ReaVecV() == 3.0);
    EXPECT_FALSE(Vec({3, 3.5}) == 3.0);
    EXPECT_FALSE(Vec({1, 2}) == Vec({1, 2, 3}));
    EXPECT_EQ(Vals(ReaVecV() & Vec({3})), V{3});

    // Compares integer parts only, so 1.1 and 1.2 tie: ties come from the first.
    auto byFloor = [](double x, double y) {
        return std::floor(x) < std::floor(y) ? -1 : std::floor(x) > std::floor(y) ? 1 : 0;
    };
    EXPECT_EQ(Vals(merge(Vec({1.1, 3.1, 5.1}), Vec({1.2, 2.2}), byFloor)),
              (V{1.1, 1.2, 2.2, 3.1, 5.1}));
}

namespace {
V seen;
void record(double x) { seen.push_back(x); }
double tenfold(double x) { return 10 * x; }
double weigh3(double a, double b, double c) { return a + 10 * b + 100 * c; }
double weigh6(double a, double b, double c, double d, double e, double s)
{
    return a + 2 * b + 3 * c + 4 * d + 5 * e + 6 * s;
}
}  // namespace

TEST(ReaVecVApply, EveryArity)
{
    ReaVecV v = Vec({1, 2, 3});
    seen.clear();
    v.apply(record);
    EXPECT_EQ(seen, (V{1, 2, 3}));
    // Each element receives f of its successor; the last one f of itself.
    v.apply(tenfold);
    EXPECT_EQ(Vals(v), (V{20, 30, 30}));

    ReaVecV a = Vec({1, 2}), b = Vec({3, 4}), c = Vec({5, 6}), r(2);
    r.apply(weigh3, a, b, c);
    EXPECT_EQ(Vals(r), (V{531, 642}));
    r.apply(weigh6, a, a, a, a, b, 1.0);
    EXPECT_EQ(Vals(r), (V{31, 46}));
    seen.clear();
    r.apply(record, c);
    EXPECT_EQ(Vals(r), (V{5, 6}));
    EXPECT_EQ(seen, (V{5, 6}));
    EXPECT_EQ(Vals(map(tenfold, a)), (V{10, 20}));
    EXPECT_EQ(Vals(combine([](double x, double y) { return x - y; }, a, b)), (V{-2, -2}));
}

TEST(ReaVecVArithmetic, ElementWiseScalarAndInPlace)
{
    ReaVecV a = Vec({1, 2, 4}), b = Vec({4, 8, 2});
    EXPECT_EQ(Vals(a + b), (V{5, 10, 6}));
    EXPECT_EQ(Vals(a - b), (V{-3, -6, 2}));
    EXPECT_EQ(Vals(product(a, b)), (V{4, 16, 8}));
    EXPECT_EQ(Vals(quotient(a, b)), (V{0.25, 0.25, 2}));
    EXPECT_EQ(Vals((a + 1.0) * 2.0 - 1.0), (V{3, 5, 9}));
    EXPECT_EQ(Vals(-(a / 4.0)), (V{-0.25, -0.5, -1}));
    EXPECT_EQ(Vals(Vec({1, -1}) / 0.0), (V{INFINITY, -INFINITY}));

    ReaVecV c = a;
    c += b;
    c -= Vec({1, 1, 1});
    c.product(Vec({2, 0, 1})).quotient(Vec({4, 1, 5}));
    c += 1.0;
    c -= 0.5;
    c *= 4.0;
    c.product(0.5).quotient(0.5);
    c /= 2.0;
    EXPECT_EQ(Vals(c), (V{5, 1, 3}));

    // The temporary negates itself and chains in place.
    ReaVecVT t = a + b;
    double* buffer = t.data;
    -t;
    t += Vec({1, 1, 1});
    EXPECT_EQ(t.data, buffer);
    EXPECT_EQ(Vals(t), (V{-4, -9, -5}));

    ReaVecV p = Vec({1, 2, 3});
    p.prod_row_add(1, 3, 10.0);
    EXPECT_EQ(Vals(p), (V{1, 2, 13}));
}

TEST(ReaVecVReductions, ExtremesSumsAndNorms)
{
    // Ties keep the earliest; the best starts from the first element, not 0.
    EXPECT_EQ(Vec({5, 1, 5}).max_index(), 1);
    EXPECT_EQ(Vec({4, 1, 1}).min_index(), 2);
    EXPECT_EQ(Vec({-3, -1, -2}).max_val(), -1.0);
    EXPECT_EQ(ReaVecV().max_index(), 0);

    ReaVecV v = Vec({3, -4});
    EXPECT_EQ(v.sum(), -1.0);
    EXPECT_EQ(v.sumsq(), 25.0);
    EXPECT_EQ(v.norm(), 5.0);
    EXPECT_EQ(v.modul(), 5.0);
    EXPECT_EQ(dot(Vec({1, 2}), Vec({3, 4, 100})), 11.0);
    EXPECT_EQ(Vec({1, 2, 3}) * Vec({4, 5, 6}), 32.0);
}

TEST(ReaVecVMatrixProducts, IntoTheExistingArray)
{
    Matriu M = Rows({{1, 2, 3}, {4, 5, 6}});
    ReaVecV y = Vec({100, 100});
    double* buffer = y.data;
    y.product(M, Vec({1, 0, -1}));
    EXPECT_EQ(y.data, buffer);
    EXPECT_EQ(Vals(y), (V{-2, -2}));

    y.add_product(M, Vec({1, 1, 1}));
    y.sub_product(M, Vec({0, 1, 0}));
    EXPECT_EQ(Vals(y), (V{2, 8}));
    ReaVecV z = Vec({1, 1, 1});
    z.add_tproduct(M, Vec({1, 2}));  // M^T (1, 2) = (9, 12, 15)
    z.sub_tproduct(M, Vec({1, 0}));
    EXPECT_EQ(Vals(z), (V{9, 11, 13}));
}

TEST(ReaVecVStreams, ExactFormats)
{
    std::ostringstream empty, one, two;
    empty << ReaVecV();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");
    one << Vec({1.5});
    EXPECT_EQ(one.str(), "\n  1   1.500000e+00\n");
    // Fixed format is replaced; the precision and the pending width widen
    // the value field (3 + 2 + 7 = 12 columns).
    two << std::fixed;
    two.precision(3);
    two.width(2);
    two << Vec({-2, 10});
    EXPECT_EQ(two.str(), "\n  1    -2.000e+00\n  2     1.000e+01\n");
    EXPECT_FALSE(two.flags() & std::ios::fixed);

    std::istringstream in("1.5 -2 3e2 99");
    ReaVecV r(3);
    double rest = 0;
    in >> r >> rest;
    EXPECT_EQ(Vals(r), (V{1.5, -2, 300}));
    EXPECT_EQ(rest, 99.0);
}

TEST(ReaVecVDeathTest, FatalMisuse)
{
    EXPECT_FATAL(ReaVecVT(-4), "Can't create a vector of size -4");
    EXPECT_FATAL({ ReaVecV e; e = 2.5; }, "Can't fill with 2\\.5 a zero length vector\\.");
    EXPECT_FATAL({ MatriuT m(3, 2); ReaVecV v; v = m; },
                 "error: Assigning Vector=Matriu where M\\(num cols\\)=2");
    EXPECT_FATAL(ReaVecV(5).fill(9.0, 4, 3), "Index 5 out of range\\.");
    // A start that would reach in front of the array.
    EXPECT_FATAL(ReaVecV(3).subVec(-5, 2), "Index -2 out of range\\.");
    ReaVecV a(2), b(3);
    EXPECT_FATAL(a -= b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a /= 0.0, "Division by zero\\.");
    EXPECT_FATAL({ ReaVecV e; std::istringstream in("1"); in >> e; },
                 "\t\\(Zero size vector\\)");
}
