# svg.tcl -- the small drawing kit the report's pictures are made with:
# escaping, round axis ticks (linear and logarithmic), axes, legends and
# the SVG document frame.  Nothing here knows about laminates.
#
# Every picture keeps the numbers it plots in data-* attributes, and every
# plot area states its transform: a <g class="plot"> carries
#   data-x-range="XMIN XMAX" data-px-range="LEFT RIGHT"
#   data-y-range="YMIN YMAX" data-py-range="P(YMIN) P(YMAX)"
# so that pixel = P0 + (value - MIN) * (P1 - P0) / (MAX - MIN) on each axis,
# and a reader can map every drawn point back to the value it shows.

namespace eval ::laminate::report::svg {
    namespace path ::laminate::report
}

# Text for an XML text node or a quoted attribute value.  Characters XML
# does not allow at all (C0 controls other than tab and newline) become
# U+FFFD, so no input can make the document unreadable.
proc ::laminate::report::svg::esc {text} {
    regsub -all {[\x00-\x08\x0b\x0c\x0e-\x1f]} $text \ufffd text
    string map {& &amp; < &lt; > &gt; \" &quot; ' &#39;} $text
}

# A pixel coordinate: two decimals.
proc ::laminate::report::svg::px {value} {
    format %.2f $value
}

# Round tick positions covering [lo, hi]: a step of 1, 2 or 5 times a power
# of ten giving about `count` intervals.  Returns {first last step}; the
# axis should run from first to last, so that both ends are ticks.
proc ::laminate::report::svg::ticks {lo hi {count 6}} {
    if {$hi < $lo} {
        lassign [list $lo $hi] hi lo
    }
    if {$hi - $lo <= 1e-300 * max(1.0, abs($hi))} {
        # A single value: a range of one round unit around it.
        set unit [expr {$lo == 0 ? 1.0 : 10.0 ** floor(log10(abs($lo)))}]
        set lo [expr {$lo - $unit}]
        set hi [expr {$hi + $unit}]
    }
    set raw [expr {($hi - $lo) / double($count)}]
    set power [expr {10.0 ** floor(log10($raw))}]
    foreach factor {1 2 5 10} {
        set step [expr {$factor * $power}]
        if {$step >= $raw * 0.999} {
            break
        }
    }
    set first [expr {floor($lo / $step + 1e-9) * $step}]
    set last [expr {ceil($hi / $step - 1e-9) * $step}]
    list $first $last $step
}

# The ticks {value label ...} from {first last step}, only those within
# [lo, hi] when given.
proc ::laminate::report::svg::tickValues {first last step {lo -Inf} {hi Inf}} {
    set n [expr {int(round(($last - $first) / $step))}]
    set decimals [expr {max(0, -int(floor(log10($step) + 1e-9)))}]
    set values {}
    for {set i 0} {$i <= $n} {incr i} {
        set v [expr {$first + $i * $step}]
        if {abs($v) < 1e-9 * $step} {
            set v 0.0
        }
        if {$v < $lo - 1e-9 * $step || $v > $hi + 1e-9 * $step} {
            continue
        }
        lappend values $v [tickLabel $v $step $decimals]
    }
    return $values
}

proc ::laminate::report::svg::tickLabel {value step decimals} {
    if {$value == 0} {
        return 0
    }
    if {abs($value) >= 1e6 || $step < 1e-4} {
        set text [format %g $value]
    } else {
        set text [format %.${decimals}f $value]
    }
    string map {- \u2212} $text
}

# A map from values to pixels: the dict {lo hi p0 p1 log} sends lo to pixel
# p0 and hi to p1, linearly, or linearly in log10 of the value when log is
# 1 (lo and hi then > 0).
proc ::laminate::report::svg::scale {lo hi p0 p1 {log 0}} {
    dict create lo $lo hi $hi p0 $p0 p1 $p1 log $log
}

proc ::laminate::report::svg::at {scale value} {
    dict with scale {
        if {$log} {
            return [expr {$p0 + (log10($value) - log10($lo)) * ($p1 - $p0)
                / (log10($hi) - log10($lo))}]
        }
        expr {$p0 + ($value - $lo) * ($p1 - $p0) / ($hi - $lo)}
    }
}

# The attributes that state the transform of a plot area; an axis in log10
# adds data-x-scale="log" (or data-y-scale).
proc ::laminate::report::svg::transformAttrs {xs ys} {
    set out [format {data-x-range="%s %s" data-px-range="%s %s"\
        data-y-range="%s %s" data-py-range="%s %s"} \
        [num [dict get $xs lo]] [num [dict get $xs hi]] \
        [px [dict get $xs p0]] [px [dict get $xs p1]] \
        [num [dict get $ys lo]] [num [dict get $ys hi]] \
        [px [dict get $ys p0]] [px [dict get $ys p1]]]
    foreach axis {x y} s [list $xs $ys] {
        if {[dict get $s log]} {
            append out " data-$axis-scale=\"log\""
        }
    }
    return $out
}

# The range of a log10 axis covering [lo, hi] (both > 0), its ends at 1, 2
# or 5 times a power of ten.
proc ::laminate::report::svg::logRange {lo hi} {
    set e [expr {floor(log10($lo))}]
    set from [expr {10.0 ** $e}]
    foreach m {5 2 1} {
        if {$m * 10.0 ** $e <= $lo * (1 + 1e-12)} {
            set from [expr {$m * 10.0 ** $e}]
            break
        }
    }
    set e [expr {ceil(log10($hi))}]
    set to [expr {10.0 ** $e}]
    foreach m {0.2 0.5 1} {
        if {$m * 10.0 ** $e >= $hi * (1 - 1e-12)} {
            set to [expr {$m * 10.0 ** $e}]
            break
        }
    }
    list $from $to
}

# Ticks of a log10 axis from lo to hi: {value label ...} at 1, 2 and 5
# times each power of ten when the axis spans at most three decades, at the
# powers of ten alone otherwise.
proc ::laminate::report::svg::logTicks {lo hi} {
    set decades [expr {log10($hi / $lo)}]
    set mantissas [expr {$decades <= 3 ? {1 2 5} : {1}}]
    set values {}
    for {set e [expr {int(floor(log10($lo)))}]} {$e <= int(ceil(log10($hi)))} {incr e} {
        foreach m $mantissas {
            set v [expr {$m * 10.0 ** $e}]
            if {$v < $lo * (1 - 1e-9) || $v > $hi * (1 + 1e-9)} continue
            lappend values $v [string map {- \u2212} [format %g $v]]
        }
    }
    return $values
}

# One element: tag, a dict of attributes, optional text content (escaped).
proc ::laminate::report::svg::el {tag attrs {text ""}} {
    set out "<$tag"
    foreach {name value} $attrs {
        append out " $name=\"[esc $value]\""
    }
    if {$text eq ""} {
        return "$out/>"
    }
    return "$out>[esc $text]</$tag>"
}

# Axes of a plot area: frame, grid lines and tick labels at the ticks of
# both scales, and the axis titles.  xticks/yticks as from tickValues.
proc ::laminate::report::svg::axes {xs ys xticks yticks xtitle ytitle} {
    set left [dict get $xs p0]
    set right [dict get $xs p1]
    set top [expr {min([dict get $ys p0], [dict get $ys p1])}]
    set bottom [expr {max([dict get $ys p0], [dict get $ys p1])}]
    set out {}
    foreach {v label} $xticks {
        set x [px [at $xs $v]]
        lappend out [el line [list class grid x1 $x x2 $x y1 [px $top] y2 [px $bottom]]]
        lappend out [el text [list class tick x $x y [px [expr {$bottom + 16}]] \
            text-anchor middle] $label]
    }
    foreach {v label} $yticks {
        set y [px [at $ys $v]]
        lappend out [el line [list class grid x1 [px $left] x2 [px $right] y1 $y y2 $y]]
        lappend out [el text [list class tick x [px [expr {$left - 6}]] \
            y [px [expr {$y + 4}]] text-anchor end] $label]
    }
    lappend out [el rect [list class frame x [px $left] y [px $top] \
        width [px [expr {$right - $left}]] height [px [expr {$bottom - $top}]]]]
    if {$xtitle ne ""} {
        lappend out [el text [list class axis-title x [px [expr {($left + $right) / 2.0}]] \
            y [px [expr {$bottom + 36}]] text-anchor middle] $xtitle]
    }
    if {$ytitle ne ""} {
        set yt [px [expr {($top + $bottom) / 2.0}]]
        set xt [px [expr {$left - 52}]]
        lappend out [el text [list class axis-title x $xt y $yt text-anchor middle \
            transform "rotate(-90 $xt $yt)"] $ytitle]
    }
    join $out \n
}

# A legend: entries of {label style-attributes kind} (kind line: a short
# line sample, box: a filled square), from (x, y) to the right, a row of
# `step` pixels an entry.
proc ::laminate::report::svg::legend {x y step entries} {
    set out [list [format {<g class="legend">}]]
    foreach entry $entries {
        lassign $entry label attrs kind
        if {$kind ne "box"} {
            lappend out [el line [dict merge [list x1 [px $x] x2 [px [expr {$x + 26}]] \
                y1 [px $y] y2 [px $y]] $attrs]]
        } else {
            lappend out [el rect [dict merge [list x [px $x] y [px [expr {$y - 6}]] \
                width 14 height 12] $attrs]]
        }
        lappend out [el text [list x [px [expr {$x + 32}]] y [px [expr {$y + 4}]]] $label]
        set x [expr {$x + $step}]
    }
    lappend out </g>
    join $out \n
}

# The SVG document: the root element with its size, a title and a
# description (for screen readers and file browsers), a style sheet and the
# body.  class names a picture kind for readers.
proc ::laminate::report::svg::document {kind width height title description body} {
    # Every rule starts with "svg ": inline in an HTML page, the style sheet
    # applies to the whole page, and must not touch its tables.
    set style {
svg text { font-family: "DejaVu Sans", Arial, Helvetica, sans-serif; font-size: 13px; fill: #222; }
svg .title { font-size: 16px; font-weight: bold; }
svg .subtitle, svg .note { font-size: 12px; fill: #555; }
svg .tick { font-size: 11px; fill: #444; }
svg .axis-title { font-size: 13px; }
svg .grid { stroke: #e3e3e3; stroke-width: 1; }
svg .frame { fill: none; stroke: #888; stroke-width: 1; }
svg .zero { stroke: #888; stroke-width: 1; }
svg .boundary { stroke: #999; stroke-width: 1; stroke-dasharray: 4 3; }
svg .ply-label { font-size: 11px; fill: #333; }
svg .failed { fill: #b00020; font-weight: bold; }
svg .panel-title { font-size: 13px; font-weight: bold; }
svg .allowable { stroke: #b00020; stroke-width: 1.5; stroke-dasharray: 5 3; }
svg .allowable-label { font-size: 10px; fill: #b00020; }
svg .failed-ply { fill: #fde8e8; }
svg .mode { font-size: 10px; fill: #333; }
}
    set out "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    append out [format {<svg xmlns="http://www.w3.org/2000/svg" class="%s" width="%d" height="%d" viewBox="0 0 %d %d">} \
        [esc $kind] $width $height $width $height] \n
    append out "<title>[esc $title]</title>\n<desc>[esc $description]</desc>\n"
    append out "<style>$style</style>\n"
    append out [el rect [list x 0 y 0 width $width height $height fill white]] \n
    append out $body \n </svg> \n
}

# The SVG text without its XML declaration, to be put inline in HTML.
proc ::laminate::report::svg::inline {svg} {
    regsub {^<\?xml[^>]*\?>\s*} $svg {} svg
    return $svg
}
