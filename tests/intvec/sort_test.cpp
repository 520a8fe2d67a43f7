#include "intvec/sort.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"
#include "intvec/intvec.h"
#include "linalg/reavec.h"

namespace {

using vantrel::ReaVec;
using V = std::vector<int>;

IntVec Ints(std::initializer_list<int> values)
{
    IntVec v(static_cast<unsigned int>(values.size()));
    unsigned int i = 0;
    for (int x : values) v[i++] = x;
    return v;
}

ReaVec Reals(std::initializer_list<double> values)
{
    ReaVec v(static_cast<int>(values.size()));
    unsigned int i = 0;
    for (double x : values) v[i++] = x;
    return v;
}

// Lengths around the small-run threshold, then larger ones.
std::vector<int> Lengths()
{
    std::vector<int> n;
    for (int k = 0; k <= 80; ++k) n.push_back(k);
    for (int k : {127, 128, 129, 256, 1000, 2047, 3001}) n.push_back(k);
    return n;
}

// Few distinct values (many duplicates), a wide range, descending, all
// equal, organ pipe.
std::vector<V> Inputs(int n, std::mt19937& rng)
{
    std::uniform_int_distribution<int> few(0, 9), wide(-1000000, 1000000);
    std::vector<V> all(5, V(n));
    for (int k = 0; k < n; ++k) {
        all[0][k] = few(rng);
        all[1][k] = wide(rng);
        all[2][k] = n - k;
        all[3][k] = 42;
        all[4][k] = k < n / 2 ? k : n - k;
    }
    return all;
}

// QSort(a, first, count) on a guarded array: the guards before the run are
// larger and those after it smaller than every key, so a sort that strays
// outside its run would pull them in.
template <class K>
void ExpectSortedRun(V const& input)
{
    const int n = static_cast<int>(input.size());
    std::vector<K> a(n + 6, K(2000000));
    for (int k = 0; k < n; ++k) a[3 + k] = K(input[k]) + K(0.5);
    for (int k = 0; k < 3; ++k) a[3 + n + k] = K(-2000000);
    std::vector<K> expected = a;
    std::sort(expected.begin() + 3, expected.begin() + 3 + n);
    QSort(a.data(), 3, n);
    EXPECT_EQ(a, expected) << "length " << n;
}

// A carried array that starts as 0, 1, 2, ...: afterwards the keys ascend,
// the carried values are a permutation and each still names the place its
// key came from.
template <class K, class C>
void ExpectCarried(V const& input)
{
    const int n = static_cast<int>(input.size());
    std::vector<K> keys(input.begin(), input.end());
    std::vector<C> b(n);
    std::iota(b.begin(), b.end(), C(0));
    QSort(keys.data(), b.data(), 0, n);
    EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end())) << "length " << n;
    std::vector<bool> seen(n, false);
    bool follows = true;
    for (int k = 0; k < n; ++k) {
        const int from = static_cast<int>(b[k]);
        follows = follows && !seen[from] && keys[k] == K(input[from]);
        seen[from] = true;
    }
    EXPECT_TRUE(follows) << "length " << n;
}

}  // namespace

TEST(QSort, EveryVariantGivesAnAscendingPermutation)
{
    std::mt19937 rng(20240611);
    for (int n : Lengths()) {
        for (auto const& input : Inputs(n, rng)) {
            ExpectSortedRun<int>(input);
            ExpectSortedRun<double>(input);
            ExpectCarried<int, double>(input);
            ExpectCarried<double, double>(input);
            ExpectCarried<int, int>(input);
        }
    }
}

TEST(QSort, SmallRunsAndCarriedOrder)
{
    // Every arrangement of four values, distinct and with a duplicate.
    for (std::vector<int> p : {std::vector<int>{1, 2, 3, 4}, std::vector<int>{1, 1, 2, 3}}) {
        do {
            std::vector<int> a = p;
            QSort(a.data(), 0, 4);
            EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
        } while (std::next_permutation(p.begin(), p.end()));
    }

    int keys[] = {3, 1, 2};
    double b[] = {30, 10, 20};
    QSort(keys, b, 0, 3);
    EXPECT_EQ(V(keys, keys + 3), V({1, 2, 3}));
    EXPECT_EQ(std::vector<double>(b, b + 3), std::vector<double>({10, 20, 30}));

    // The smallest of the first elements is swapped to the front before the
    // insertion pass, which reorders equal keys.
    int dup[] = {2, 2, 1}, carried[] = {10, 20, 30};
    QSort(dup, carried, 0, 3);
    EXPECT_EQ(V(carried, carried + 3), V({30, 20, 10}));

    QSort(static_cast<int*>(nullptr), 0, 0);      // an empty run reads nothing
}

TEST(QSort, NotANumberStaysInsideTheArray)
{
    // No order exists, but the sort must keep to its run (the large guards in
    // front stay put) and lose nothing (the carried places stay a permutation).
    std::mt19937 rng(7);
    for (int n : {3, 5, 9, 40, 300}) {
        std::vector<double> keys(n + 3, 1e9), b(n + 3, -1.0), expected(n + 3, -1.0);
        for (int k = 0; k < n; ++k) {
            keys[3 + k] = rng() % 4 == 0 ? std::nan("") : double(rng() % 10);
            b[3 + k] = expected[3 + k] = k;
        }
        QSort(keys.data(), b.data(), 3, n);
        std::sort(b.begin() + 3, b.end());
        EXPECT_EQ(b, expected) << "length " << n;
        EXPECT_EQ(std::vector<double>(keys.begin(), keys.begin() + 3), std::vector<double>(3, 1e9));
    }
}

TEST(BSearch, FindsEveryPresentKeyAndNoAbsentOne)
{
    std::mt19937 rng(99);
    std::uniform_int_distribution<int> half(-500, 500);
    for (int n : Lengths()) {
        // Even values only, so every odd value is absent.
        std::vector<int> a(n);
        for (int& x : a) x = 2 * half(rng);
        std::sort(a.begin(), a.end());
        std::vector<double> r(a.begin(), a.end());
        bool found = true, absent = true;
        for (int k = 0; k < n; ++k) {
            const int i = BSearch(a[k], a.data(), 0, n - 1);
            found = found && i >= 0 && a[i] == a[k];
            const int j = BSearch(r[k], r.data(), 0, n - 1);
            found = found && j >= 0 && r[j] == r[k];
            absent = absent && BSearch(a[k] + 1, a.data(), 0, n - 1) == -1;
            absent = absent && BSearch(r[k] - 1.0, r.data(), 0, n - 1) == -1;
        }
        absent = absent && BSearch(-2001, a.data(), 0, n - 1) == -1;
        absent = absent && BSearch(2001, a.data(), 0, n - 1) == -1;
        EXPECT_TRUE(found) << "length " << n;
        EXPECT_TRUE(absent) << "length " << n;
    }
}

TEST(BSearch, BisectionDetails)
{
    // An empty run reads nothing.
    EXPECT_EQ(BSearch(5, static_cast<int*>(nullptr), 0, -1), -1);

    // Among equal elements, the first one the bisection meets.
    int dup[] = {1, 2, 2, 2, 3};
    EXPECT_EQ(BSearch(2, dup, 0, 4), 2);
    int same[] = {2, 2, 2, 2};
    EXPECT_EQ(BSearch(2, same, 0, 3), 1);

    // Only the run is searched.
    int a[] = {1, 3, 5, 7, 9, 11};
    EXPECT_EQ(BSearch(9, a, 2, 4), 4);
    EXPECT_EQ(BSearch(11, a, 2, 4), -1);

    // A key that is not a number is simply not found.
    double r[] = {1.0, 2.0, 3.0};
    EXPECT_EQ(BSearch(std::nan(""), r, 0, 2), -1);
}

TEST(LSearch, FirstEqualElementInTheRun)
{
    int a[] = {4, 7, 4, 7, 9};
    EXPECT_EQ(LSearch(7, a, 0, 4), 1);
    EXPECT_EQ(LSearch(4, a, 1, 4), 2);
    EXPECT_EQ(LSearch(9, a, 0, 3), -1);
    EXPECT_EQ(LSearch(4, a, 3, 2), -1);
}

TEST(Compare, ThreeWayResults)
{
    int i1 = 1, i2 = 2;
    EXPECT_EQ(compare_int(&i1, &i2), -1);
    EXPECT_EQ(compare_int(&i2, &i1), 1);
    EXPECT_EQ(compare_int(&i1, &i1), 0);
    double d1 = -1.5, d2 = 2.5, nan = std::nan("");
    EXPECT_EQ(compare_real(&d2, &d1), 1);
    EXPECT_EQ(compare_real(&d2, &d2), 0);
    EXPECT_EQ(compare_real(&d1, &d2), -1);
    EXPECT_EQ(compare_real(&nan, &d1), -1);    // a NaN is below in both orders
    EXPECT_EQ(compare_real(&d1, &nan), -1);
}

TEST(QSort, ContainerForms)
{
    IntVec keys = Ints({50, 20, 60, 10, 40, 30}), b = Ints({1, 2, 3, 4, 5, 6});
    QSort(keys, b);
    EXPECT_EQ(V(keys.data, keys.data + 6), V({10, 20, 30, 40, 50, 60}));
    EXPECT_EQ(V(b.data, b.data + 6), V({4, 2, 6, 5, 1, 3}));
    EXPECT_EQ(BSearch(keys, 40), 3);
    EXPECT_EQ(LSearch(keys, 60), 5);
    IntVec empty;
    QSort(empty);
    EXPECT_EQ(BSearch(empty, 1), -1);

    // Only the run 1..2 moves, in both containers.
    IntVec k3 = Ints({9, 8, 7});
    ReaVec r = Reals({0.1, 0.2, 0.3});
    QSort(k3, r, 1, 2);
    EXPECT_EQ(V(k3.data, k3.data + 3), V({9, 7, 8}));
    EXPECT_EQ(r[1], 0.3);
    QSort(k3, r);
    EXPECT_EQ(r[0], 0.3);

    ReaVec p = Reals({2.0, -1.0, 0.5}), q = Reals({20, -10, 5});
    QSort(p, q);
    EXPECT_EQ(q[0], -10);
    EXPECT_EQ(q[2], 20);
    EXPECT_EQ(BSearch(p, 0.5), 1);
    EXPECT_EQ(LSearch(p, 2.0), 2);
    QSort(q = Reals({3, 1, 2}));
    EXPECT_EQ(q[2], 3);
}

TEST(QSortDeathTest, CarriedContainerTooShort)
{
    IntVec keys(3), b(2);
    EXPECT_FATAL(QSort(keys, b), "Different lenght vectors 3 != 2");
    ReaVec r(2);
    EXPECT_FATAL(QSort(keys, r), "Different lenght vectors 3 != 2");
    EXPECT_FATAL(QSort(keys, r, 1, 2), "Index 2 out of range\\.");
    EXPECT_FATAL(QSort(keys, r, -1, 1), "Index -1 out of range\\.");
}
