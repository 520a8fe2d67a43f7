# Shared by the tests of the laminate program, the report package, its
# pictures and its load-case tables: where the program is, running it, and
# reading back what it wrote.

source [file join [file dirname [info script]] helpers.tcl]
package require laminate::report 1.0

set ::examples [file normalize [file join [file dirname [info script]] .. .. examples]]
# The program of the build folder (ctest names it; TCLLIBPATH is that folder).
if {[info exists env(LAMINATE_PROGRAM)]} {
    set ::program $env(LAMINATE_PROGRAM)
} else {
    set ::program [file join [lindex $env(TCLLIBPATH) 0] bin laminate]
}

# Runs the program with args (standard input from TEXT after -stdin);
# returns {status stdout stderr}, stderr trimmed.
proc runLaminate {args} {
    set input {}
    if {[lindex $args 0] eq "-stdin"} {
        set args [lassign $args - input]
    }
    set out [makeFile {} laminate.out]
    set err [makeFile {} laminate.err]
    set status 0
    if {[catch {exec [interpreter] $::program {*}$args >$out 2>$err << $input} message options]} {
        set code [dict get $options -errorcode]
        if {[lindex $code 0] ne "CHILDSTATUS"} {
            return -options $options $message
        }
        set status [lindex $code 2]
    }
    list $status [slurp $out] [string trim [slurp $err]]
}

# The text of a file, read as UTF-8.
proc slurp {path} {
    set chan [open $path r]
    fconfigure $chan -encoding utf-8
    set text [read $chan]
    close $chan
    return $text
}

# Every element <tag ...> of an XML text whose class attribute is `class`,
# as dicts of its attributes (entities decoded).
proc elements {xml tag class} {
    set found {}
    foreach element [regexp -all -inline "<$tag \[^>\]*>" $xml] {
        set attrs {}
        foreach {- name value} [regexp -all -inline {([\w-]+)="([^"]*)"} $element] {
            dict set attrs $name [string map {&lt; < &gt; > &quot; \" &#39; ' &amp; &} $value]
        }
        if {[dict exists $attrs class] && [dict get $attrs class] eq $class} {
            lappend found $attrs
        }
    }
    return $found
}

# The plot transform of a <g class="plot"> as two lists {lo hi p0 p1 log}.
proc plotTransform {attrs} {
    lmap axis {x y} {
        concat [dict get $attrs data-$axis-range] [dict get $attrs data-p$axis-range] \
            [expr {[dict exists $attrs data-$axis-scale] && [dict get $attrs data-$axis-scale] eq "log"}]
    }
}

# A pixel coordinate mapped back to the value it shows.
proc unmap {axis pixel} {
    lassign $axis lo hi p0 p1 log
    if {$log} {
        return [expr {10 ** (log10($lo) + ($pixel - $p0) * (log10($hi) - log10($lo)) / ($p1 - $p0))}]
    }
    expr {$lo + ($pixel - $p0) * ($hi - $lo) / ($p1 - $p0)}
}

# The size of one printed pixel step (0.01 px) in values along an axis,
# near value v on a log axis (relative there).
proc pixelStep {axis {v 1}} {
    lassign $axis lo hi p0 p1 log
    if {$log} {
        return [expr {abs($v) * (10 ** (0.01 * abs((log10($hi) - log10($lo)) / ($p1 - $p0))) - 1)}]
    }
    expr {0.01 * abs(($hi - $lo) / ($p1 - $p0))}
}

# 1 when xmllint reads the file without a complaint (as XML, or as HTML
# with mode html); the complaints otherwise.
proc lintOk {path {mode xml}} {
    set flags [expr {$mode eq "html" ? {--html --noout} : {--noout}}]
    if {[catch {exec xmllint {*}$flags $path 2>@1} complaints]} {
        return $complaints
    }
    # The HTML parser knows neither SVG nor HTML5 element names; any other
    # error counts.
    set errors [lsearch -all -inline -regexp [split $complaints \n] {error|warning}]
    set other [lsearch -all -inline -not -regexp $errors \
        {Tag (svg|title|desc|style|g|line|polyline|polygon|rect|circle|text|figure|figcaption) invalid}]
    expr {[llength $other] ? [join $other \n] : 1}
}

# Numbers equal to 10 significant digits (the precision the pictures keep).
proc sameTo10 {a b} {
    expr {$a == $b || abs($a - $b) <= 1e-9 * max(abs($a), abs($b))}
}

# The bundled [0/45/-45/90]s laminate of the job, defined as `name`, with
# the failure flag of the layers in `unflagged` set to 0.
proc bundled {name {unflagged {}}} {
    set layer {161000 11400 0.32 5170 5170 3980 1590 185 2560 73 90 57 90 0 ANGLE 0.125 1.54e-5 1}
    set record 8
    set k 0
    foreach angle {0 45 -45 90 90 -45 45 0} {
        set fields [string map [list ANGLE $angle] $layer]
        if {[incr k] in $unflagged} {
            lset fields 17 0
        }
        append record " " $fields
    }
    laminate_material $name $record
    return $record
}
