// Conversions between Matriu and the vector types: a vector becomes a column
// matrix, and a column of a small matrix becomes a ReaVec.
#include "laminate/linalg/matriu.h"

#include <cstddef>

#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reavecv.h"

namespace vantrel {

namespace {

// A column matrix holding len values copied from src.
void makeColumn(Matriu& m, double const* src, int len)
{
    m.nrows = len;
    m.ncols = 1;
    m.size = len;
    m.data = new double[static_cast<std::size_t>(len)];
    for (int i = 0; i < len; ++i) m.data[i] = src[i];
}

}  // namespace

Matriu::Matriu(ReaVec const& v) : nrows(0), ncols(0), size(0), data(nullptr)
{
    makeColumn(*this, v.elements, v.n);
}

Matriu::Matriu(ReaVecV const& v) : nrows(0), ncols(0), size(0), data(nullptr)
{
    makeColumn(*this, v.data, v.n);
}

ReaVec Matriu::GiveColumn(int c)
{
    // ReaVec holds at most 3 values: callers only ask this of small matrices.
    ReaVec col(nrows);
    for (int r = 1; r <= nrows; ++r) col.elements[r - 1] = (*this)(r, c);
    return col;
}

}  // namespace vantrel
