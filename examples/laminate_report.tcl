#!/usr/bin/env tclsh
# laminate_report.tcl -- the report package in a script of one's own: rates
# a [0/90/+-45]s of a library material under two load cases, prints the
# tables of the worse case and writes its page with the three pictures.
#
#   tclsh laminate_report.tcl ?OUT.html?      (default report.html)
#
# The command "laminate rate" does all this for one load case from the
# command line; see laminate(1) and laminate_report(3tcl).

package require laminate::report 1.0

set info [laminate::report::define panel -layup {[0/90/+-45]s} -material T300/5208]

# The load case with the lower first-ply failure factor (any criterion; a
# criterion that answers a word instead of a number is passed over).
set worst ""
foreach loads {{400 -150 60 0 0 0 0 0} {250 250 0 15 0 0 4 0}} {
    set rating [laminate::report::rate $info $loads]
    set factor Inf
    dict for {c f} [dict get $rating fpf] {
        if {[string is double -strict [dict get $f factor]]} {
            set factor [expr {min($factor, [dict get $f factor])}]
        }
    }
    if {$worst eq "" || $factor < [lindex $worst 0]} {
        set worst [list $factor $rating]
    }
}
set rating [lindex $worst 1]
puts [laminate::report::tables $info $rating]

set pictures [laminate::report::pictures $info $rating -plane {N1 N12}]
set out [expr {[llength $argv] ? [lindex $argv 0] : "report.html"}]
laminate::report::writeFile $out \
    [laminate::report::page $info $rating [lmap p $pictures {lrange $p 1 2}]]
puts "wrote $out"
