# envelope.tcl -- first-ply failure envelopes refined until they are
# smooth: more rays where the curve bends, few where it is straight.

namespace eval ::laminate::report {
    # The refinement's defaults: the largest distance allowed between the
    # drawn chords and the curve (see curve), the rays of the first pass,
    # how many times a ray interval may be halved, and the most points.
    variable curveDefaults {-tolerance 0.002 -rays 72 -depth 10 -maxpoints 4000}
}

# The options curve passes on to laminate::envelope and laminate::fpf: the
# temperature and moisture changes held along every ray, and the factor of
# safety every point is divided by.
namespace eval ::laminate::report {
    variable curveLoadOptions {-dT -dM -fos}
}

# The first-ply failure envelope of the laminate `name` under `criterion`
# in the plane of load components I and J (plane {I J}, from 1, or their
# names as "N1 N12"), all other
# loads zero: a list of points {x y} in order around the origin, as
# laminate::envelope gives them, but as many as the curve needs.
#
# A first pass takes laminate::envelope's -rays rays and the envelope's
# extent ex, ey (its largest |x| and |y|).  Lengths are then measured with
# x divided by ex and y by ey, so both axes count alike whatever their
# units, and rays are spread evenly in those units.  Between two
# neighbouring points the ray halfway is rated with laminate::fpf; when its
# point lies farther than half of -tolerance from the chord between the
# two, it is kept and both halves are looked at again.  So no chord strays
# more than about -tolerance from the curve (the midpoint's distance is a
# little less than the largest one): at the default 0.002 and the report's
# 480-pixel plot, half a pixel.  An interval is halved at most -depth times
# and the curve holds at most -maxpoints points.
#
# A ray that never fails gives a point with Inf or -Inf coordinates (0
# where the ray has no component), as laminate::envelope does; one whose
# factor the criterion answers with a word gives that word in both
# coordinates.  Neither is refined next to.
#
# -dT, -dM and -fos go to laminate::envelope and laminate::fpf as they
# are (catalogue criteria only with -dT/-dM): the envelope of the
# mechanical loads with the residual stresses held, each point divided by
# the factor of safety.
proc ::laminate::report::curve {name plane criterion args} {
    variable curveDefaults
    variable curveLoadOptions
    if {[llength $args] % 2} {
        return -code error -errorcode {LAMINATE OPTION} \
            "option \"[lindex $args end]\" needs a value"
    }
    set loadOpts {}
    foreach {key value} $args {
        if {$key in $curveLoadOptions} {
            dict set loadOpts $key $value
            dict unset args $key
        }
    }
    set opts [dict merge $curveDefaults $args]
    dict for {key value} $opts {
        if {![dict exists $curveDefaults $key]} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "bad option \"$key\": must be [join [concat [dict keys $curveDefaults] \
                    $curveLoadOptions] {, }]"
        }
        if {![string is double -strict $value] || $value <= 0
                || ($key ne "-tolerance" && ![string is integer -strict $value])} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "$key: expected a positive [expr {$key eq "-tolerance" ? "number" : "integer"}], got \"$value\""
        }
    }
    set tolerance [dict get $opts -tolerance]
    set plane [plane $plane]
    set coarse [laminate::envelope $name -plane $plane -criterion $criterion \
        -points [dict get $opts -rays] {*}$loadOpts]
    set ex 0.0
    set ey 0.0
    foreach p $coarse {
        lassign $p x y
        if {[finite $x] && [finite $y]} {
            set ex [expr {max($ex, abs($x))}]
            set ey [expr {max($ey, abs($y))}]
        }
    }
    if {$ex == 0 || $ey == 0} {
        # No extent to measure by (no ray fails, or the curve is flat on one
        # axis): the first pass is all there is to draw.
        return $coarse
    }
    # The samples {phi x y}, phi the angle of the ray in scaled units.
    set samples {}
    set n [llength $coarse]
    set k 0
    foreach p $coarse {
        set theta [expr {2 * acos(-1) * $k / $n}]
        lappend samples [list [expr {atan2(sin($theta) / $ey, cos($theta) / $ex)}] {*}$p]
        incr k
    }
    set samples [lsort -real -index 0 $samples]
    set step [expr {2 * acos(-1) / $n / 2.0 ** [dict get $opts -depth]}]
    set budget [expr {[dict get $opts -maxpoints] - $n}]
    set refined {}
    for {set k 0} {$k < $n} {incr k} {
        set a [lindex $samples $k]
        set b [lindex $samples [expr {($k + 1) % $n}]]
        if {$k == $n - 1} {
            lset b 0 [expr {[lindex $b 0] + 2 * acos(-1)}]
        }
        lappend refined $a
        lappend refined {*}[refine $name $plane $criterion $ex $ey $a $b $tolerance $step budget $loadOpts]
    }
    lmap s $refined {lrange $s 1 2}
}

# The samples strictly between a and b ({phi x y}) that keep the chords
# within tolerance of the curve; budget (a variable) counts the points
# still allowed.
proc ::laminate::report::refine {name plane criterion ex ey a b tolerance step budgetVar loadOpts} {
    upvar 1 $budgetVar budget
    lassign $a pa xa ya
    lassign $b pb xb yb
    if {$budget <= 0 || $pb - $pa < 2 * $step
            || ![finite $xa] || ![finite $ya] || ![finite $xb] || ![finite $yb]} {
        return {}
    }
    set m [ray $name $plane $criterion $ex $ey [expr {($pa + $pb) / 2.0}] $loadOpts]
    incr budget -1
    lassign $m - xm ym
    if {[finite $xm] && [finite $ym]} {
        # The distance from m to the chord ab, in scaled units.
        set ux [expr {($xb - $xa) / $ex}]
        set uy [expr {($yb - $ya) / $ey}]
        set vx [expr {($xm - $xa) / $ex}]
        set vy [expr {($ym - $ya) / $ey}]
        set length [expr {hypot($ux, $uy)}]
        set distance [expr {$length > 0 ? abs($ux * $vy - $uy * $vx) / $length : hypot($vx, $vy)}]
        if {$distance <= $tolerance / 2} {
            return {}
        }
    }
    concat [refine $name $plane $criterion $ex $ey $a $m $tolerance $step budget $loadOpts] \
        [list $m] \
        [refine $name $plane $criterion $ex $ey $m $b $tolerance $step budget $loadOpts]
}

# The sample {phi x y} of the ray at angle phi in scaled units: the loads
# (ex cos phi, ey sin phi) on components I and J times the first-ply
# failure factor, divided by the factor of safety of loadOpts (-fos) as
# laminate::envelope divides its points.
proc ::laminate::report::ray {name plane criterion ex ey phi {loadOpts {}}} {
    lassign $plane i j
    set dx [expr {$ex * cos($phi)}]
    set dy [expr {$ey * sin($phi)}]
    set loads {0 0 0 0 0 0 0 0}
    lset loads $i-1 $dx
    lset loads $j-1 $dy
    set factor [dict get [laminate::fpf $name $loads -criterion $criterion {*}$loadOpts] \
        $criterion factor]
    if {![string is double -strict $factor]} {
        return [list $phi $factor $factor]
    }
    if {[dict exists $loadOpts -fos]} {
        set factor [expr {$factor / double([dict get $loadOpts -fos])}]
    }
    if {$factor == Inf} {
        return [list $phi [infinite $dx] [infinite $dy]]
    }
    list $phi [expr {$factor * $dx}] [expr {$factor * $dy}]
}

# A coordinate of a ray that never fails: Inf with the component's sign,
# 0 where the ray has none.
proc ::laminate::report::infinite {component} {
    if {$component == 0} {
        return 0.0
    }
    expr {$component > 0 ? "Inf" : "-Inf"}
}
