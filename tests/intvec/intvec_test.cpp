#include "intvec/intvec.h"

#include <climits>
#include <csignal>
#include <initializer_list>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"

namespace {

IntVec Make(std::initializer_list<int> values)
{
    IntVec v(static_cast<unsigned int>(values.size()));
    unsigned int i = 0;
    for (int x : values) v[i++] = x;
    return v;
}

std::vector<int> Values(IntVec const& v) { return std::vector<int>(v.data, v.data + v.n); }

using V = std::vector<int>;

int Plus(int a, int b) { return a + b; }
int Minus(int a, int b) { return a - b; }
int Twice(int a) { return 2 * a; }
int Ascending(int a, int b) { return a - b; }

int applied_sum = 0;
void Accumulate(int x) { applied_sum = applied_sum * 10 + x; }

}  // namespace

TEST(IntVec, ConstructionCopyAndTakeOver)
{
    IntVec z(3);
    EXPECT_EQ(Values(z), V({0, 0, 0}));
    EXPECT_EQ(IntVec().data, nullptr);

    IntVec a = Make({1, 2, 3});
    IntVec b(a);
    b[0] = 9;
    EXPECT_EQ(Values(a), V({1, 2, 3}));   // deep copy
    EXPECT_EQ(b(1), 9);                   // operator() counts from 1
    EXPECT_EQ(b.length(), 3u);

    // Constructing from a result carrier takes its buffer and empties it.
    IntVecT t = a + a;
    int* buffer = t.data;
    IntVec c(t);
    EXPECT_EQ(c.data, buffer);
    EXPECT_EQ(t.data, nullptr);
    EXPECT_EQ(t.n, 0u);
    EXPECT_EQ(Values(c), V({2, 4, 6}));

    // Assignment from a carrier releases the old buffer and takes the new one.
    IntVecT u = a * 3;
    buffer = u.data;
    c = u;
    EXPECT_EQ(c.data, buffer);
    EXPECT_EQ(u.data, nullptr);
    c = a - 1;
    EXPECT_EQ(Values(c), V({0, 1, 2}));

    // Copy assignment keeps the buffer when the lengths agree, and survives
    // self-assignment.
    buffer = c.data;
    c = a;
    EXPECT_EQ(c.data, buffer);
    IntVec& same = c;
    c = same;
    EXPECT_EQ(Values(c), V({1, 2, 3}));
    c = Make({4});
    EXPECT_EQ(Values(c), V({4}));

    // A negated carrier is negated in place and handed on.
    IntVec d = -(a + a);
    EXPECT_EQ(Values(d), V({-2, -4, -6}));
    EXPECT_EQ(Values(-a), V({-1, -2, -3}));

    a = 5;
    EXPECT_TRUE(a == 5);
    IntVecT w(2);
    w = 7;
    EXPECT_EQ(Values(w), V({7, 7}));
}

TEST(IntVec, ResizeKeepsContents)
{
    IntVec v = Make({1, 2, 3});
    v.resize(5, 9);
    EXPECT_EQ(Values(v), V({1, 2, 3, 9, 9}));
    v.resize(2, 9);
    EXPECT_EQ(Values(v), V({1, 2}));
    v.resize(0, 9);
    EXPECT_EQ(v.data, nullptr);
    EXPECT_EQ(v.n, 0u);
    v.resize(2, 4);
    EXPECT_EQ(Values(v), V({4, 4}));

    // Growing one element at a time, as a per-layer list does, keeps every
    // earlier value.
    IntVec grown;
    for (unsigned int k = 1; k <= 1000; ++k) grown.resize(k, static_cast<int>(k));
    bool intact = true;
    for (unsigned int k = 0; k < 1000; ++k) intact = intact && grown[k] == static_cast<int>(k + 1);
    EXPECT_TRUE(intact);

    // A copy of a resized vector is a separate buffer.
    IntVec copy(grown);
    copy.resize(3, 0);
    EXPECT_EQ(grown.n, 1000u);
    EXPECT_EQ(Values(copy), V({1, 2, 3}));
}

TEST(IntVec, RunsAndLookups)
{
    IntVec v = Make({1, 2, 3, 4});
    v.fill(7, 2, 0);
    EXPECT_EQ(Values(v), V({1, 7, 7, 7}));
    v.fill(5, 1, 2);
    EXPECT_EQ(Values(v), V({5, 5, 7, 7}));
    v.fill(0);
    EXPECT_TRUE(v == 0);

    IntVec w = Make({10, 20, 30, 40});
    EXPECT_EQ(Values(w.subVec(2, 2)), V({20, 30}));
    EXPECT_EQ(Values(w.subVec(3, 0)), V({30, 40}));
    EXPECT_EQ(Values(w.subVec(4, 1)), V({40}));

    IntVec d = Make({4, 8, 4});
    EXPECT_EQ(d.index(4), 1u);
    EXPECT_EQ(d.index(8), 2u);
    EXPECT_EQ(d.index(5), 0u);
    EXPECT_EQ(IntVec().index(0), 0u);
}

TEST(IntVec, IntegerArithmetic)
{
    IntVec v = Make({7, -7});
    EXPECT_EQ(Values(v / 2), V({3, -3}));   // truncation toward zero
    v /= 2;
    EXPECT_EQ(Values(v), V({3, -3}));
    EXPECT_EQ(Values(quotient(Make({9, -9, 1}), Make({2, 2, -3}))), V({4, -4, 0}));

    IntVec a = Make({1, 2, 3});
    IntVec b = Make({4, 5, 6});
    EXPECT_EQ(Values(a + b), V({5, 7, 9}));
    EXPECT_EQ(Values(b - a), V({3, 3, 3}));
    EXPECT_EQ(Values(product(a, b)), V({4, 10, 18}));
    EXPECT_EQ(a * b, 32);
    EXPECT_EQ(b.sum(), 15);
    EXPECT_EQ(b.sumsq(), 77);
    EXPECT_EQ(IntVec().sum(), 0);

    IntVec c(a);
    c += b;
    c -= a;
    EXPECT_TRUE(c == b);
    c.product(a).quotient(b);
    EXPECT_TRUE(c == a);
    c += 10;
    c -= 1;
    c *= 2;
    EXPECT_EQ(Values(c), V({20, 22, 24}));
    c.quotient(4).product(3);
    EXPECT_EQ(Values(c), V({15, 15, 18}));

    // 32-bit wrap-around, not a fault.
    IntVec big = Make({INT_MAX, INT_MIN});
    big += 1;
    EXPECT_EQ(Values(big), V({INT_MIN, INT_MIN + 1}));
    EXPECT_EQ(Values(-Make({INT_MIN})), V({INT_MIN}));
    EXPECT_EQ(Make({65536, 65536}).sumsq(), 0);
}

TEST(IntVec, ExtremesKeepTheEarliestTie)
{
    IntVec v = Make({2, 9, 9});
    EXPECT_EQ(v.max_index(), 2u);
    EXPECT_EQ(v.max_val(), 9);
    EXPECT_EQ(v.min_index(), 1u);
    IntVec w = Make({4, -1, -1, 3});
    EXPECT_EQ(w.min_index(), 2u);
    EXPECT_EQ(w.min_val(), -1);
    EXPECT_EQ(Make({6}).max_index(), 1u);
    IntVec e;
    EXPECT_EQ(e.max_index(), 0u);
    EXPECT_EQ(e.min_index(), 0u);
    EXPECT_EQ(e.max_val(), 0);
    EXPECT_EQ(e.min_val(), 0);
}

TEST(IntVec, WholeVectorOperations)
{
    IntVec a = Make({3, 1, 2});
    EXPECT_EQ(Values(reverse(a)), V({2, 1, 3}));
    IntVec r(a);
    r.reverse();
    EXPECT_EQ(Values(r), V({2, 1, 3}));
    IntVec even = Make({1, 2, 3, 4});
    even.reverse();
    EXPECT_EQ(Values(even), V({4, 3, 2, 1}));

    EXPECT_EQ(a.reduce(Minus, 10), 4);      // ((10-3)-1)-2: left to right
    EXPECT_EQ(IntVec().reduce(Plus, 7), 7);
    applied_sum = 0;
    a.apply(Accumulate);
    EXPECT_EQ(applied_sum, 312);

    EXPECT_EQ(Values(a & Make({9})), V({3, 1, 2, 9}));
    EXPECT_EQ(Values(IntVec() & IntVec()), V());
    EXPECT_EQ(Values(map(Twice, a)), V({6, 2, 4}));
    EXPECT_EQ(Values(combine(Minus, a, Make({1, 1, 1}))), V({2, 0, 1}));
    EXPECT_EQ(Values(merge(Make({1, 4, 6}), Make({2, 4, 9, 10}), Ascending)),
              V({1, 2, 4, 4, 6, 9, 10}));

    EXPECT_TRUE(a == Make({3, 1, 2}));
    EXPECT_FALSE(a == Make({3, 1}));
    EXPECT_FALSE(a == Make({3, 1, 5}));
    EXPECT_TRUE(IntVec() == IntVec());
    EXPECT_TRUE(IntVec() == 4);

    IntVec s = Make({5, -2, 9, 5, 0});
    s.Qsort();
    EXPECT_EQ(Values(s), V({-2, 0, 5, 5, 9}));
    EXPECT_EQ(s.Bsearch(9), 4);
    EXPECT_EQ(s.Bsearch(-2), 0);
    EXPECT_EQ(s.Bsearch(1), -1);
    EXPECT_EQ(IntVec().Bsearch(1), -1);
}

TEST(IntVec, StreamOutput)
{
    std::ostringstream os;
    os << Make({1, 22, 333});
    EXPECT_EQ(os.str(), "    1   22  333");
    std::ostringstream empty;
    empty << IntVec();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");
    std::ostringstream wide;
    wide << Make({123456, -5});
    EXPECT_EQ(wide.str(), "123456   -5");
}

TEST(IntVecDeathTest, FillMessagesDifferOnPurpose)
{
    IntVec v;
    EXPECT_FATAL(v = 5, "Can't fill with 5 a zero length vector\\.");
    IntVecT t;
    EXPECT_FATAL(t = 5, "Can't fill with 5 a zero lenght vector\\.");
}

TEST(IntVecDeathTest, RunOutsideTheVector)
{
    IntVec v(4);
    EXPECT_FATAL(v.fill(7, 3, 3), "Index 4 out of range\\.");
    EXPECT_FATAL(v.subVec(5, 1), "Index 4 out of range\\.");
    EXPECT_FATAL(v.fill(7, 0, 2), "out of range\\.");
    IntVec e;
    EXPECT_FATAL(e.fill(1), "Index 4294967295 out of range\\.");
}

TEST(IntVecDeathTest, LengthMismatch)
{
    IntVec a(2), b(3);
    EXPECT_FATAL(a + b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a -= b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(b * a, "Different lenght vectors 3 != 2");
    EXPECT_FATAL(quotient(b, a), "Different lenght vectors 3 != 2");
    EXPECT_FATAL(combine(Plus, a, b), "Different lenght vectors 2 != 3");
}

TEST(IntVecDeathTest, DivisionByZero)
{
    IntVec a = Make({1, 2});
    EXPECT_FATAL(a /= 0, "Division by zero\\.");
    // An unguarded zero divisor is the platform's arithmetic fault, not a
    // message.  The address sanitizer catches that signal and ends the run
    // with its own report instead.
#ifdef __SANITIZE_ADDRESS__
    EXPECT_DEATH(quotient(a, Make({1, 0})), "");
    EXPECT_DEATH(a / 0, "");
#else
    EXPECT_EXIT(quotient(a, Make({1, 0})), ::testing::KilledBySignal(SIGFPE), "");
    EXPECT_EXIT(a / 0, ::testing::KilledBySignal(SIGFPE), "");
#endif
}
