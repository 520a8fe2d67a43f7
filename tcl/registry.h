// The process-wide registry of laminate materials behind the Tcl commands.
//
// A singly linked list of lam_mat nodes in definition order.  Nodes are never
// removed, except the node of a definition whose record was rejected and a
// laminate::define definition that a later one of the same name replaced;
// nothing frees the list while the process lives.  Several nodes may carry the same
// name.  All interpreters of the process, in every thread, share the one
// registry: every function below expects the caller to hold the registry
// lock (RegistryLock), and so does any use of a node's model.
//
// Names defined by laminate::define are kept apart as well: such a name
// resolves to its latest strict definition for good, in every command,
// whatever was defined or looked up before or after it.  Names only
// laminate_material defined resolve by the cursor rule (find_material).
#ifndef LAMINATE_TCL_REGISTRY_H
#define LAMINATE_TCL_REGISTRY_H

#include <tcl.h>

#include "laminate/laminate/lamina1.h"

extern lam_mat* first_mat;    // head of the list, null while empty; owned
extern lam_mat* current_mat;  // cursor: node last appended or found, null after
                              // a failed lookup or definition; not owned
extern int max_layers;        // largest layer count of any material defined
                              // successfully; only grows

// Holds the registry lock (one process-wide mutex) for its scope.
class RegistryLock {
public:
    RegistryLock();
    ~RegistryLock();
    RegistryLock(RegistryLock const&) = delete;
    RegistryLock& operator=(RegistryLock const&) = delete;
};

// Appends a node named name at the end of the list and makes it the cursor.
// No search for an existing node of that name is made.
lam_mat* append_material(char* name);

// Links node (owned from now on by the list, its next null) at the end of
// the list and makes it the cursor, as append_material does for a new node.
lam_mat* link_material(lam_mat* node);

// Links node as append_material would and makes it the definition of its
// name for good: from now on every lookup of the name answers node.  For
// definitions whose record passed the strict reader.  The strict definition
// it replaces, which no lookup can reach any more, is unlinked and destroyed.
void link_strict_material(lam_mat* node);

// Destroys every node and puts the registry back as the library loaded it:
// empty, no cursor, max_layers 0.  For test harnesses that stand for many
// processes in one; no command calls it.
void reset_registry();

// Unlinks and destroys the cursor node, which must be the last one, and
// leaves the cursor null.  Does not return when the list holds two or more
// nodes before it (see registry.cpp); it then releases the registry lock
// first, so that other threads go on.
void drop_current_material();

// The material named by nameObj: the strict definition of the name if there
// is one, else the cursor node when it carries the name, else the earliest
// node of that name; the answer becomes the cursor.  When there is none the
// cursor is left null, the interpreter's result reads
// "material not found '<name>'" and null is returned.
lam_mat* find_material(Tcl_Interp* interp, Tcl_Obj* nameObj);

// The node find_material would answer for name, without moving the cursor
// and without a message; null when there is none.
lam_mat* peek_material(const char* name);

// Whether node is the strict definition of its name.
bool is_strict_material(lam_mat const* node);

#endif
