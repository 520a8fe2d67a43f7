// The command layer: the commands of both packages, called as a script
// would call them, with a fresh registry for every input.
//
// Input: lines, each one command as a Tcl list (no substitution of any kind:
// the words are taken as they stand).  A line whose first word is not one of
// the package commands below is skipped, so nothing else of the interpreter
// (exit, exec, source, ...) can be reached.  At most kMaxCommands lines run.
//
// Every first-ply failure factor and envelope point a command answers must
// be a number of its range or a documented word: anything else (NaN, a
// negative factor) is a finding.
//
// Two outcomes of the three Laminate commands end a run the way they end a
// process, and are legitimate here: a fatal error of the linear-algebra layer
// (exit status 2; the quit hook throws it back to this harness), and
// laminate_material refusing a record while two or more other materials
// exist (it never returns; predicted before the call, and not made).  Both
// end the input with the registry reset.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "harness.h"
#include "laminate/tcl/registry.h"

namespace {

char const* const kCommands[] = {
    "laminate_material", "laminate_results",   "last_layer",
    "laminate::define",  "laminate::abd",      "laminate::evaluate",
    "laminate::fpf",     "laminate::batch",    "laminate::envelope",
    "laminate::material", "laminate::layup",   "laminate::describe",
    "laminate::rate",     "laminate::lpf"};

// A first-ply failure factor is a number from 0 to Inf, or one of the words
// that say why there is none; an envelope coordinate is a number (either
// sign, infinite included) or such a word.  Never NaN, never a negative
// factor.
bool isWord(Tcl_Obj* o)
{
    static char const* const words[] = {"undefined", "overflow",  "nostrength", "nodata",
                                        "nonfinite", "badparameter"};
    char const* s = Tcl_GetString(o);
    for (char const* w : words)
        if (std::strcmp(s, w) == 0) return true;
    return false;
}

void checkFactor(Tcl_Obj* factor, char const* command)
{
    double v;
    if (isWord(factor)) return;
    if (Tcl_GetDoubleFromObj(nullptr, factor, &v) != TCL_OK || std::isnan(v) || v < 0.0)
        fuzz::fail("%s gave the factor \"%s\"", command, Tcl_GetString(factor));
}

// The value of key in the dict d, or null.
Tcl_Obj* dictValue(Tcl_Obj* d, char const* key)
{
    Tcl_Obj* k = Tcl_NewStringObj(key, -1);
    Tcl_Obj* v = nullptr;
    Tcl_IncrRefCount(k);
    Tcl_DictObjGet(nullptr, d, k, &v);
    Tcl_DecrRefCount(k);
    return v;
}

// fpf: {criterion {factor F ply P face FACE mode M} ...}.
void checkFailures(Tcl_Obj* byCriterion, char const* command)
{
    Tcl_DictSearch search;
    Tcl_Obj *key, *value;
    int done;
    if (Tcl_DictObjFirst(nullptr, byCriterion, &search, &key, &value, &done) != TCL_OK)
        fuzz::fail("%s gave no dict: %s", command, Tcl_GetString(byCriterion));
    for (; !done; Tcl_DictObjNext(&search, &key, &value, &done)) {
        Tcl_Obj* factor = dictValue(value, "factor");
        if (factor == nullptr) fuzz::fail("%s gave no factor: %s", command, Tcl_GetString(value));
        checkFactor(factor, command);
    }
    Tcl_DictObjDone(&search);
}

// The answers of the commands that rate, checked after a successful call.
void checkAnswer(char const* name, Tcl_Obj* result)
{
    int n = 0;
    Tcl_Obj** items = nullptr;
    if (std::strcmp(name, "laminate::fpf") == 0) {
        checkFailures(result, name);
    } else if (std::strcmp(name, "laminate::evaluate") == 0 || std::strcmp(name, "laminate::rate") == 0) {
        Tcl_Obj* fpf = dictValue(result, "fpf");
        if (fpf == nullptr) fuzz::fail("%s gave no fpf", name);
        checkFailures(fpf, name);
    } else if (std::strcmp(name, "laminate::lpf") == 0) {
        // {criterion C events {{factor F ...} ...} last F ...}: every
        // factor, the last one included, is a factor.
        Tcl_Obj* last = dictValue(result, "last");
        Tcl_Obj* events = dictValue(result, "events");
        if (last == nullptr || events == nullptr) fuzz::fail("laminate::lpf gave no last or events");
        checkFactor(last, name);
        Tcl_ListObjGetElements(nullptr, events, &n, &items);
        for (int i = 0; i < n; i++) {
            Tcl_Obj* factor = dictValue(items[i], "factor");
            if (factor == nullptr) fuzz::fail("laminate::lpf gave an event without a factor");
            checkFactor(factor, name);
        }
    } else if (std::strcmp(name, "laminate::batch") == 0) {
        Tcl_ListObjGetElements(nullptr, result, &n, &items);
        for (int i = 0; i < n; i++) checkFailures(items[i], name);
    } else if (std::strcmp(name, "laminate::envelope") == 0) {
        Tcl_ListObjGetElements(nullptr, result, &n, &items);
        for (int i = 0; i < n; i++) {
            int m = 0;
            Tcl_Obj** xy = nullptr;
            Tcl_ListObjGetElements(nullptr, items[i], &m, &xy);
            for (int k = 0; k < m; k++) {
                double v;
                if (isWord(xy[k])) continue;
                if (Tcl_GetDoubleFromObj(nullptr, xy[k], &v) != TCL_OK || std::isnan(v))
                    fuzz::fail("laminate::envelope gave the point \"%s\"", Tcl_GetString(items[i]));
            }
        }
    }
}

int const kMaxCommands = 64;

// An envelope of many points is a long computation, not a hang: lines asking
// for more than kMaxPoints (and no more than the command accepts) are
// skipped, so that a run stays short.  Counts beyond what the command
// accepts still reach it, for its refusal.
int const kMaxPoints = 256;

bool tooLong(int objc, Tcl_Obj* const* objv)
{
    if (std::strcmp(Tcl_GetString(objv[0]), "laminate::envelope") != 0) return false;
    for (int i = 2; i + 1 < objc; i++) {
        int n;
        if (std::strncmp(Tcl_GetString(objv[i]), "-p", 2) == 0 &&
            Tcl_GetIntFromObj(nullptr, objv[i + 1], &n) == TCL_OK && n > kMaxPoints && n <= 100000)
            return true;
    }
    return false;
}

// Runs one line; false when the run ended as a process would have.
bool runLine(Tcl_Interp* interp, Tcl_Obj* line)
{
    int objc = 0;
    Tcl_Obj** objv = nullptr;
    if (Tcl_ListObjGetElements(nullptr, line, &objc, &objv) != TCL_OK || objc == 0)
        return true;
    char const* name = Tcl_GetString(objv[0]);
    bool known = false;
    for (char const* c : kCommands) known = known || std::strcmp(c, name) == 0;
    Tcl_CmdInfo info;
    if (!known || !Tcl_GetCommandInfo(interp, name, &info) || tooLong(objc, objv)) return true;
    // Reading material libraries would reach the file system.
    if (std::strcmp(name, "laminate::material") == 0 && objc > 1 &&
        std::strcmp(Tcl_GetString(objv[1]), "load") == 0)
        return true;

    if (std::strcmp(name, "laminate_material") == 0 && objc == 3 &&
        fuzz::materialWouldSpin(Tcl_GetString(objv[2]))) {
        fuzz::resetRegistry();
        return false;
    }
    // The callback is called directly, not through Tcl's evaluation, so that
    // a thrown Quit crosses no frame of the interpreter.
    try {
        if (info.objProc(info.objClientData, interp, objc, objv) == TCL_OK)
            checkAnswer(name, Tcl_GetObjResult(interp));
    } catch (fuzz::Quit const&) {
        fuzz::afterQuit();
        Tcl_ResetResult(interp);
        return false;
    }
    Tcl_ResetResult(interp);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static Tcl_Interp* const interp = (fuzz::quitThrows(), fuzz::interpreter());

    fuzz::resetRegistry();
    char const* p = reinterpret_cast<char const*>(data);
    char const* const end = p + size;
    for (int n = 0; p < end && n < kMaxCommands; n++) {
        char const* eol = static_cast<char const*>(std::memchr(p, '\n', end - p));
        if (eol == nullptr) eol = end;
        Tcl_Obj* line = Tcl_NewStringObj(p, static_cast<int>(eol - p));
        Tcl_IncrRefCount(line);
        bool const goOn = runLine(interp, line);
        Tcl_DecrRefCount(line);
        if (!goOn) break;
        p = eol + 1;
    }
    return 0;
}
