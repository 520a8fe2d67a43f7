#!/usr/bin/env tclsh
# laminate_report.tcl -- ply-by-ply stresses and failure indices of a laminate
# under one load case, through package Laminate.
#
# Usage:
#   tclsh laminate_report.tcl ?-record FILE? ?-loads LIST | N1 N2 N12 M1 M2 M12 Q1 Q2?
#
# Without arguments it rates the bundled quasi-isotropic carbon/epoxy stack
# [0/45/-45/90]s under the bundled load case.
#   -record FILE  a material record (see doc/commands.md), "-" for standard
#                 input; "#" starts a comment that runs to the end of the line.
#   -loads LIST   the 8 load resultants as one list; they may also be given
#                 as 8 bare numbers.
# The package takes the record and the loads in whatever consistent units
# they are written in; the bundled ones use N, mm and MPa (see below).
#
# Package errors ("values are not OK", "values not OK", ...) are printed
# with the exit status 1; usage errors give the status 2.

package require Laminate 1.0

# --- The bundled laminate ---------------------------------------------------
#
# Units: force N, length mm, so stresses and moduli in MPa (N/mm^2), the ply
# thickness in mm and the specific weight in N/mm^3.  Every number of the
# record is taken as written (no unit conversion), so the loads must use the
# same units: N/mm for the membrane and transverse shear resultants, N*mm/mm
# for the moments.
#
# The ply: a typical intermediate-modulus carbon fibre / toughened epoxy
# unidirectional prepreg, 60 % fibre volume, cured ply thickness 0.125 mm.
# With lengths in mm every ply is above the criteria's thin-ply limit of
# 0.0007 length units, so the LaRC04 in-situ strengths are the thick-ply ones
# (sqrt 2 * S12, 1.12 sqrt 2 * Yt), and the fields S23 and S13 act as the
# transverse shear strengths throughout.
set ply {
    E1   161000   E2  11400   nu12 0.32
    G12    5170   G13  5170   G23  3980
    Xc     1590   Yc    185   Xt   2560   Yt 73   S12 90
    S23      57   S13    90
    spare     0
    t     0.125
    sw  1.54e-5
    flag      1
}
# Field order of one layer of a record (the angle goes between spare and t).
set fieldOrder {E1 E2 nu12 G12 G13 G23 Xc Yc Xt Yt S12 S23 S13 spare angle t sw flag}
# Stacking sequence, layer 1 first (layer 1 lies at the lowest z).
set stack {0 45 -45 90 90 -45 45 0}

# The bundled load case: biaxial tension with in-plane shear, bending and
# twisting moments, and transverse shear.
#   N1 N2 N12 [N/mm]   M1 M2 M12 [N*mm/mm]   Q1 Q2 [N/mm]
set defaultLoads {300 100 40   10 0 3   6 3}

# --- Building the inputs ----------------------------------------------------

proc default_record {} {
    global ply fieldOrder stack
    set record [llength $stack]
    foreach angle $stack {
        set layer [dict replace $ply angle $angle]
        foreach field $fieldOrder {
            lappend record [dict get $layer $field]
        }
    }
    return $record
}

# The record text of a file ("-" for standard input), comments removed.
proc read_record {path} {
    if {$path eq "-"} {
        set text [read stdin]
    } else {
        if {[catch {open $path r} chan]} {
            return -code error "cannot read record file \"$path\""
        }
        set text [read $chan]
        close $chan
    }
    regsub -all -line {#.*$} $text {} text
    return $text
}

proc usage {message} {
    puts stderr "laminate_report: $message"
    puts stderr "usage: tclsh laminate_report.tcl ?-record FILE?\
        ?-loads LIST | N1 N2 N12 M1 M2 M12 Q1 Q2?"
    exit 2
}

# Returns a dict with the record text, where it came from, and the loads.
proc parse_args {argv} {
    global defaultLoads
    set opts [dict create record [default_record] loads $defaultLoads \
        source "bundled \[0/45/-45/90\]s carbon/epoxy" \
        units "N, mm, MPa (loads: N/mm, N*mm/mm, N/mm)"]
    set bare {}
    while {[llength $argv]} {
        set argv [lassign $argv word]
        switch -- $word {
            -record {
                if {![llength $argv]} {usage "-record needs a file"}
                set argv [lassign $argv path]
                dict set opts record [read_record $path]
                dict set opts source $path
                dict set opts units "those of the record"
            }
            -loads {
                if {![llength $argv]} {usage "-loads needs a list"}
                set argv [lassign $argv loads]
                dict set opts loads $loads
            }
            -h - -help - --help {
                usage "ply-by-ply report of a laminate under one load case"
            }
            default {
                if {[string match -* $word] && ![string is double -strict $word]} {
                    usage "unknown option \"$word\""
                }
                lappend bare $word
            }
        }
    }
    if {[llength $bare]} {
        dict set opts loads $bare
    }
    return $opts
}

# --- The report -------------------------------------------------------------

# Angle, thickness and failure flag of each layer, read back from the record
# for the headings (the package has accepted the record by then).
proc layer_table {record} {
    set words [regexp -all -inline {\S+} $record]
    set layers {}
    for {set k 0} {$k < [lindex $words 0]} {incr k} {
        set base [expr {1 + 18 * $k}]
        lappend layers [list [lindex $words [expr {$base + 14}]] \
            [lindex $words [expr {$base + 15}]] [lindex $words [expr {$base + 17}]]]
    }
    return $layers
}

# The package accepts any numbers, but a laminate without stiffness (a zero
# transverse shear modulus in every ply, no thickness at all) makes its
# stiffness matrix singular, which ends the process with no word at the first
# result.  Moduli and thicknesses are therefore checked here first.
proc check_stiffness {record} {
    set words [regexp -all -inline {\S+} $record]
    set names {E1 E2 nu12 G12 G13 G23}
    for {set k 0} {$k < [lindex $words 0]} {incr k} {
        set base [expr {1 + 18 * $k}]
        set fields [lrange $words $base [expr {$base + 5}]]
        lappend fields [lindex $words [expr {$base + 15}]]
        foreach name [linsert $names end thickness] value $fields {
            if {$name ne "nu12" && !($value > 0)} {
                return -code error "ply [expr {$k + 1}]: $name must be\
                    positive, not $value"
            }
        }
    }
}

proc results {type layer loads} {
    laminate_results $type report $layer $loads
}

# A number in a field of the given width and decimals.  Very large values
# go in exponent form.  The criteria let infinities and NaN through (a thick
# ply without in-plane shear divides by its shear stress in LaRC04 modes 1
# and 6); those are shown as they are.
proc num {width decimals value} {
    if {![string is double -strict $value] || $value != $value} {
        return [format %${width}s $value]
    }
    if {abs($value) >= 1e6} {
        return [format %${width}.${decimals}e $value]
    }
    return [format %${width}.${decimals}f $value]
}

# Keeps in the variable named worstVar the list {value ply ?mode?} with the
# largest finite value seen so far.
proc keep_worst {worstVar value args} {
    upvar 1 $worstVar worst
    set better [expr {[llength $worst] == 0 ? 1 : $value > [lindex $worst 0]}]
    if {[string is double -strict $value] && $value == $value
            && abs($value) < Inf && $better} {
        set worst [list $value {*}$args]
    }
}

proc report {opts} {
    set loads [dict get $opts loads]
    laminate_material report [dict get $opts record]
    check_stiffness [dict get $opts record]
    set layers [layer_table [dict get $opts record]]
    set n [last_layer report]
    # The first request checks the loads for the whole report.
    if {$n > 0} {
        results stresses 1 $loads
    }

    set thickness 0.0
    foreach layer $layers {
        set thickness [expr {$thickness + [lindex $layer 1]}]
    }
    puts "Laminate: [dict get $opts source]"
    puts "Units:    [dict get $opts units]"
    puts [format "  %d plies, total thickness %g; lay-up (layer 1 first): %s" $n \
        $thickness [join [lmap layer $layers {lindex $layer 0}] /]]
    lassign [lrange $loads 0 7] N1 N2 N12 M1 M2 M12 Q1 Q2
    puts "Loads:    N1 N2 N12 = $N1 $N2 $N12   M1 M2 M12 = $M1 $M2 $M12   Q1 Q2 = $Q1 $Q2"
    if {$n == 0} {
        puts "The laminate has no plies: nothing to report."
        return
    }

    puts ""
    puts "Ply stresses in ply axes (1 = fibre direction, 2 = across it)"
    puts [format "%4s %7s  %-6s %10s %10s %10s %10s %10s" \
        ply angle face sigma1 sigma2 tau12 tau23 tau13]
    for {set k 1} {$k <= $n} {incr k} {
        set angle [lindex $layers $k-1 0]
        set shear [list [results shearStress23_lam $k $loads] \
            [results shearStress13_lam $k $loads]]
        foreach face {top middle bottom} type {stresstop stresses stressbas} {
            set line [format "%4s %7s  %-6s" \
                [expr {$face eq "top" ? $k : ""}] \
                [expr {$face eq "top" ? $angle : ""}] $face]
            foreach value [results $type $k $loads] {
                append line " " [num 10 3 $value]
            }
            if {$face eq "middle"} {
                foreach value $shear {
                    append line " " [num 10 3 $value]
                }
            }
            puts $line
        }
    }
    puts "  tau23 and tau13 (transverse shear) are constant through each ply."

    puts ""
    puts "Failure assessment (n/a: ply with failure flag 0, not assessed)"
    puts "  Tsai-Wu    criterion value at the worse face; failure at 1"
    puts "  TW factor  load multiplier that takes the mid-ply Tsai-Wu value to 1\
        (at most 200)"
    puts "  LaRC04     failure index of each mode at the worse face; failure at 1:"
    puts "             m1 matrix tension, m2 matrix compression, m3 fibre tension,"
    puts "             m4 fibre kinking, m5 matrix compression under high fibre"
    puts "             compression, m6 matrix tension under fibre compression"
    puts [format "%4s %7s %8s %9s %8s %8s %8s %8s %8s %8s" \
        ply angle Tsai-Wu "TW factor" m1 m2 m3 m4 m5 m6]
    set worstTW {}
    set worstLaRC {}
    set lowestFactor {}
    set oddLaRC 0
    for {set k 1} {$k <= $n} {incr k} {
        lassign [lindex $layers $k-1] angle t flag
        set line [format "%4d %7s" $k $angle]
        if {$flag == 0} {
            append line [format " %8s %9s" n/a n/a] [string repeat [format " %8s" n/a] 6]
            puts $line
            continue
        }
        set tw [results FS_TW $k $loads]
        set factor [results FS_TW_simple $k $loads]
        append line " " [num 8 3 $tw] " "
        if {$factor < 0} {
            append line [format %9s n/a]
        } else {
            append line [num 9 2 $factor]
        }
        keep_worst worstTW $tw $k
        if {$factor >= 0} {
            # The smallest factor is the worst: compare negated.
            keep_worst lowestFactor [expr {-$factor}] $k
        }
        foreach m {1 2 3 4 5 6} {
            set value [results FS_LaRCm$m $k $loads]
            append line " " [num 8 3 $value]
            keep_worst worstLaRC $value $k $m
            if {![string is double -strict $value] || $value != $value
                    || abs($value) >= 1e6} {
                set oddLaRC 1
            }
        }
        puts $line
    }

    if {$oddLaRC} {
        puts "  Huge, Inf or NaN LaRC04 values: modes 1 and 6 of a thick ply divide by"
        puts "  its in-plane shear stress tau12, which is (nearly) zero there."
    }
    puts ""
    if {[llength $worstTW]} {
        puts [format "Highest Tsai-Wu value:      %.4g in ply %d" {*}$worstTW]
    }
    if {[llength $lowestFactor]} {
        lassign $lowestFactor negated k
        puts [format "Lowest Tsai-Wu load factor: %.2f in ply %d" [expr {-$negated}] $k]
    }
    if {[llength $worstLaRC]} {
        puts [format "Highest LaRC04 index:       %.4g in ply %d (mode m%d)" {*}$worstLaRC]
    }
}

# Package errors come back as plain messages; anything else is a fault of
# this script and keeps its trace.
if {[catch {report [parse_args $argv]} message options]} {
    set code [dict get $options -errorcode]
    if {[lrange $code 0 1] eq {POSIX EPIPE}} {
        exit 0  ;# the reader went away (report piped into head)
    }
    if {$code eq "NONE"} {
        puts stderr "laminate_report: $message"
        exit 1
    }
    return -options $options $message
}
