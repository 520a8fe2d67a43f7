#include "laminate/tcl/registry.h"

#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>

#include "laminate/tcl/materials.h"

lam_mat* first_mat = nullptr;
lam_mat* current_mat = nullptr;
int max_layers = 0;

namespace {

// A standard mutex rather than a Tcl one: the registry is also reached
// before any interpreter has bound Tcl's stub table (a C++ host calling
// laminate_find_material, a test harness), and the lock must work there too.
std::mutex registry_mutex;

// Indexes over the list, so that neither appending nor looking up walks it:
// the last node, the earliest node of each name, and the strict definition
// of each name laminate::define has defined.  They answer exactly what the
// walks would; the list stays the one record of what was defined.
lam_mat* last_mat = nullptr;  // not owned
std::unordered_map<std::string, lam_mat*>& earliest()
{
    static std::unordered_map<std::string, lam_mat*> byName;
    return byName;
}
std::unordered_map<std::string, lam_mat*>& strict()
{
    static std::unordered_map<std::string, lam_mat*> byName;
    return byName;
}
// The node before each node (null before the first), so that a replaced
// strict definition leaves the list without a walk.
std::unordered_map<lam_mat const*, lam_mat*>& previous()
{
    static std::unordered_map<lam_mat const*, lam_mat*> byNode;
    return byNode;
}

// Takes node out of the list and destroys it.  The cursor is never on it
// (the caller has just moved it to a newer node).
void unlink_material(lam_mat* node)
{
    auto const at = previous().find(node);
    lam_mat* const before = at->second;
    previous().erase(at);
    if (before == nullptr)
        first_mat = node->next;
    else
        before->next = node->next;
    if (node->next != nullptr)
        previous()[node->next] = before;
    else
        last_mat = before;
    auto const e = earliest().find(node->name);
    if (e != earliest().end() && e->second == node)
        earliest().erase(e);
    node->next = nullptr;
    delete node;
}

}  // namespace

RegistryLock::RegistryLock()
{
    registry_mutex.lock();
}

RegistryLock::~RegistryLock()
{
    registry_mutex.unlock();
}

lam_mat* append_material(char* name)
{
    return link_material(new lam_mat(name));
}

lam_mat* link_material(lam_mat* node)
{
    // The list ends at last_mat, where a walk on from the cursor would end.
    if (first_mat == nullptr)
        first_mat = node;
    else
        last_mat->next = node;
    previous()[node] = last_mat;
    last_mat = node;
    current_mat = node;
    earliest().emplace(node->name, node);  // kept when the name has one already
    return node;
}

void link_strict_material(lam_mat* node)
{
    link_material(node);
    lam_mat*& slot = strict()[node->name];
    lam_mat* const replaced = slot;
    slot = node;
    // No lookup can reach the replaced definition any more: let it go.
    if (replaced != nullptr)
        unlink_material(replaced);
}

void reset_registry()
{
    // One node at a time: destroying the head would destroy the rest of the
    // list recursively, one stack frame per node.
    while (first_mat != nullptr) {
        lam_mat* node = first_mat;
        first_mat = node->next;
        node->next = nullptr;
        delete node;
    }
    current_mat = nullptr;
    last_mat = nullptr;
    max_layers = 0;
    earliest().clear();
    strict().clear();
    previous().clear();
}

void drop_current_material()
{
    if (first_mat == current_mat) {
        first_mat = nullptr;
        last_mat = nullptr;
    } else if (first_mat->next == current_mat) {
        first_mat->next = nullptr;
        last_mat = first_mat;
    } else {
        // The predecessor search never gets past the head, so a rejected
        // record is recoverable only while at most one other material
        // exists; with more, the command does not return.  This is the
        // command's established behaviour and is kept as it is, but the lock
        // is let go first so that other threads are not held with it.  The
        // volatile cursor keeps the wait a well-defined loop (an infinite
        // loop without side effects would be undefined behaviour).
        lam_mat* const head = first_mat;
        lam_mat* const stuck = current_mat;
        registry_mutex.unlock();
        lam_mat* volatile pred = head;
        while (pred->next != stuck)
            pred = head;
    }
    // A rejected node is never the strict definition of its name, and it is
    // the earliest of its name only when no other node carries that name.
    auto const at = earliest().find(current_mat->name);
    if (at != earliest().end() && at->second == current_mat)
        earliest().erase(at);
    previous().erase(current_mat);
    delete current_mat;  // its next is null: it was the last node
    current_mat = nullptr;
}

lamina1* laminate_find_material(char const* name)
{
    RegistryLock lock;
    lam_mat* node = peek_material(name);
    return node == nullptr ? nullptr : node->lamina;
}

lam_mat* find_material(Tcl_Interp* interp, Tcl_Obj* nameObj)
{
    current_mat = peek_material(Tcl_GetString(nameObj));
    if (current_mat != nullptr)
        return current_mat;
    Tcl_Obj* result = Tcl_GetObjResult(interp);
    Tcl_SetStringObj(result, "material not found '", -1);
    Tcl_AppendObjToObj(result, nameObj);
    Tcl_AppendStringsToObj(result, "'", static_cast<char*>(nullptr));
    return nullptr;
}

lam_mat* peek_material(const char* name)
{
    if (!strict().empty()) {
        auto const s = strict().find(name);
        if (s != strict().end())
            return s->second;
    }
    if (current_mat != nullptr && std::strcmp(current_mat->name, name) == 0)
        return current_mat;
    auto const e = earliest().find(name);
    return e == earliest().end() ? nullptr : e->second;
}

bool is_strict_material(lam_mat const* node)
{
    auto const s = strict().find(node->name);
    return s != strict().end() && s->second == node;
}
