# pictures.tcl -- the report's three pictures as standalone SVG text:
# the through-thickness stress profile, the ply ratings and the first-ply
# failure envelope.  Each proc takes what laminate::evaluate and
# laminate::envelope return and only draws it.

source [file join [file dirname [info script]] svg.tcl]

namespace eval ::lamsvg {
    # The load components in the order of a load vector.
    variable loadNames {N1 N2 N12 M1 M2 M12 Q1 Q2}
    variable criteria {tsaiwu hashin larc04}
    variable criterionTitle {tsaiwu Tsai-Wu hashin Hashin larc04 LaRC04}
    # Colours and dash patterns: the dashes keep curves apart in grey print.
    variable criterionStyle {
        tsaiwu {stroke #1f5fa8 fill #1f5fa8}
        hashin {stroke #c45a00 fill #e08a2c stroke-dasharray {7 4}}
        larc04 {stroke #2b8a3e fill #3fa45a stroke-dasharray {2 3}}
    }
    variable componentStyle {{stroke #1f5fa8} {stroke #c45a00} {stroke #2b8a3e}}
}

# Unit labels from the record's force and length units (either may be
# empty: the record carries no units, so then F and L stand for them).
proc ::lamsvg::units {force length} {
    if {$force eq ""} {set force F}
    if {$length eq ""} {set length L}
    dict create force $force length $length \
        stress "$force/$length\u00b2" line "$force/$length" \
        moment "$force\u00b7$length/$length" \
        A "$force/$length" B $force D "$force\u00b7$length"
}

# "N1 [N/mm]": a load component with its unit (index from 1).
proc ::lamsvg::loadLabel {index units} {
    variable loadNames
    set name [lindex $loadNames $index-1]
    set unit [dict get $units [expr {[string index $name 0] eq "M" ? "moment" : "line"}]]
    return "$name \[$unit\]"
}

# The through-thickness profile: stresses at the top face, middle and
# bottom face of every ply against z, in ply axes and in laminate axes.
# z runs downwards, so layer 1 (lowest z) is drawn at the top and each
# ply's top face (the one nearer layer 1) is its upper edge.
# Options: -title, -subtitle, -units (from ::lamsvg::units).
proc ::lamsvg::profile {evaluation args} {
    variable componentStyle
    set opts [dict merge [list -title "Stresses through the thickness" \
        -subtitle "" -units [units "" ""]] $args]
    set units [dict get $opts -units]
    set plies [dict get $evaluation plies]
    set zmin Inf
    set zmax -Inf
    foreach ply $plies {
        lassign [dict get $ply z] zlow zhigh
        set zmin [expr {min($zmin, $zlow)}]
        set zmax [expr {max($zmax, $zhigh)}]
    }
    set top 96.0
    set bottom 470.0
    set zs [scale $zmin $zmax $top $bottom]
    set zticks [tickValues {*}[ticks $zmin $zmax 8] $zmin $zmax]
    set stress [dict get $units stress]
    set panels [list \
        [list ply 80.0 365.0 "Ply axes (1 along the fibres)" \
            {stresstop stresses stressbas} {sigma1 sigma2 tau12} \
            [list \u03c31 \u03c32 \u03c412] "\u03c3 in ply axes \[$stress\]"] \
        [list laminate 445.0 730.0 "Laminate axes" \
            {xy_stresstop xy_stresses xy_stressbas} {sigmax sigmay tauxy} \
            [list \u03c3x \u03c3y \u03c4xy] "\u03c3 in laminate axes \[$stress\]"]]
    set body {}
    lappend body [el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    set zlabel "z \[[dict get $units length]\] \u2193"
    foreach panel $panels {
        lassign $panel name left right heading keys quantities symbols xtitle
        # Values per ply: {top middle bottom} for each component.
        set lo 0.0
        set hi 0.0
        foreach ply $plies {
            foreach key $keys {
                foreach v [dict get $ply $key] {
                    if {[finite $v]} {
                        set lo [expr {min($lo, $v)}]
                        set hi [expr {max($hi, $v)}]
                    }
                }
            }
        }
        lassign [ticks $lo $hi 5] xfirst xlast xstep
        set xs [scale $xfirst $xlast $left $right]
        lappend body "<g class=\"plot\" data-panel=\"$name\" [transformAttrs $xs $zs]>"
        lappend body [axes $xs $zs [tickValues $xfirst $xlast $xstep] $zticks \
            $xtitle [expr {$name eq "ply" ? $zlabel : ""}]]
        lappend body [el text [list class subtitle x [px $left] y 66] $heading]
        set entries {}
        foreach symbol $symbols style $componentStyle {
            lappend entries [list $symbol [dict merge {stroke-width 2} $style]]
        }
        lappend body [legend [expr {$left + 4}] 84 80 $entries]
        foreach ply $plies {
            lassign [dict get $ply z] zlow zhigh
            set y [px [at $zs $zlow]]
            lappend body [el line [list class boundary x1 [px $left] x2 [px $right] y1 $y y2 $y]]
        }
        set y [px [at $zs $zmax]]
        lappend body [el line [list class boundary x1 [px $left] x2 [px $right] y1 $y y2 $y]]
        set x0 [px [at $xs 0.0]]
        lappend body [el line [list class zero x1 $x0 x2 $x0 y1 [px $top] y2 [px $bottom]]]
        set k 0
        foreach ply $plies {
            incr k
            lassign [dict get $ply z] zlow zhigh
            set zpos [list $zlow [expr {($zlow + $zhigh) / 2.0}] $zhigh]
            foreach c {0 1 2} quantity $quantities style $componentStyle {
                set values [lmap key $keys {lindex [dict get $ply $key] $c}]
                set points {}
                set dots {}
                foreach v $values z $zpos {
                    if {[finite $v]} {
                        set p "[px [at $xs $v]],[px [at $zs $z]]"
                        lappend points $p
                        lappend dots [el circle [dict merge $style [list fill \
                            [dict get $style stroke] cx [px [at $xs $v]] \
                            cy [px [at $zs $z]] r 2.2]]]
                    }
                }
                set attrs [dict merge $style [list class profile fill none \
                    stroke-width 2 data-ply $k data-quantity $quantity \
                    data-z [join [lmap z $zpos {num $z}]] \
                    data-values [join [lmap v $values {num $v}]] \
                    points [join $points]]]
                lappend body [el polyline $attrs] {*}$dots
            }
        }
        lappend body </g>
    }
    # Ply numbers and angles beside the right panel, thinned out when the
    # plies are too thin on the page for one label each.
    set n [llength $plies]
    set every [expr {max(1, int(ceil(13.0 * $n / ($bottom - $top))))}]
    set k 0
    foreach ply $plies {
        incr k
        if {($k - 1) % $every} continue
        lassign [dict get $ply z] zlow zhigh
        set y [expr {[at $zs [expr {($zlow + $zhigh) / 2.0}]] + 4}]
        lappend body [el text [list class ply-label x 738 y [px $y] data-ply $k] \
            "$k: [human [dict get $ply angle]]\u00b0"]
    }
    lappend body [el text [list class note x 20 y 528] \
        "Each ply: values at its top face (upper edge), middle and bottom face."]
    lappend body [el text [list class note x 20 y 544] \
        "Dashed lines are ply boundaries; the labels give ply number and fibre angle."]
    document profile 800 556 [dict get $opts -title] \
        "Stresses in ply axes and in laminate axes against z, every ply" \
        [join $body \n]
}

# The indices a criterion gives a ply: the Tsai-Wu value, the two Hashin
# indices, the six LaRC04 modes.
proc ::lamsvg::ratingValues {ply criterion} {
    switch -- $criterion {
        tsaiwu {list [dict get $ply FS_TW]}
        hashin {list [dict get $ply hashin_fibre] [dict get $ply hashin_matrix]}
        larc04 {lmap m {1 2 3 4 5 6} {dict get $ply FS_LaRCm$m}}
    }
}

# The value a criterion's bar shows: the largest of its indices.  NaN
# indices (0/0 in a criterion) are passed over unless nothing else is left.
proc ::lamsvg::rating {ply criterion} {
    set best NaN
    foreach v [ratingValues $ply $criterion] {
        if {[string match -nocase *nan* $v]} continue
        if {[string match -nocase *nan* $best] || $v > $best} {
            set best $v
        }
    }
    return $best
}

# The ply ratings: for every ply the Tsai-Wu, Hashin and LaRC04 indices as
# bars, the failure line at 1, each criterion's first ply to fail marked.
# The index axis stops at 10 at most; a longer bar is cut there and carries
# its value.  Options: -title, -subtitle.
proc ::lamsvg::ratings {evaluation args} {
    variable criteria
    variable criterionTitle
    variable criterionStyle
    set opts [dict merge {-title "Ply ratings" -subtitle ""} $args]
    set plies [dict get $evaluation plies]
    set fpf [dict get $evaluation fpf]
    set n [llength $plies]
    set largest 0.0
    foreach ply $plies {
        foreach c $criteria {
            set v [rating $ply $c]
            if {[finite $v]} {
                set largest [expr {max($largest, $v)}]
            }
        }
    }
    set left 70.0
    set right 780.0
    set top 92.0
    set bottom 360.0
    lassign [ticks 0.0 [expr {max(1.2, min($largest, 10.0))}] 5] first last step
    set ys [scale 0.0 $last $bottom $top]
    set xs [scale 0.0 $n $left $right]
    set body {}
    lappend body [el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    set entries {}
    foreach c $criteria {
        set style [dict get $criterionStyle $c]
        lappend entries [list [dict get $criterionTitle $c] \
            [list fill [dict get $style fill] stroke none] box]
    }
    lappend entries [list "failure (index 1)" {stroke #b00020 stroke-width 1.5 stroke-dasharray {6 3}}]
    lappend body [legend 80 64 120 $entries]
    lappend body [el text {class failed x 640 y 68} "\u25bc first ply to fail"]
    lappend body "<g class=\"plot\" [transformAttrs $xs $ys]>"
    set xticks {}
    lappend body [axes $xs $ys $xticks [tickValues $first $last $step] "" "failure index"]
    lappend body [el text [list class axis-title x [px [expr {($left + $right) / 2}]] \
        y [px [expr {$bottom + 48}]] text-anchor middle] "ply (layer 1 first) and fibre angle"]
    set group [expr {($right - $left) / $n}]
    set bar [expr {min(28.0, 0.8 * $group / 3.0)}]
    set critical {}
    foreach c $criteria {
        set f [dict get $fpf $c]
        if {[dict get $f ply] > 0} {
            dict lappend critical [dict get $f ply] $c
        }
    }
    set passedNaN 0
    set k 0
    foreach ply $plies {
        incr k
        set center [expr {[at $xs [expr {$k - 0.5}]]}]
        set failed 0
        foreach c $criteria i {-1 0 1} {
            set v [rating $ply $c]
            set x [expr {$center + ($i - 0.5) * $bar}]
            set shown [expr {[finite $v] ? min(max($v, 0.0), $last) : ([string match -nocase *nan* $v] ? 0.0 : $last)}]
            set y [at $ys $shown]
            set style [dict get $criterionStyle $c]
            set attrs [list class rating data-ply $k data-criterion $c data-value [num $v] \
                x [px $x] y [px $y] width [px $bar] height [px [expr {$bottom - $y}]] \
                fill [dict get $style fill]]
            if {[finite $v] && $v >= 1} {
                set failed 1
                lappend attrs stroke #b00020 stroke-width 2
            }
            lappend body "[string range [el rect $attrs] 0 end-2]><title>[esc "ply $k,\
                [dict get $criterionTitle $c]: [human $v]"]</title></rect>"
            if {![finite $v] || $v > $last} {
                lappend body [el text [list class tick x [px [expr {$x + $bar / 2}]] \
                    y [px [expr {$top - 4}]] text-anchor middle] [human $v 3]]
            } elseif {[lsearch -nocase -glob [ratingValues $ply $c] *nan*] >= 0} {
                # Above the first-ply mark when there is one.
                set passedNaN 1
                set lift [expr {[dict exists $critical $k] && $c in [dict get $critical $k]
                    ? 16 : 4}]
                lappend body [el text [list class tick data-nan $c data-ply $k \
                    x [px [expr {$x + $bar / 2}]] y [px [expr {$y - $lift}]] \
                    text-anchor middle] *]
            }
            if {[dict exists $critical $k] && $c in [dict get $critical $k]} {
                lappend body [el text [list class failed data-critical $c data-ply $k \
                    x [px [expr {$x + $bar / 2}]] y [px [expr {max($y, $top + 12) - 4}]] \
                    text-anchor middle] \u25bc]
            }
        }
        set label [list class [expr {$failed ? "failed" : "tick"}] \
            x [px $center] y [px [expr {$bottom + 16}]] text-anchor middle data-ply $k]
        if {$n <= 24 || $k % int(ceil($n / 24.0)) == 1} {
            lappend body [el text $label $k]
            lappend body [el text [list class tick x [px $center] y [px [expr {$bottom + 30}]] \
                text-anchor middle] "[human [dict get $ply angle]]\u00b0"]
        }
        if {![dict get $ply flag] && $n <= 16} {
            lappend body [el text [list class note x [px $center] y [px [expr {$bottom - 8}]] \
                text-anchor middle] "not assessed"]
        }
    }
    set y1 [px [at $ys 1.0]]
    lappend body [el line [list x1 [px $left] x2 [px $right] y1 $y1 y2 $y1 \
        stroke #b00020 stroke-width 1.5 stroke-dasharray {6 3}]]
    lappend body </g>
    set y [expr {$bottom + 74}]
    foreach c $criteria {
        set f [dict get $fpf $c]
        lappend body [el text [list class note x 20 y [px $y] data-criterion $c] \
            "[dict get $criterionTitle $c]: [fpfSentence $f]"]
        set y [expr {$y + 16}]
    }
    if {$passedNaN} {
        lappend body [el text [list class note x 20 y [px $y]] "* an index of the\
            criterion is NaN there (0/0, as in LaRC04 modes 1 and 6 of a thick ply"]
        lappend body [el text [list class note x 20 y [px [expr {$y + 16}]]] "\
            \u00a0 without in-plane shear); the bar shows the largest of the others."]
        set y [expr {$y + 32}]
    }
    document ratings 800 [expr {int($y) + 4}] [dict get $opts -title] \
        "Failure indices of every ply by Tsai-Wu, Hashin and LaRC04" [join $body \n]
}

# One first-ply-failure result in words.
proc ::lamsvg::fpfSentence {f} {
    dict with f {}
    if {$ply == 0} {
        return "no ply fails under any multiple of these loads"
    }
    set where "ply $ply, $face face[expr {$mode eq "tsaiwu" ? "" : ", mode $mode"}]"
    if {$factor == 0} {
        return "ply $ply fails at once ($face face, mode $mode)"
    }
    set verdict [expr {$factor < 1 ? "fails below the applied loads" : "holds the applied loads"}]
    return "first failure at [human $factor] times the loads ($where): $verdict"
}

# The first-ply-failure envelope in the plane of load components I and J
# (from 1): one closed curve per criterion, from the point lists that
# laminate::envelope returns, and the current load case marked.  Rays that
# never fail have infinite points; the curve is left open there.
# curves: dict criterion -> list of {x y}.  Options: -title, -subtitle,
# -units.
proc ::lamsvg::envelope {curves plane loads args} {
    variable criterionTitle
    variable criterionStyle
    set opts [dict merge [list -title "First-ply failure envelope" -subtitle "" \
        -units [units "" ""]] $args]
    lassign $plane i j
    set lx [lindex $loads $i-1]
    set ly [lindex $loads $j-1]
    set xlo [expr {min(0.0, $lx)}]
    set xhi [expr {max(0.0, $lx)}]
    set ylo [expr {min(0.0, $ly)}]
    set yhi [expr {max(0.0, $ly)}]
    dict for {c points} $curves {
        foreach p $points {
            lassign $p x y
            if {[finite $x] && [finite $y]} {
                set xlo [expr {min($xlo, $x)}]
                set xhi [expr {max($xhi, $x)}]
                set ylo [expr {min($ylo, $y)}]
                set yhi [expr {max($yhi, $y)}]
            }
        }
    }
    lassign [ticks $xlo $xhi 6] xfirst xlast xstep
    lassign [ticks $ylo $yhi 6] yfirst ylast ystep
    set left 100.0
    set right 580.0
    set top 70.0
    set bottom 550.0
    set xs [scale $xfirst $xlast $left $right]
    set ys [scale $yfirst $ylast $bottom $top]
    set units [dict get $opts -units]
    set body {}
    lappend body [el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    lappend body "<g class=\"plot\" [transformAttrs $xs $ys]>"
    lappend body [axes $xs $ys [tickValues $xfirst $xlast $xstep] \
        [tickValues $yfirst $ylast $ystep] [loadLabel $i $units] [loadLabel $j $units]]
    if {$xfirst < 0 && $xlast > 0} {
        set x0 [px [at $xs 0.0]]
        lappend body [el line [list class zero x1 $x0 x2 $x0 y1 [px $top] y2 [px $bottom]]]
    }
    if {$yfirst < 0 && $ylast > 0} {
        set y0 [px [at $ys 0.0]]
        lappend body [el line [list class zero x1 [px $left] x2 [px $right] y1 $y0 y2 $y0]]
    }
    set entries {}
    dict for {c points} $curves {
        set style [dict merge [dict get $criterionStyle $c] {fill none stroke-width 2}]
        set label [dict get $criterionTitle $c]
        lappend body "<g class=\"envelope\" data-criterion=\"$c\"\
            data-points=\"[esc [join [lmap p $points {join [lmap v $p {num $v}] ,}]]]\">"
        set pieces [finiteRuns $points]
        foreach piece $pieces {
            set drawn [join [lmap p $piece {
                lassign $p x y
                string cat [px [at $xs $x]] , [px [at $ys $y]]
            }]]
            set tag [expr {[llength $pieces] == 1 && [llength $piece] == [llength $points]
                ? "polygon" : "polyline"}]
            lappend body [el $tag [dict merge $style [list class curve \
                data-criterion $c points $drawn]]]
        }
        lappend body </g>
        if {![llength $pieces]} {
            append label " (never fails)"
        }
        lappend entries [list $label [dict remove $style fill]]
    }
    set cx [px [at $xs $lx]]
    set cy [px [at $ys $ly]]
    lappend body [el circle [list class load data-x [num $lx] data-y [num $ly] \
        cx $cx cy $cy r 5 fill #b00020 stroke white stroke-width 1.5]]
    lappend body </g>
    lappend entries [list "load case ([human $lx], [human $ly])" \
        {stroke #b00020 stroke-width 8 stroke-linecap round stroke-dasharray {0.1 30}}]
    set y 90
    foreach entry $entries {
        lappend body [legend 600 $y 0 [list $entry]]
        incr y 22
    }
    lappend body [el text [list class note x 600 y [expr {$y + 10}]] "Along each ray from 0 the"]
    lappend body [el text [list class note x 600 y [expr {$y + 26}]] "other six loads are zero."]
    document envelope 800 600 [dict get $opts -title] \
        "First-ply failure envelope per criterion in the plane of two load components" \
        [join $body \n]
}

# The runs of consecutive finite points of a closed curve, each as a list
# of points; a run that wraps past the end is joined, and a curve with no
# infinite point is one run of all its points.
proc ::lamsvg::finiteRuns {points} {
    set n [llength $points]
    set start -1
    for {set k 0} {$k < $n} {incr k} {
        lassign [lindex $points $k] x y
        if {!([finite $x] && [finite $y])} {
            set start $k
            break
        }
    }
    if {$start < 0} {
        return [expr {$n ? [list $points] : {}}]
    }
    set runs {}
    set run {}
    for {set m 1} {$m <= $n} {incr m} {
        set p [lindex $points [expr {($start + $m) % $n}]]
        lassign $p x y
        if {[finite $x] && [finite $y]} {
            lappend run $p
        } elseif {[llength $run]} {
            lappend runs $run
            set run {}
        }
    }
    if {[llength $run]} {
        lappend runs $run
    }
    return $runs
}
