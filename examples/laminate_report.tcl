#!/usr/bin/env tclsh
# laminate_report.tcl -- ply-by-ply stresses and failure ratings of a
# laminate under one load case, its pictures and HTML report, and the
# first-ply failure of a whole table of load cases.
#
# Usage:
#   tclsh laminate_report.tcl ?-layup NOTATION? ?-material NAME? ?-thickness T?
#       ?-materials FILE? ?-record FILE? ?-units "FORCE LENGTH"?
#       ?-loads LIST | N1 N2 N12 M1 M2 M12 Q1 Q2?
#       ?-svg DIR? ?-html FILE? ?-plane "I J"? ?-points N?
#       ?-cases FILE.csv ?-out FILE.csv? ?-bad stop|skip??
#
# Without options it rates the bundled quasi-isotropic stack [0/±45/90]s of
# the bundled material IM-carbon/epoxy under the bundled load case and
# prints the tables.
#   -layup NOTATION  the stacking sequence, as laminate::layup reads it
#                 ("[0/±45/90]s", "[0_2/90]2s", or a list of {MATERIAL ANGLE
#                 ?T?} plies); its plies are of -material (default
#                 IM-carbon/epoxy) unless the list names their materials.
#   -material NAME   a ply material of the bundled library or of -materials;
#                 alone, it makes the bundled stack of that material.
#   -thickness T  the ply thickness, for materials that give none.
#   -materials FILE  a material library to load besides the bundled one
#                 (doc/materials.md gives the format).
#   -record FILE  a material record (see doc/commands.md), "-" for standard
#                 input; "#" starts a comment that runs to the end of the
#                 line.  Not with -layup or -material.
#   -units "F L"  the force and length units, for the labels (default: those
#                 of the material's unit system; none for a record file).
#   -loads LIST   the 8 load resultants as one list; they may also be given
#                 as 8 bare numbers.
#   -svg DIR      writes profile.svg, ratings.svg and envelope.svg there.
#   -html FILE    writes the whole report as one self-contained page.
#   -plane "I J"  the two load components of the envelope, by name or
#                 position (default "N1 N2"); -points N its rays (72).
#   -cases FILE   a CSV table of load cases (see doc/report.md): every case
#                 is rated and the results written to -out FILE ("-", the
#                 default, for standard output).  -bad stop (the default)
#                 refuses a table with malformed rows, listing them all;
#                 -bad skip reports them and writes them with empty results.
# The record is read by laminate::define, which refuses any record it cannot
# vouch for.  Loads, on the command line as in a table, are decimal numbers
# ([+-]digits[.digits][e[+-]digits]), finite: "010" is ten.
# The package takes the record and the loads in whatever consistent units
# they are written in; the bundled ones use N, mm and MPa (see below).
#
# Errors of the package or the input are printed with the exit status 1;
# usage errors give the status 2; -h prints this usage with status 0.

package require Laminate 1.0
package require laminate::analysis 1.0

set libDir [file join [file dirname [file normalize [info script]]] lib]
source [file join $libDir html.tcl]
source [file join $libDir cases.tcl]

# --- The bundled laminate ---------------------------------------------------
#
# A quasi-isotropic stack of the bundled material IM-carbon/epoxy (a typical
# intermediate-modulus carbon fibre / toughened epoxy prepreg, 60 % fibre
# volume, cured ply thickness 0.125 mm; data/materials.lam).  Units: force
# N, length mm, so stresses and moduli in MPa (N/mm^2).  The loads must use
# the same units: N/mm for the membrane and transverse shear resultants,
# N*mm/mm for the moments.  With lengths in mm every ply is above the
# criteria's thin-ply limit of 0.0007 length units, so the LaRC04 in-situ
# strengths are the thick-ply ones (sqrt 2 * S12, 1.12 sqrt 2 * Yt), and S23
# and S13 act as the transverse shear strengths throughout.  Layer 1 (the
# first ply written) lies at the lowest z.
set defaultLayup {[0/±45/90]s}
set defaultMaterial IM-carbon/epoxy

# The bundled load case: biaxial tension with in-plane shear, bending and
# twisting moments, and transverse shear.
#   N1 N2 N12 [N/mm]   M1 M2 M12 [N*mm/mm]   Q1 Q2 [N/mm]
set defaultLoads {300 100 40   10 0 3   6 3}

set usageText {usage: tclsh laminate_report.tcl ?-layup NOTATION? ?-material NAME? ?-thickness T?
       ?-materials FILE? ?-record FILE? ?-units "FORCE LENGTH"?
       ?-loads LIST | N1 N2 N12 M1 M2 M12 Q1 Q2?
       ?-svg DIR? ?-html FILE? ?-plane "I J"? ?-points N?
       ?-cases FILE.csv ?-out FILE.csv? ?-bad stop|skip??}

# --- Building the inputs ----------------------------------------------------

# The record text of a file ("-" for standard input), comments removed.
proc read_record {path} {
    if {$path eq "-"} {
        set text [read stdin]
    } else {
        if {[catch {open $path r} chan]} {
            return -code error -errorcode {REPORT RECORD} \
                "cannot read record file \"$path\""
        }
        set text [read $chan]
        close $chan
    }
    regsub -all -line {#.*$} $text {} text
    return $text
}

proc usage {message} {
    puts stderr "laminate_report: $message"
    puts stderr $::usageText
    exit 2
}

# The envelope plane from "N1 N2", "1 2" or "N1,N2": two positions from 1.
proc parse_plane {text} {
    set names {N1 N2 N12 M1 M2 M12 Q1 Q2}
    set plane {}
    foreach word [split [string map {, " "} $text]] {
        if {$word eq ""} continue
        set k [lsearch -exact -nocase $names $word]
        if {$k >= 0} {
            lappend plane [expr {$k + 1}]
        } elseif {[string is integer -strict $word] && $word >= 1 && $word <= 8} {
            lappend plane [expr {$word}]
        } else {
            usage "-plane: \"$word\" is no load component (N1 ... Q2 or 1 ... 8)"
        }
    }
    if {[llength $plane] != 2 || [lindex $plane 0] == [lindex $plane 1]} {
        usage "-plane needs two different load components, as \"N1 N2\""
    }
    return $plane
}

# Returns a dict of the options, the record text and the loads.
proc parse_args {argv} {
    global defaultLoads
    set opts [dict create record "" layup "" material "" thickness "" \
        materials "" loads $defaultLoads units "" \
        svg "" html "" plane {1 2} points 72 cases "" out - bad stop]
    set bare {}
    set recordPath ""
    set unitsGiven 0
    while {[llength $argv]} {
        set argv [lassign $argv word]
        if {$word in {-record -units -loads -svg -html -plane -points -cases -out -bad
                      -layup -material -thickness -materials}} {
            if {![llength $argv]} {
                usage "$word needs a value"
            }
            set argv [lassign $argv value]
        }
        switch -- $word {
            -record {
                set recordPath $value
            }
            -units {
                if {[llength $value] != 2} {
                    usage "-units needs a force and a length unit, as \"N mm\""
                }
                dict set opts units $value
                set unitsGiven 1
            }
            -loads { dict set opts loads $value }
            -svg - -html - -cases - -out - -layup - -material - -thickness - -materials {
                dict set opts [string range $word 1 end] $value
            }
            -plane { dict set opts plane [parse_plane $value] }
            -points {
                if {![string is integer -strict $value] || $value < 3} {
                    usage "-points needs a whole number of at least 3"
                }
                dict set opts points $value
            }
            -bad {
                if {$value ni {stop skip}} {
                    usage "-bad is stop or skip, not \"$value\""
                }
                dict set opts bad $value
            }
            -h - -help - --help {
                puts "laminate_report: ply-by-ply report of a laminate under one\
                    load case, its pictures, and tables of load cases"
                puts $::usageText
                exit 0
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
    if {$recordPath eq "-" && [dict get $opts cases] eq "-"} {
        usage "-record - and -cases - cannot both read standard input"
    }
    if {[dict get $opts cases] ne ""} {
        check_out [dict get $opts out] [list [dict get $opts cases] $recordPath]
    }
    dict set opts loads [parse_loads [dict get $opts loads]]
    if {$recordPath ne "" && ([dict get $opts layup] ne "" || [dict get $opts material] ne "")} {
        usage "-record cannot be given with -layup or -material"
    }
    if {$recordPath ne ""} {
        dict set opts record [read_record $recordPath]
        dict set opts source $recordPath
        if {!$unitsGiven} {
            dict set opts units {{} {}}
        }
    } else {
        set defaults [dict create layup $::defaultLayup material $::defaultMaterial]
        dict for {key value} $defaults {
            if {[dict get $opts $key] eq ""} {
                dict set opts $key $value
            }
        }
        set layup [dict get $opts layup]
        dict set opts source "$layup of [dict get $opts material]"
        if {$layup eq $::defaultLayup && [dict get $opts material] eq $::defaultMaterial} {
            dict set opts source "bundled $layup of $::defaultMaterial"
        }
        if {!$unitsGiven} {
            dict set opts units ""
        }
    }
    if {[dict get $opts cases] ne ""} {
        open_out [dict get $opts out]
    }
    return $opts
}

# The 8 loads, each read as a load of a table is read (a finite decimal
# number), written back in their shortest exact form ("010" gives 10).
proc parse_loads {words} {
    if {[catch {llength $words} n] || $n != 8} {
        return -code error -errorcode {REPORT LOADS} "loads: expected 8 values\
            N1 N2 N12 M1 M2 M12 Q1 Q2, got \"$words\""
    }
    lmap name $::lamcases::loadNames word $words {
        switch -- [::lamcases::number $word value] {
            "" {}
            FINITE {
                return -code error -errorcode {REPORT LOADS} \
                    "loads: $name must be finite, got \"$word\""
            }
            default {
                return -code error -errorcode {REPORT LOADS} \
                    "loads: $name must be a decimal number, got \"$word\""
            }
        }
        expr {$value == floor($value) && abs($value) < 1e15
            ? [format %.0f $value] : $value}
    }
}

# Refuses, as a usage error, an -out that names a folder, something that is
# not a plain file, or one of the inputs (the same file by any path).
proc check_out {out inputs} {
    if {$out eq "-"} {
        return
    }
    if {[file isdirectory $out]} {
        usage "-out \"$out\" is a folder: name the results file"
    }
    if {[file exists $out] && [file stat $out st] eq "" && $st(type) ne "file"} {
        usage "-out \"$out\" is not a plain file (-out - writes to standard output)"
    }
    foreach input $inputs {
        if {$input in {"" -}} continue
        set same [expr {[file normalize $input] eq [file normalize $out]}]
        if {!$same && [file exists $input] && [file exists $out]} {
            file stat $input a
            file stat $out b
            set same [expr {$a(dev) == $b(dev) && $a(ino) == $b(ino)}]
        }
        if {$same} {
            usage "-out \"$out\" is the input file \"$input\": the results\
                would replace it"
        }
    }
}

# Opens the temporary file the results of -cases are written to: beside the
# results file (renamed onto it at the end), or anywhere for standard
# output (copied there at the end).  A place that cannot be written is a
# usage error, found before any work.  Sets ::outTmp to its path and
# ::outChan to the channel.
proc open_out {out} {
    if {$out eq "-"} {
        set chan [file tempfile ::outTmp laminate_report]
    } else {
        set ::outTmp $out.tmp[pid]
        if {[catch {open $::outTmp {WRONLY CREAT EXCL}} chan options]} {
            set reason [lindex [dict get $options -errorcode] end]
            unset ::outTmp
            usage "-out \"$out\" cannot be written: $reason"
        }
    }
    fconfigure $chan -translation binary
    set ::outChan $chan
}

# Removes the temporary results file of a run that failed.
proc discard_out {} {
    if {[info exists ::outTmp]} {
        catch {close $::outChan}
        file delete $::outTmp
        unset ::outTmp
    }
}

# --- The report -------------------------------------------------------------

# A number in a field of the given width and decimals.  Very large values
# go in exponent form.  The criteria let infinities and NaN through (a thick
# ply without in-plane shear divides by its shear stress in LaRC04 modes 1
# and 6); those are shown as they are.
proc num {width decimals value} {
    if {![::lamsvg::finite $value]} {
        return [format %${width}s [::lamsvg::num $value]]
    }
    if {abs($value) >= 1e6} {
        return [format %${width}.${decimals}e $value]
    }
    return [format %${width}.${decimals}f $value]
}

# Calls command with a channel open for writing and puts what it wrote at
# path: through a temporary file beside it, so that a failed run never
# leaves a half-written file.
proc write_through {path command} {
    set tmp $path.tmp[pid]
    set chan [open $tmp w]
    fconfigure $chan -encoding utf-8
    if {[catch {{*}$command $chan; close $chan} message options]} {
        catch {close $chan}
        file delete $tmp
        return -options $options $message
    }
    file rename -force $tmp $path
}

proc write_file {path text} {
    write_through $path [list apply {{text chan} {puts -nonewline $chan $text}} $text]
}

# A load factor for the text outputs: 4 significant digits, or Inf.
proc format_factor {value} {
    if {[::lamsvg::finite $value]} {
        return [format %.4g $value]
    }
    ::lamsvg::num $value
}

proc units_text {units} {
    lassign $units force length
    if {$force eq ""} {
        return "those of the record (F force, L length; -units names them)"
    }
    return "force $force, length $length (stresses $force/$length^2;\
        loads $force/$length, $force*$length/$length, $force/$length)"
}

# The tables of the text report.
proc print_report {opts evaluation} {
    set loads [dict get $opts loads]
    set plies [dict get $evaluation plies]
    set n [llength $plies]
    set length [lindex [dict get $opts units] 1]
    set thickness 0.0
    foreach p $plies {
        lassign [dict get $p z] zlow zhigh
        set thickness [expr {$thickness + $zhigh - $zlow}]
    }
    puts [format "  %d plies, total thickness %g %s; lay-up (layer 1 first): %s" $n \
        $thickness [expr {$length eq "" ? "(record length unit)" : $length}] \
        [join [lmap p $plies {format %g [dict get $p angle]}] /]]

    puts ""
    puts "Ply stresses in ply axes (1 = fibre direction, 2 = across it)"
    puts [format "%4s %7s  %-6s %10s %10s %10s %10s %10s" \
        ply angle face sigma1 sigma2 tau12 tau23 tau13]
    set k 0
    foreach p $plies {
        incr k
        foreach face {top middle bottom} key {stresstop stresses stressbas} {
            set line [format "%4s %7s  %-6s" \
                [expr {$face eq "top" ? $k : ""}] \
                [expr {$face eq "top" ? [format %g [dict get $p angle]] : ""}] $face]
            foreach value [dict get $p $key] {
                append line " " [num 10 3 $value]
            }
            if {$face eq "middle"} {
                foreach key {shearStress23_lam shearStress13_lam} {
                    append line " " [num 10 3 [dict get $p $key]]
                }
            }
            puts $line
        }
    }
    puts "  tau23 and tau13 (transverse shear) are constant through each ply."

    puts ""
    puts "Failure assessment (indices fail at 1, the TW factor below 1)"
    puts "  Tsai-Wu    criterion value at the worse face"
    puts "  TW factor  load multiplier that takes the mid-ply Tsai-Wu value to 1\
        (at most 200)"
    puts "  Hashin     fibre (H fib) and matrix (H mat) indices at the worse face"
    puts "  LaRC04     failure index of each mode at the worse face:"
    puts "             m1 matrix tension, m2 matrix compression, m3 fibre tension,"
    puts "             m4 fibre kinking, m5 matrix compression under high fibre"
    puts "             compression, m6 matrix tension under fibre compression"
    puts "  --         ply with failure flag 0: not assessed"
    puts "  none       no TW factor: a zero strength, or no in-plane stress at the\
        top face"
    puts "  FAILED     the ply fails under these loads by the results named"
    puts [format "%4s %7s %8s %9s %8s %8s %8s %8s %8s %8s %8s %8s  %s" \
        ply angle Tsai-Wu "TW factor" "H fib" "H mat" m1 m2 m3 m4 m5 m6 status]
    set oddLaRC 0
    set failed {}
    set k 0
    foreach p $plies {
        incr k
        lassign [::lamreport::verdict $p] state reasons
        set line [format "%4d %7g" $k [dict get $p angle]]
        if {$state eq "not assessed"} {
            append line [format " %8s %9s" -- --] [string repeat [format " %8s" --] 8]
            puts "$line  not assessed"
            continue
        }
        set factor [dict get $p FS_TW_simple]
        append line " " [num 8 3 [dict get $p FS_TW]] " "
        if {$factor < 0} {
            append line [format %9s none]
        } else {
            append line [num 9 2 $factor]
        }
        foreach key {hashin_fibre hashin_matrix FS_LaRCm1 FS_LaRCm2 FS_LaRCm3
                FS_LaRCm4 FS_LaRCm5 FS_LaRCm6} {
            set value [dict get $p $key]
            append line " " [num 8 3 $value]
            if {[string match FS_LaRC* $key] && (![::lamsvg::finite $value]
                    || abs($value) >= 1e6)} {
                set oddLaRC 1
            }
        }
        if {$state eq "FAILED"} {
            append line "  FAILED ([join $reasons {, }])"
            lappend failed $k
        } else {
            append line "  ok"
        }
        puts $line
    }
    if {$oddLaRC} {
        puts "  Huge, Inf or NaN LaRC04 values: modes 1 and 6 of a thick ply divide by"
        puts "  its in-plane shear stress tau12, which is (nearly) zero there."
    }

    puts ""
    puts "First-ply failure (the factor all loads may be multiplied by):"
    foreach c {tsaiwu hashin larc04} {
        set f [dict get $evaluation fpf $c]
        puts [format "  %-8s %s" [dict get $::lamsvg::criterionTitle $c] \
            [::lamsvg::fpfSentence $f]]
    }
    if {[llength $failed]} {
        puts "FAILED: ply [join $failed {, }] fail[expr {[llength $failed] == 1 ? "s" : ""}]\
            under these loads."
    } else {
        puts "No assessed ply fails under these loads."
    }
}

# The three pictures as {file caption svg}.
proc pictures {opts evaluation} {
    set material report
    set units [::lamsvg::units {*}[dict get $opts units]]
    set subtitle "[dict get $opts source]; loads N1 ... Q2 = [dict get $opts loads]"
    set plane [dict get $opts plane]
    set curves {}
    foreach c {tsaiwu hashin larc04} {
        dict set curves $c [laminate::envelope $material -plane $plane -criterion $c \
            -points [dict get $opts points]]
    }
    set names [lmap i $plane {lindex {N1 N2 N12 M1 M2 M12 Q1 Q2} $i-1}]
    list \
        [list profile.svg "Stresses through the thickness, at the top face, middle\
            and bottom face of every ply" \
            [::lamsvg::profile $evaluation -subtitle $subtitle -units $units]] \
        [list ratings.svg "Failure indices of every ply; \u25bc marks each\
            criterion's first ply to fail" \
            [::lamsvg::ratings $evaluation -subtitle $subtitle]] \
        [list envelope.svg "First-ply failure envelope in the [join $names \u2013] plane,\
            the other loads zero; the dot is the load case" \
            [::lamsvg::envelope $curves $plane [dict get $opts loads] -units $units \
                -title "First-ply failure envelope, [join $names \u2013]" \
                -subtitle [dict get $opts source]]]
}

proc write_pictures {opts pictures} {
    set dir [dict get $opts svg]
    file mkdir $dir
    foreach picture $pictures {
        lassign $picture name caption svg
        write_file [file join $dir $name] $svg
    }
}

proc write_html {opts evaluation pictures} {
    set units [::lamsvg::units {*}[dict get $opts units]]
    set info [dict create title "Laminate report: [dict get $opts source]" \
        source [dict get $opts source] unitsText [units_text [dict get $opts units]] \
        units $units loads [dict get $opts loads] evaluation $evaluation \
        abd [laminate::abd report] \
        pictures [lmap p $pictures {lrange $p 1 2}]]
    write_file [dict get $opts html] [::lamhtml::page $info]
}

# Rates the table of load cases; see lib/cases.tcl for its form.  The
# results go to the temporary file open_out opened, and only a run that
# succeeds puts them in place.
proc run_cases {opts} {
    set path [dict get $opts cases]
    set size 0
    if {$path eq "-"} {
        set chan stdin
        set path "standard input"
    } elseif {[file isdirectory $path] || [catch {open $path r} chan]} {
        return -code error -errorcode {REPORT CASES} \
            "cannot read load-case file \"$path\""
    } elseif {[file isfile $path]} {
        set size [file size $path]
    }
    set stop [expr {[dict get $opts bad] eq "stop"}]
    set onBad [list apply {{path stop line message} {
        puts stderr "laminate_report: $path: line $line: $message[expr {$stop ? "" : " (skipped)"}]"
    }} $path $stop]
    set progress {}
    if {[::lamcases::stderrIsTerminal]} {
        set progress [list ::lamcases::showProgress [clock milliseconds] $size]
    }
    try {
        set stats [::lamcases::stream $chan report $::outChan [dict get $opts bad] \
            $onBad $progress]
    } trap {REPORT CASES} message {
        return -code error -errorcode {REPORT CASES} "$path: $message"
    } finally {
        if {$chan ne "stdin"} {
            close $chan
        }
    }
    set cases [dict get $stats cases]
    set bad [dict get $stats bad]
    if {$bad && $stop} {
        return -code error -errorcode {REPORT CASES} \
            "$bad malformed row[expr {$bad > 1 ? "s" : ""}]:\
            nothing rated, nothing written (-bad skip rates the other rows)"
    }
    set out [dict get $opts out]
    close $::outChan
    if {$out eq "-"} {
        set chan [open $::outTmp r]
        fconfigure $chan -translation binary
        fconfigure stdout -translation binary
        fcopy $chan stdout
        close $chan
        file delete $::outTmp
        set report stderr
    } else {
        file rename -force $::outTmp $out
        set report stdout
    }
    unset ::outTmp
    set line "$cases load case[expr {$cases == 1 ? "" : "s"}] from $path:\
        [expr {$cases - $bad}] rated"
    if {$bad} {
        append line ", $bad malformed (skipped)"
    }
    if {$out eq "-"} {
        set out "standard output"
    }
    puts $report "$line; results in $out"
    foreach c {tsaiwu hashin larc04} {
        set lowest [dict get $stats lowest.$c]
        if {[llength $lowest]} {
            set below [dict get $stats below.$c]
            puts $report [format "  %-8s lowest factor %s (line %d); %d case%s below 1" \
                [dict get $::lamsvg::criterionTitle $c] [format_factor [lindex $lowest 0]] \
                [lindex $lowest 1] $below [expr {$below == 1 ? "" : "s"}]]
        }
    }
}

# Defines the laminate "report" from the layup or the record of opts and
# returns opts with the units of its plies when none were named.
proc define_laminate {opts} {
    if {[dict get $opts record] ne ""} {
        if {[catch {laminate::define report [dict get $opts record]} message options]} {
            dict set options -level 0
            set source [dict get $opts source]
            if {$source eq "-"} {
                set source "from standard input"
            }
            return -options $options "record $source: $message"
        }
        return $opts
    }
    laminate::material load bundled
    if {[dict get $opts materials] ne ""} {
        laminate::material load [dict get $opts materials]
    }
    set layup [dict get $opts layup]
    set args {}
    if {[string index [string trimleft $layup] 0] eq "\["} {
        lappend args -material [dict get $opts material]
    }
    if {[dict get $opts thickness] ne ""} {
        lappend args -thickness [dict get $opts thickness]
    }
    if {[catch {laminate::layup report $layup {*}$args} message options]} {
        dict set options -level 0
        return -options $options "layup $layup: $message"
    }
    if {[dict get $opts units] eq ""} {
        set units [dict get [laminate::describe report] units]
        dict set opts units [expr {$units eq "N-m-Pa" ? {N m} : {N mm}}]
    }
    return $opts
}

proc report {opts} {
    set loads [dict get $opts loads]
    set opts [define_laminate $opts]
    if {[dict get $opts cases] ne ""} {
        run_cases $opts
        if {[dict get $opts svg] eq "" && [dict get $opts html] eq ""} {
            return
        }
    }
    set n [last_layer report]
    if {$n > 0} {
        # Checks the loads and the stiffness before anything is printed.
        set evaluation [laminate::evaluate report $loads]
    }
    if {[dict get $opts cases] eq ""} {
        puts "Laminate: [dict get $opts source]"
        puts "Units:    [units_text [dict get $opts units]]"
        lassign [lrange $loads 0 7] N1 N2 N12 M1 M2 M12 Q1 Q2
        puts "Loads:    N1 N2 N12 = $N1 $N2 $N12   M1 M2 M12 = $M1 $M2 $M12   Q1 Q2 = $Q1 $Q2"
    }
    if {$n == 0} {
        puts "The laminate has no plies: nothing to report."
        return
    }
    if {[dict get $opts cases] eq ""} {
        print_report $opts $evaluation
    }
    if {[dict get $opts svg] eq "" && [dict get $opts html] eq ""} {
        return
    }
    set pictures [pictures $opts $evaluation]
    if {[dict get $opts svg] ne ""} {
        write_pictures $opts $pictures
    }
    if {[dict get $opts html] ne ""} {
        write_html $opts $evaluation $pictures
    }
}

# Errors of the package, of the input and of files come back as plain
# messages; anything else is a fault of this script and keeps its trace.
if {[catch {report [parse_args $argv]} message options]} {
    discard_out
    set code [dict get $options -errorcode]
    if {[lrange $code 0 1] eq {POSIX EPIPE}} {
        exit 0  ;# the reader went away (report piped into head)
    }
    if {[lindex $code 0] in {NONE LAMINATE REPORT POSIX}} {
        puts stderr "laminate_report: $message"
        exit 1
    }
    return -options $options $message
}
