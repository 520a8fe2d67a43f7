// laminate::lpf: the last-ply failure of a laminate under one load case.
//
// The material is looked up and prepared as laminate::rate finds it; the
// run itself (analysis/last_ply_failure.h) works on copies it owns, outside
// the registry lock.

#include <cstring>

#include "laminate/analysis/last_ply_failure.h"
#include "laminate/tcl/analysis_cmds.h"

using laminate::analysis::Degradation;
using laminate::analysis::LpfEvent;
using laminate::analysis::LpfResult;

namespace {

int fail(Tcl_Interp* interp, Tcl_Obj* message, const char* a, const char* b,
         const char* c = nullptr)
{
    Tcl_SetObjResult(interp, message);
    Tcl_SetErrorCode(interp, "LAMINATE", a, b, c, static_cast<char*>(nullptr));
    return TCL_ERROR;
}

const char* const lpf_options[] = {"-criterion", "-dT",    "-dM",     "-degradation",
                                   "-fos",       "-params", nullptr};
enum LpfOption { LPF_CRITERION, LPF_DT, LPF_DM, LPF_DEGRADATION, LPF_FOS, LPF_PARAMS, LPF_COUNT };

// The catalogue's criteria by name, in its order; NULL-terminated.  Only
// pointers to the catalogue's own words: the same in every thread.
const char* const* criterionNames()
{
    static const char* names[16] = {nullptr};
    static bool const filled = [] {
        for (int c = 0; c < 15 && laminate::analysis::kCriteria[c]; c++)
            names[c] = laminate::analysis::kCriteria[c]->name;
        return true;
    }();
    (void)filled;
    return names;
}

// The failure modes and the moduli each one scales, as -degradation names
// them: fibre E1 E2 G12, matrix E2 G12.
const char* const mode_keys[] = {"fibre", "matrix", nullptr};
const char* const modulus_keys[] = {"E1", "E2", "G12", nullptr};

double* factorOf(Degradation& d, int mode, int modulus)
{
    double* const fibre[] = {&d.fibreE1, &d.fibreE2, &d.fibreG12};
    double* const matrix[] = {nullptr, &d.matrixE2, &d.matrixG12};
    return mode == 0 ? fibre[modulus] : matrix[modulus];
}

int badFactor(Tcl_Interp* interp, int mode, int modulus, Tcl_Obj* value)
{
    bool const keepable = mode == 0 && modulus > 0;
    Tcl_Obj* msg = Tcl_ObjPrintf(
        "-degradation: the %s factor of %s must be a number from 0 to %s, got \"%s\"",
        mode_keys[mode], modulus_keys[modulus], keepable ? "1" : "below 1",
        Tcl_GetString(value));
    return fail(interp, msg, "DEGRADATION", "FACTOR");
}

// -degradation {fibre F matrix M}: every modulus the mode scales by one
// factor; or per modulus, {fibre {E1 a E2 b G12 c} matrix {E2 d G12 e}}.
// Moduli and modes left out keep their defaults.
int readDegradation(Tcl_Interp* interp, Tcl_Obj* value, Degradation& d)
{
    int n;
    Tcl_Obj** items;
    if (Tcl_ListObjGetElements(nullptr, value, &n, &items) != TCL_OK || n % 2 != 0) {
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "-degradation: expected a dict {fibre F matrix M} or {fibre {E1 F E2 F G12 F} "
            "matrix {E2 F G12 F}}, got \"%s\"",
            Tcl_GetString(value));
        return fail(interp, msg, "DEGRADATION", "SHAPE");
    }
    for (int i = 0; i < n; i += 2) {
        int mode;
        if (Tcl_GetIndexFromObj(interp, items[i], mode_keys, "failure mode", 0, &mode) != TCL_OK) {
            Tcl_SetErrorCode(interp, "LAMINATE", "DEGRADATION", "MODE",
                             Tcl_GetString(items[i]), static_cast<char*>(nullptr));
            return TCL_ERROR;
        }
        double v;
        if (read_number(items[i + 1], v)) {
            for (int m = 0; m < 3; m++)
                if (double* f = factorOf(d, mode, m)) *f = v;
            if (!d.valid()) return badFactor(interp, mode, mode == 0 ? 0 : 1, items[i + 1]);
            continue;
        }
        int m;
        Tcl_Obj** pairs;
        if (Tcl_ListObjGetElements(nullptr, items[i + 1], &m, &pairs) != TCL_OK || m % 2 != 0 ||
            m == 0) {
            Tcl_Obj* msg = Tcl_ObjPrintf(
                "-degradation: %s expects a factor or a dict of factors by modulus, got \"%s\"",
                mode_keys[mode], Tcl_GetString(items[i + 1]));
            return fail(interp, msg, "DEGRADATION", "SHAPE");
        }
        for (int j = 0; j < m; j += 2) {
            int modulus;
            if (Tcl_GetIndexFromObj(interp, pairs[j], modulus_keys, "modulus", 0, &modulus) !=
                    TCL_OK ||
                factorOf(d, mode, modulus) == nullptr) {
                Tcl_Obj* msg = Tcl_ObjPrintf(
                    "-degradation: %s failure scales %s, not \"%s\"", mode_keys[mode],
                    mode == 0 ? "E1, E2 and G12" : "E2 and G12", Tcl_GetString(pairs[j]));
                return fail(interp, msg, "DEGRADATION", "MODULUS", Tcl_GetString(pairs[j]));
            }
            double* f = factorOf(d, mode, modulus);
            double const old = *f;
            if (!read_number(pairs[j + 1], *f) || !d.valid()) {
                *f = old;
                return badFactor(interp, mode, modulus, pairs[j + 1]);
            }
        }
    }
    return TCL_OK;
}

const char* const end_words[] = {"unloaded", "broken", "singular", "carried"};

}  // namespace

// laminate::lpf NAME LOADS ?-criterion C? ?-dT T? ?-dM M? ?-degradation D?
//     ?-fos F? ?-params P?
//
// The last-ply failure of one load case under a criterion of the catalogue
// (default tsaiwu2d), residual stresses of dT and dM held: a dict
//   criterion C events {EVENT ...} last F end E ?mos M?
// each EVENT {factor F ply P face top|bottom mode M strains {8 values}
// ?mos M?}, in load order.  last is the factor of the last event, Inf when
// nothing fails (or nothing fails any more), or the verdict word of a ply
// that cannot be rated; end says why the run ended (unloaded, broken,
// singular, carried, or that verdict word).
int laminate_lpf_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc < 3 || objc % 2 == 0) {
        Tcl_WrongNumArgs(interp, 1, objv,
                         "name loads ?-criterion c? ?-dT t? ?-dM m? ?-degradation d? ?-fos f? "
                         "?-params p?");
        return TCL_ERROR;
    }
    Tcl_Obj* opts[LPF_COUNT] = {};
    for (int i = 3; i < objc; i += 2) {
        int index;
        if (Tcl_GetIndexFromObj(interp, objv[i], lpf_options, "option", 0, &index) != TCL_OK) {
            Tcl_SetErrorCode(interp, "LAMINATE", "OPTION", Tcl_GetString(objv[i]),
                             static_cast<char*>(nullptr));
            return TCL_ERROR;
        }
        opts[index] = objv[i + 1];
    }
    int criterion = 0;
    const char* const* names = criterionNames();
    while (names[criterion] && std::strcmp(names[criterion], "tsaiwu2d") != 0) criterion++;
    if (opts[LPF_CRITERION] && Tcl_GetIndexFromObj(interp, opts[LPF_CRITERION], names,
                                                   "criterion", TCL_EXACT, &criterion) != TCL_OK) {
        Tcl_SetErrorCode(interp, "LAMINATE", "CRITERION", Tcl_GetString(opts[LPF_CRITERION]),
                         static_cast<char*>(nullptr));
        return TCL_ERROR;
    }
    double dT = 0.0, dM = 0.0, fos = 1.0;
    struct Field {
        LpfOption option;
        const char* name;
        double* value;
    };
    Field const fields[] = {{LPF_DT, "-dT", &dT}, {LPF_DM, "-dM", &dM}, {LPF_FOS, "-fos", &fos}};
    for (Field const& f : fields) {
        Tcl_Obj* v = opts[f.option];
        if (v != nullptr && (!read_number(v, *f.value) || (f.option == LPF_FOS && !(fos > 0.0)))) {
            Tcl_Obj* msg = Tcl_ObjPrintf("%s: expected a finite number%s, got \"%s\"", f.name,
                                         f.option == LPF_FOS ? " above 0" : "", Tcl_GetString(v));
            return fail(interp, msg, "OPTION", f.name);
        }
    }
    Degradation degradation;
    if (opts[LPF_DEGRADATION] &&
        readDegradation(interp, opts[LPF_DEGRADATION], degradation) != TCL_OK)
        return TCL_ERROR;
    PreparedLaminate pm;
    double loads[8];
    if (prepared_laminate(interp, objv[1], dT, dM, pm, opts[LPF_PARAMS]) != TCL_OK ||
        read_loads(interp, objv[2], loads, "loads") != TCL_OK)
        return TCL_ERROR;

    laminate::analysis::LastPlyFailure lpf(*pm.analysis, *pm.rating, pm.alpha, pm.beta,
                                           degradation);
    LpfResult r;
    lpf.run(criterion, laminate::analysis::RatingLoad{loads, dT, dM}, r);

    laminate::analysis::CriterionInfo const& info = *laminate::analysis::kCriteria[criterion];
    bool const withMargin = opts[LPF_FOS] != nullptr;
    Tcl_Obj* events = Tcl_NewListObj(0, nullptr);
    for (LpfEvent const& e : r.events) {
        Tcl_Obj* d = Tcl_NewDictObj();
        Tcl_DictObjPut(nullptr, d, Tcl_NewStringObj("factor", -1), Tcl_NewDoubleObj(e.factor));
        Tcl_DictObjPut(nullptr, d, Tcl_NewStringObj("ply", -1), Tcl_NewIntObj(e.ply));
        Tcl_DictObjPut(nullptr, d, Tcl_NewStringObj("face", -1),
                       Tcl_NewStringObj(e.face == laminate::analysis::Face::Bottom ? "bottom"
                                                                                   : "top", -1));
        Tcl_DictObjPut(nullptr, d, Tcl_NewStringObj("mode", -1),
                       Tcl_NewStringObj(e.mode >= 0 ? info.modes[e.mode] : "none", -1));
        Tcl_Obj* strains = Tcl_NewListObj(0, nullptr);
        for (double g : e.strains) Tcl_ListObjAppendElement(nullptr, strains, Tcl_NewDoubleObj(g));
        Tcl_DictObjPut(nullptr, d, Tcl_NewStringObj("strains", -1), strains);
        if (withMargin)
            Tcl_DictObjPut(nullptr, d, Tcl_NewStringObj("mos", -1),
                           Tcl_NewDoubleObj(laminate::analysis::marginOfSafety(e.factor, fos)));
        Tcl_ListObjAppendElement(nullptr, events, d);
    }
    bool const unrated = r.end == LpfResult::End::Unrated;
    Tcl_Obj* endWord = Tcl_NewStringObj(
        unrated ? laminate::analysis::verdictWord(r.verdict) : end_words[static_cast<int>(r.end)],
        -1);
    Tcl_Obj* out = Tcl_NewDictObj();
    Tcl_DictObjPut(nullptr, out, Tcl_NewStringObj("criterion", -1),
                   Tcl_NewStringObj(info.name, -1));
    Tcl_DictObjPut(nullptr, out, Tcl_NewStringObj("events", -1), events);
    Tcl_DictObjPut(nullptr, out, Tcl_NewStringObj("last", -1),
                   unrated ? endWord : Tcl_NewDoubleObj(r.last));
    Tcl_DictObjPut(nullptr, out, Tcl_NewStringObj("end", -1), endWord);
    if (withMargin)
        Tcl_DictObjPut(nullptr, out, Tcl_NewStringObj("mos", -1),
                       unrated ? endWord
                               : Tcl_NewDoubleObj(laminate::analysis::marginOfSafety(r.last, fos)));
    Tcl_SetObjResult(interp, out);
    return TCL_OK;
}
