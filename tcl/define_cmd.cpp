// laminate::define: defines a material only from a record that passes every
// rule of the strict reader, so that no later command on it can end the
// process.

#include "laminate/tcl/define_cmd.h"

#include <string>

#include "laminate/laminate/strict_record.h"
#include "laminate/tcl/analysis_cmds.h"
#include "laminate/tcl/material_cmds.h"
#include "laminate/tcl/registry.h"

int define_checked(Tcl_Interp* interp, Tcl_Obj* name, char const* text, size_t length,
                   std::function<void(lamina1 const&)> const& linked)
{
    StrictRecord record;
    if (!record.read(text, length)) {
        StrictRecord::Refusal const& why = record.refusal();
        std::string const message = why.message();
        std::string const layer = std::to_string(why.layer);
        Tcl_SetObjResult(interp, Tcl_NewStringObj(message.data(), static_cast<int>(message.size())));
        Tcl_SetErrorCode(interp, "LAMINATE", "RECORD", why.ruleWord(), layer.c_str(),
                         why.field.c_str(), static_cast<char*>(nullptr));
        return TCL_ERROR;
    }

    // The node is complete before it is linked: the registry changes in one
    // step.  The record was accepted, so the model's own parser reads it.
    lam_mat* node = new lam_mat(Tcl_GetString(name));
    lamina1* lam = node->lamina;
    lam->LeerCampoMater(record.text(), 1.0, 1.0, 1.0);
    lam->calcDefinition();
    {
        RegistryLock lock;
        link_strict_material(node);
        forget_prepared_analysis(node->name);
        forget_layup(node->name);
        if (lam->nlayers > max_layers)
            max_layers = lam->nlayers;
        if (linked)
            linked(*lam);
    }
    Tcl_ResetResult(interp);
    return TCL_OK;
}

// laminate::define name record
//
// Defines the material name from record (the layer count, then per layer 17
// reals and a flag 0 or 1) in the registry laminate_material fills, so that
// laminate_results, last_layer and the analysis commands see it.  The record
// is checked in full first (see laminate/strict_record.h): on refusal the
// error names the layer, the field and the rule ("layer 3, G13: must be > 0,
// got 0"), the error code is {LAMINATE RECORD rule layer field}, and the
// registry is left exactly as it was.  Once defined here, the name resolves
// to this definition in every command (laminate_results included) until it
// is defined here again, whatever laminate_material adds under the same name
// or looks up in between.  Returns an empty result.
int laminate_define_cb(ClientData, Tcl_Interp* interp, int objc,
                       Tcl_Obj* const objv[])
{
    if (objc != 3) {
        Tcl_WrongNumArgs(interp, 1, objv, "name record");
        return TCL_ERROR;
    }
    int length = 0;
    char const* text = Tcl_GetStringFromObj(objv[2], &length);
    return define_checked(interp, objv[1], text, static_cast<size_t>(length));
}
