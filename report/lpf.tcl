# lpf.tcl -- the last-ply failure of a laminate as laminate::lpf answers
# it, a dict of
#   criterion C  events {EVENT ...}  last F
# each EVENT a dict of factor, ply, face, mode and strains {e1 e2 e12 k1 k2
# k12 g13 g23} (the laminate's strains at that load factor), in load order;
# the last event may be a collapse (every ply failed in fibre mode, or the
# stiffness singular), with a mode word of its own and no ply; last is the
# last-ply factor, Inf when nothing ever fails.  Drawn as the load factor
# against a strain, and printed as a table.  Only drawn and printed:
# nothing here computes mechanics.

namespace eval ::laminate::report {
    # The strains of an event, in the order of its strains list, with the
    # symbols the picture writes and whether each is a curvature (its unit
    # 1/length) or a strain (no unit).
    variable lpfStrains {
        e1 {\u03b51 strain} e2 {\u03b52 strain} e12 {\u03b312 strain}
        k1 {\u03ba1 curvature} k2 {\u03ba2 curvature} k12 {\u03ba12 curvature}
        g13 {\u03b313 strain} g23 {\u03b323 strain}
    }
}

# The position of a strain name in an event's strains list (from 0); an
# error (code LAMINATE OPTION -strain) for a name that is none.
proc ::laminate::report::lpfStrainIndex {strain} {
    variable lpfStrains
    set k [lsearch -exact [dict keys $lpfStrains] $strain]
    if {$k < 0} {
        return -code error -errorcode {LAMINATE OPTION -strain} \
            "-strain: \"$strain\" is no strain (must be [join [dict keys $lpfStrains] {, }])"
    }
    return $k
}

# 1 when an event is the collapse of the whole laminate, not the failure
# of one ply: it names no ply.
proc ::laminate::report::lpfCollapse {event} {
    set ply [dict get $event ply]
    expr {!([string is integer -strict $ply] && $ply > 0)}
}

# The load factor at which the first ply fails: the first event's, Inf when
# there is none.
proc ::laminate::report::lpfFirst {lpf} {
    set events [dict get $lpf events]
    expr {[llength $events] ? [dict get [lindex $events 0] factor] : "Inf"}
}

# An event in words: "ply 5 IFF-A" or the collapse's mode word.
proc ::laminate::report::lpfLabel {event} {
    if {[lpfCollapse $event]} {
        return [dict get $event mode]
    }
    return "ply [dict get $event ply] [dict get $event mode]"
}

# The load factor against a strain through the last-ply failure: a
# polyline from the origin through the events, each marked and labelled
# with its ply and mode (a collapse with its own word), and the first-ply,
# last-ply and applied (factor 1) load factors as lines across.  LPF as
# laminate::lpf answers it.  Options:
#   -strain S   the strain on the horizontal axis: e1 (default) e2 e12 k1
#               k2 k12 g13 g23
#   -title, -subtitle, -notes, -units (from units: the length of the
#               curvatures)
proc ::laminate::report::lpfcurve {lpf args} {
    variable lpfStrains
    set known {-strain -title -subtitle -notes -units}
    if {[llength $args] % 2} {
        return -code error -errorcode {LAMINATE OPTION} \
            "option \"[lindex $args end]\" needs a value"
    }
    foreach {key -} $args {
        if {$key ni $known} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "bad option \"$key\": must be [join $known {, }]"
        }
    }
    set opts [dict merge [list -strain e1 -title "Last-ply failure" -subtitle "" \
        -notes {} -units [units "" ""]] $args]
    foreach key {criterion events last} {
        if {![dict exists $lpf $key]} {
            return -code error -errorcode {LAMINATE LPF} \
                "lpfcurve: expected laminate::lpf's answer (criterion, events, last), has no $key"
        }
    }
    set strain [dict get $opts -strain]
    set index [lpfStrainIndex $strain]
    lassign [dict get $lpfStrains $strain] symbol kind
    set events [dict get $lpf events]
    set last [dict get $lpf last]
    set first [lpfFirst $lpf]

    # The drawn points: the origin, then every event with a finite factor
    # and strain.
    set xs_ [list 0.0]
    set ys_ [list 0.0]
    foreach event $events {
        set x [lindex [dict get $event strains] $index]
        set y [dict get $event factor]
        if {[finite $x] && [finite $y]} {
            lappend xs_ $x
            lappend ys_ $y
        }
    }
    set levels [list 1.0]
    foreach v [list $first $last] {
        if {[finite $v]} {
            lappend levels $v
        }
    }
    lassign [svg::ticks [tcl::mathfunc::min {*}$xs_] [tcl::mathfunc::max {*}$xs_] 6] xfirst xlast xstep
    lassign [svg::ticks 0.0 [tcl::mathfunc::max {*}$ys_ {*}$levels] 6] yfirst ylast ystep
    set left 100.0
    set right 560.0
    set top 70.0
    set bottom 470.0
    set xs [svg::scale $xfirst $xlast $left $right]
    set ys [svg::scale $yfirst $ylast $bottom $top]
    set unit [expr {$kind eq "curvature" ? " \[1/[dict get [dict get $opts -units] length]\]" : ""}]
    set body {}
    lappend body [svg::el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [svg::el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    lappend body "<g class=\"plot\" data-criterion=\"[svg::esc [dict get $lpf criterion]]\"\
        data-strain=\"[svg::esc $strain]\" [svg::transformAttrs $xs $ys]>"
    lappend body [svg::axes $xs $ys [svg::tickValues $xfirst $xlast $xstep] \
        [svg::tickValues $yfirst $ylast $ystep] \
        "$symbol$unit, mid-plane [expr {$kind eq "curvature" ? "curvature" : "strain"}]" \
        "load factor (multiple of the loads)"]
    if {$xfirst < 0 && $xlast > 0} {
        set x0 [svg::px [svg::at $xs 0.0]]
        lappend body [svg::el line [list class zero x1 $x0 x2 $x0 y1 [svg::px $top] y2 [svg::px $bottom]]]
    }
    # The load factors across: the applied loads, the first and last ply.
    foreach {class value label colour dash} [list \
            applied-line 1.0 "applied loads (1)" #555555 {2 3} \
            fpf-line $first "first-ply failure" #c45a00 {7 4} \
            lpf-line $last "last-ply failure" #b00020 {6 3}] {
        if {![finite $value]} continue
        set y [svg::px [svg::at $ys $value]]
        lappend body [svg::el line [list class $class data-value [num $value] \
            x1 [svg::px $left] x2 [svg::px $right] y1 $y y2 $y \
            stroke $colour stroke-width 1.2 stroke-dasharray $dash]]
        set text $label
        if {$class ne "applied-line"} {
            append text " [number $value]"
        }
        lappend body [svg::el text [list class note data-value [num $value] \
            x [svg::px [expr {$right + 6}]] y [svg::px [expr {$y + 4}]]] $text]
    }
    set points [lmap x $xs_ y $ys_ {
        string cat [svg::px [svg::at $xs $x]] , [svg::px [svg::at $ys $y]]
    }]
    lappend body [svg::el polyline [list class lpf-path data-strain $strain \
        data-x [join [lmap x $xs_ {num $x}]] data-y [join [lmap y $ys_ {num $y}]] \
        fill none stroke #1f5fa8 stroke-width 2 points [join $points]]]
    set k 0
    set previous {}
    foreach event $events {
        incr k
        set x [lindex [dict get $event strains] $index]
        set y [dict get $event factor]
        if {!([finite $x] && [finite $y])} continue
        set collapse [lpfCollapse $event]
        set attrs [list class event data-index $k data-factor [num $y] \
            data-ply [dict get $event ply] data-face [dict get $event face] \
            data-mode [dict get $event mode] data-strain [num $x] \
            data-strains [join [lmap v [dict get $event strains] {num $v}]] \
            data-collapse $collapse]
        set px [svg::at $xs $x]
        set py [svg::at $ys $y]
        if {$collapse} {
            lappend body [svg::el rect [dict merge $attrs [list x [svg::px [expr {$px - 5}]] \
                y [svg::px [expr {$py - 5}]] width 10 height 10 fill #b00020 stroke white]]]
        } else {
            lappend body [svg::el circle [dict merge $attrs [list cx [svg::px $px] \
                cy [svg::px $py] r 4 fill #1f5fa8 stroke white stroke-width 1]]]
        }
        # Labels of events close together are stacked rather than drawn
        # over one another.
        set ly [expr {$py + 4}]
        if {[llength $previous] && abs([lindex $previous 0] - $px) < 120
                && abs([lindex $previous 1] - $ly) < 12} {
            set ly [expr {[lindex $previous 1] - 12}]
        }
        set previous [list $px $ly]
        set after [expr {$px < $right - 110}]
        lappend body [svg::el text [list class mode data-index $k \
            x [svg::px [expr {$after ? $px + 8 : $px - 8}]] y [svg::px $ly] \
            text-anchor [expr {$after ? "start" : "end"}]] "$k: [lpfLabel $event]"]
    }
    lappend body </g>
    set notes [list "Load factor against $symbol: from the origin through every ply failure in\
        load order, each labelled with its number, ply and mode."]
    if {![llength $events]} {
        lappend notes "No ply fails along this load path: the last-ply factor is [number $last]."
    } elseif {[lpfCollapse [lindex $events end]]} {
        lappend notes "The last event is the collapse of the laminate\
            ([dict get [lindex $events end] mode])."
    }
    lappend notes {*}[dict get $opts -notes]
    set y 530
    foreach note $notes {
        lappend body [svg::el text [list class note x 20 y $y] $note]
        incr y 16
    }
    svg::document lpf 800 [expr {$y + 2}] [dict get $opts -title] \
        "Load factor against a mid-plane strain through the last-ply failure,\
        one marker per ply failure" [join $body \n]
}

# The events of a last-ply failure (LPF as laminate::lpf answers it) as a
# text table: event, load factor, ply and its angle (-angles, layer 1
# first), face, mode and the strain -strain (default e1); then the first-
# and last-ply factors.  -ascii 1 (default) keeps the table ASCII.
proc ::laminate::report::lpfTable {lpf args} {
    variable lpfStrains
    set opts [dict merge {-angles {} -strain e1 -ascii 1} $args]
    set index [lpfStrainIndex [dict get $opts -strain]]
    set ascii [dict get $opts -ascii]
    set c [dict get $lpf criterion]
    set out [list "Last-ply failure by [criterionTitle $c]: the plies in the order they fail as\
        the loads grow"]
    set events [dict get $lpf events]
    set width [tcl::mathfunc::max 4 {*}[lmap e $events {string length [dict get $e mode]}]]
    lappend out [format "%5s %10s %4s %7s  %-6s  %-*s  %10s" event factor ply angle face \
        $width mode [dict get $opts -strain]]
    set k 0
    foreach event $events {
        incr k
        set ply [dict get $event ply]
        set angle ""
        if {![lpfCollapse $event]} {
            set a [lindex [dict get $opts -angles] $ply-1]
            if {$a ne ""} {
                set angle [angle $a -ascii $ascii]
            }
        } else {
            set ply --
        }
        lappend out [format "%5d %10s %4s %7s  %-6s  %-*s  %10s" $k \
            [number [dict get $event factor] -ascii $ascii] $ply $angle \
            [dict get $event face] $width [dict get $event mode] \
            [number [lindex [dict get $event strains] $index] -ascii $ascii]]
    }
    if {![llength $events]} {
        lappend out "  (no ply fails along this load path)"
    }
    set first [lpfFirst $lpf]
    set last [dict get $lpf last]
    lappend out "" "First-ply failure: [lpfFactorText $first $ascii]"
    set end [lindex $events end]
    set tail ""
    if {[llength $events] && [lpfCollapse $end]} {
        set tail " (ending in the collapse of the laminate[expr {[dict get $end mode] eq "collapse"
            ? "" : ": [dict get $end mode]"}])"
    }
    lappend out "Last-ply failure:  [lpfFactorText $last $ascii]$tail"
    join $out \n
}

# A load factor of the last-ply failure in words.
proc ::laminate::report::lpfFactorText {factor ascii} {
    if {![finite $factor]} {
        if {[string is double -strict $factor] && $factor == Inf} {
            return "never (no ply fails under any multiple of the loads)"
        }
        return "no factor ($factor)"
    }
    set text "[number $factor -ascii $ascii] times the loads"
    append text [expr {$factor < 1 ? ": below the applied loads" : ": holds the applied loads"}]
}
