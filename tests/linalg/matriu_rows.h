// Literal matrices and vectors for the Matriu tests.
#ifndef LAMINATE_TESTS_LINALG_MATRIU_ROWS_H
#define LAMINATE_TESTS_LINALG_MATRIU_ROWS_H

#include <initializer_list>

#include "linalg/matriu.h"
#include "linalg/reavecv.h"

// A matrix written row by row: Rows({{1, 2}, {3, 4}}).
inline vantrel::Matriu Rows(std::initializer_list<std::initializer_list<double>> rows)
{
    vantrel::Matriu m(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int k = 0;
    for (auto const& r : rows)
        for (double v : r) m.data[k++] = v;
    return m;
}

inline vantrel::ReaVecV Vec(std::initializer_list<double> values)
{
    vantrel::ReaVecV v(static_cast<int>(values.size()));
    int k = 0;
    for (double x : values) v[k++] = x;
    return v;
}

#endif
