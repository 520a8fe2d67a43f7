#include "linalg/reavecv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <new>
#include <sstream>
#include <vector>

#include "fatal.h"
#include "linalg/matriu.h"
#include "linalg/reavec.h"

using vantrel::Matriu;
using vantrel::MatriuT;
using vantrel::ReaVec;
using vantrel::ReaVecV;
using vantrel::ReaVecVT;

namespace {

ReaVecV vec(std::vector<double> const& x)
{
    ReaVecV v(static_cast<int>(x.size()));
    for (int i = 0; i < v.n; ++i) v[i] = x[i];
    return v;
}

std::vector<double> values(ReaVecV const& v)
{
    return std::vector<double>(v.data, v.data + v.n);
}

using V = std::vector<double>;

}  // namespace

TEST(ReaVecVTakeOver, TemporaryIsLeftEmpty)
{
    ReaVecVT tmp(3);
    tmp = 2.0;
    double* buffer = tmp.data;
    ReaVecV w(tmp);
    EXPECT_EQ(w.data, buffer);
    EXPECT_EQ(w.n, 3);
    EXPECT_EQ(tmp.data, nullptr);
    EXPECT_EQ(tmp.n, 0);

    // Assignment releases the old array and takes the temporary's.
    ReaVecVT other(2);
    other = 5.0;
    buffer = other.data;
    w = other;
    EXPECT_EQ(w.data, buffer);
    EXPECT_EQ(values(w), (V{5, 5}));
    EXPECT_EQ(other.data, nullptr);
    EXPECT_EQ(other.n, 0);

    // Temporary to temporary, and a temporary taken over by itself.
    ReaVecVT a(1);
    a = 7.0;
    ReaVecVT b;
    b = a;
    EXPECT_EQ(values(b), V{7});
    EXPECT_EQ(a.n, 0);
    b = b;
    EXPECT_EQ(values(b), V{7});

    // An unnamed result goes straight into the vector.
    ReaVecV s = vec({1, 2}) + vec({10, 20});
    EXPECT_EQ(values(s), (V{11, 22}));
}

TEST(ReaVecVTakeOver, OneColumnMatrixTemporary)
{
    MatriuT m(3, 1);
    m(1, 1) = 1; m(2, 1) = 2; m(3, 1) = 3;
    double* buffer = m.data;
    ReaVecV v(m);
    EXPECT_EQ(v.data, buffer);
    EXPECT_EQ(values(v), (V{1, 2, 3}));
    EXPECT_EQ(m.nrows, 0);
    EXPECT_EQ(m.ncols, 0);
    EXPECT_EQ(m.size, 0);
    EXPECT_EQ(m.data, nullptr);

    MatriuT n(2, 1);
    n(1, 1) = 8; n(2, 1) = 9;
    v = n;
    EXPECT_EQ(values(v), (V{8, 9}));
    EXPECT_EQ(n.data, nullptr);
    EXPECT_EQ(n.size, 0);
}

TEST(ReaVecVConstruction, CopiesAndConversions)
{
    ReaVecV empty(0);
    EXPECT_EQ(empty.n, 0);

    ReaVecV a = vec({1, 2, 3});
    ReaVecV b(a);
    b[0] = 99;
    EXPECT_EQ(a[0], 1.0);   // deep copy

    ReaVec small(2);
    small[0] = 4; small[1] = 5;
    EXPECT_EQ(values(ReaVecV(small)), (V{4, 5}));

    Matriu col(3, 1);
    col(1, 1) = 7; col(2, 1) = 8; col(3, 1) = 9;
    EXPECT_EQ(values(ReaVecV(col)), (V{7, 8, 9}));
    ReaVecV c;
    c = col;
    EXPECT_EQ(values(c), (V{7, 8, 9}));

    // Back to a column matrix.
    Matriu back(a);
    EXPECT_EQ(back.nrows, 3);
    EXPECT_EQ(back.ncols, 1);
    EXPECT_EQ(back.size, 3);
    EXPECT_EQ(back(3, 1), 3.0);
}

TEST(ReaVecVAssignment, ReallocatesOnlyOnLengthChange)
{
    ReaVecV a = vec({1, 2, 3});
    double* buffer = a.data;
    a = vec({4, 5, 6});
    EXPECT_EQ(a.data, buffer);
    EXPECT_EQ(values(a), (V{4, 5, 6}));
    a = vec({1});
    EXPECT_EQ(values(a), V{1});
    a = a;
    EXPECT_EQ(values(a), V{1});

    ReaVec small(3);
    small = 2.5;
    a = small;
    EXPECT_EQ(values(a), (V{2.5, 2.5, 2.5}));
    a = -1.0;
    EXPECT_TRUE(a == -1.0);
}

TEST(ReaVecVResize, KeepsExistingElements)
{
    ReaVecV v = vec({1, 2, 3});
    v.resize(5, 7.0);
    EXPECT_EQ(values(v), (V{1, 2, 3, 7, 7}));
    v.resize(2, 7.0);
    EXPECT_EQ(values(v), (V{1, 2}));
    // Same length: nothing reallocated and nothing overwritten.
    double* buffer = v.data;
    v.resize(2, 0.0);
    EXPECT_EQ(v.data, buffer);
    EXPECT_EQ(values(v), (V{1, 2}));
    v.resize(0, 4.0);
    EXPECT_EQ(v.n, 0);
    EXPECT_EQ(v.data, nullptr);
    v.resize(2, 4.0);
    EXPECT_EQ(values(v), (V{4, 4}));

    // A negative length reaches the allocator, which refuses it.
    ReaVecV e;
    EXPECT_THROW(e.resize(-1, 0.0), std::bad_alloc);
}

TEST(ReaVecVRuns, FillAndSubVecAddressing)
{
    ReaVecV v = vec({1, 2, 3, 4, 5});
    v.fill(9.0, -2, 0);
    EXPECT_EQ(values(v), (V{1, 2, 3, 9, 9}));
    v.fill(0.0, 2, 2);
    EXPECT_EQ(values(v), (V{1, 0, 0, 9, 9}));
    v.fill(6.0, 5, 1);
    EXPECT_EQ(v[4], 6.0);

    ReaVecV w = vec({1, 2, 3, 4, 5});
    EXPECT_EQ(values(w.subVec(2, 0)), (V{2, 3, 4, 5}));
    EXPECT_EQ(values(w.subVec(-1, 1)), V{5});
    EXPECT_EQ(values(w.subVec(1, 5)), (V{1, 2, 3, 4, 5}));
    EXPECT_EQ(values(w.subVec(-3, 2)), (V{3, 4}));
}

TEST(ReaVecVWhole, SearchReverseFoldCompare)
{
    ReaVecV v = vec({3, 1, 4, 1});
    EXPECT_EQ(v.index(1.0), 2);
    EXPECT_EQ(v.index(5.0), 0);
    EXPECT_EQ(ReaVecV().index(0.0), 0);

    EXPECT_EQ(values(vantrel::reverse(v)), (V{1, 4, 1, 3}));
    v.reverse();
    EXPECT_EQ(values(v), (V{1, 4, 1, 3}));

    auto minus = [](double acc, double x) { return acc - x; };
    EXPECT_EQ(v.reduce(minus, 100.0), 91.0);
    EXPECT_EQ(ReaVecV().reduce(minus, 5.0), 5.0);
    // A left fold: ((10 / 2) / 5) = 1, not 10 / (2 / 5).
    EXPECT_EQ(vec({2, 5}).reduce([](double a, double x) { return a / x; }, 10.0), 1.0);

    EXPECT_TRUE(ReaVecV() == 3.0);
    EXPECT_FALSE(vec({3, 3.5}) == 3.0);
    EXPECT_FALSE(vec({1, 2}) == vec({1, 2, 3}));
    EXPECT_FALSE(vec({1, 2}) == vec({1, 3}));
    EXPECT_TRUE(ReaVecV() == ReaVecV(0));

    EXPECT_EQ(values(vec({1, 2}) & vec({3})), (V{1, 2, 3}));
    EXPECT_EQ(values(ReaVecV() & vec({3})), V{3});
}

TEST(ReaVecVWhole, MergeTakesTiesFromTheFirst)
{
    // Compares integer parts only, so 1.1 and 1.2 tie.
    auto byFloor = [](double x, double y) {
        return std::floor(x) < std::floor(y) ? -1 : std::floor(x) > std::floor(y) ? 1 : 0;
    };
    ReaVecV m = vantrel::merge(vec({1.1, 3.1, 5.1}), vec({1.2, 2.2}), byFloor);
    EXPECT_EQ(values(m), (V{1.1, 1.2, 2.2, 3.1, 5.1}));
    EXPECT_EQ(values(vantrel::merge(ReaVecV(), vec({2, 1}), byFloor)), (V{2, 1}));
}

namespace {
std::vector<double> seen;
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
    ReaVecV v = vec({1, 2, 3});
    seen.clear();
    v.apply(record);
    EXPECT_EQ(seen, (V{1, 2, 3}));

    // Each element receives f of its successor; the last one f of itself.
    v.apply(tenfold);
    EXPECT_EQ(values(v), (V{20, 30, 30}));
    ReaVecV one = vec({4});
    one.apply(tenfold);
    EXPECT_EQ(values(one), V{40});
    ReaVecV().apply(tenfold);   // nothing to do

    ReaVecV a = vec({1, 2}), b = vec({3, 4}), c = vec({5, 6});
    ReaVecV r(2);
    r.apply(weigh3, a, b, c);
    EXPECT_EQ(values(r), (V{531, 642}));
    r.apply(weigh3, a, b, 7.0);
    EXPECT_EQ(values(r), (V{731, 742}));
    r.apply(weigh6, a, a, a, a, b, 1.0);
    EXPECT_EQ(values(r), (V{1 * 10 + 15 + 6, 2 * 10 + 20 + 6}));
    r.apply(tenfold, a);
    EXPECT_EQ(values(r), (V{10, 20}));

    seen.clear();
    r.apply(record, c);
    EXPECT_EQ(values(r), (V{5, 6}));
    EXPECT_EQ(seen, (V{5, 6}));

    EXPECT_EQ(values(vantrel::map(tenfold, a)), (V{10, 20}));
    EXPECT_EQ(values(vantrel::combine([](double x, double y) { return x - y; }, a, b)),
              (V{-2, -2}));
}

TEST(ReaVecVArithmetic, ElementWiseAndScalar)
{
    ReaVecV a = vec({1, 2, 4}), b = vec({4, 8, 2});
    EXPECT_EQ(values(a + b), (V{5, 10, 6}));
    EXPECT_EQ(values(a - b), (V{-3, -6, 2}));
    EXPECT_EQ(values(vantrel::product(a, b)), (V{4, 16, 8}));
    EXPECT_EQ(values(vantrel::quotient(a, b)), (V{0.25, 0.25, 2}));
    EXPECT_EQ(values(a + 1.0), (V{2, 3, 5}));
    EXPECT_EQ(values(a - 1.0), (V{0, 1, 3}));
    EXPECT_EQ(values(a * 2.0), (V{2, 4, 8}));
    EXPECT_EQ(values(a / 4.0), (V{0.25, 0.5, 1}));
    EXPECT_EQ(values(-a), (V{-1, -2, -4}));
    EXPECT_EQ(values(a), (V{1, 2, 4}));   // untouched by the operators

    ReaVecV inf = vec({1, -1}) / 0.0;
    EXPECT_TRUE(std::isinf(inf[0]) && inf[0] > 0);
    EXPECT_TRUE(std::isinf(inf[1]) && inf[1] < 0);

    ReaVecV c = a;
    c += b;
    c -= vec({1, 1, 1});
    c.product(vec({2, 0, 1})).quotient(vec({4, 1, 5}));
    EXPECT_EQ(values(c), (V{2, 0, 1}));
    c += 1.0;
    c -= 0.5;
    c *= 4.0;
    c.product(0.5).quotient(0.5);
    c /= 2.0;
    EXPECT_EQ(values(c), (V{5, 1, 3}));

    // The temporary negates itself and chains in place.
    ReaVecVT t = a + b;
    double* buffer = t.data;
    -t;
    t += vec({1, 1, 1});
    EXPECT_EQ(t.data, buffer);
    EXPECT_EQ(values(t), (V{-4, -9, -5}));

    ReaVecV p = vec({1, 2, 3});
    p.prod_row_add(1, 3, 10.0);
    EXPECT_EQ(values(p), (V{1, 2, 13}));
}

TEST(ReaVecVReductions, ExtremesSumsAndNorms)
{
    EXPECT_EQ(vec({1, 5, 5}).max_index(), 2);
    EXPECT_EQ(vec({4, 1, 1}).min_index(), 2);
    EXPECT_EQ(vec({5, 1, 5}).max_index(), 1);
    EXPECT_EQ(vec({7}).max_index(), 1);
    EXPECT_EQ(vec({7}).min_index(), 1);
    EXPECT_EQ(ReaVecV().max_index(), 0);
    EXPECT_EQ(ReaVecV().min_index(), 0);
    EXPECT_EQ(ReaVecV().max_val(), 0.0);
    EXPECT_EQ(ReaVecV().min_val(), 0.0);
    // The best starts from the first element, not from 0.
    EXPECT_EQ(vec({-3, -1, -2}).max_val(), -1.0);
    EXPECT_EQ(vec({3, 1, 2}).min_val(), 1.0);
    EXPECT_EQ(vec({-3, -1, -2}).max_index(), 2);

    ReaVecV v = vec({3, -4});
    EXPECT_EQ(v.sum(), -1.0);
    EXPECT_EQ(v.sumsq(), 25.0);
    EXPECT_EQ(v.norm(), 5.0);
    EXPECT_EQ(v.modul(), 5.0);
    EXPECT_EQ(ReaVecV().sum(), 0.0);

    EXPECT_EQ(vantrel::dot(vec({1, 2}), vec({3, 4, 100})), 11.0);
    EXPECT_EQ(vec({1, 2, 3}) * vec({4, 5, 6}), 32.0);
}

TEST(ReaVecVMatrixProducts, IntoTheExistingArray)
{
    Matriu M(2, 3);
    M(1, 1) = 1; M(1, 2) = 2; M(1, 3) = 3;
    M(2, 1) = 4; M(2, 2) = 5; M(2, 3) = 6;
    ReaVecV x = vec({1, 0, -1});

    ReaVecV y = vec({100, 100});
    double* buffer = y.data;
    y.product(M, x);
    EXPECT_EQ(y.data, buffer);
    EXPECT_EQ(values(y), (V{-2, -2}));
    y.add_product(M, vec({1, 1, 1}));
    EXPECT_EQ(values(y), (V{4, 13}));
    y.sub_product(M, vec({0, 1, 0}));
    EXPECT_EQ(values(y), (V{2, 8}));

    ReaVecV z = vec({1, 1, 1});
    z.add_tproduct(M, vec({1, 2}));   // M^T (1, 2) = (9, 12, 15)
    EXPECT_EQ(values(z), (V{10, 13, 16}));
    z.sub_tproduct(M, vec({1, 0}));
    EXPECT_EQ(values(z), (V{9, 11, 13}));
}

TEST(ReaVecVStreams, ExactFormats)
{
    std::ostringstream empty;
    empty << ReaVecV();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");

    std::ostringstream one;
    one << vec({1.5});
    EXPECT_EQ(one.str(), "\n  1   1.500000e+00\n");
    EXPECT_TRUE(one.flags() & std::ios::scientific);
    EXPECT_FALSE(one.flags() & std::ios::fixed);

    // Fixed format is replaced; the precision and the pending width widen
    // the value field (3 + 2 + 7 = 12 columns).
    std::ostringstream two;
    two << std::fixed;
    two.precision(3);
    two.width(2);
    two << vec({-2, 10});
    EXPECT_EQ(two.str(), "\n  1    -2.000e+00\n  2     1.000e+01\n");

    std::istringstream in("1.5 -2 3e2 99");
    ReaVecV r(3);
    in >> r;
    EXPECT_EQ(values(r), (V{1.5, -2, 300}));
    double rest = 0;
    in >> rest;
    EXPECT_EQ(rest, 99.0);
}

TEST(ReaVecVDeathTest, FatalMisuse)
{
    EXPECT_FATAL(ReaVecV(-1), "Can't create a vector of size -1");
    EXPECT_FATAL(ReaVecVT(-4), "Can't create a vector of size -4");
    EXPECT_FATAL({ ReaVecV e; e = 3.0; }, "Can't fill with 3 a zero length vector\\.");
    EXPECT_FATAL({ ReaVecVT e; e = 2.5; }, "Can't fill with 2\\.5 a zero length vector\\.");
    EXPECT_FATAL(Matriu m(2, 2); ReaVecV v(m),
                 "error: Assigning Vector=Matriu where M\\(num cols\\)=2");
    EXPECT_FATAL({ MatriuT m(3, 2); ReaVecV v; v = m; },
                 "error: Assigning Vector=Matriu where M\\(num cols\\)=2");
    EXPECT_FATAL({ Matriu m; ReaVecV v; v = m; },
                 "error: Assigning Vector=Matriu where M\\(num cols\\)=0");
}

TEST(ReaVecVDeathTest, RunOutsideTheVector)
{
    EXPECT_FATAL(ReaVecV(5).fill(9.0, 4, 3), "Index 5 out of range\\.");
    EXPECT_FATAL(ReaVecV(5).subVec(6, 0), "Index 4 out of range\\.");
    EXPECT_FATAL(ReaVecV(5).subVec(2, -1), "Index -1 out of range\\.");
    EXPECT_FATAL(ReaVecV(0).fill(1.0, 1, 0), "Index -1 out of range\\.");
    // Starts that would reach in front of the array.
    EXPECT_FATAL(ReaVecV(5).fill(1.0, 0, 0), "Index -1 out of range\\.");
    EXPECT_FATAL(ReaVecV(3).subVec(-5, 2), "Index -2 out of range\\.");
}

TEST(ReaVecVDeathTest, LengthsAndDivision)
{
    ReaVecV a(2), b(3);
    a = 1.0;
    b = 1.0;
    EXPECT_FATAL(a + b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(b - a, "Different lenght vectors 3 != 2");
    EXPECT_FATAL(vantrel::quotient(a, b), "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a += b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a -= b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a.quotient(b), "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a * b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(vantrel::combine([](double x, double) { return x; }, a, b),
                 "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a /= 0.0, "Division by zero\\.");
    EXPECT_FATAL(a.quotient(0.0), "Division by zero\\.");
    EXPECT_FATAL({ ReaVecV e; std::istringstream in("1"); in >> e; },
                 "\t\\(Zero size vector\\)");
}
