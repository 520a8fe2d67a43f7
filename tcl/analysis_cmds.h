// The commands of package laminate::analysis 1.0, in namespace ::laminate:
// whole-laminate analysis of the materials laminate_material defines.
//
// Every callback has the object-command signature and ignores its client
// data.  Errors leave a message and an -errorcode whose first word is
// LAMINATE; no command changes the material registry or its cursor.
#ifndef LAMINATE_TCL_ANALYSIS_CMDS_H
#define LAMINATE_TCL_ANALYSIS_CMDS_H

#include <tcl.h>

int laminate_abd_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_evaluate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_fpf_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_batch_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_envelope_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_rate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);

// Drops every prepared analysis.  For test harnesses that reset the
// registry (reset_registry), whose freed models the analyses were keyed by.
void forget_prepared_analyses();

// Drops the prepared analysis kept for name, when its definition is
// replaced.  The caller holds the registry lock.
void forget_prepared_analysis(char const* name);

// Called by Tcl's loader ("load liblaminate1.0.so Laminate_analysis").
extern "C" int Laminate_analysis_Init(Tcl_Interp* interp);

#endif
