# Checks an installed package: run as "tclsh installed.tcl <prefix>".  The
# packages must be found through <prefix>/lib/tcltk alone, load the library
# from the prefix, and load after each other in either order; the report
# package's scripts must come from the prefix too.
# Prints what is wrong and exits 1, or prints the version and exits 0.

set prefix [file normalize [lindex $argv 0]]
set auto_path [linsert $auto_path 0 [file join $prefix lib tcltk]]
if {[catch {package require Laminate 1.0} version]} {
    puts stderr "package require Laminate: $version"
    exit 1
}
set file [lindex [lsearch -inline -index 1 [info loaded] Laminate] 0]
if {![string match $prefix/* $file]} {
    puts stderr "Laminate loaded from \"$file\", not from $prefix"
    exit 1
}
laminate_material m {1 100 10 0.3 5 4 3 50 20 50 20 10 8 6 0.5 90 1 1.5 1}
set sigma [laminate_results stresses m 1 {10 0 0 0 0 0 0 0}]
if {abs([lindex $sigma 1] - 10) > 1e-9} {
    puts stderr "unexpected stresses {$sigma}"
    exit 1
}
# The companion from the same folder, after Laminate: one library, one
# registry, so it sees m.
if {[catch {package require laminate::analysis 1.0} v] ||
        [catch {laminate::fpf m {0 10 0 0 0 0 0 0} -criterion tsaiwu} fpf]} {
    puts stderr "laminate::analysis: [expr {[info exists fpf] ? $fpf : $v}]"
    exit 1
}
# And the other way round, in an interpreter of its own.
set other [interp create]
$other eval [list set auto_path $auto_path]
if {[catch {$other eval {
        package require laminate::analysis
        package require Laminate
        last_layer m
    }} message]} {
    puts stderr "Laminate after laminate::analysis: $message"
    exit 1
}
if {[catch {package require laminate::report 1.0} r]
        || ![string match $prefix/* $::laminate::report::library]
        || [catch {laminate::report::rate [laminate::report::define qi] {100 0 0 0 0 0 0 0}} rating]} {
    puts stderr "laminate::report: [expr {[info exists rating] ? $rating : $r}]"
    exit 1
}
puts "Laminate $version, laminate::analysis $v and laminate::report $r from $file"
