// The command layer: the commands of both packages, called as a script
// would call them, with a fresh registry for every input.
//
// Input: lines, each one command as a Tcl list (no substitution of any kind:
// the words are taken as they stand).  A line whose first word is not one of
// the package commands below is skipped, so nothing else of the interpreter
// (exit, exec, source, ...) can be reached.  At most kMaxCommands lines run.
//
// Two outcomes of the three Laminate commands end a run the way they end a
// process, and are legitimate here: a fatal error of the linear-algebra layer
// (exit status 2; the quit hook throws it back to this harness), and
// laminate_material refusing a record while two or more other materials
// exist (it never returns; predicted before the call, and not made).  Both
// end the input with the registry reset.
#include <cstdint>
#include <cstring>
#include <string>

#include "harness.h"
#include "laminate/tcl/registry.h"

namespace {

char const* const kCommands[] = {
    "laminate_material", "laminate_results",   "last_layer",
    "laminate::define",  "laminate::abd",      "laminate::evaluate",
    "laminate::fpf",     "laminate::batch",    "laminate::envelope"};

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

    if (std::strcmp(name, "laminate_material") == 0 && objc == 3 &&
        fuzz::materialWouldSpin(Tcl_GetString(objv[2]))) {
        fuzz::resetRegistry();
        return false;
    }
    // The callback is called directly, not through Tcl's evaluation, so that
    // a thrown Quit crosses no frame of the interpreter.
    try {
        info.objProc(info.objClientData, interp, objc, objv);
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
