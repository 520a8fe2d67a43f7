#include "fpf_batch.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <thread>
#include <vector>

#include "errors.h"

using laminate::analysis::Criterion;
using laminate::analysis::Face;
using laminate::analysis::Outcome;
using laminate::analysis::PlyFailure;

namespace pylaminate {

namespace {

template <size_t N>
void putWord(std::uint32_t (&field)[N], char const* word)
{
    size_t i = 0;
    for (; i < N && word[i] != '\0'; i++) field[i] = static_cast<unsigned char>(word[i]);
    for (; i < N; i++) field[i] = 0;
}

std::string shortest(double v)
{
    char buffer[32];
    for (int precision = 1; precision <= 17; precision++) {
        std::snprintf(buffer, sizeof buffer, "%.*g", precision, v);
        if (std::strtod(buffer, nullptr) == v) break;
    }
    return buffer;
}

}  // namespace

char const* faceWord(Face f)
{
    switch (f) {
    case Face::Top: return "top";
    case Face::Bottom: return "bottom";
    default: return "none";
    }
}

char const* modeWord(Criterion c, PlyFailure const& f)
{
    static char const* const larc[] = {"m1", "m2", "m3", "m4", "m5", "m6"};
    if (f.face == Face::None) return "none";
    switch (c) {
    case Criterion::TsaiWu: return f.mode == 0 ? "tsaiwu" : "none";
    case Criterion::Hashin: return f.mode == 0 ? "matrix" : f.mode == 1 ? "fibre" : "none";
    default: return f.mode >= 1 && f.mode <= 6 ? larc[f.mode - 1] : "none";
    }
}

char const* outcomeWord(Outcome o)
{
    switch (o) {
    case Outcome::Fails: return "fails";
    case Outcome::Never: return "never";
    case Outcome::Undefined: return "undefined";
    default: return "overflow";
    }
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

void fillRow(Criterion c, PlyFailure const& f, FailureRow& row)
{
    row.factor = f.factor;
    row.ply = f.ply;
    putWord(row.face, faceWord(f.face));
    putWord(row.mode, modeWord(c, f));
    putWord(row.outcome, outcomeWord(f.outcome));
}

void rateRows(laminate::analysis::LaminateAnalysis const& an, Criterion c, double const* loads, size_t rows,
              FailureRow* out, int threads)
{
    auto block = [&an, c, loads, out](size_t first, size_t last) {
        double snapped[8];
        for (size_t i = first; i < last; i++) {
            snapLoads(loads + 8 * i, snapped);
            fillRow(c, an.firstPlyFailure(snapped, c), out[i]);
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
