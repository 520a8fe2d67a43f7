// Literal matrices and vectors for the linear-algebra tests.
#ifndef LAMINATE_TESTS_LINALG_MATRIU_ROWS_H
#define LAMINATE_TESTS_LINALG_MATRIU_ROWS_H

#include <initializer_list>
#include <vector>

#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reavecv.h"

using V = std::vector<double>;

// A matrix written row by row: Rows({{1, 2}, {3, 4}}).
inline vantrel::Matriu Rows(std::initializer_list<std::initializer_list<double>> rows)
{
    vantrel::Matriu m(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int k = 0;
    for (auto const& r : rows)
        for (double v : r) m.data[k++] = v;
    return m;
}

// A vector of either kind holding the given values.
template <class Vector = vantrel::ReaVecV>
Vector Vec(std::initializer_list<double> values)
{
    Vector v(static_cast<int>(values.size()));
    unsigned k = 0;
    for (double x : values) v[k++] = x;
    return v;
}

// The values in use, for comparison with a literal list.
template <class Vector>
V Vals(Vector const& v)
{
    V out;
    for (int i = 0; i < v.n; ++i) out.push_back(v[static_cast<unsigned>(i)]);
    return out;
}

#endif
