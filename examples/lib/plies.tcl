# plies.tcl -- what the report says of one ply, shared by its text and HTML
# forms: which failure results reached their limit.

namespace eval ::lamreport {}

# The verdict on one ply dict of laminate::evaluate: {state reasons} with
# state "not assessed" (failure flag 0), "FAILED" (some index at 1 or more,
# or a simple Tsai-Wu factor from 0 up to below 1) or "ok"; reasons names
# the results that failed.  An infinite index counts as reached; a NaN one
# (0/0 in LaRC04 modes 1 and 6 of a thick ply without shear) gives no
# answer and is passed over.
proc ::lamreport::verdict {ply} {
    if {![dict get $ply flag]} {
        return [list "not assessed" {}]
    }
    set reasons {}
    set checks [list Tsai-Wu FS_TW "Hashin fibre" hashin_fibre "Hashin matrix" hashin_matrix]
    foreach m {1 2 3 4 5 6} {
        lappend checks "LaRC04 m$m" FS_LaRCm$m
    }
    foreach {label key} $checks {
        set v [dict get $ply $key]
        if {![string match -nocase *nan* $v] && $v >= 1} {
            lappend reasons $label
        }
    }
    set factor [dict get $ply FS_TW_simple]
    if {$factor >= 0 && $factor < 1} {
        lappend reasons "TW factor"
    }
    list [expr {[llength $reasons] ? "FAILED" : "ok"}] $reasons
}
