#include "intvec/sort.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "fatal.h"
#include "intvec/intvec.h"
#include "linalg/reavec.h"

namespace {

using vantrel::ReaVec;

// Lengths around the small-run threshold, then larger ones.
std::vector<int> Lengths()
{
    std::vector<int> n;
    for (int k = 0; k <= 80; ++k) n.push_back(k);
    for (int k : {127, 128, 129, 255, 256, 500, 1000, 2047, 3001}) n.push_back(k);
    return n;
}

// Inputs of one length: few distinct values (many duplicates), a wide range,
// already sorted, reversed, all equal, organ pipe and sawtooth.
std::vector<std::vector<int>> Inputs(int n, std::mt19937& rng)
{
    std::vector<std::vector<int>> all;
    std::uniform_int_distribution<int> few(0, 9), wide(-1000000, 1000000);
    std::vector<int> a(n), b(n), c(n), d(n), e(n, 42), f(n), g(n);
    for (int k = 0; k < n; ++k) {
        a[k] = few(rng);
        b[k] = wide(rng);
        c[k] = k / 3;
        d[k] = n - k;
        f[k] = k < n / 2 ? k : n - k;
        g[k] = k % 7;
    }
    all = {a, b, c, d, e, f, g};
    return all;
}

template <class K>
bool Ascending(std::vector<K> const& v)
{
    return std::is_sorted(v.begin(), v.end());
}

// Sorts keys made from the input with QSort(keys, first, count) inside a
// guarded array: the elements around the run must stay where they are.  The
// guards before the run are larger and those after it smaller than every
// key, so a sort that strays outside its run would pull them in.
template <class K>
void ExpectSortedRun(std::vector<int> const& input)
{
    const int n = static_cast<int>(input.size());
    const int pad = 3;
    std::vector<K> a(n + 2 * pad);
    for (int k = 0; k < pad; ++k) {
        a[k] = K(2000000);
        a[pad + n + k] = K(-2000000);
    }
    for (int k = 0; k < n; ++k) a[pad + k] = K(input[k]) + K(0.5);
    std::vector<K> expected(a.begin() + pad, a.begin() + pad + n);
    std::sort(expected.begin(), expected.end());

    QSort(a.data(), pad, n);
    std::vector<K> run(a.begin() + pad, a.begin() + pad + n);
    EXPECT_EQ(run, expected) << "length " << n;
    for (int k = 0; k < pad; ++k) {
        EXPECT_EQ(a[k], K(2000000));
        EXPECT_EQ(a[pad + n + k], K(-2000000));
    }
}

// Sorts keys with a carried array that starts as 0, 1, 2, ...: afterwards the
// keys ascend, the carried values are a permutation and each carried value
// still names the place its key came from.
template <class K, class C>
void ExpectCarried(std::vector<int> const& input)
{
    const int n = static_cast<int>(input.size());
    std::vector<K> keys(n);
    std::vector<C> b(n);
    for (int k = 0; k < n; ++k) {
        keys[k] = K(input[k]);
        b[k] = C(k);
    }
    std::vector<K> original = keys;
    QSort(keys.data(), b.data(), 0, n);

    EXPECT_TRUE(Ascending(keys)) << "length " << n;
    std::vector<C> places = b;
    std::sort(places.begin(), places.end());
    bool permutation = true, follows = true;
    for (int k = 0; k < n; ++k) {
        permutation = permutation && places[k] == C(k);
        follows = follows && keys[k] == original[static_cast<int>(b[k])];
    }
    EXPECT_TRUE(permutation) << "length " << n;
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
            EXPECT_TRUE(Ascending(a));
        } while (std::next_permutation(p.begin(), p.end()));
    }

    int keys[] = {3, 1, 2};
    double b[] = {30, 10, 20};
    QSort(keys, b, 0, 3);
    EXPECT_EQ(std::vector<int>(keys, keys + 3), std::vector<int>({1, 2, 3}));
    EXPECT_EQ(std::vector<double>(b, b + 3), std::vector<double>({10, 20, 30}));

    // The smallest of the first elements is swapped to the front before the
    // insertion pass, which reorders equal keys.
    int dup[] = {2, 2, 1};
    int carried[] = {10, 20, 30};
    QSort(dup, carried, 0, 3);
    EXPECT_EQ(std::vector<int>(carried, carried + 3), std::vector<int>({30, 20, 10}));

    // Nothing is read for an empty run, nothing moves for a single element.
    QSort(static_cast<int*>(nullptr), 0, 0);
    double one[] = {5.0, 1.0};
    QSort(one, 0, 1);
    EXPECT_EQ(one[1], 1.0);
}

TEST(QSort, NotANumberStaysInsideTheArray)
{
    // No order exists, but the sort must stay inside its run and lose nothing.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> pick(0, 5);
    for (int n : {3, 5, 9, 40, 300}) {
        std::vector<double> a(n);
        for (double& x : a) {
            int r = pick(rng);
            x = r == 0 ? nan : -r;
        }
        std::vector<double> keys = a;
        std::vector<double> b(n);
        std::iota(b.begin(), b.end(), 0.0);
        QSort(keys.data(), b.data(), 0, n);
        std::vector<double> places = b;
        std::sort(places.begin(), places.end());
        bool permutation = true;
        for (int k = 0; k < n; ++k) {
            permutation = permutation && places[k] == k;
            const double was = a[static_cast<int>(b[k])];
            permutation = permutation && (keys[k] == was || (std::isnan(was) && std::isnan(keys[k])));
        }
        EXPECT_TRUE(permutation) << "length " << n;
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
    EXPECT_EQ(BSearch(5.0, static_cast<double*>(nullptr), 3, 2), -1);

    // Among equal elements, the first one the bisection meets.
    int dup[] = {1, 2, 2, 2, 3};
    EXPECT_EQ(BSearch(2, dup, 0, 4), 2);
    int same[] = {2, 2, 2, 2};
    EXPECT_EQ(BSearch(2, same, 0, 3), 1);

    // Only the run is searched.
    int a[] = {1, 3, 5, 7, 9, 11};
    EXPECT_EQ(BSearch(9, a, 2, 4), 4);
    EXPECT_EQ(BSearch(11, a, 2, 4), -1);
    EXPECT_EQ(BSearch(1, a, 2, 4), -1);
    EXPECT_EQ(BSearch(5, a, 2, 2), 2);

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
    double r[] = {0.5, 1.5, 0.5};
    EXPECT_EQ(LSearch(0.5, r, 1, 2), 2);
    EXPECT_EQ(LSearch(2.5, r, 0, 2), -1);
}

TEST(Compare, ThreeWayResults)
{
    int i1 = 1, i2 = 2;
    EXPECT_EQ(compare_int(&i1, &i2), -1);
    EXPECT_EQ(compare_int(&i2, &i1), 1);
    EXPECT_EQ(compare_int(&i1, &i1), 0);

    double d1 = -1.5, d2 = 2.5, nan = std::nan("");
    EXPECT_EQ(compare_real(&d1, &d2), -1);
    EXPECT_EQ(compare_real(&d2, &d1), 1);
    EXPECT_EQ(compare_real(&d2, &d2), 0);
    EXPECT_EQ(compare_real(&nan, &d1), -1);
    EXPECT_EQ(compare_real(&d1, &nan), -1);

    // Usable with the C library's own sort.
    int v[] = {5, -3, 9, 0, -3};
    std::qsort(v, 5, sizeof(int), compare_int);
    EXPECT_EQ(std::vector<int>(v, v + 5), std::vector<int>({-3, -3, 0, 5, 9}));
    double w[] = {2.0, -1.0, 0.5};
    std::qsort(w, 3, sizeof(double), compare_real);
    EXPECT_EQ(std::vector<double>(w, w + 3), std::vector<double>({-1.0, 0.5, 2.0}));
}

TEST(QSort, ContainerForms)
{
    IntVec keys(6);
    IntVec b(6);
    const int values[] = {50, 20, 60, 10, 40, 30};
    for (unsigned int k = 0; k < 6; ++k) {
        keys[k] = values[k];
        b[k] = static_cast<int>(k) + 1;
    }
    IntVec alone(keys);
    QSort(alone);
    EXPECT_TRUE(std::is_sorted(alone.data, alone.data + 6));
    QSort(keys, b);
    EXPECT_EQ(std::vector<int>(b.data, b.data + 6), std::vector<int>({4, 2, 6, 5, 1, 3}));
    EXPECT_EQ(BSearch(keys, 40), 3);
    EXPECT_EQ(BSearch(keys, 45), -1);
    EXPECT_EQ(LSearch(keys, 60), 5);
    IntVec empty;
    QSort(empty);
    EXPECT_EQ(BSearch(empty, 1), -1);
    EXPECT_EQ(LSearch(empty, 1), -1);

    IntVec k3(3);
    k3[0] = 3;
    k3[1] = 1;
    k3[2] = 2;
    ReaVec r(3);
    r[0] = 0.3;
    r[1] = 0.1;
    r[2] = 0.2;
    QSort(k3, r);
    EXPECT_EQ(k3[0], 1);
    EXPECT_EQ(r[0], 0.1);
    EXPECT_EQ(r[2], 0.3);

    // Only the run 1..2 moves.
    k3[0] = 9;
    k3[1] = 8;
    k3[2] = 7;
    QSort(k3, r, 1, 2);
    EXPECT_EQ(k3[0], 9);
    EXPECT_EQ(k3[1], 7);
    EXPECT_EQ(r[0], 0.1);
    EXPECT_EQ(r[1], 0.3);
    EXPECT_EQ(r[2], 0.2);

    ReaVec p(3);
    p[0] = 2.0;
    p[1] = -1.0;
    p[2] = 0.5;
    ReaVec q(3);
    q[0] = 20;
    q[1] = -10;
    q[2] = 5;
    QSort(p, q);
    EXPECT_EQ(p[0], -1.0);
    EXPECT_EQ(p[2], 2.0);
    EXPECT_EQ(q[0], -10);
    EXPECT_EQ(q[2], 20);
    EXPECT_EQ(BSearch(p, 0.5), 1);
    EXPECT_EQ(LSearch(p, 2.0), 2);
    q[0] = 3;
    q[1] = 1;
    q[2] = 2;
    QSort(q);
    EXPECT_EQ(q[0], 1);
    EXPECT_EQ(q[2], 3);
    ReaVec none(0);
    EXPECT_EQ(BSearch(none, 1.0), -1);
    EXPECT_EQ(LSearch(none, 1.0), -1);
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
