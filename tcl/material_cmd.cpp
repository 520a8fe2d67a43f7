// The commands that define materials and ask for their size.

#include "laminate/tcl/commands.h"
#include "laminate/tcl/registry.h"

// laminate_material material_name values
//
// Defines a material from its record (the layer count, then 17 reals and one
// integer per layer) and computes its stiffness.  The name may repeat: a new
// node is appended and the older one stays.  Returns an empty result, or the
// error "values are not OK" when the record cannot be read.
int laminate_material_cb(ClientData, Tcl_Interp* interp, int objc,
                         Tcl_Obj* const objv[])
{
    if (objc != 3) {
        Tcl_WrongNumArgs(interp, 1, objv, "material_name values");
        return TCL_ERROR;
    }
    RegistryLock lock;
    lam_mat* node = append_material(Tcl_GetString(objv[1]));
    lamina1* lam = node->lamina;

    // The record is taken in the caller's units: all unit factors are 1.
    if (lam->LeerCampoMater(Tcl_GetString(objv[2]), 1.0, 1.0, 1.0) != 0) {
        drop_current_material();
        Tcl_SetResult(interp, const_cast<char*>("values are not OK"), TCL_STATIC);
        return TCL_ERROR;
    }
    lam->calcDefinition();
    if (lam->nlayers > max_layers)
        max_layers = lam->nlayers;
    return TCL_OK;
}

// last_layer material_name
//
// Returns the layer count of the named material (its own count, whatever
// other materials hold), or the error "material not found '<name>'".
int last_layer_cb(ClientData, Tcl_Interp* interp, int objc,
                  Tcl_Obj* const objv[])
{
    if (objc != 2) {
        Tcl_WrongNumArgs(interp, 1, objv, "material_name");
        return TCL_ERROR;
    }
    RegistryLock lock;
    lam_mat* node = find_material(interp, objv[1]);
    if (node == nullptr)
        return TCL_ERROR;

    Tcl_ListObjAppendElement(interp, Tcl_GetObjResult(interp),
                             Tcl_NewIntObj(node->lamina->nlayers));
    return TCL_OK;
}
