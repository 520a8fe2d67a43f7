// Reductions over a run of n doubles, shared by ReaVec and ReaVecV.  Indices
// returned are counted from 1; an empty run gives 0.  Ties keep the earliest
// position (strict comparison).
#ifndef LAMINATE_LINALG_REDUCTIONS_H
#define LAMINATE_LINALG_REDUCTIONS_H

namespace vantrel {
namespace reduce {

inline int maxIndex(double const* a, int n)
{
    if (n == 0) return 0;
    int best = 0;
    for (int i = 1; i < n; ++i)
        if (a[i] > a[best]) best = i;
    return best + 1;
}

inline int minIndex(double const* a, int n)
{
    if (n == 0) return 0;
    int best = 0;
    for (int i = 1; i < n; ++i)
        if (a[i] < a[best]) best = i;
    return best + 1;
}

inline double maxVal(double const* a, int n) { return n == 0 ? 0.0 : a[maxIndex(a, n) - 1]; }
inline double minVal(double const* a, int n) { return n == 0 ? 0.0 : a[minIndex(a, n) - 1]; }

inline double sum(double const* a, int n)
{
    double s = 0.0;
    for (int i = 0; i < n; ++i) s += a[i];
    return s;
}

inline double sumsq(double const* a, int n)
{
    double s = 0.0;
    for (int i = 0; i < n; ++i) s += a[i] * a[i];
    return s;
}

}  // namespace reduce
}  // namespace vantrel

#endif
