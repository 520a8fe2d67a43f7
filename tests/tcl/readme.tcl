# Runs every ```sh and ```tcl snippet of README.md as written, so that
# none goes stale: tclsh readme.tcl SOURCE_DIR BUILD_DIR WORK_DIR.
#
# The snippets run in order in WORK_DIR (emptied first), which holds links
# to the source's scripts/ and examples/ and a link "build" to BUILD_DIR,
# with HOME set to WORK_DIR/home, so that what they write ($HOME/laminate,
# myapp/, pictures/, cases.csv ...) stays there.  The build is the one under
# test and is there already: scripts/build.sh answers its folder without
# configuring or building again, and scripts/demo.sh runs its program
# (LAMINATE_BUILD).  The ```tcl snippets run one after another in one
# tclsh, as in one session, with the build folder on TCLLIBPATH.
#
# Left out, each with its reason printed: the lines that need root, apt and
# the network (scripts/deb.sh, apt install), that would run this suite from
# inside itself (scripts/test.sh, the whole build and ctest by hand), and
# the long campaigns (scripts/fuzz.sh, scripts/bench.sh).  Every other line
# runs; a snippet that fails fails the test with its output.

lassign $argv source build work
set source [file normalize $source]
set build [file normalize $build]
set work [file normalize $work]

# Lines left out, by a pattern of the line, with the reason.
set skips {
    {^scripts/test\.sh}
        "runs the whole test suite, of which this test is a part"
    {^scripts/deb\.sh && sudo apt}
        "needs root, apt and the network (the Debian packages have their own tests, ctest -L deb)"
    {^cmake -S \. -B build -G Ninja && cmake --build build && ctest}
        "a second build and a run of the whole suite from inside it"
    {^scripts/fuzz\.sh}
        "needs clang and runs for 30 s to 20 min per target"
    {^scripts/bench\.sh}
        "an optimised build and minutes of timing"
}

# The fenced snippets: {language firstLine text} in order.
proc snippets {path} {
    set chan [open $path]
    fconfigure $chan -encoding utf-8
    set lines [split [read $chan] \n]
    close $chan
    set found {}
    set language ""
    set n 0
    foreach line $lines {
        incr n
        if {$language eq ""} {
            if {[regexp {^```(sh|tcl)\s*$} $line -> language]} {
                set start [expr {$n + 1}]
                set text {}
            }
        } elseif {[string match ```* $line]} {
            lappend found [list $language $start [join $text \n]]
            set language ""
        } else {
            lappend text $line
        }
    }
    return $found
}

set failures 0
proc fail {message} {
    puts stderr $message
    incr ::failures
}

file delete -force $work
file mkdir [file join $work home]
foreach link {scripts examples} {
    file link -symbolic [file join $work $link] [file join $source $link]
}
file link -symbolic [file join $work build] $build
cd $work

set found [snippets [file join $source README.md]]
set shells 0
set tcls 0
set skipped 0
set tclScript ""
foreach snippet $found {
    lassign $snippet language start text
    if {$language eq "tcl"} {
        append tclScript "# README.md line $start\n" $text \n
        incr tcls
        continue
    }
    set kept {}
    set n $start
    foreach line [split $text \n] {
        foreach {pattern reason} $skips {
            if {[regexp $pattern $line]} {
                puts "README.md line $n, left out ($reason): $line"
                set line ":"
                incr skipped
                break
            }
        }
        lappend kept $line
        incr n
    }
    # The build under test stands for scripts/build.sh's build.
    set script "set -euo pipefail\nscripts/build.sh() { echo build; }\n[join $kept \n]\n"
    set env(HOME) [file join $work home]
    set env(LAMINATE_BUILD) $build
    unset -nocomplain env(TCLLIBPATH)
    if {[catch {exec bash -c $script << "" 2>@1} output]} {
        fail "README.md line $start: the snippet fails:\n$text\n--- output:\n$output"
    }
    incr shells
}

# The Tcl snippets in one interpreter of their own, from a file (UTF-8, as
# the README is).
set env(TCLLIBPATH) $build
set path [file join $work readme-snippets.tcl]
set chan [open $path w]
fconfigure $chan -encoding utf-8
puts $chan "cd [list $work]\n$tclScript"
close $chan
if {[catch {exec [info nameofexecutable] -encoding utf-8 $path 2>@1} output]} {
    fail "the tcl snippets fail:\n$output"
}

puts "README.md: $shells sh snippets and $tcls tcl snippets run, $skipped lines left out"
if {$shells < 8 || $tcls < 3} {
    fail "fewer snippets than README.md had when this test was written: the extraction is broken?"
}
exit [expr {$failures > 0}]
