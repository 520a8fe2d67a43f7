# plies.tcl -- what the report says of each ply: which of the model's
# failure indices reached their limit, which plies fail by their reserve
# factors, and the first-ply failure of each ply alone.

# The model's indices of one ply dict of laminate::evaluate: {state
# reasons} with state "not assessed" (failure flag 0), "reached" (some index
# at 1 or more, or a simple Tsai-Wu factor from 0 up to below 1) or "ok";
# reasons names the results that reached their limit.  (Whether a ply
# fails the report says by its reserve factors, see failedPlies.)  An infinite index counts as reached; a NaN one
# (0/0 in LaRC04 modes 1 and 6 of a thick ply without shear) gives no
# answer and is passed over.
proc ::laminate::report::verdict {ply} {
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
    list [expr {[llength $reasons] ? "reached" : "ok"}] $reasons
}

# The reserve factor of every assessed ply of a laminate by each criterion:
# the multiple of loads at which that ply fails first, whatever the other
# plies do.  record is the laminate's record (as laminate::define reads
# it); each ply is rated as the first-ply failure of a copy in which it
# alone has failure flag 1.  Returns a list of {ply criterion factor mode
# face}, ply by ply from layer 1, the criteria in the order given
# (-criteria, default `criteria`; the model's criteria too: this is how
# their factors per ply are had, under the mechanical loads alone); a
# factor is what laminate::fpf answers (Inf for a ply that never fails).
# Plies with flag 0 have no entry.
proc ::laminate::report::plyFactors {record loads args} {
    variable criteria
    set opts [dict merge [list -criteria $criteria] $args]
    set n [lindex $record 0]
    if {[llength $record] != 1 + 18 * $n} {
        return -code error -errorcode {REPORT RECORD} \
            "plyFactors: a record of $n layers has [expr {1 + 18 * $n}] fields, got [llength $record]"
    }
    set flags [lmap k [lsearch -all [lrepeat $n x] x] {lindex $record [expr {18 * ($k + 1)}]}]
    set name [scratchName]
    set factors {}
    for {set k 1} {$k <= $n} {incr k} {
        if {![lindex $flags $k-1]} continue
        set copy $record
        for {set j 1} {$j <= $n} {incr j} {
            lset copy [expr {18 * $j}] [expr {$j == $k}]
        }
        laminate::define $name $copy
        foreach c [dict get $opts -criteria] {
            set f [dict get [laminate::fpf $name $loads -criterion $c] $c]
            lappend factors [list $k $c [dict get $f factor] [dict get $f mode] [dict get $f face]]
        }
    }
    return $factors
}

# The material name this interpreter rates single plies under: the
# registry is shared by every interpreter of the process, so the name is
# its own.
proc ::laminate::report::scratchName {} {
    variable scratch
    if {![info exists scratch]} {
        set scratch "laminate::report ply [pid] [clock clicks] [expr {int(rand() * 1e9)}]"
    }
    return $scratch
}

# The plies that fail under the loads: a numeric factor below 1 (0 too,
# a ply the residual stresses alone fail) by some criterion.
proc ::laminate::report::failedPlies {factors} {
    set failed {}
    foreach f $factors {
        lassign $f ply - factor
        if {[finite $factor] && $factor < 1 && $ply ni $failed} {
            lappend failed $ply
        }
    }
    lsort -integer $failed
}
