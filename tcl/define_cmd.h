// laminate::define: the strict way to define a material.
#ifndef LAMINATE_TCL_DEFINE_CMD_H
#define LAMINATE_TCL_DEFINE_CMD_H

#include <cstddef>

#include <tcl.h>

// Defines the material name from the record text (length bytes, need not end
// in a zero) exactly as laminate::define does: TCL_OK with an empty result
// and the new definition linked as the cursor, or TCL_ERROR with the strict
// reader's refusal ({LAMINATE RECORD rule layer field}) and the registry as
// it was.
int define_checked(Tcl_Interp* interp, Tcl_Obj* name, char const* text, size_t length);

int laminate_define_cb(ClientData, Tcl_Interp* interp, int objc,
                       Tcl_Obj* const objv[]);

#endif
