#include <cstring>

#include "laminate/tcl/analysis_cmds.h"
#include "laminate/tcl/commands.h"
#include "laminate/tcl/define_cmd.h"
#include "laminate/tcl/material_cmds.h"

namespace {

// The commands of the package, created as ::laminate::<name>.
struct AnalysisCommand {
    const char* name;
    Tcl_ObjCmdProc* proc;
};

const AnalysisCommand analysis_commands[] = {
    {"abd", laminate_abd_cb},
    {"evaluate", laminate_evaluate_cb},
    {"fpf", laminate_fpf_cb},
    {"batch", laminate_batch_cb},
    {"envelope", laminate_envelope_cb},
    {"rate", laminate_rate_cb},
    {"lpf", laminate_lpf_cb},
    {"define", laminate_define_cb},
    {"material", ply_material_cb},
    {"layup", laminate_layup_cb},
    {"describe", laminate_describe_cb},
    {nullptr, nullptr}};

}  // namespace

// Binds the stub table (dicts and ensembles need Tcl 8.5), makes sure the
// three commands of Laminate are there (the materials come from
// laminate_material), creates the commands in ::laminate, exports them as
// the ensemble "laminate" and provides laminate::analysis 1.0.
extern "C" int Laminate_analysis_Init(Tcl_Interp* interp)
{
    if (Tcl_InitStubs(interp, "8.5", 0) == nullptr)
        return TCL_ERROR;
    if (Tcl_PkgPresent(interp, "Laminate", "1.0", 0) == nullptr) {
        Tcl_ResetResult(interp);
        Laminate_Init(interp);
    }
    Tcl_Obj* exports = Tcl_NewObj();
    Tcl_IncrRefCount(exports);
    for (const AnalysisCommand* c = analysis_commands; c->name != nullptr; ++c) {
        Tcl_Obj* full = Tcl_NewStringObj("::laminate::", -1);
        Tcl_IncrRefCount(full);
        Tcl_AppendToObj(full, c->name, -1);
        Tcl_CreateObjCommand(interp, Tcl_GetString(full), c->proc, nullptr, nullptr);
        Tcl_DecrRefCount(full);
        Tcl_ListObjAppendElement(nullptr, exports, Tcl_NewStringObj(c->name, -1));
    }
    Tcl_Obj* script = Tcl_NewStringObj("namespace eval ::laminate {namespace export", -1);
    Tcl_IncrRefCount(script);
    Tcl_AppendStringsToObj(script, " ", Tcl_GetString(exports),
                           "; namespace ensemble create}", static_cast<char*>(nullptr));
    int const code = Tcl_EvalObjEx(interp, script, TCL_EVAL_GLOBAL);
    Tcl_DecrRefCount(script);
    Tcl_DecrRefCount(exports);
    if (code != TCL_OK)
        return code;
    Tcl_ResetResult(interp);
    return Tcl_PkgProvideEx(interp, "laminate::analysis", "1.0", nullptr);
}
