// laminate::material, laminate::layup and laminate::describe: ply materials
// with named properties, laminates written as stacking sequences of them,
// and what a layup was made of.
#ifndef LAMINATE_TCL_MATERIAL_CMDS_H
#define LAMINATE_TCL_MATERIAL_CMDS_H

#include <vector>

#include <tcl.h>

#include "laminate/analysis/ply_material.h"

int ply_material_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
int laminate_layup_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);
// The ply material of every layer of the laminate name, layer 1 first, as
// laminate::layup made it; false (and plies empty) when name was not made by
// laminate::layup.  The caller holds the registry lock.
bool layup_ply_materials(char const* name, std::vector<laminate::analysis::PlyMaterial>& plies);

// Forgets every ply material and layup, as the library loaded.  For test
// harnesses that reset the registry (reset_registry); no command calls it.
void reset_ply_materials();

// Forgets what laminate::layup recorded for name, when name is defined
// again.  The caller holds the registry lock.
void forget_layup(char const* name);

int laminate_describe_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]);

#endif
