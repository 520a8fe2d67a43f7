#include "laminate/intvec/sort.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"
#include "laminate/intvec/intvec.h"
#include "laminate/linalg/reavec.h"

namespace {

using vantrel::ReaVec;
using V = std::vector<int>;

// Lengths around the small-run threshold, then larger ones.
std::vector<int> Lengths()
{
    std::vector<int> n(81);
    std::iota(n.begin(), n.end(), 0);
    n.insert(n.end(), {127, 128, 129, 256, 1000, 2047, 3001});
    return n;
}

// Sorts a run of `in` at places 3..n+2 with three guards on each side: the
// ones before are larger and the ones after smaller than every key, so a sort
// that strays outside its run pulls them in.  With `carry`, the carried array
// starts as 0, 1, 2, ..., so afterwards each carried value must name, once,
// the place its key came from.
template <class K, class C>
void ExpectSorted(V const& in, bool carry)
{
    const int n = static_cast<int>(in.size());
    std::vector<K> a(n + 6, K(2000000));
    for (int k = 0; k < n; ++k) a[3 + k] = K(in[k]) + K(0.5);
    std::fill(a.end() - 3, a.end(), K(-2000000));
    std::vector<K> before = a, want = a;
    std::sort(want.begin() + 3, want.end() - 3);
    std::vector<C> ids(n + 6);
    std::iota(ids.begin(), ids.end(), C(0));
    std::vector<C> b = ids;
    if (carry) QSort(a.data(), b.data(), 3, n);
    else QSort(a.data(), 3, n);
    bool follows = true;
    for (int k = 0; carry && k < n + 6; ++k) follows = follows && a[k] == before[static_cast<int>(b[k])];
    std::sort(b.begin(), b.end());
    EXPECT_EQ(a, want) << "length " << n << (carry ? " carried" : "");
    EXPECT_TRUE(follows && b == ids) << "length " << n;
}

}  // namespace

TEST(QSort, EveryVariantGivesAnAscendingPermutation)
{
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int> few(0, 9), wide(-1000000, 1000000);
    for (int n : Lengths()) {
        // Many duplicates, a wide range, descending, all equal, organ pipe.
        std::vector<V> inputs(5, V(n));
        for (int k = 0; k < n; ++k) {
            inputs[0][k] = few(rng);
            inputs[1][k] = wide(rng);
            inputs[2][k] = n - k;
            inputs[3][k] = 42;
            inputs[4][k] = k < n / 2 ? k : n - k;
        }
        for (V const& in : inputs) {
            ExpectSorted<int, double>(in, false);
            ExpectSorted<double, double>(in, false);
            ExpectSorted<int, double>(in, true);
            ExpectSorted<double, double>(in, true);
            ExpectSorted<int, int>(in, true);
        }
    }
}

TEST(QSort, SmallRunsAndNotANumber)
{
    // Every arrangement of four values, distinct and with a duplicate.
    for (V p : {V{1, 2, 3, 4}, V{1, 1, 2, 3}}) {
        do {
            V a = p;
            QSort(a.data(), 0, 4);
            EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
        } while (std::next_permutation(p.begin(), p.end()));
    }
    // The smallest of the first elements is swapped to the front before the
    // insertion pass, which reorders equal keys.
    int dup[] = {2, 2, 1}, carried[] = {10, 20, 30};
    QSort(dup, carried, 0, 3);
    EXPECT_EQ(V(carried, carried + 3), V({30, 20, 10}));

    // NaN keys have no order, but the sort keeps to its run (the guards in
    // front stay put) and loses nothing (the carried places stay a permutation).
    std::mt19937 rng(7);
    for (int n : {3, 5, 9, 40, 300}) {
        std::vector<double> keys(n + 3, 1e9), b(n + 3);
        std::iota(b.begin(), b.end(), 0.0);
        const std::vector<double> want = b;
        for (int k = 3; k < n + 3; ++k) keys[k] = rng() % 4 == 0 ? std::nan("") : double(rng() % 10);
        QSort(keys.data(), b.data(), 3, n);
        std::sort(b.begin() + 3, b.end());
        EXPECT_EQ(b, want) << "length " << n;
        EXPECT_EQ(std::vector<double>(keys.begin(), keys.begin() + 3), std::vector<double>(3, 1e9));
    }
}

TEST(BSearch, FindsEveryPresentKeyAndNoAbsentOne)
{
    std::mt19937 rng(99);
    std::uniform_int_distribution<int> half(-500, 500);
    for (int n : Lengths()) {
        // Even values only, so every odd value is absent.
        V a(n);
        for (int& x : a) x = 2 * half(rng);
        std::sort(a.begin(), a.end());
        std::vector<double> r(a.begin(), a.end());
        bool ok = BSearch(-2001, a.data(), 0, n - 1) == -1 && BSearch(2001, a.data(), 0, n - 1) == -1;
        for (int k = 0; k < n; ++k) {
            const int i = BSearch(a[k], a.data(), 0, n - 1), j = BSearch(r[k], r.data(), 0, n - 1);
            ok = ok && i >= 0 && a[i] == a[k] && j >= 0 && r[j] == r[k];
            ok = ok && BSearch(a[k] + 1, a.data(), 0, n - 1) == -1;
            ok = ok && BSearch(r[k] - 1.0, r.data(), 0, n - 1) == -1;
        }
        EXPECT_TRUE(ok) << "length " << n;
    }
}

TEST(BSearch, BisectionLinearSearchAndNaNOrder)
{
    // Among equal elements, the first one the bisection meets.
    int dup[] = {1, 2, 2, 2, 3}, same[] = {2, 2, 2, 2};
    EXPECT_EQ(BSearch(2, dup, 0, 4), 2);
    EXPECT_EQ(BSearch(2, same, 0, 3), 1);
    // Only the run is searched.
    int a[] = {1, 3, 5, 7, 9, 11};
    EXPECT_EQ(BSearch(9, a, 2, 4), 4);
    EXPECT_EQ(BSearch(11, a, 2, 4), -1);

    int l[] = {4, 7, 4, 7, 9};
    EXPECT_EQ(LSearch(7, l, 0, 4), 1);
    EXPECT_EQ(LSearch(4, l, 1, 4), 2);

    // A NaN compares below in both orders.
    double d = 1.5, nan = std::nan("");
    EXPECT_EQ(compare_real(&nan, &d), -1);
    EXPECT_EQ(compare_real(&d, &nan), -1);
}

TEST(QSort, ContainerForms)
{
    IntVec keys(6), b(6);
    for (int k = 0; k < 6; ++k) keys[k] = V{50, 20, 60, 10, 40, 30}[k], b[k] = k + 1;
    QSort(keys, b);
    EXPECT_EQ(V(keys.data, keys.data + 6), V({10, 20, 30, 40, 50, 60}));
    EXPECT_EQ(V(b.data, b.data + 6), V({4, 2, 6, 5, 1, 3}));
    EXPECT_EQ(BSearch(keys, 40), 3);

    // Only the run 1..2 moves, in both containers.
    ReaVec r(3);
    keys.resize(3);
    for (int k = 0; k < 3; ++k) keys[k] = 9 - k, r[k] = k;
    QSort(keys, r, 1, 2);
    EXPECT_EQ(V(keys.data, keys.data + 3), V({9, 7, 8}));
    EXPECT_TRUE(r[0] == 0 && r[1] == 2 && r[2] == 1);
}

TEST(QSortDeathTest, CarriedContainerMustCoverTheKeys)
{
    IntVec keys(3);
    ReaVec r(2);
    EXPECT_FATAL(QSort(keys, r), "Different lenght vectors 3 != 2");
    EXPECT_FATAL(QSort(keys, r, -1, 1), "Index -1 out of range\\.");
}
