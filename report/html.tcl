# html.tcl -- the report as one self-contained HTML page: the laminate
# summary, A/B/D, the ply tables, the reserve factors, the first-ply
# failure summary and the pictures inline.  No script, no file or network
# reference: the page's security policy forbids every fetch, so a browser
# shows it whole or complains in its console.

namespace eval ::laminate::report::html {
    namespace path ::laminate::report
}

# The page of a laminate (a description from define) rated under one load
# case (a rating from rate), with pictures, a list of {caption svg} (from
# pictures, or any SVG text).  -title sets the page's title.
proc ::laminate::report::page {info rating pictures args} {
    set opts [dict merge [list -title "Laminate report: [dict get $info source]"] $args]
    set esc ::laminate::report::svg::esc
    set units [units {*}[dict get $info units]]
    set loads [dict get $rating loads]
    set evaluation [dict get $rating evaluation]
    set abd [dict get $rating abd]
    set plies [dict get $evaluation plies]
    set title [dict get $opts -title]
    set out {}
    lappend out {<!DOCTYPE html>} {<html lang="en">} <head> {<meta charset="utf-8"/>}
    lappend out {<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'"/>}
    lappend out "<title>[$esc $title]</title>" "<style>[html::stylesheet]</style>" </head> <body>
    lappend out "<h1>[$esc $title]</h1>"

    lappend out {<h2 id="summary">Laminate</h2>} <dl>
    set length [dict get $units length]
    foreach {term value} [list Source [dict get $info source] Units [unitsText [dict get $info units]] \
            Plies [llength $plies] "Total thickness" "[number [dict get $info thickness]] $length" \
            "Lay-up (layer 1 first)" [join [lmap a [dict get $info angles] {angle $a}] /] \
            Loads [html::loadText $loads $units] \
            {*}[expr {[dict exists $rating applied] && [llength [dict get $rating applied]]
                ? [list Applied [appliedText [dict get $rating applied]]] : {}}]] {
        lappend out "<dt>[$esc $term]</dt><dd>[$esc $value]</dd>"
    }
    lappend out </dl>
    set k 0
    lappend out [html::table {ply angle "thickness" "z from" "z to" assessed} [lmap ply $plies {
        lassign [dict get $ply z] zlow zhigh
        list [incr k] "[angle [dict get $ply angle]]\u00b0" [number [expr {$zhigh - $zlow}]] \
            [number $zlow] [number $zhigh] [expr {[dict get $ply flag] ? "yes" : "no (flag 0)"}]
    }] "Plies; z in $length, layer 1 at the lowest z"]
    # Round-off against the largest entry of the whole stiffness K.
    set scale [largest [dict get $abd K]]
    lappend out {<div class="matrices">}
    foreach m {A B D H} {
        lappend out [html::table {} [lmap row [clean [dict get $abd $m] -scale $scale] {
            lmap v $row {number $v}
        }] "$m \[[dict get $units $m]\]"]
    }
    lappend out </div>

    lappend out {<h2 id="plies">Ply stresses</h2>}
    set stress [dict get $units stress]
    set all {}
    foreach ply $plies {
        foreach key {stresstop stresses stressbas} {
            lappend all [dict get $ply $key]
        }
    }
    set scale [largest $all]
    set rows {}
    set k 0
    foreach ply $plies {
        incr k
        foreach face {top middle bottom} key {stresstop stresses stressbas} {
            set row [list [expr {$face eq "top" ? $k : ""}] \
                [expr {$face eq "top" ? "[angle [dict get $ply angle]]\u00b0" : ""}] $face]
            lappend row {*}[lmap v [lindex [clean [list [dict get $ply $key]] -scale $scale] 0] {number $v}]
            if {$face eq "middle"} {
                lappend row {*}[lmap v [lindex [clean [list [list [dict get $ply shearStress23_lam] \
                    [dict get $ply shearStress13_lam]]] -scale $scale] 0] {number $v}]
            } else {
                lappend row "" ""
            }
            lappend rows $row
        }
    }
    lappend out [html::table [list ply angle face \u03c31 \u03c32 \u03c412 \u03c423 \u03c413] $rows \
        "Stresses in ply axes \[$stress\] (1 along the fibres); top is the face nearer layer 1;\
        transverse shear is constant through each ply"]

    lappend out {<h2 id="failure">Failure indices of the model's criteria</h2>}
    set rows {}
    set k 0
    foreach ply $plies {
        incr k
        lassign [verdict $ply] state reasons
        set row [list $k "[angle [dict get $ply angle]]\u00b0"]
        if {$state eq "not assessed"} {
            lappend row {*}[lrepeat 10 \u2014] "not assessed"
        } else {
            set factor [dict get $ply FS_TW_simple]
            lappend row [number [dict get $ply FS_TW]] \
                [if {$factor < 0} {string cat none} else {number $factor}] \
                [number [dict get $ply hashin_fibre]] [number [dict get $ply hashin_matrix]]
            foreach m {1 2 3 4 5 6} {
                lappend row [number [dict get $ply FS_LaRCm$m]]
            }
            lappend row [expr {$state eq "ok" ? "ok" : "limit: [join $reasons {, }]"}]
        }
        lappend rows $row
    }
    lappend out [html::table {ply angle Tsai-Wu "TW factor" "Hashin fibre" "Hashin matrix" \
        "LaRC04 m1" m2 m3 m4 m5 m6 indices} $rows \
        "Under the loads alone; indices reach their limit at 1, the TW factor (load\
        multiple taking the mid-ply in-plane Tsai-Wu value to 1, at most 200) below 1;\
        \u2014: failure flag 0, not assessed; none: no TW factor (a zero strength, or no\
        in-plane stress at the top face).  Whether a ply fails the reserve factors tell."]

    lappend out {<h2 id="factors">Reserve factors</h2>}
    set criteria [shownCriteria $rating]
    set applied [expr {[dict exists $rating applied] ? [dict get $rating applied] : {}}]
    set fos [dict exists $applied -fos]
    set byPly {}
    foreach f [dict get $rating factors] {
        lassign $f ply c factor mode - - mos
        dict set byPly $ply $c [list $factor $mode $mos]
    }
    set rows {}
    foreach ply [lsort -integer [dict keys $byPly]] {
        set row [list $ply "[angle [lindex [dict get $info angles] $ply-1]]\u00b0"]
        foreach c $criteria {
            if {![dict exists $byPly $ply $c]} {
                lappend row \u2014 "" {*}[expr {$fos ? {{}} : {}}]
                continue
            }
            lassign [dict get $byPly $ply $c] factor mode mos
            lappend row [factorText $factor] [expr {$mode eq $c || $mode eq "none" ? "" : $mode}]
            if {$fos} {
                lappend row [expr {$mos eq "" ? "" : [number $mos]}]
            }
        }
        lappend row [expr {$ply in [dict get $rating failed] ? "FAILED" : "ok"}]
        lappend rows $row
    }
    set head {ply angle}
    foreach c $criteria {
        lappend head [criterionTitle $c] mode {*}[expr {$fos ? "MoS" : ""}]
    }
    lappend head status
    set words [wordNotes [dict get $rating factors]]
    lappend out [html::table $head $rows \
        "The multiple of the loads at which each ply fails by each criterion (RF); below 1 it\
        fails under these loads[expr {$fos ? "; MoS = RF / FoS \u2212 1" : ""}][expr {[llength $words]
            ? ".  [join $words {; }]" : ""}]"]

    lappend out {<h2 id="fpf">First-ply failure</h2>}
    set rows {}
    dict for {c f} [dict get $rating fpf] {
        set factor [dict get $f factor]
        set ply [dict get $f ply]
        set state [expr {[dict exists $f verdict] ? [dict get $f verdict] : ""}]
        set verdict [expr {![string is double -strict $factor] ? "no answer ($factor)" :
            $ply == 0 ? "never fails" :
            $factor == 0 && $state eq "residual" ? "FAILS on the residual stresses alone" :
            $factor < 1 ? "FAILS below the applied loads" : "holds the applied loads"}]
        set row [list [criterionTitle $c] [number $factor] \
            [expr {$ply ? $ply : "\u2014"}] [dict get $f face] [dict get $f mode]]
        if {$fos} {
            lappend row [expr {[dict exists $f mos] ? [number [dict get $f mos]] : ""}]
        }
        lappend rows [list {*}$row $verdict]
    }
    lappend out [html::table [list criterion "load factor" ply face mode \
            {*}[expr {$fos ? "MoS" : ""}] verdict] $rows \
        "The factor by which all loads may be multiplied before the first assessed ply fails"]

    if {[llength $pictures]} {
        lappend out {<h2 id="pictures">Pictures</h2>}
    }
    foreach picture $pictures {
        lassign $picture caption svg
        lappend out <figure> [svg::inline $svg] "<figcaption>[$esc $caption]</figcaption>" </figure>
    }
    lappend out </body> </html>
    join $out \n
}

# The loads in words with their units.
proc ::laminate::report::html::loadText {loads units} {
    set parts {}
    foreach name [::laminate::report::loadNames] v $loads {
        lappend parts "$name = $v"
    }
    return "[join $parts {, }] (N, Q in [dict get $units line]; M in [dict get $units moment])"
}

# A table with an optional header row and a caption; every cell escaped.
# Rows whose last cell starts with FAILED are marked for the style sheet.
proc ::laminate::report::html::table {head rows caption} {
    set esc ::laminate::report::svg::esc
    set out [list <table>]
    if {$caption ne ""} {
        lappend out "<caption>[$esc $caption]</caption>"
    }
    if {[llength $head]} {
        lappend out "<thead><tr>[join [lmap h $head {string cat <th> [$esc $h] </th>}] {}]</tr></thead>"
    }
    lappend out <tbody>
    foreach row $rows {
        set class [expr {[string match FAILED* [lindex $row end]] ? { class="failed"} : ""}]
        lappend out "<tr$class>[join [lmap cell $row {string cat <td> [$esc $cell] </td>}] {}]</tr>"
    }
    lappend out </tbody> </table>
    join $out \n
}

proc ::laminate::report::html::stylesheet {} {
    return {
body { font-family: "DejaVu Sans", Arial, Helvetica, sans-serif; margin: 1.5em auto; padding: 0 1em; max-width: 64em; color: #222; }
h1 { font-size: 1.5em; } h2 { font-size: 1.2em; margin-top: 1.6em; border-bottom: 1px solid #ccc; }
dl { display: grid; grid-template-columns: max-content auto; gap: 0.2em 1em; }
dt { font-weight: bold; } dd { margin: 0; }
table { border-collapse: collapse; margin: 0.8em 0; font-size: 0.9em; }
caption { text-align: left; color: #555; padding-bottom: 0.3em; }
th, td { border: 1px solid #ccc; padding: 0.15em 0.5em; text-align: right; }
th { background: #f3f3f3; }
tr.failed td { color: #b00020; font-weight: bold; }
.matrices { display: flex; gap: 2em; flex-wrap: wrap; }
figure { margin: 1em 0; } figcaption { color: #555; }
figure > svg { max-width: 100%; height: auto; }
}
}
