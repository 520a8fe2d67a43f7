#!/usr/bin/env tclsh
# make_cases.tcl -- writes a load-case table of random cases to try the
# report job's -cases on: tclsh make_cases.tcl ?COUNT? ?SEED? > cases.csv
# The loads are spread around the bundled load case's magnitudes (N, mm).

lassign [list {*}$argv 10000 1] count seed
expr {srand($seed)}
set spread {400 200 80 20 20 10 10 10}
puts id,N1,N2,N12,M1,M2,M12,Q1,Q2
for {set i 1} {$i <= $count} {incr i} {
    set row [list case$i]
    foreach s $spread {
        lappend row [format %.3f [expr {(2 * rand() - 1) * $s}]]
    }
    puts [join $row ,]
}
