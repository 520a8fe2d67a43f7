#include "intvec/intvec.h"

#include <climits>
#include <csignal>
#include <initializer_list>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"

namespace {

using V = std::vector<int>;

IntVec Make(std::initializer_list<int> values)
{
    IntVec v(static_cast<unsigned int>(values.size()));
    unsigned int i = 0;
    for (int x : values) v[i++] = x;
    return v;
}

V Values(IntVec const& v) { return V(v.data, v.data + v.n); }

int Minus(int a, int b) { return a - b; }
int Twice(int a) { return 2 * a; }

}  // namespace

TEST(IntVec, CopiesAndTakeOver)
{
    IntVec a = Make({1, 2, 3});
    IntVec b(a);
    b(1) = 9;                                  // operator() counts from 1
    EXPECT_EQ(Values(a), V({1, 2, 3}));        // a deep copy
    EXPECT_EQ(Values(IntVec(2)), V({0, 0}));

    // A carrier's buffer moves to the vector built or assigned from it.
    IntVecT t = a + a;
    int* buffer = t.data;
    IntVec c(t);
    EXPECT_EQ(c.data, buffer);
    EXPECT_EQ(t.data, nullptr);
    EXPECT_EQ(t.n, 0u);
    IntVecT u = a * 3;
    buffer = u.data;
    c = u;
    EXPECT_EQ(c.data, buffer);
    EXPECT_EQ(u.data, nullptr);
    EXPECT_EQ(Values(c), V({3, 6, 9}));

    IntVec& same = c;
    c = same;
    EXPECT_EQ(Values(c), V({3, 6, 9}));

    // A carrier is negated in place and handed on.
    IntVec d = -(a + a);
    EXPECT_EQ(Values(d), V({-2, -4, -6}));
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
    // Growing one element at a time keeps every earlier value.
    for (unsigned int k = 1; k <= 1000; ++k) v.resize(k, static_cast<int>(k));
    IntVec copy(v);
    copy.resize(3, 0);
    EXPECT_EQ(v.sum(), 500500);
    EXPECT_EQ(Values(copy), V({1, 2, 3}));
}

TEST(IntVec, RunsAndLookups)
{
    IntVec v = Make({1, 2, 3, 4});
    v.fill(7, 2, 0);
    EXPECT_EQ(Values(v), V({1, 7, 7, 7}));
    v.fill(5, 1, 2);
    EXPECT_EQ(Values(v), V({5, 5, 7, 7}));
    EXPECT_EQ(Values(Make({10, 20, 30, 40}).subVec(2, 2)), V({20, 30}));
    EXPECT_EQ(Values(Make({10, 20, 30, 40}).subVec(3, 0)), V({30, 40}));
    EXPECT_EQ(Make({4, 8, 4}).index(4), 1u);
    EXPECT_EQ(Make({4, 8, 4}).index(5), 0u);
}

TEST(IntVec, IntegerArithmetic)
{
    EXPECT_EQ(Values(Make({7, -7}) / 2), V({3, -3}));   // toward zero
    EXPECT_EQ(Values(quotient(Make({9, -9, 1}), Make({2, 2, -3}))), V({4, -4, 0}));
    IntVec a = Make({1, 2, 3}), b = Make({4, 5, 6});
    EXPECT_EQ(Values(b - a), V({3, 3, 3}));
    EXPECT_EQ(Values(product(a, b)), V({4, 10, 18}));
    EXPECT_EQ(a * b, 32);
    EXPECT_EQ(b.sumsq(), 77);
    IntVec c(a);
    c += b;
    c -= 1;
    c *= 2;
    c /= 3;
    EXPECT_EQ(Values(c), V({2, 4, 5}));
    // 32-bit wrap-around rather than a fault.
    IntVec big = Make({INT_MAX, INT_MIN});
    big += 1;
    EXPECT_EQ(Values(big), V({INT_MIN, INT_MIN + 1}));
    EXPECT_EQ(Values(-Make({INT_MIN})), V({INT_MIN}));
    EXPECT_EQ(Values(Make({INT_MIN}) / -1), V({INT_MIN}));
}

TEST(IntVec, ExtremesKeepTheEarliestTie)
{
    EXPECT_EQ(Make({2, 9, 9}).max_index(), 2u);
    EXPECT_EQ(Make({4, -1, -1, 3}).min_index(), 2u);
    EXPECT_EQ(Make({4, -1, -1, 3}).min_val(), -1);
    EXPECT_EQ(IntVec().max_index(), 0u);
}

TEST(IntVec, WholeVectorOperations)
{
    IntVec a = Make({3, 1, 2});
    EXPECT_EQ(Values(reverse(a)), V({2, 1, 3}));
    EXPECT_EQ(Values(Make({1, 2, 3, 4}).reverse()), V({4, 3, 2, 1}));
    EXPECT_EQ(a.reduce(Minus, 10), 4);         // ((10-3)-1)-2, left to right
    EXPECT_EQ(Values(a & Make({9})), V({3, 1, 2, 9}));
    EXPECT_EQ(Values(map(Twice, a)), V({6, 2, 4}));
    EXPECT_EQ(Values(combine(Minus, a, Make({1, 1, 1}))), V({2, 0, 1}));
    EXPECT_EQ(Values(merge(Make({1, 4, 6}), Make({2, 4, 9}), Minus)), V({1, 2, 4, 4, 6, 9}));
    EXPECT_FALSE(a == Make({3, 1}));
    IntVec s = Make({5, -2, 9, 5, 0});
    s.Qsort();
    EXPECT_EQ(Values(s), V({-2, 0, 5, 5, 9}));
    EXPECT_EQ(s.Bsearch(9), 4);
    EXPECT_EQ(s.Bsearch(1), -1);
}

TEST(IntVec, StreamOutput)
{
    std::ostringstream os, empty;
    os << Make({1, 22, 333});
    EXPECT_EQ(os.str(), "    1   22  333");
    empty << IntVec();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");
}

TEST(IntVecDeathTest, Messages)
{
    IntVec e, v(4), a(2), b(3);
    IntVecT t;
    // The vector's and the carrier's texts differ on purpose.
    EXPECT_FATAL(e = 5, "Can't fill with 5 a zero length vector\\.");
    EXPECT_FATAL(t = 5, "Can't fill with 5 a zero lenght vector\\.");
    EXPECT_FATAL(v.fill(7, 3, 3), "Index 4 out of range\\.");
    EXPECT_FATAL(v.subVec(5, 1), "Index 4 out of range\\.");
    EXPECT_FATAL(v.fill(7, 0, 2), "out of range\\.");
    EXPECT_FATAL(a + b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(b * a, "Different lenght vectors 3 != 2");
    EXPECT_FATAL(combine(Minus, a, b), "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a /= 0, "Division by zero\\.");
}

TEST(IntVecDeathTest, UnguardedZeroDivisor)
{
    // The platform's arithmetic fault, not a message.  The address sanitizer
    // catches that signal and ends the run with its own report instead.
    IntVec a = Make({1, 2});
#ifdef __SANITIZE_ADDRESS__
    EXPECT_DEATH(quotient(a, Make({1, 0})), "");
#else
    EXPECT_EXIT(quotient(a, Make({1, 0})), ::testing::KilledBySignal(SIGFPE), "");
    EXPECT_EXIT(a / 0, ::testing::KilledBySignal(SIGFPE), "");
#endif
}
