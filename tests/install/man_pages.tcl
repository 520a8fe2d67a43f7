# Checks the installed manual pages: run as
# "tclsh man_pages.tcl <prefix> <page sources>".  Every command of both
# packages, as loaded from the prefix, must have a page under its own name in
# <prefix>/share/man/man3, section 3tcl and compressed as Debian keeps the
# pages of Tcl packages (<command>.3tcl.gz), that shows it as a command; every
# page must render with groff (and man, when present) without a single
# warning and carry its own section in its title line; and the example of
# every page source must run.  Prints what is wrong and exits 1.

lassign $argv prefix sources
set prefix [file normalize $prefix]
set man3 [file join $prefix share man man3]
if {![file isdirectory $man3]} {
    puts "SKIPPED: no manual pages in $man3 (dtplite, Debian package tcllib, was missing at build time)"
    exit 0
}
if {[auto_execok groff] eq ""} {
    puts "SKIPPED: groff not found (Debian package groff-base)"
    exit 0
}
set auto_path [linsert $auto_path 0 [file join $prefix lib tcltk]]
package require Laminate
package require laminate::analysis

set commands {laminate_material laminate_results last_layer laminate::analysis}
foreach pattern [namespace eval ::laminate {namespace export}] {
    foreach cmd [info commands ::laminate::$pattern] {
        lappend commands [string trimleft $cmd :]
    }
}

# The renderers are not ours to instrument: they run without the sanitizer
# runtime this interpreter may have been started with for the library.
unset -nocomplain env(LD_PRELOAD)

set failures 0
proc fail {message} {
    puts stderr $message
    incr ::failures
}

# Renders a page; returns the text, after reporting any warning (any output
# on the standard error makes exec fail).  groff reads the page decompressed
# from its standard input, man reads the compressed file.
proc render {page args} {
    set input [list $page]
    if {[lindex $args 0] eq "groff"} {
        set input [list << [exec gzip -dc $page]]
    }
    if {[catch {exec {*}$args {*}$input > /dev/null} warnings]} {
        fail "[lindex $args 0] on [file tail $page]: $warnings"
    }
    return [exec {*}$args {*}$input 2> /dev/null]
}

foreach cmd [lsort -unique $commands] {
    set page [file join $man3 $cmd.3tcl.gz]
    if {![file exists $page]} {
        fail "no manual page for $cmd"
        continue
    }
    if {![regexp -line {^\.TH \S+ 3tcl } [exec gzip -dc $page]]} {
        fail "the page of $cmd is not in section 3tcl"
    }
    set text [render $page groff -ww -man -Tutf8 -P-cbu]
    if {![regexp -line "^\\s+${cmd}(\\s|\$)" $text]} {
        fail "the page of $cmd does not show it as a command or package"
    }
    if {[auto_execok man] ne ""} {
        render $page man --warnings -l
    }
}
# The script of the EXAMPLE section of each page source, run as it stands.
foreach source [glob -directory $sources *.man] {
    set f [open $source]
    set text [read $f]
    close $f
    if {![regexp {\[section EXAMPLE\]\s*?\[example \{(.*?)\}\]} $text -> script]} {
        fail "[file tail $source] has no example"
    } elseif {[catch {uplevel #0 $script} message]} {
        fail "the example of [file tail $source] fails: $message"
    }
}

if {$failures} {
    exit 1
}
puts "[llength $commands] commands, each with a page that renders cleanly"
