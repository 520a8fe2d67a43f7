#include "fpf_batch.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <thread>

#include "errors.h"

using laminate::analysis::Face;
using laminate::analysis::LaminateFailure;
using laminate::analysis::Outcome;
using laminate::analysis::PlyFailure;
using laminate::analysis::Verdict;

namespace pylaminate {

char const* const kCriterionNames[] = {"tsaiwu",   "hashin",   "larc04",  "maxstress",
                                       "maxstrain", "tsaihill", "hoffman", "tsaiwu2d",
                                       "hashin2d", "puck",     "larc03",  nullptr};
char const* const kFaceWords[] = {"none", "top", "bottom", nullptr};
char const* const kOutcomeWords[] = {"fails", "never", "undefined", "overflow", nullptr};
char const* const kVerdictWords[] = {"none",     "ok",     "never",     "residual", "nostrength",
                                     "nodata", "nonfinite", "badparameter", "unassessed", nullptr};

namespace {

// The model's mode words, by the mode number of PlyFailure plus 1.
char const* const kModelModes[3][8] = {{"none", "tsaiwu", nullptr},
                                       {"none", "matrix", "fibre", nullptr},
                                       {"none", "m1", "m2", "m3", "m4", "m5", "m6", nullptr}};

std::string shortest(double v)
{
    char buffer[32];
    for (int precision = 1; precision <= 17; precision++) {
        std::snprintf(buffer, sizeof buffer, "%.*g", precision, v);
        if (std::strtod(buffer, nullptr) == v) break;
    }
    return buffer;
}

// The mode words of a model criterion, "none" included.
int modeCount(int id)
{
    int n = 0;
    while (kModelModes[id][n] != nullptr) n++;
    return n;
}

}  // namespace

int criterionCount()
{
    return static_cast<int>(sizeof kCriterionNames / sizeof kCriterionNames[0]) - 1;
}

CriterionChoice criterionChoice(std::string const& word)
{
    for (int id = 0; kCriterionNames[id] != nullptr; id++) {
        if (word != kCriterionNames[id]) continue;
        if (id < kModelCriteria) return {id, -1};
        for (int c = 0; laminate::analysis::kCriteria[c] != nullptr; c++)
            if (word == laminate::analysis::kCriteria[c]->name) return {id, c};
    }
    std::string all;
    for (int id = 0; kCriterionNames[id] != nullptr; id++)
        all += std::string(id == 0 ? "" : kCriterionNames[id + 1] == nullptr ? ", or " : ", ") + kCriterionNames[id];
    throw Error(ErrorKind::Laminate, "bad criterion \"" + word + "\": must be " + all, {"CRITERION", word});
}

std::vector<std::string> modeWords(int id)
{
    std::vector<std::string> words;
    if (id < kModelCriteria) {
        for (int m = 0; kModelModes[id][m] != nullptr; m++) words.push_back(kModelModes[id][m]);
        return words;
    }
    words.push_back("none");
    laminate::analysis::CriterionInfo const& info = *laminate::analysis::kCriteria[criterionChoice(kCriterionNames[id]).catalogue];
    for (int m = 0; info.modes[m] != nullptr; m++) words.push_back(info.modes[m]);
    return words;
}

void checkLoads(double const* loads, size_t rows, bool single)
{
    for (size_t i = 0; i < rows * 8; i++) {
        if (std::isfinite(loads[i])) continue;
        std::string const what = single ? "loads" : "case " + std::to_string(i / 8 + 1);
        throw Error(ErrorKind::Loads,
                    what + ": load value " + std::to_string(i % 8 + 1) + " is not a finite number: \"" +
                        shortest(loads[i]) + "\"",
                    {"LOADS", "VALUE"});
    }
}

void snapLoads(double const* in, double out[8])
{
    for (int i = 0; i < 8; i++) out[i] = std::fabs(in[i]) <= kLoadSnap ? 0.0 : in[i];
}

void fillRow(int id, PlyFailure const& f, double fos, FailureRow& row)
{
    row.factor = f.factor;
    row.mos = laminate::analysis::marginOfSafety(f.factor, fos);
    row.ply = f.ply;
    row.face = static_cast<std::uint8_t>(f.face);
    // The model numbers LaRC04's modes from 1, the others from 0.
    int const code = f.face == Face::None ? 0 : id == 2 ? f.mode : f.mode + 1;
    row.mode = static_cast<std::uint8_t>(code >= 1 && code < modeCount(id) ? code : 0);
    row.outcome = static_cast<std::uint8_t>(f.outcome);
    row.verdict = 0;
}

void fillRow(LaminateFailure const& f, double fos, FailureRow& row)
{
    row.factor = f.rf;
    row.mos = laminate::analysis::marginOfSafety(f.rf, fos);
    row.ply = f.ply;
    row.face = static_cast<std::uint8_t>(f.face);
    row.mode = static_cast<std::uint8_t>(f.mode >= 0 && f.mode < 254 ? f.mode + 1 : 0);
    // ok and residual fail (residual at 0), never never; a ply that cannot
    // be rated leaves it untold whether the laminate fails.
    Outcome const o = f.verdict == Verdict::Ok || f.verdict == Verdict::Residual ? Outcome::Fails
                      : f.verdict == Verdict::Never                           ? Outcome::Never
                                                                              : Outcome::Undefined;
    row.outcome = static_cast<std::uint8_t>(o);
    row.verdict = static_cast<std::uint8_t>(static_cast<int>(f.verdict) + 1);
}

void rateRows(laminate::analysis::LaminateAnalysis const& an, laminate::analysis::LaminateRating const& rating,
              BatchOptions const& opt, double const* loads, size_t rows, FailureRow* out, int threads)
{
    static laminate::analysis::Criterion const model[] = {laminate::analysis::Criterion::TsaiWu,
                                                          laminate::analysis::Criterion::Hashin,
                                                          laminate::analysis::Criterion::LaRC04};
    auto block = [&an, &rating, &opt, loads, out](size_t first, size_t last) {
        double snapped[8];
        int const id = opt.criterion.id, c = opt.criterion.catalogue;
        if (opt.criterion.model()) {
            for (size_t i = first; i < last; i++) {
                snapLoads(loads + 8 * i, snapped);
                fillRow(id, an.firstPlyFailure(snapped, model[id]), opt.fos, out[i]);
            }
        } else {
            laminate::analysis::RatingLoad const load{snapped, opt.dT, opt.dM};
            for (size_t i = first; i < last; i++) {
                snapLoads(loads + 8 * i, snapped);
                fillRow(rating.firstPlyFailure(c, load), opt.fos, out[i]);
            }
        }
    };
    size_t const k = threads < 1 ? 1 : static_cast<size_t>(threads);
    if (k == 1 || rows < 2) {
        block(0, rows);
        return;
    }
    std::vector<std::thread> pool;
    size_t const per = rows / k, extra = rows % k;
    size_t first = 0;
    for (size_t t = 0; t < k; t++) {
        size_t const last = first + per + (t < extra ? 1 : 0);
        if (t + 1 == k) {
            block(first, last);  // the calling thread takes the last block
        } else {
            try {
                pool.emplace_back(block, first, last);
            } catch (std::system_error const&) {
                block(first, last);  // no thread to be had: this one does it
            }
        }
        first = last;
    }
    for (std::thread& th : pool) th.join();
}

}  // namespace pylaminate
