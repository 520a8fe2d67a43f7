// The Tcl commands of package Laminate 1.0 and its entry point.
//
// Each callback has the object-command signature; the client data is not
// used.  They return TCL_OK, or TCL_ERROR with a message as the result.
#ifndef LAMINATE_TCL_COMMANDS_H
#define LAMINATE_TCL_COMMANDS_H

#include <tcl.h>

int laminate_material_cb(ClientData, Tcl_Interp* interp, int objc,
                         Tcl_Obj* const objv[]);
int laminate_results_cb(ClientData, Tcl_Interp* interp, int objc,
                        Tcl_Obj* const objv[]);
int last_layer_cb(ClientData, Tcl_Interp* interp, int objc,
                  Tcl_Obj* const objv[]);

// The 30 result-type names of laminate_results, in the order that selects
// the operation; NULL-terminated.
extern const char* const result_types[];

// Called by Tcl's loader ("load liblaminate1.0.so Laminate").
extern "C" int Laminate_Init(Tcl_Interp* interp);

#endif
