#include "laminate/intvec/sort.h"

#include <algorithm>
#include <type_traits>

#include "laminate/intvec/intvec.h"
#include "laminate/linalg/reavec.h"
#include "laminate/util/errorwriter.h"

namespace {

// Runs of at most this many elements are never partitioned: the final
// insertion pass finishes them.
const int kSmallRun = 4;

// Deferred runs of the partitioning phase.  The larger side is always the one
// deferred, so the depth stays below log2(count) and 64 entries cannot fill.
const int kStackSize = 64;

// The carried array of a sort: it receives the same moves as the keys.
template <class T>
struct Carry {
    T* b;
    void swap(int i, int j)
    {
        T t = b[i];
        b[i] = b[j];
        b[j] = t;
    }
    // b[to] moves down to b[at]; b[at .. to-1] move up one place.
    void insert(int at, int to)
    {
        T t = b[to];
        for (int k = to; k > at; --k) b[k] = b[k - 1];
        b[at] = t;
    }
};

struct NoCarry {
    void swap(int, int) {}
    void insert(int, int) {}
};

template <class K, class C>
void Sort(K* a, C carry, int first, int count)
{
    if (count < 2) return;
    const int last = first + count - 1;
    auto swap = [&](int i, int j) {
        K t = a[i];
        a[i] = a[j];
        a[j] = t;
        carry.swap(i, j);
    };

    if (count > kSmallRun) {
        struct Run {
            int lo, hi;
        } stack[kStackSize];
        int top = 0;
        int lo = first, hi = last;
        for (;;) {
            // Median of three: afterwards a[lo] <= a[mid] <= a[hi], so both
            // scans below are stopped by the run's own ends.
            const int mid = lo + (hi - lo) / 2;
            if (a[mid] < a[lo]) swap(mid, lo);
            if (a[hi] < a[mid]) {
                swap(hi, mid);
                if (a[mid] < a[lo]) swap(mid, lo);
            }
            const K pivot = a[mid];

            int i = lo + 1, j = hi - 1;
            do {
                while (a[i] < pivot) ++i;
                while (pivot < a[j]) --j;
                if (i < j) {
                    swap(i, j);
                    ++i;
                    --j;
                } else if (i == j) {
                    ++i;
                    --j;
                    break;
                }
            } while (i <= j);

            // Sides of five elements or fewer are left to the insertion pass.
            const bool left_small = j - lo < kSmallRun + 1;
            const bool right_small = hi - i < kSmallRun + 1;
            if (left_small && right_small) {
                if (top == 0) break;
                --top;
                lo = stack[top].lo;
                hi = stack[top].hi;
            } else if (left_small) {
                lo = i;
            } else if (right_small) {
                hi = j;
            } else if (hi - i < j - lo) {
                stack[top++] = {lo, j};
                lo = i;
            } else {
                stack[top++] = {i, hi};
                hi = j;
            }
        }
    }

    // The smallest element lies within the first run left unsorted, which
    // has at most five elements.  Put it first as a sentinel so the
    // insertion loop needs no bound test.
    const int window = last < first + kSmallRun ? last : first + kSmallRun;
    int smallest = first;
    for (int r = first + 1; r <= window; ++r)
        if (a[r] < a[smallest]) smallest = r;
    if (smallest != first) swap(smallest, first);

    for (int run = first + 2; run <= last; ++run) {
        int at = run - 1;
        if constexpr (std::is_floating_point<K>::value) {
            // A NaN orders with nothing, so the reasoning that puts the
            // smallest element first does not cover such input; keep the
            // scan inside the run whatever the keys hold.
            while (at >= first && a[run] < a[at]) --at;
        } else {
            while (a[run] < a[at]) --at;
        }
        ++at;
        if (at != run) {
            K key = a[run];
            for (int k = run; k > at; --k) a[k] = a[k - 1];
            a[at] = key;
            carry.insert(at, run);
        }
    }
}

template <class T>
int Bisect(T x, T const* a, int lo, int hi)
{
    // L and H are exclusive bounds; N is the lowest index still possible.
    int L = lo - 1, H = hi + 1, N = lo;
    while (H != N) {
        const int mid = (H + L) / 2;
        if (x < a[mid]) {
            H = mid;
        } else if (x == a[mid]) {
            return mid;
        } else {
            L = mid;
            N = mid + 1;
        }
    }
    return -1;
}

template <class T>
int Scan(T x, T const* a, int lo, int hi)
{
    for (int i = lo; i <= hi; ++i)
        if (a[i] == x) return i;
    return -1;
}

void LengthError(long long keys, long long carried)
{
    *errorwriter.error_stream << "Different lenght vectors " << keys << " != " << carried;
    errorwriter.WriteErrorAndQuit();
}

}  // namespace

int compare_int(void const* a, void const* b)
{
    const int x = *static_cast<int const*>(a);
    const int y = *static_cast<int const*>(b);
    if (x < y) return -1;
    if (x > y) return 1;
    return 0;
}

int compare_real(void const* a, void const* b)
{
    const double x = *static_cast<double const*>(a);
    const double y = *static_cast<double const*>(b);
    if (!(y <= x)) return -1;
    if (x > y) return 1;
    return 0;
}

int BSearch(double x, double* a, int lo, int hi) { return Bisect(x, a, lo, hi); }
int BSearch(int x, int* a, int lo, int hi) { return Bisect(x, a, lo, hi); }

int BSearch(IntVec& v, int x)
{
    const int n = static_cast<int>(v.length());
    return n == 0 ? -1 : Bisect(x, &v[0], 0, n - 1);
}

int BSearch(vantrel::ReaVec& v, double x)
{
    const int n = v.length();
    return n <= 0 ? -1 : Bisect(x, &v[0], 0, n - 1);
}

int LSearch(double x, double* a, int lo, int hi) { return Scan(x, a, lo, hi); }
int LSearch(int x, int* a, int lo, int hi) { return Scan(x, a, lo, hi); }

int LSearch(IntVec& v, int x)
{
    const int n = static_cast<int>(v.length());
    return n == 0 ? -1 : Scan(x, &v[0], 0, n - 1);
}

int LSearch(vantrel::ReaVec& v, double x)
{
    const int n = v.length();
    return n <= 0 ? -1 : Scan(x, &v[0], 0, n - 1);
}

void QSort(double* a, int first, int count) { Sort(a, NoCarry{}, first, count); }
void QSort(int* a, int first, int count) { Sort(a, NoCarry{}, first, count); }
void QSort(int* keys, double* b, int first, int count) { Sort(keys, Carry<double>{b}, first, count); }
void QSort(double* keys, double* b, int first, int count) { Sort(keys, Carry<double>{b}, first, count); }
void QSort(int* keys, int* b, int first, int count) { Sort(keys, Carry<int>{b}, first, count); }

void QSort(IntVec& a)
{
    const int n = static_cast<int>(a.length());
    if (n > 1) QSort(&a[0], 0, n);
}

void QSort(IntVec& keys, IntVec& b)
{
    const int n = static_cast<int>(keys.length());
    if (b.length() < keys.length()) LengthError(n, b.length());
    if (n > 1) QSort(&keys[0], &b[0], 0, n);
}

void QSort(vantrel::ReaVec& a)
{
    const int n = a.length();
    if (n > 1) QSort(&a[0], 0, n);
}

void QSort(IntVec& keys, vantrel::ReaVec& b)
{
    const int n = static_cast<int>(keys.length());
    if (b.length() < n) LengthError(n, b.length());
    if (n > 1) QSort(&keys[0], &b[0], 0, n);
}

void QSort(IntVec& keys, vantrel::ReaVec& b, int first, int count)
{
    // The run must lie inside both containers; an empty run touches nothing.
    const long long end = static_cast<long long>(first) + count;
    const long long room = std::min<long long>(keys.length(), b.length());
    if (first < 0 || count < 0 || end > room) {
        *errorwriter.error_stream << "Index " << end - 1 << " out of range.";
        errorwriter.WriteErrorAndQuit();
    }
    if (count > 1) QSort(&keys[0], &b[0], first, count);
}

void QSort(vantrel::ReaVec& keys, vantrel::ReaVec& b)
{
    const int n = keys.length();
    if (b.length() < n) LengthError(n, b.length());
    if (n > 1) QSort(&keys[0], &b[0], 0, n);
}
