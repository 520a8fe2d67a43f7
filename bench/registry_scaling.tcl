# How defining and looking up materials scales with their number, and what
# redefining one name costs in memory.
#
# usage: TCLLIBPATH=build tclsh bench/registry_scaling.tcl ?REDEFINITIONS?
#
# (a) n definitions, each followed by lookups of an early name and of the new
#     one, for growing n: the time per definition stays flat when neither
#     appending nor looking up walks the registry.
# (b) one name defined again and again with laminate::define, laminate::fpf
#     after each: the resident memory that each redefinition leaves (the
#     registry keeps every definition; the prepared analysis is one per name).

package require laminate::analysis 1.0

set ply {161000 11380 0.32 5170 5170 3980 1600 200 2560 73 90 60 90 0}
set record 4
foreach a {0 90 90 0} { append record " $ply $a 0.125 1.6e-5 1" }
set loads {100 0 0 0 0 0 0 0}

proc rss_kb {} {
    set f [open /proc/self/status]
    set text [read $f]
    close $f
    regexp {VmRSS:\s+(\d+)} $text -> kb
    return $kb
}

puts [format "%-10s %14s %16s" definitions "total ms" "us/definition"]
set done 0
foreach n {2000 4000 8000 16000} {
    set t0 [clock microseconds]
    for {set i 0} {$i < $n} {incr i} {
        laminate::define scale-$n-$i $record
        last_layer scale-$n-0
        laminate::fpf scale-$n-$i $loads -criterion tsaiwu
    }
    set dt [expr {[clock microseconds] - $t0}]
    puts [format "%-10d %14.1f %16.2f" $n [expr {$dt / 1000.0}] [expr {double($dt) / $n}]]
}

set redefinitions [expr {$argc > 0 ? [lindex $argv 0] : 100000}]
set before [rss_kb]
for {set i 0} {$i < $redefinitions} {incr i} {
    laminate::define again $record
    laminate::fpf again $loads -criterion tsaiwu
}
set after [rss_kb]
puts ""
puts [format "%d redefinitions of one name, fpf after each: +%.1f MB resident, %.0f bytes each" \
          $redefinitions [expr {($after - $before) / 1024.0}] \
          [expr {($after - $before) * 1024.0 / $redefinitions}]]
