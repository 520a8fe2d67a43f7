# Times laminate_results from Tcl on an 8-ply laminate, next to a baseline
# loop that calls the built-in [list] with the same four arguments, so the
# package's overhead reads as a ratio on any machine.
#
# usage: tclsh bench/tcl_timing.tcl ?cpp-results.csv?
#   With the C++ benchmark's CSV output the script also reports the two
#   targets: CalcTD on 8 plies against the bare 8x8 inverse, and the
#   package's own share of an FS_TW call against one baseline iteration.

package require Laminate 1.0

set plies {0 45 -45 90 0 45 -45 90}
set record [llength $plies]
foreach angle $plies {
    append record " 135e9 10e9 0.3 5e9 5e9 3.6e9 1200e6 200e6 1500e6 50e6 70e6 50e6 70e6 0"
    append record " $angle 0.000125 1600 1"
}
laminate_material bench8 $record
set loads {2.0e5 -1.0e5 5.0e4 10.0 -5.0 2.0 1.0e3 5.0e2}

# Microseconds per iteration of a loop running the command n times, the best
# of several rounds (the least disturbed by the rest of the machine).
proc per_call {n rounds args} {
    set best Inf
    for {set r 0} {$r < $rounds} {incr r} {
        set t0 [clock microseconds]
        for {set i 0} {$i < $n} {incr i} { {*}$args }
        set dt [expr {double([clock microseconds] - $t0) / $n}]
        if {$dt < $best} { set best $dt }
    }
    return $best
}

set n 200000
set rounds 5
set baseline [per_call $n $rounds list FS_TW bench8 2 $loads]
puts [format "%-22s %10s %8s" "call (8 plies, ply 2)" "us/call" "x list"]
puts [format "%-22s %10.4f %8.2f" "list (baseline)" $baseline 1.0]
set times [dict create]
foreach type {FS_TW FS_TW_simple FS_LaRCm2 stresses stress1_lam shearStress23_lam} {
    set t [per_call [expr {$n / 10}] $rounds laminate_results $type bench8 2 $loads]
    dict set times $type $t
    puts [format "%-22s %10.4f %8.2f" $type $t [expr {$t / $baseline}]]
}

# Whole-laminate rating: the 240 calls of laminate_results that rate every
# ply of the 8-ply laminate by every result type under one load case, against
# laminate::batch over 10,000 load cases (first-ply failure, no per-ply
# results), per criterion and for all three at once.
package require laminate::analysis 1.0
set types {FS_TW stresses strains stresstop stressbas s_stresses s_strains
    FS_LaRCm1 FS_LaRCm2 FS_LaRCm3 FS_LaRCm4 FS_LaRCm5 FS_LaRCm6
    stress1_lam stress2_lam stress3_lam strain1_lam strain2_lam strain3_lam
    stress1_t_lam stress2_t_lam stress3_t_lam stress1_b_lam stress2_b_lam
    stress3_b_lam shearStress23_lam shearStress13_lam shearStrain23_lam
    shearStrain13_lam FS_TW_simple}
proc rate_by_calls {} {
    foreach layer {1 2 3 4 5 6 7 8} {
        foreach type $::types { laminate_results $type bench8 $layer $::loads }
    }
}
set percase [per_call 20 3 rate_by_calls]
expr {srand(12)}
set cases {}
for {set i 0} {$i < 10000} {incr i} {
    lappend cases [lmap v $loads {expr {$v * (0.5 + rand())}}]
}
puts ""
puts [format "%-36s %12s %14s" "rating one load case, 8 plies" "us/case" "cases/s"]
puts [format "%-36s %12.1f %14.0f" "240 laminate_results calls" $percase [expr {1e6 / $percase}]]
set evaluate [per_call 200 3 laminate::evaluate bench8 $loads]
puts [format "%-36s %12.1f %14.0f" "laminate::evaluate (all, + fpf)" $evaluate [expr {1e6 / $evaluate}]]
# Cases as a script computes them (numbers), and as it reads them from a
# file (text: Tcl's own list and number parsing then dominates).
set text [string range $cases 0 end]
foreach {criterion form} {tsaiwu numbers hashin numbers larc04 numbers all numbers tsaiwu text} {
    set opts [expr {$criterion eq "all" ? {} : [list -criterion $criterion]}]
    set best Inf
    for {set r 0} {$r < 3} {incr r} {
        set input [expr {$form eq "text" ? [string range $text 0 end] : $cases}]
        set t0 [clock microseconds]
        laminate::batch bench8 $input {*}$opts
        set best [expr {min($best, double([clock microseconds] - $t0) / 10000)}]
    }
    puts [format "%-36s %12.2f %14.0f" "laminate::batch, $criterion, $form" $best [expr {1e6 / $best}]]
}

if {[llength $argv] == 0} { exit 0 }

# Google Benchmark CSV: name,iterations,real_time,cpu_time,time_unit,...
set cpp [dict create]
set f [open [lindex $argv 0]]
foreach line [split [read $f] \n] {
    set fields [split $line ,]
    if {[llength $fields] < 5} continue
    lassign $fields name iterations real cpu unit
    set name [string trim $name \"]
    set units {ns 0.001 us 1.0 ms 1000.0 s 1000000.0}
    if {![string is double -strict $cpu] || ![dict exists $units $unit]} continue
    set scale [dict get $units $unit]
    dict set cpp $name [expr {$cpu * $scale}]
}
close $f

set inverse [dict get $cpp BM_Inverse8x8]
set calctd [dict get $cpp BM_CalcTD/8]
set layer [dict get $cpp BM_FasTWcompleteLayer]
set share [expr {[dict get $times FS_TW] - $layer}]
puts ""
puts [format "(a) CalcTD, 8 plies / bare 8x8 inverse:  %.3f us / %.3f us = %.2f  (target <= 2)" \
          $calctd $inverse [expr {$calctd / $inverse}]]
puts [format "(b) package share of FS_TW / list call:  (%.3f - %.3f) us / %.3f us = %.2f  (target <= 2)" \
          [dict get $times FS_TW] $layer $baseline [expr {$share / $baseline}]]
