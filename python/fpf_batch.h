// First-ply failure of many load cases at once, for NumPy arrays: the cases
// are rows of 8 doubles, the answers rows of a structured array, and the
// rows may be split over several threads.  Nothing here touches Python: the
// caller releases the GIL around it.
//
// The words of an answer (face, mode, outcome, verdict) are stored as small
// codes, positions in word tables (kFaceWords, kOutcomeWords, kVerdictWords,
// modeWords()): a row is 24 bytes whatever the criterion, and filling it
// costs four byte stores.
#ifndef LAMINATE_PYTHON_FPF_BATCH_H
#define LAMINATE_PYTHON_FPF_BATCH_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "laminate/analysis/laminate_analysis.h"
#include "laminate/analysis/laminate_rating.h"

namespace pylaminate {

// Load values this small count as 0, as the Tcl commands read them.
const double kLoadSnap = 1e-6;

// The criteria the module names, in their interface order: the model's three
// (LaminateAnalysis::firstPlyFailure, no residual stresses), then the
// catalogue's (LaminateRating), NULL-terminated.  The same names, in the
// same order, as the Tcl commands take.
extern char const* const kCriterionNames[];
const int kModelCriteria = 3;
int criterionCount();

// A criterion chosen by name: its position in kCriterionNames, and for a
// catalogue criterion its position in laminate::analysis::kCriteria.
struct CriterionChoice {
    int id;
    int catalogue;  // -1 for the model's three
    bool model() const { return catalogue < 0; }
};
// Throws LaminateError ('LAMINATE', 'CRITERION', word) for an unknown name,
// with the message Tcl gives for a bad criterion.
CriterionChoice criterionChoice(std::string const& word);

// Word tables; code 0 of face, mode and verdict is "none".
extern char const* const kFaceWords[];     // none top bottom (Face)
extern char const* const kOutcomeWords[];  // fails never undefined overflow (Outcome)
extern char const* const kVerdictWords[];  // none, then the catalogue's verdicts in Verdict order
const int kFaceCount = 3, kOutcomeCount = 4, kVerdictCount = 8;
// "none", then the mode words of criterion id, in their code order.
std::vector<std::string> modeWords(int id);

// One answer, laid out as the structured dtype of the module (FPF_DTYPE).
struct FailureRow {
    double factor;
    double mos;  // factor / fos - 1
    std::int32_t ply;
    std::uint8_t face, mode, outcome, verdict;
};
static_assert(sizeof(FailureRow) == 24, "FailureRow must have no padding");

// How a batch is rated: the criterion, the temperature and moisture changes
// held (catalogue criteria only) and the factor of safety of mos.
struct BatchOptions {
    CriterionChoice criterion;
    double dT = 0, dM = 0, fos = 1;
};

// Throws LoadsError for the first value of rows x 8 loads that is not
// finite, naming the case (from 1) and the value as laminate::batch does.
void checkLoads(double const* loads, size_t rows, bool single);

// The loads of a case as the analysis takes them: tiny values snapped to 0.
void snapLoads(double const* in, double out[8]);

// The answer of a model criterion (id 0..2), and of a catalogue criterion.
void fillRow(int id, laminate::analysis::PlyFailure const& f, double fos, FailureRow& row);
void fillRow(laminate::analysis::LaminateFailure const& f, double fos, FailureRow& row);

// Every case of rows x 8 loads (already checked) into out[rows], split over
// threads threads (contiguous blocks); the answers are the same whatever the
// count.  rating is read only for a catalogue criterion.
void rateRows(laminate::analysis::LaminateAnalysis const& an, laminate::analysis::LaminateRating const& rating,
              BatchOptions const& opt, double const* loads, size_t rows, FailureRow* out, int threads);

}  // namespace pylaminate

#endif
