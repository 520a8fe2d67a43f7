// laminate::define: the strict way to define a material.
#ifndef LAMINATE_TCL_DEFINE_CMD_H
#define LAMINATE_TCL_DEFINE_CMD_H

#include <cstddef>
#include <functional>

#include <tcl.h>

class lamina1;

// Defines the material name from the record text (length bytes, need not end
// in a zero) exactly as laminate::define does: TCL_OK with an empty result
// and the new definition linked as the cursor and as the name's definition
// for good, or TCL_ERROR with the strict reader's refusal ({LAMINATE RECORD
// rule layer field}) and the registry as it was.  linked, when given, is
// called with the new model while the registry lock is still held, so that
// what a caller records about the definition is in place before any other
// thread can see or replace it.
int define_checked(Tcl_Interp* interp, Tcl_Obj* name, char const* text, size_t length,
                   std::function<void(lamina1 const&)> const& linked = nullptr);

int laminate_define_cb(ClientData, Tcl_Interp* interp, int objc,
                       Tcl_Obj* const objv[]);

#endif
