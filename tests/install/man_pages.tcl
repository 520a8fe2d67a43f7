# Checks the installed manual pages: run as
# "tclsh man_pages.tcl <prefix> <page sources>".  Every command of the three
# packages, as loaded from the prefix, must have a page under its own name in
# <prefix>/share/man/man3, section 3tcl and compressed as Debian keeps the
# pages of Tcl packages (<command>.3tcl.gz), that shows it as a command, and
# the program <prefix>/bin/laminate its page laminate.1.gz in man1; every
# page must render with groff (and man, when present) without a single
# warning and carry its own section in its title line; and the example of
# every page source must run (the program's, line by line in a shell, with
# the installed program first on PATH).  Prints what is wrong and exits 1.

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
package require laminate::report

set commands {laminate_material laminate_results last_layer laminate::analysis
    laminate::report}
foreach ns {::laminate ::laminate::report} {
    foreach pattern [namespace eval $ns {namespace export}] {
        foreach cmd [info commands ${ns}::$pattern] {
            lappend commands [string trimleft $cmd :]
        }
    }
}

# The renderers are not ours to instrument: they run without the sanitizer
# runtime this interpreter may have been started with for the library (the
# installed program gets it back).
set preload [expr {[info exists env(LD_PRELOAD)] ? $env(LD_PRELOAD) : ""}]
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
    # Each page file is rendered once, whatever the links to it.
    set target $page
    if {[file type $page] eq "link"} {
        set target [file join $man3 [file readlink $page]]
    }
    if {![info exists rendered($target)]} {
        set rendered($target) [render $page groff -ww -man -Tutf8 -P-cbu]
        if {[auto_execok man] ne ""} {
            render $page man --warnings -l
        }
    }
    if {![regexp -line "^\\s+${cmd}(\\s|\$)" $rendered($target)]} {
        fail "the page of $cmd does not show it as a command or package"
    }
}
# The program's page, in section 1.
set page [file join $prefix share man man1 laminate.1.gz]
if {![file exists $page]} {
    fail "no manual page laminate.1.gz for the program"
} else {
    if {![regexp -line {^\.TH \S+ 1 } [exec gzip -dc $page]]} {
        fail "the page of the program is not in section 1"
    }
    set text [render $page groff -ww -man -Tutf8 -P-cbu]
    if {![regexp -line {^\s+laminate rate } $text]} {
        fail "the program's page does not show its commands"
    }
    if {[auto_execok man] ne ""} {
        render $page man --warnings -l
    }
}

# The EXAMPLE section of each page source, run as it stands: a script of
# a package's page in this interpreter, each line of the program's page in
# a shell in a scratch folder.
set scratch [file join [file dirname $prefix] man-examples]
foreach source [glob -directory $sources *.man] {
    set f [open $source]
    set text [read $f]
    close $f
    if {![regexp {\[section EXAMPLE\]\s*?\[example \{(.*?)\}\]} $text -> script]} {
        fail "[file tail $source] has no example"
    } elseif {[regexp {\[manpage_begin \S+ 1 } $text]} {
        file delete -force $scratch
        file mkdir $scratch
        set env(PATH) [file join $prefix bin]:$env(PATH)
        foreach line [split [string trim $script] \n] {
            if {[catch {exec env LD_PRELOAD=$preload TCLLIBPATH= sh -c "cd '$scratch' && $line" \
                    2>@1} message]} {
                fail "the example of [file tail $source] fails at \"$line\": $message"
            }
        }
    } elseif {[catch {uplevel #0 $script} message]} {
        fail "the example of [file tail $source] fails: $message"
    }
}

if {$failures} {
    exit 1
}
puts "[llength $commands] commands and the program, each with a page that renders cleanly"
