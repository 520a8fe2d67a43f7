#include "laminate/tcl/commands.h"

// Binds the stub table (any Tcl from 8.3 on), registers the three commands
// and provides Laminate 1.0.  Always succeeds: a stub-table mismatch shows
// up as a load error in Tcl itself.
extern "C" int Laminate_Init(Tcl_Interp* interp)
{
    Tcl_InitStubs(interp, "8.3", 0);
    Tcl_CreateObjCommand(interp, "laminate_material", laminate_material_cb,
                         nullptr, nullptr);
    Tcl_CreateObjCommand(interp, "laminate_results", laminate_results_cb,
                         nullptr, nullptr);
    Tcl_CreateObjCommand(interp, "last_layer", last_layer_cb, nullptr, nullptr);
    Tcl_PkgProvideEx(interp, "Laminate", "1.0", nullptr);
    return TCL_OK;
}
