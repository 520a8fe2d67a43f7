// laminate::define: the strict way to define a material.
#ifndef LAMINATE_TCL_DEFINE_CMD_H
#define LAMINATE_TCL_DEFINE_CMD_H

#include <tcl.h>

int laminate_define_cb(ClientData, Tcl_Interp* interp, int objc,
                       Tcl_Obj* const objv[]);

#endif
