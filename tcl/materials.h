// The materials defined through the Tcl commands, for C++ code of the same
// process: a host that embeds Tcl, loads the package and then works on a
// material directly.  Needs no tcl.h.
#ifndef LAMINATE_TCL_MATERIALS_H
#define LAMINATE_TCL_MATERIALS_H

class lamina1;

// The model that laminate_results would use for name at this moment: the
// registry's cursor node when it carries the name, else the earliest node of
// that name.  Unlike the commands' lookup it leaves the cursor where it is.
// Null when no material has the name.  The registry owns the model, which
// lives as long as the process, with one exception: a model laminate::define
// defined is destroyed when laminate::define defines its name again.  Takes
// the registry lock; the model itself must not be used while another thread
// may run a command.
lamina1* laminate_find_material(char const* name);

#endif
