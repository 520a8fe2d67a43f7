#include "intvec/sortvec.h"

#include <initializer_list>
#include <random>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"
#include "intvec/intvec.h"

namespace {

IntVec Make(std::initializer_list<int> values)
{
    IntVec v(static_cast<unsigned int>(values.size()));
    unsigned int i = 0;
    for (int x : values) v[i++] = x;
    return v;
}

std::vector<int> Pos(SortVec const& s) { return std::vector<int>(s.pos, s.pos + s.n); }
std::vector<int> Val(SortVec const& s) { return std::vector<int>(s.val, s.val + s.n); }

using V = std::vector<int>;

}  // namespace

TEST(SortVec, MapsValuesToTheirPlaces)
{
    SortVec s;
    s = Make({40, 10, 30});
    EXPECT_EQ(Val(s), V({10, 30, 40}));
    EXPECT_EQ(Pos(s), V({2, 3, 1}));
    EXPECT_EQ(s.sorted, 1);
    EXPECT_EQ(s(30), 3);
    EXPECT_EQ(s[10], 2);
    EXPECT_EQ(s[20], -1);
    // Exist answers the entry index, so a value in entry 0 gives 0.
    EXPECT_EQ(s.Exist(10), 0);
    EXPECT_EQ(s.Exist(40), 2);
    EXPECT_EQ(s.Exist(20), -1);
    // Assigning a shorter list reallocates and sorts again.
    s = Make({7, 5});
    EXPECT_EQ(Pos(s), V({2, 1}));
}

TEST(SortVec, EveryValueFindsAPlaceHoldingIt)
{
    std::mt19937 rng(31);
    for (unsigned int n : {1u, 2u, 5u, 6u, 17u, 200u, 1500u}) {
        std::uniform_int_distribution<int> few(0, static_cast<int>(n / 3));
        IntVec v(n);
        for (unsigned int k = 0; k < n; ++k) v[k] = few(rng);
        SortVec s;
        s = v;
        bool ok = true;
        for (unsigned int k = 0; k < n; ++k) {
            const int place = s(v[k]);
            ok = ok && place >= 1 && place <= static_cast<int>(n) && v(place) == v[k];
        }
        ok = ok && s[-1] == -1 && s[static_cast<int>(n)] == -1;
        EXPECT_TRUE(ok) << "length " << n;
    }
}

TEST(SortVec, ConstructionStartAndResize)
{
    SortVec s(4);
    EXPECT_EQ(Pos(s), V({1, 2, 3, 4}));
    EXPECT_EQ(Val(s), V({0, 0, 0, 0}));
    EXPECT_EQ(s.sorted, 0);

    s = Make({9, 8, 7, 6});
    s.resize(6);     // everything before is discarded
    EXPECT_EQ(Pos(s), V({1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Val(s), V({0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(s.sorted, 0);
    s.resize(0);
    EXPECT_EQ(s.pos, nullptr);

    // start() resets the entries but not the sorted state.
    s = Make({3, 1, 2});
    s.start();
    EXPECT_EQ(Pos(s), V({1, 2, 3}));
    EXPECT_EQ(Val(s), V({0, 0, 0}));
    EXPECT_EQ(s.sorted, 1);
}

TEST(SortVec, SortedStateAndCopies)
{
    // set_val keeps the places and the sorted state: a vector already sorted
    // is searched as it stands, without sorting the new values.
    SortVec s(3);
    s.Qsort();
    IntVec v = Make({5, 4, 3});
    s.set_val(v);
    EXPECT_EQ(Val(s), V({5, 4, 3}));
    EXPECT_EQ(s.Bsearch(3), -1);
    EXPECT_EQ(s.Bsearch(4), 1);

    // An unsorted one is sorted by its first lookup.
    SortVec t(3);
    t.set_val(v);
    EXPECT_EQ(t(3), 3);
    EXPECT_EQ(Val(t), V({3, 4, 5}));
    EXPECT_EQ(Pos(t), V({3, 2, 1}));

    // A copy counts as unsorted; an assigned one takes the flag over.
    SortVec c(t), d(1);
    d = t;
    EXPECT_EQ(Pos(c), Pos(t));
    EXPECT_EQ(c.sorted, 0);
    EXPECT_EQ(d.sorted, 1);
}

TEST(SortVec, StreamOutput)
{
    SortVec s;
    s = Make({40, 10, 30});
    std::ostringstream os;
    os << s;
    EXPECT_EQ(os.str(), "A(2)=       10  A(3)=       30  A(1)=       40  ");

    // The stream's width widens the value fields instead of padding the first
    // label.
    std::ostringstream wide;
    wide.precision(3);
    wide.width(4);
    wide << s;
    EXPECT_EQ(wide.str(), "A(2)=        10  A(3)=        30  A(1)=        40  ");

    std::ostringstream empty;
    empty << SortVec();
    EXPECT_EQ(empty.str(), "\n\t(Zero size vector)\n");
}

TEST(SortVecDeathTest, Messages)
{
    SortVec s;
    s = Make({40, 10, 30});
    EXPECT_FATAL(s(20), "SortVec::Bsearch Element 20 not found");
    EXPECT_FATAL(s.resize(-1), "Not space available on heap");
    IntVec shorter(2);
    EXPECT_FATAL(s.set_val(shorter), "Different lenght vectors 3 != 2");
}
