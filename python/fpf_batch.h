// First-ply failure of many load cases at once, for NumPy arrays: the cases
// are rows of 8 doubles, the answers rows of a structured array, and the
// rows may be split over several threads.  Nothing here touches Python: the
// caller releases the GIL around it.
#ifndef LAMINATE_PYTHON_FPF_BATCH_H
#define LAMINATE_PYTHON_FPF_BATCH_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "laminate/analysis/laminate_analysis.h"

namespace pylaminate {

// Load values this small count as 0, as the Tcl commands read them.
const double kLoadSnap = 1e-6;

// One answer, laid out as the structured dtype of the module: factor
// float64, ply int32, then face, mode and outcome as NumPy unicode strings
// (UCS-4, zero padded) of 6, 6 and 9 characters.
struct FailureRow {
    double factor;
    std::int32_t ply;
    std::uint32_t face[6];
    std::uint32_t mode[6];
    std::uint32_t outcome[9];
};
static_assert(sizeof(FailureRow) == 96, "FailureRow must have no padding");

// The words of an answer, as the Tcl commands give them.
char const* faceWord(laminate::analysis::Face f);                       // none top bottom
char const* modeWord(laminate::analysis::Criterion c, laminate::analysis::PlyFailure const& f);  // tsaiwu matrix fibre m1..m6 none
char const* outcomeWord(laminate::analysis::Outcome o);                 // fails never undefined overflow

// Throws LoadsError for the first value of rows x 8 loads that is not
// finite, naming the case (from 1) and the value as laminate::batch does.
void checkLoads(double const* loads, size_t rows, bool single);

// The loads of a case as the analysis takes them: tiny values snapped to 0.
void snapLoads(double const* in, double out[8]);

// The answer for one case into row.
void fillRow(laminate::analysis::Criterion c, laminate::analysis::PlyFailure const& f, FailureRow& row);

// Every case of rows x 8 loads (already checked) into out[rows], split over
// threads threads (contiguous blocks); the answers are the same whatever the
// count.
void rateRows(laminate::analysis::LaminateAnalysis const& an, laminate::analysis::Criterion c, double const* loads,
              size_t rows, FailureRow* out, int threads);

}  // namespace pylaminate

#endif
