# pictures.tcl -- the report's three pictures as standalone SVG text: the
# stresses through the thickness, the reserve factor of every ply, and the
# first-ply failure envelope.  Each proc takes what the analysis commands
# return (or the ply factors of plies.tcl) and only draws it.

namespace eval ::laminate::report {
    # The criteria rated by default: laminate::rate's engineering set, an
    # interactive criterion, the physically based inter-fibre criterion and
    # the allowables check.
    variable criteria {tsaiwu2d puck maxstrain}
    # The model's criteria, with the catalogue's counterpart of each: they
    # give indices and first-ply failures, but no reserve factor per ply
    # with residual stresses, so the ratings take the catalogue's alone.
    variable modelCriteria {tsaiwu tsaiwu2d hashin hashin2d larc04 larc03}
    # Titles and styles of the criteria; one not listed here is drawn in
    # the first free style under its own name.
    variable criterionTitle {
        tsaiwu Tsai-Wu hashin Hashin larc04 LaRC04 maxstress "max stress"
        maxstrain "max strain" tsaihill Tsai-Hill hoffman Hoffman
        tsaiwu2d "Tsai-Wu 2D" hashin2d "Hashin 2D" puck Puck larc03 LaRC03
    }
    # Colours and dash patterns: the dashes keep curves apart in grey print.
    variable criterionStyle {
        tsaiwu2d {stroke #1f5fa8 fill #1f5fa8}
        puck {stroke #c45a00 fill #e08a2c stroke-dasharray {7 4}}
        maxstrain {stroke #2b8a3e fill #3fa45a stroke-dasharray {2 3}}
        tsaiwu {stroke #1f5fa8 fill #1f5fa8}
        hashin {stroke #c45a00 fill #e08a2c stroke-dasharray {7 4}}
        larc04 {stroke #2b8a3e fill #3fa45a stroke-dasharray {2 3}}
    }
    variable spareStyles {
        {stroke #7b3294 fill #9b59b6 stroke-dasharray {9 3 2 3}}
        {stroke #555555 fill #777777 stroke-dasharray {1 2}}
        {stroke #a6761d fill #c49a3a}
    }
}

namespace eval ::laminate::report::svg {}

# The title and style of a criterion, also of one the report does not know.
proc ::laminate::report::criterionTitle {criterion} {
    variable criterionTitle
    if {[dict exists $criterionTitle $criterion]} {
        return [dict get $criterionTitle $criterion]
    }
    return $criterion
}

proc ::laminate::report::criterionStyle {criterion all} {
    variable criterionStyle
    variable spareStyles
    if {[dict exists $criterionStyle $criterion]} {
        return [dict get $criterionStyle $criterion]
    }
    set unknown [lmap c $all {
        if {[dict exists $criterionStyle $c]} continue
        set c
    }]
    set k [lsearch -exact $unknown $criterion]
    lindex $spareStyles [expr {max(0, $k) % [llength $spareStyles]}]
}

# --- Through the thickness --------------------------------------------------

# The panels of the profile: name, symbol, the evaluation keys of the
# values at the lower-z face, middle and upper-z face (or the column of
# the interlaminar profile), the component, and the allowables drawn on
# the positive and negative side (record field names).
proc ::laminate::report::profilePanels {} {
    set ply {stresstop stresses stressbas}
    set lam {xy_stresstop xy_stresses xy_stressbas}
    list \
        [list sigma1 \u03c31 $ply 0 Xt Xc] \
        [list sigma2 \u03c32 $ply 1 Yt Yc] \
        [list tau12 \u03c412 $ply 2 S12 S12] \
        [list tauxz \u03c4xz interlaminar 1 {} {}] \
        [list sigmax \u03c3x $lam 0 {} {}] \
        [list sigmay \u03c3y $lam 1 {} {}] \
        [list tauxy \u03c4xy $lam 2 {} {}] \
        [list tauyz \u03c4yz interlaminar 2 {} {}]
}

# The stresses through the thickness, z upward (layer 1, the lowest z, at
# the bottom): one panel per component, each with its own scale, in two
# rows: sigma1 sigma2 tau12 in ply axes and the interlaminar shear tauxz;
# sigmax sigmay tauxy in laminate axes and tauyz.  Each ply is drawn
# through its values at its lower face, middle and upper face; the
# interlaminar shear (the evaluation's interlaminar key, left out when it
# has none) through every point it gives.
# Options:
#   -title, -subtitle, -units (from units), -notes (more lines at the foot)
#   -allowables  per ply (layer 1 first) a dict of Xt Xc Yt Yc S12 (0 or
#                absent: not given); each is drawn over its ply's band
#                when it fits on the panel's scale (the scale may grow to
#                twice the span of the values for it), and named in a note
#                when it does not
#   -failed      the plies to mark as failed (a shaded band)
proc ::laminate::report::profile {evaluation args} {
    set opts [dict merge [list -title "Stresses through the thickness" \
        -subtitle "" -units [units "" ""] -allowables {} -failed {} -notes {}] $args]
    set units [dict get $opts -units]
    set plies [dict get $evaluation plies]
    set interlaminar {}
    if {[dict exists $evaluation interlaminar]} {
        set interlaminar [dict get $evaluation interlaminar]
    }
    set n [llength $plies]
    set zmin Inf
    set zmax -Inf
    foreach ply $plies {
        lassign [dict get $ply z] zlow zhigh
        set zmin [expr {min($zmin, $zlow)}]
        set zmax [expr {max($zmax, $zhigh)}]
    }
    set columns [expr {[llength $interlaminar] ? 4 : 3}]
    set panelWidth 166.0
    set gap 56.0
    set first 84.0
    set width [expr {int($first + $columns * $panelWidth + ($columns - 1) * $gap + 86)}]
    set rowTops {112.0 432.0}
    set plotHeight 230.0
    set stress [dict get $units stress]
    set body {}
    lappend body [svg::el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [svg::el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    set offScale {}
    set k 0
    foreach panel [profilePanels] {
        lassign $panel name symbol keys component positive negative
        set column [expr {$k % 4}]
        set row [expr {$k / 4}]
        incr k
        if {$column >= $columns} continue
        set left [expr {$first + $column * ($panelWidth + $gap)}]
        set right [expr {$left + $panelWidth}]
        set top [lindex $rowTops $row]
        set bottom [expr {$top + $plotHeight}]
        set zs [svg::scale $zmin $zmax $bottom $top]

        # The values: per ply {lower middle upper}, or the interlaminar
        # points; round-off against the panel's largest value set to 0.
        if {$keys eq "interlaminar"} {
            set zs_ [lmap p $interlaminar {lindex $p 0}]
            set values [lindex [clean [list [lmap p $interlaminar {lindex $p $component}]]] 0]
        } else {
            set values [clean [lmap ply $plies {
                lmap key $keys {lindex [dict get $ply $key] $component}
            }]]
        }
        set lo 0.0
        set hi 0.0
        foreach v [concat {*}$values] {
            if {[finite $v]} {
                set lo [expr {min($lo, $v)}]
                set hi [expr {max($hi, $v)}]
            }
        }
        # Allowables: {ply value label} that fit, and those that do not.
        set drawn {}
        if {$positive ne "" && [llength [dict get $opts -allowables]]} {
            set span [expr {$hi - $lo}]
            set fitLo [expr {$lo - $span}]
            set fitHi [expr {$hi + $span}]
            set p 0
            foreach allow [dict get $opts -allowables] {
                incr p
                foreach key [list $positive $negative] sign {1 -1} {
                    if {![dict exists $allow $key] || ![finite [dict get $allow $key]]
                            || [dict get $allow $key] <= 0} continue
                    set value [expr {$sign * [dict get $allow $key]}]
                    set label [expr {$sign > 0 ? $key : "\u2212$key"}]
                    if {$value >= $fitLo && $value <= $fitHi} {
                        lappend drawn [list $p $value $label]
                    } else {
                        dict set offScale $symbol "$label = [number $value]" 1
                    }
                }
            }
            foreach d $drawn {
                set lo [expr {min($lo, [lindex $d 1])}]
                set hi [expr {max($hi, [lindex $d 1])}]
            }
        }
        lassign [svg::ticks $lo $hi 4] xfirst xlast xstep
        set xs [svg::scale $xfirst $xlast $left $right]
        lappend body "<g class=\"plot\" data-panel=\"$name\" [svg::transformAttrs $xs $zs]>"
        # Failed plies first, under everything else.
        set p 0
        foreach ply $plies {
            incr p
            if {$p ni [dict get $opts -failed]} continue
            lassign [dict get $ply z] zlow zhigh
            set y0 [svg::at $zs $zhigh]
            lappend body [svg::el rect [list class failed-ply data-ply $p x [svg::px $left] \
                y [svg::px $y0] width [svg::px $panelWidth] \
                height [svg::px [expr {[svg::at $zs $zlow] - $y0}]]]]
        }
        set ztitle [expr {$column == 0 ? "z \[[dict get $units length]\] \u2191" : ""}]
        set zticks [expr {$column == 0 ? [svg::tickValues {*}[svg::ticks $zmin $zmax 6] $zmin $zmax] : {}}]
        lappend body [svg::axes $xs $zs [svg::tickValues $xfirst $xlast $xstep] $zticks \
            "" $ztitle]
        lappend body [svg::el text [list class panel-title x [svg::px $left] \
            y [svg::px [expr {$top - 10}]]] "$symbol \[$stress\]"]
        foreach ply $plies {
            lassign [dict get $ply z] zlow
            set y [svg::px [svg::at $zs $zlow]]
            lappend body [svg::el line [list class boundary x1 [svg::px $left] \
                x2 [svg::px $right] y1 $y y2 $y]]
        }
        if {$xfirst < 0 && $xlast > 0} {
            set x0 [svg::px [svg::at $xs 0.0]]
            lappend body [svg::el line [list class zero x1 $x0 x2 $x0 \
                y1 [svg::px $top] y2 [svg::px $bottom]]]
        }
        set labelled {}
        foreach d $drawn {
            lassign $d p value label
            lassign [dict get [lindex $plies $p-1] z] zlow zhigh
            set x [svg::px [svg::at $xs $value]]
            lappend body [svg::el line [list class allowable data-ply $p \
                data-quantity $name data-value [num $value] x1 $x x2 $x \
                y1 [svg::px [svg::at $zs $zhigh]] y2 [svg::px [svg::at $zs $zlow]]]]
            if {![dict exists $labelled $label]} {
                dict set labelled $label 1
                set anchor [expr {$value > 0 ? "end" : "start"}]
                set dx [expr {$value > 0 ? -3 : 3}]
                lappend body [svg::el text [list class allowable-label \
                    x [svg::px [expr {$x + $dx}]] y [svg::px [expr {$top + 12}]] \
                    text-anchor $anchor] $label]
            }
        }
        set style {stroke #1f5fa8 fill #1f5fa8}
        if {$keys eq "interlaminar"} {
            set points {}
            foreach v $values z $zs_ {
                if {[finite $v]} {
                    lappend points "[svg::px [svg::at $xs $v]],[svg::px [svg::at $zs $z]]"
                }
            }
            lappend body [svg::el polyline [list class interlaminar data-quantity $name \
                data-z [join [lmap z $zs_ {num $z}]] data-values [join [lmap v $values {num $v}]] \
                fill none stroke #1f5fa8 stroke-width 2 points [join $points]]]
        } else {
            set p 0
            foreach ply $plies plyValues $values {
                incr p
                lassign [dict get $ply z] zlow zhigh
                set zpos [list $zlow [expr {($zlow + $zhigh) / 2.0}] $zhigh]
                set points {}
                set dots {}
                foreach v $plyValues z $zpos {
                    if {[finite $v]} {
                        set xy [list [svg::px [svg::at $xs $v]] [svg::px [svg::at $zs $z]]]
                        lappend points [join $xy ,]
                        lappend dots [svg::el circle [list fill #1f5fa8 \
                            cx [lindex $xy 0] cy [lindex $xy 1] r 2.2]]
                    }
                }
                lappend body [svg::el polyline [list class profile data-ply $p \
                    data-quantity $name data-z [join [lmap z $zpos {num $z}]] \
                    data-values [join [lmap v $plyValues {num $v}]] \
                    fill none stroke #1f5fa8 stroke-width 2 points [join $points]]] {*}$dots
            }
        }
        lappend body </g>
        # Ply numbers and angles right of each row, thinned out when the
        # plies are too thin on the page for one label each.
        if {$column == $columns - 1} {
            set every [expr {max(1, int(ceil(13.0 * $n / $plotHeight)))}]
            set p 0
            foreach ply $plies {
                incr p
                if {($p - 1) % $every && $p ni [dict get $opts -failed]} continue
                lassign [dict get $ply z] zlow zhigh
                set y [expr {[svg::at $zs [expr {($zlow + $zhigh) / 2.0}]] + 4}]
                set failed [expr {$p in [dict get $opts -failed]}]
                lappend body [svg::el text [list class [expr {$failed ? "failed" : "ply-label"}] \
                    x [svg::px [expr {$right + 8}]] y [svg::px $y] data-ply $p] \
                    "$p: [angle [dict get $ply angle]]\u00b0[expr {$failed ? " \u2717" : ""}]"]
            }
        }
    }
    lappend body [svg::el text [list class subtitle x [svg::px $first] y 70] \
        "In ply axes (1 along the fibres)[expr {$columns == 4 ? "; interlaminar shear by equilibrium" : ""}]"]
    lappend body [svg::el text [list class subtitle x [svg::px $first] y 390] \
        "In laminate axes"]
    set notes [list \
        "Layer 1 (the lowest z) at the bottom; each ply drawn through its values at its lower face, middle and upper face." \
        "Dashed lines: ply boundaries.  Labels on the right: ply number and fibre angle."]
    if {[llength [dict get $opts -allowables]]} {
        lappend notes "Red dashes: the ply's strengths (Xt, \u2212Xc, Yt, \u2212Yc, \u00b1S12) where they fit the scale."
    }
    if {[dict size $offScale]} {
        set parts [lmap {symbol values} $offScale {
            string cat "$symbol: " [join [dict keys $values] ", "]
        }]
        lappend notes "Off the scale: [join $parts {; }]."
    }
    if {[llength [dict get $opts -failed]]} {
        lappend notes "Shaded, \u2717: plies that fail under these loads\
            (ply [join [dict get $opts -failed] {, }])."
    }
    lappend notes {*}[dict get $opts -notes]
    set y 716.0
    foreach note $notes {
        lappend body [svg::el text [list class note x 20 y [svg::px $y]] $note]
        set y [expr {$y + 16}]
    }
    svg::document profile $width [expr {int($y) + 2}] [dict get $opts -title] \
        "Stresses against z, one panel per component with its own scale, every ply" \
        [join $body \n]
}

# --- Reserve factors ----------------------------------------------------------

# The reserve factor of every ply by every criterion on a log scale, the
# failure line at 1: factors, a list of {ply criterion factor mode ?face?
# ?verdict? ?mos?} (as rate's factors), one per ply and criterion rated
# (ply from 1; a criterion may be any word, so that new criteria drop in).
# factor is a number > 0 (a dot at its value), 0 (the residual stresses
# alone fail the ply: a marker at the axis's left end), Inf (never fails: a
# marker at its right end) or a word such as nostrength (a hollow marker on
# the failure line); each marker is labelled with its word, never drawn as
# a number.  Layer 1 at the bottom, as in the profile; each criterion's
# lowest factor, its first ply to fail, is ringed.
# Options: -title, -subtitle, -notes; -angles (the ply angles, layer 1
# first: the rows, also of plies without factors, shown as not assessed).
proc ::laminate::report::ratings {factors args} {
    set opts [dict merge {-title "Reserve factors of the plies" -subtitle "" \
        -angles {} -notes {}} $args]
    set angles [dict get $opts -angles]
    set n [llength $angles]
    set criteria {}
    set byPly {}
    foreach f $factors {
        lassign $f ply criterion
        if {$criterion ni $criteria} {
            lappend criteria $criterion
        }
        set n [expr {max($n, $ply)}]
        dict lappend byPly $ply $f
    }
    # The lowest numeric factor of each criterion.
    set lowest {}
    set values {}
    foreach f $factors {
        lassign $f ply criterion factor
        if {[finite $factor]} {
            if {$factor > 0} {
                lappend values $factor
            }
            if {![dict exists $lowest $criterion] || $factor < [lindex [dict get $lowest $criterion] 0]} {
                dict set lowest $criterion [list $factor $ply]
            }
        }
    }
    lappend values 1.0
    set fmin [tcl::mathfunc::min {*}$values]
    set fmax [tcl::mathfunc::max {*}$values]
    lassign [svg::logRange [expr {max(1e-3, $fmin / 1.2)}] [expr {min(1e3, $fmax * 1.2)}]] lo hi

    set nc [expr {max(1, [llength $criteria])}]
    set sub [expr {$n * $nc > 120 ? 5.0 : 14.0}]
    set labels [expr {$sub > 10}]
    set rowHeight [expr {$nc * $sub + 8}]
    set left 130.0
    set right 690.0
    set top 96.0
    set bottom [expr {$top + $n * $rowHeight}]
    set xs [svg::scale $lo $hi $left $right 1]
    set ys [svg::scale 0.0 $n $bottom $top]
    set body {}
    lappend body [svg::el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [svg::el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    set entries {}
    foreach c $criteria {
        set style [criterionStyle $c $criteria]
        lappend entries [list [criterionTitle $c] \
            [list stroke [dict get $style stroke] stroke-width 8 stroke-linecap round \
                stroke-dasharray {0.1 30}]]
    }
    lappend entries [list "failure (factor 1)" {stroke #b00020 stroke-width 1.5 stroke-dasharray {6 3}}]
    lappend body [svg::legend 40 66 150 $entries]
    lappend body "<g class=\"plot\" [svg::transformAttrs $xs $ys]>"
    lappend body [svg::axes $xs $ys [svg::logTicks $lo $hi] {} \
        "reserve factor (log scale): the load multiple at which the ply fails" ""]
    set x1 [svg::px [svg::at $xs 1.0]]
    for {set p 1} {$p <= $n} {incr p} {
        set rowTop [svg::at $ys $p]
        set rowBottom [svg::at $ys [expr {$p - 1}]]
        if {$p > 1} {
            lappend body [svg::el line [list class boundary x1 [svg::px $left] \
                x2 [svg::px $right] y1 [svg::px $rowBottom] y2 [svg::px $rowBottom]]]
        }
        set entries [expr {[dict exists $byPly $p] ? [dict get $byPly $p] : {}}]
        set failed 0
        foreach f $entries {
            lassign $f - criterion factor mode face verdict mos
            set i [lsearch -exact $criteria $criterion]
            set y [expr {$rowTop + 4 + ($i + 0.5) * $sub}]
            set style [criterionStyle $criterion $criteria]
            set colour [dict get $style stroke]
            set word [ratingWord $factor $verdict]
            set attrs [list class [expr {$word eq "" ? "rating" : "rating-word"}] \
                data-ply $p data-criterion $criterion data-factor [num $factor] data-mode $mode]
            foreach {key value} [list data-face $face data-verdict $verdict data-mos $mos] {
                if {$value ne ""} {
                    lappend attrs $key [num $value]
                }
            }
            if {[finite $factor] && $factor < 1} {
                set failed 1
            }
            if {$word ne ""} {
                # A word: a labelled marker at the left end (0), the right
                # end (never) or on the failure line (no factor at all).
                set at [expr {$word eq "never" ? $right : [finite $factor] ? $left : [svg::at $xs 1.0]}]
                set size [expr {$sub > 10 ? 4.5 : 2.5}]
                set fill [expr {[finite $factor] ? "#b00020" : $word eq "never" ? $colour : "white"}]
                lappend body [svg::el rect [dict merge $attrs [list \
                    x [svg::px [expr {$at - $size}]] y [svg::px [expr {$y - $size}]] \
                    width [svg::px [expr {2 * $size}]] height [svg::px [expr {2 * $size}]] \
                    fill $fill stroke $colour stroke-width 1.5]]]
                if {[finite $factor]} {
                    lappend body {*}[ringIfLowest $lowest $criterion $p $factor $at $y $colour]
                }
                if {$labels} {
                    set text $word
                    if {$mode ni [list "" none $criterion]} {
                        append text " $mode"
                    }
                    set after [expr {$at < $right - 90}]
                    lappend body [svg::el text [list class mode data-ply $p data-criterion $criterion \
                        x [svg::px [expr {$after ? $at + 9 : $at - 9}]] y [svg::px [expr {$y + 3.5}]] \
                        text-anchor [expr {$after ? "start" : "end"}]] $text]
                }
                continue
            }
            set shown [expr {min(max($factor, $lo), $hi)}]
            set x [svg::at $xs $shown]
            lappend body [svg::el line [list x1 $x1 x2 [svg::px $x] y1 [svg::px $y] y2 [svg::px $y] \
                stroke $colour stroke-width [expr {$sub > 10 ? 3 : 2}] stroke-opacity 0.55]]
            lappend body [svg::el circle [dict merge $attrs [list cx [svg::px $x] cy [svg::px $y] \
                r [expr {$sub > 10 ? 4.5 : 2.5}] fill [expr {$factor < 1 ? "#b00020" : $colour}] \
                stroke white stroke-width 1]]]
            lappend body {*}[ringIfLowest $lowest $criterion $p $factor $x $y $colour]
            if {$labels} {
                set text [number $factor]
                if {$factor > $hi || $factor < $lo} {
                    set text [expr {$factor > $hi ? "$text \u2192" : "\u2190 $text"}]
                }
                if {$mode ne "" && $mode ne $criterion} {
                    append text " $mode"
                }
                set after [expr {$x < $right - 90}]
                lappend body [svg::el text [list class mode data-ply $p data-criterion $criterion \
                    x [svg::px [expr {$after ? $x + 9 : $x - 9}]] y [svg::px [expr {$y + 3.5}]] \
                    text-anchor [expr {$after ? "start" : "end"}]] $text]
            }
        }
        set angle [lindex $angles $p-1]
        set label "ply $p"
        if {$angle ne ""} {
            append label "  [angle $angle]\u00b0"
        }
        if {![llength $entries]} {
            append label " (not assessed)"
        }
        lappend body [svg::el text [list class [expr {$failed ? "failed" : "tick"}] data-ply $p \
            x [svg::px [expr {$left - 8}]] y [svg::px [expr {($rowTop + $rowBottom) / 2 + 4}]] \
            text-anchor end] $label]
    }
    lappend body [svg::el line [list class failure-line data-value 1 x1 $x1 x2 $x1 \
        y1 [svg::px $top] y2 [svg::px $bottom] stroke #b00020 stroke-width 1.5 \
        stroke-dasharray {6 3}]]
    lappend body </g>
    set notes [list \
        "Reserve factor: the multiple of the applied loads at which the ply first fails by the criterion;" \
        "below 1 (red) it fails under the loads themselves.  Beside each point: its value and the failure mode." \
        "Ringed: each criterion's lowest factor, the laminate's first-ply failure.  Layer 1 at the bottom." \
        "Squares: never (right end: no failure along the load path), 0 residual (left end: the residual" \
        "stresses alone fail the ply), a word on the failure line (the criterion cannot rate the ply)."]
    lappend notes {*}[dict get $opts -notes]
    set y [expr {$bottom + 62}]
    foreach note $notes {
        lappend body [svg::el text [list class note x 20 y [svg::px $y]] $note]
        set y [expr {$y + 16}]
    }
    svg::document ratings 800 [expr {int($y) + 2}] [dict get $opts -title] \
        "Reserve factor of every ply by each criterion, log scale, failure at 1" \
        [join $body \n]
}

# The word a ratings marker is labelled with, or "" for a factor drawn at
# its value: "never" for Inf, the verdict (or "0") for a factor of 0, the
# factor itself when it is a word.
proc ::laminate::report::ratingWord {factor verdict} {
    if {![finite $factor]} {
        if {[string is double -strict $factor] && $factor == Inf} {
            return never
        }
        return $factor
    }
    if {$factor == 0} {
        return [expr {$verdict eq "residual" ? "0 residual" : "0"}]
    }
    return ""
}

# The ring around a criterion's lowest factor (at pixel x, y), as a list of
# one element, or an empty list for any other factor.
proc ::laminate::report::ringIfLowest {lowest criterion ply factor x y colour} {
    if {![dict exists $lowest $criterion]} {
        return {}
    }
    lassign [dict get $lowest $criterion] value at
    if {$at != $ply || $value != $factor} {
        return {}
    }
    list [svg::el circle [list class critical data-ply $ply data-criterion $criterion \
        cx [svg::px $x] cy [svg::px $y] r 7.5 fill none stroke $colour stroke-width 1.5]]
}

# One first-ply-failure result in words: laminate::rate's (or
# laminate::fpf's) dict of factor, ply, face, mode, and for a catalogue
# criterion verdict and mos.  args go to number.
proc ::laminate::report::fpfSentence {f args} {
    set factor [dict get $f factor]
    set ply [dict get $f ply]
    set face [dict get $f face]
    set mode [dict get $f mode]
    set verdict [expr {[dict exists $f verdict] ? [dict get $f verdict] : ""}]
    if {![string is double -strict $factor]} {
        if {$ply > 0} {
            return "no factor: ply $ply cannot be rated ($factor)"
        }
        return "no factor: the criterion answers \"$factor\""
    }
    if {$ply == 0} {
        return "no ply fails under any multiple of these loads"
    }
    set how "$face face[expr {$mode in {tsaiwu none} ? "" : ", mode $mode"}]"
    if {$factor == 0} {
        return "ply $ply fails at once ($how)[expr {$verdict eq "residual"
            ? ": the residual stresses alone fail it" : ""}]"
    }
    set text "first failure at [number $factor {*}$args] times the loads (ply $ply, $how):\
        [expr {$factor < 1 ? "fails below the applied loads" : "holds the applied loads"}]"
    if {[dict exists $f mos] && [finite [dict get $f mos]]} {
        append text "; MoS [number [dict get $f mos] {*}$args]"
    }
    return $text
}

# --- The failure envelope -------------------------------------------------------

# The first-ply-failure envelope in the plane of load components I and J
# (from 1, or their names): one closed curve per criterion from its points (curve below, or
# laminate::envelope), all other loads zero along each ray.  A point that
# is not finite (a ray that never fails) leaves the curve open there.  The
# load case is drawn only when it lies in the plane (its other six loads
# zero); otherwise a note says which loads keep it out.  The scale covers
# the curves; should a few points lie far beyond the rest (rays close to
# one that never fails), it stops at three times the 90th percentile of the
# magnitudes and the curves are cut at the frame.
# curves: dict criterion -> list of {x y}.  Options: -title, -subtitle,
# -units, -notes.
proc ::laminate::report::envelope {curves plane loads args} {
    set opts [dict merge [list -title "First-ply failure envelope" -subtitle "" \
        -units [units "" ""] -notes {}] $args]
    lassign [plane $plane] i j
    set names [loadNames]
    set outside {}
    set k 0
    foreach v $loads name $names {
        incr k
        if {$k != $i && $k != $j && abs($v) > 1e-6} {
            lappend outside "$name = [number $v]"
        }
    }
    set inPlane [expr {![llength $outside]}]
    set lx [lindex $loads $i-1]
    set ly [lindex $loads $j-1]
    set xsAll {}
    set ysAll {}
    dict for {c points} $curves {
        foreach p $points {
            lassign $p x y
            if {[finite $x] && [finite $y]} {
                lappend xsAll $x
                lappend ysAll $y
            }
        }
    }
    lassign [robustRange $xsAll] xlo xhi
    lassign [robustRange $ysAll] ylo yhi
    if {$inPlane} {
        set xlo [expr {min($xlo, $lx)}]
        set xhi [expr {max($xhi, $lx)}]
        set ylo [expr {min($ylo, $ly)}]
        set yhi [expr {max($yhi, $ly)}]
    }
    lassign [svg::ticks $xlo $xhi 6] xfirst xlast xstep
    lassign [svg::ticks $ylo $yhi 6] yfirst ylast ystep
    set left 100.0
    set right 580.0
    set top 70.0
    set bottom 550.0
    set xs [svg::scale $xfirst $xlast $left $right]
    set ys [svg::scale $yfirst $ylast $bottom $top]
    set units [dict get $opts -units]
    set body {}
    lappend body [svg::el text {class title x 20 y 24} [dict get $opts -title]]
    lappend body [svg::el text {class subtitle x 20 y 42} [dict get $opts -subtitle]]
    lappend body "<g class=\"plot\" [svg::transformAttrs $xs $ys]>"
    lappend body [svg::axes $xs $ys [svg::tickValues $xfirst $xlast $xstep] \
        [svg::tickValues $yfirst $ylast $ystep] [loadLabel $i $units] [loadLabel $j $units]]
    if {$xfirst < 0 && $xlast > 0} {
        set x0 [svg::px [svg::at $xs 0.0]]
        lappend body [svg::el line [list class zero x1 $x0 x2 $x0 y1 [svg::px $top] y2 [svg::px $bottom]]]
    }
    if {$yfirst < 0 && $ylast > 0} {
        set y0 [svg::px [svg::at $ys 0.0]]
        lappend body [svg::el line [list class zero x1 [svg::px $left] x2 [svg::px $right] y1 $y0 y2 $y0]]
    }
    # The curves inside a nested viewport of the plot area, which cuts them
    # at the frame (no reference by id, so nothing for a page's policy).
    set w [expr {$right - $left}]
    set h [expr {$bottom - $top}]
    lappend body [format {<svg class="clip" x="%s" y="%s" width="%s" height="%s" viewBox="%s %s %s %s" overflow="hidden">} \
        [svg::px $left] [svg::px $top] [svg::px $w] [svg::px $h] \
        [svg::px $left] [svg::px $top] [svg::px $w] [svg::px $h]]
    set entries {}
    set all [dict keys $curves]
    dict for {c points} $curves {
        set style [dict merge [criterionStyle $c $all] {fill none stroke-width 2}]
        set label [criterionTitle $c]
        lappend body "<g class=\"envelope\" data-criterion=\"[svg::esc $c]\"\
            data-points=\"[svg::esc [join [lmap p $points {join [lmap v $p {num $v}] ,}]]]\">"
        set pieces [finiteRuns $points]
        foreach piece $pieces {
            set drawn [join [lmap p $piece {
                lassign $p x y
                string cat [svg::px [svg::at $xs $x]] , [svg::px [svg::at $ys $y]]
            }]]
            set tag [expr {[llength $pieces] == 1 && [llength $piece] == [llength $points]
                ? "polygon" : "polyline"}]
            lappend body [svg::el $tag [dict merge $style [list class curve \
                data-criterion $c points $drawn]]]
        }
        lappend body </g>
        if {![llength $pieces]} {
            append label " (never fails)"
        } else {
            append label " ([llength $points] points)"
        }
        lappend entries [list $label [dict remove $style fill]]
    }
    lappend body </svg>
    if {$inPlane} {
        set cx [svg::px [svg::at $xs $lx]]
        set cy [svg::px [svg::at $ys $ly]]
        lappend body [svg::el circle [list class load data-x [num $lx] data-y [num $ly] \
            cx $cx cy $cy r 5 fill #b00020 stroke white stroke-width 1.5]]
        lappend entries [list "load case ([number $lx], [number $ly])" \
            {stroke #b00020 stroke-width 8 stroke-linecap round stroke-dasharray {0.1 30}}]
    }
    lappend body </g>
    set y 90
    foreach entry $entries {
        lappend body [svg::legend 600 $y 0 [list $entry]]
        incr y 22
    }
    set notes [list "Along each ray from 0 the" "other six loads are zero."]
    if {!$inPlane} {
        lappend notes "" "The load case is not drawn:" \
            "it has loads outside the" "[lindex $names $i-1]\u2013[lindex $names $j-1] plane:" \
            {*}[lmap o $outside {string cat "  " $o}]
    }
    foreach note $notes {
        lappend body [svg::el text [list class note data-outside [expr {!$inPlane}] \
            x 600 y [expr {$y + 10}]] $note]
        incr y 16
    }
    set y [expr {max(600, $y + 10)}]
    foreach note [dict get $opts -notes] {
        lappend body [svg::el text [list class note x 20 y $y] $note]
        incr y 16
    }
    svg::document envelope 800 [expr {$y + 2}] [dict get $opts -title] \
        "First-ply failure envelope per criterion in the plane of two load components" \
        [join $body \n]
}

# The range {lo hi} of a set of values together with 0: their extremes, or
# when some lie beyond three times the 90th percentile of the magnitudes,
# the values within that bound.
proc ::laminate::report::robustRange {values} {
    if {![llength $values]} {
        return {0.0 0.0}
    }
    set magnitudes [lsort -real [lmap v $values {expr {abs($v)}}]]
    set bound [expr {3 * [lindex $magnitudes [expr {int(0.9 * ([llength $magnitudes] - 1))}]]}]
    set lo 0.0
    set hi 0.0
    foreach v $values {
        if {$bound > 0 && abs($v) > $bound} continue
        set lo [expr {min($lo, $v)}]
        set hi [expr {max($hi, $v)}]
    }
    list $lo $hi
}

# The runs of consecutive finite points of a closed curve, each as a list
# of points; a run that wraps past the end is joined, and a curve with no
# point that is not finite is one run of all its points.
proc ::laminate::report::finiteRuns {points} {
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
