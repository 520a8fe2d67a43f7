#include "laminate/intvec/intvec.h"

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <random>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"
#include "laminate/intvec/sortvec.h"

namespace {

using V = std::vector<int>;

IntVec Make(std::initializer_list<int> values)
{
    IntVec v(static_cast<unsigned int>(values.size()));
    std::copy(values.begin(), values.end(), v.data);
    return v;
}

V Values(IntVec const& v) { return V(v.data, v.data + v.n); }

int Minus(int a, int b) { return a - b; }

SortVec Sorted(std::initializer_list<int> values)
{
    SortVec s;
    s = Make(values);
    return s;
}

V Pos(SortVec const& s) { return V(s.pos, s.pos + s.n); }
V Val(SortVec const& s) { return V(s.val, s.val + s.n); }

}  // namespace

TEST(IntVec, CopiesAndTakeOver)
{
    IntVec a = Make({1, 2, 3});
    IntVec b(a);
    b(1) = 9;                                  // operator() counts from 1
    EXPECT_EQ(Values(a), V({1, 2, 3}));        // a deep copy

    // A carrier's buffer moves to the vector built or assigned from it.
    IntVecT t = a + a;
    int* buffer = t.data;
    IntVec c(t);
    EXPECT_EQ(c.data, buffer);
    EXPECT_EQ(t.data, nullptr);
    IntVecT u = a * 3;
    buffer = u.data;
    c = u;
    EXPECT_EQ(c.data, buffer);
    EXPECT_EQ(u.data, nullptr);
    IntVec& same = c;
    c = same;
    EXPECT_EQ(Values(c), V({3, 6, 9}));
    EXPECT_EQ(Values(-(a + a)), V({-2, -4, -6}));   // negated in place
}

TEST(IntVec, ResizeFillAndLookups)
{
    IntVec v = Make({1, 2, 3});
    v.resize(5, 9);
    EXPECT_EQ(Values(v), V({1, 2, 3, 9, 9}));
    v.resize(2, 9);
    EXPECT_EQ(Values(v), V({1, 2}));
    v.resize(0, 9);
    EXPECT_EQ(v.data, nullptr);

    IntVec w = Make({1, 2, 3, 4});
    w.fill(7, 2, 0);
    EXPECT_EQ(Values(w), V({1, 7, 7, 7}));
    w.fill(5, 1, 2);
    EXPECT_EQ(Values(w), V({5, 5, 7, 7}));
    EXPECT_EQ(Values(Make({10, 20, 30, 40}).subVec(2, 2)), V({20, 30}));
    EXPECT_EQ(Make({4, 8, 4}).index(4), 1u);
    EXPECT_EQ(Make({4, 8, 4}).index(5), 0u);
    EXPECT_EQ(Make({2, 9, 9}).max_index(), 2u);       // the earliest tie
}

TEST(IntVec, ArithmeticAndWholeVectorOperations)
{
    EXPECT_EQ(Values(Make({7, -7}) / 2), V({3, -3}));   // toward zero
    EXPECT_EQ(Values(quotient(Make({9, -9, 1}), Make({2, 2, -3}))), V({4, -4, 0}));
    IntVec a = Make({1, 2, 3}), b = Make({4, 5, 6});
    EXPECT_EQ(a * b, 32);
    IntVec c(a);
    (((c += b) -= 1) *= 2) /= 3;
    EXPECT_EQ(Values(c), V({2, 4, 5}));
    IntVec big = Make({INT_MAX, INT_MIN});    // 32-bit wrap-around, not a fault
    big += 1;
    EXPECT_EQ(Values(big), V({INT_MIN, INT_MIN + 1}));

    a = Make({3, 1, 2});
    EXPECT_EQ(Values(reverse(a)), V({2, 1, 3}));
    EXPECT_EQ(a.reduce(Minus, 10), 4);         // ((10-3)-1)-2, left to right
    EXPECT_EQ(Values(a & Make({9})), V({3, 1, 2, 9}));
    EXPECT_EQ(Values(merge(Make({1, 4, 6}), Make({2, 4, 9}), Minus)), V({1, 2, 4, 4, 6, 9}));
    IntVec s = Make({5, -2, 9, 5, 0});
    s.Qsort();
    EXPECT_EQ(Values(s), V({-2, 0, 5, 5, 9}));

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
    EXPECT_FATAL(a + b, "Different lenght vectors 2 != 3");
    EXPECT_FATAL(a /= 0, "Division by zero\\.");
}

TEST(SortVec, MapsValuesToTheirPlacesAndPrints)
{
    SortVec s = Sorted({40, 10, 30});
    EXPECT_EQ(Val(s), V({10, 30, 40}));
    EXPECT_EQ(Pos(s), V({2, 3, 1}));
    EXPECT_EQ(s(30), 3);
    EXPECT_EQ(s[20], -1);
    // Exist answers the entry index, so a value in entry 0 gives 0.
    EXPECT_EQ(s.Exist(10), 0);
    EXPECT_EQ(s.Exist(40), 2);
    EXPECT_EQ(s.Exist(20), -1);

    std::mt19937 rng(31);
    for (unsigned int n : {1u, 2u, 5u, 6u, 17u, 200u, 1500u}) {
        IntVec v(n);
        for (unsigned int k = 0; k < n; ++k) v[k] = static_cast<int>(rng() % (n / 3 + 1));
        SortVec r;
        r = v;
        bool ok = r[-1] == -1 && r[static_cast<int>(n)] == -1;
        for (unsigned int k = 0; k < n; ++k) {
            const int place = r(v[k]);
            ok = ok && place >= 1 && place <= static_cast<int>(n) && v(place) == v[k];
        }
        EXPECT_TRUE(ok) << "length " << n;
    }

    std::ostringstream os, wide;
    os << s;
    EXPECT_EQ(os.str(), "A(2)=       10  A(3)=       30  A(1)=       40  ");
    // The stream's width widens the value fields, not the first label.
    wide.precision(3);
    wide.width(4);
    wide << s;
    EXPECT_EQ(wide.str(), "A(2)=        10  A(3)=        30  A(1)=        40  ");
}

TEST(SortVec, SortedState)
{
    // resize discards the entries; start() resets them but keeps the state.
    SortVec s = Sorted({9, 8, 7, 6});
    s.resize(5);
    EXPECT_EQ(Pos(s), V({1, 2, 3, 4, 5}));
    EXPECT_EQ(s.sorted, 0);
    s = Make({3, 1, 2});
    s.start();
    EXPECT_EQ(Pos(s), V({1, 2, 3}));
    EXPECT_EQ(s.sorted, 1);

    // set_val keeps the sorted state: a vector already sorted is searched as
    // it stands; an unsorted one is sorted by its first lookup.
    IntVec v = Make({5, 4, 3});
    s.set_val(v);
    EXPECT_EQ(s.Bsearch(3), -1);
    EXPECT_EQ(s.Bsearch(4), 1);
    SortVec t(3);
    t.set_val(v);
    EXPECT_EQ(t(3), 3);
    EXPECT_EQ(Pos(t), V({3, 2, 1}));

    // A copy counts as unsorted; an assigned one takes the flag over.
    SortVec c(t), d(1);
    d = t;
    EXPECT_EQ(c.sorted, 0);
    EXPECT_EQ(d.sorted, 1);
}

TEST(SortVecDeathTest, Messages)
{
    SortVec s = Sorted({40, 10, 30});
    EXPECT_FATAL(s(20), "SortVec::Bsearch Element 20 not found");
    EXPECT_FATAL(s.resize(-1), "Not space available on heap");
}
