// The commands of package laminate::analysis 1.0, in namespace ::laminate:
// whole-laminate analysis of the materials laminate_material defines.
//
// Every callback has the object-command signature and ignores its client
// data.  Errors leave a message and an -errorcode whose first word is
// LAMINATE; no command changes the material registry or its cursor.
#ifndef LAMINATE_TCL_ANALYSIS_CMDS_H
#define LAMINATE_TCL_ANALYSIS_CMDS_H

#include <tcl.h>

#include <memory>

#include "laminate/analysis/laminate_analysis.h"
#include "laminate/analysis/laminate_rating.h"

int laminate_abd_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_evaluate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_fpf_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_batch_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_envelope_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_rate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);

// The lpf command (lpf_cmd.cpp).
int laminate_lpf_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);

// What a command defined beside these reads of a prepared material: the
// analysis, the rating of the catalogue's criteria and the expansion
// coefficients it was made with (null when not every ply has them).  keep
// holds them alive, unchanged, for as long as the caller keeps it.
struct PreparedLaminate {
    std::shared_ptr<void const> keep;
    laminate::analysis::LaminateAnalysis const* analysis = nullptr;
    laminate::analysis::LaminateRating const* rating = nullptr;
    std::shared_ptr<laminate::analysis::LaminateRating const> tuned;  // rating, with params
    double const* alpha = nullptr;
    double const* beta = nullptr;
};

// Looks the material named by nameObj up as the other commands do and
// checks that it has the coefficients a change dT, dM needs; with params
// (the value of -params, or null) the rating has those criteria's
// parameters.  TCL_ERROR with the message and -errorcode of those commands
// otherwise.
int prepared_laminate(Tcl_Interp* interp, Tcl_Obj* nameObj, double dT, double dM,
                      PreparedLaminate& out, Tcl_Obj* params = nullptr);

// Reads a finite number as the load values and options are read; false
// when item is not one.
bool read_number(Tcl_Obj* item, double& v);

// Reads the 8 load values of list (what names it in messages); TCL_ERROR
// with LAMINATE LOADS ... otherwise.
int read_loads(Tcl_Interp* interp, Tcl_Obj* list, double loads[8], const char* what);

// Drops every prepared analysis.  For test harnesses that reset the
// registry (reset_registry), whose freed models the analyses were keyed by.
void forget_prepared_analyses();

// Drops the prepared analysis kept for name, when its definition is
// replaced.  The caller holds the registry lock.
void forget_prepared_analysis(char const* name);

// Called by Tcl's loader ("load liblaminate1.0.so Laminate_analysis").
extern "C" int Laminate_analysis_Init(Tcl_Interp* interp);

#endif
