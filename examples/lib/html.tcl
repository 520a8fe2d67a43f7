# html.tcl -- the report as one self-contained HTML page: the laminate
# summary, A/B/D, the ply tables, the three pictures inline and the
# first-ply-failure summary.  No script, no file or network reference: the
# page's security policy forbids every fetch, so a browser shows it whole
# or complains in its console.

source [file join [file dirname [info script]] pictures.tcl]
source [file join [file dirname [info script]] plies.tcl]

namespace eval ::lamhtml {
    namespace import ::lamsvg::esc ::lamsvg::human
}

# The page.  info is a dict:
#   title, source, unitsText  words for people
#   units       from ::lamsvg::units
#   loads       the 8 loads
#   evaluation  laminate::evaluate's result
#   abd         laminate::abd's result
#   pictures    list of {caption svg}
proc ::lamhtml::page {info} {
    dict with info {}
    set plies [dict get $evaluation plies]
    set out {}
    lappend out {<!DOCTYPE html>} {<html lang="en">} <head> {<meta charset="utf-8"/>}
    lappend out {<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'"/>}
    lappend out "<title>[esc $title]</title>" "<style>[stylesheet]</style>" </head> <body>
    lappend out "<h1>[esc $title]</h1>"

    lappend out {<h2 id="summary">Laminate</h2>} <dl>
    set length [dict get $units length]
    set thickness 0.0
    foreach ply $plies {
        lassign [dict get $ply z] zlow zhigh
        set thickness [expr {$thickness + ($zhigh - $zlow)}]
    }
    foreach {term value} [list Source $source Units $unitsText \
            Plies [llength $plies] "Total thickness" "[human $thickness] $length" \
            "Lay-up (layer 1 first)" [join [lmap p $plies {human [dict get $p angle]}] /] \
            Loads [loadText $loads $units]] {
        lappend out "<dt>[esc $term]</dt><dd>[esc $value]</dd>"
    }
    lappend out </dl>
    set k 0
    lappend out [table {ply angle "thickness" "z from" "z to" assessed} [lmap ply $plies {
        lassign [dict get $ply z] zlow zhigh
        list [incr k] "[human [dict get $ply angle]]\u00b0" [human [expr {$zhigh - $zlow}]] \
            [human $zlow] [human $zhigh] [expr {[dict get $ply flag] ? "yes" : "no (flag 0)"}]
    }] "Plies; z in $length, layer 1 at the lowest z"]
    lappend out {<div class="matrices">}
    foreach m {A B D} {
        lappend out [table {} [lmap row [dict get $abd $m] {lmap v $row {human $v 6}}] \
            "$m \[[dict get $units $m]\]"]
    }
    lappend out </div>

    lappend out {<h2 id="plies">Ply stresses</h2>}
    set stress [dict get $units stress]
    set rows {}
    set k 0
    foreach ply $plies {
        incr k
        foreach face {top middle bottom} key {stresstop stresses stressbas} {
            set row [list [expr {$face eq "top" ? $k : ""}] \
                [expr {$face eq "top" ? "[human [dict get $ply angle]]\u00b0" : ""}] $face]
            lappend row {*}[lmap v [dict get $ply $key] {human $v}]
            if {$face eq "middle"} {
                lappend row [human [dict get $ply shearStress23_lam]] \
                    [human [dict get $ply shearStress13_lam]]
            } else {
                lappend row "" ""
            }
            lappend rows $row
        }
    }
    lappend out [table [list ply angle face \u03c31 \u03c32 \u03c412 \u03c423 \u03c413] $rows \
        "Stresses in ply axes \[$stress\] (1 along the fibres); top is the face nearer layer 1;\
        transverse shear is constant through each ply"]

    lappend out {<h2 id="failure">Failure assessment</h2>}
    set rows {}
    set k 0
    foreach ply $plies {
        incr k
        lassign [::lamreport::verdict $ply] state reasons
        set row [list $k "[human [dict get $ply angle]]\u00b0"]
        if {$state eq "not assessed"} {
            lappend row {*}[lrepeat 10 \u2014] "not assessed"
        } else {
            set factor [dict get $ply FS_TW_simple]
            lappend row [human [dict get $ply FS_TW]] \
                [expr {$factor < 0 ? "none" : [human $factor]}] \
                [human [dict get $ply hashin_fibre]] [human [dict get $ply hashin_matrix]]
            foreach m {1 2 3 4 5 6} {
                lappend row [human [dict get $ply FS_LaRCm$m]]
            }
            lappend row [expr {$state eq "ok" ? "ok" : "FAILED: [join $reasons {, }]"}]
        }
        lappend rows $row
    }
    lappend out [table {ply angle Tsai-Wu "TW factor" "Hashin fibre" "Hashin matrix" \
        "LaRC04 m1" m2 m3 m4 m5 m6 status} $rows \
        "Indices fail at 1; the TW factor (load multiple taking the mid-ply in-plane\
        Tsai-Wu value to 1, at most 200) fails below 1; \u2014: failure flag 0, not\
        assessed; none: no TW factor (a zero strength, or no in-plane stress at the top face)"]

    lappend out {<h2 id="fpf">First-ply failure</h2>}
    set rows {}
    foreach c {tsaiwu hashin larc04} {
        set f [dict get $evaluation fpf $c]
        dict with f {}
        set verdict [expr {$ply == 0 ? "never fails" :
            $factor < 1 ? "FAILS below the applied loads" : "holds the applied loads"}]
        lappend rows [list [dict get $::lamsvg::criterionTitle $c] [human $factor] \
            [expr {$ply ? $ply : "\u2014"}] $face $mode $verdict]
    }
    lappend out [table {criterion "load factor" ply face mode verdict} $rows \
        "The factor by which all loads may be multiplied before the first assessed ply fails"]

    lappend out {<h2 id="pictures">Pictures</h2>}
    foreach picture $pictures {
        lassign $picture caption svg
        lappend out <figure> [::lamsvg::inline $svg] "<figcaption>[esc $caption]</figcaption>" </figure>
    }
    lappend out </body> </html>
    join $out \n
}

# The loads in words with their units.
proc ::lamhtml::loadText {loads units} {
    set parts {}
    foreach i {1 2 3 4 5 6 7 8} v $loads {
        lappend parts "[lindex [::lamsvg::loadLabel $i $units] 0] = $v"
    }
    return "[join $parts {, }] (N, Q in [dict get $units line]; M in [dict get $units moment])"
}

# A table with an optional header row and a caption; every cell escaped.
# Rows whose status cell starts with FAILED are marked for the style sheet.
proc ::lamhtml::table {head rows caption} {
    set out [list <table>]
    if {$caption ne ""} {
        lappend out "<caption>[esc $caption]</caption>"
    }
    if {[llength $head]} {
        lappend out "<thead><tr>[join [lmap h $head {string cat <th> [esc $h] </th>}] {}]</tr></thead>"
    }
    lappend out <tbody>
    foreach row $rows {
        set class [expr {[string match FAILED* [lindex $row end]] ? { class="failed"} : ""}]
        lappend out "<tr$class>[join [lmap cell $row {string cat <td> [esc $cell] </td>}] {}]</tr>"
    }
    lappend out </tbody> </table>
    join $out \n
}

proc ::lamhtml::stylesheet {} {
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
svg { max-width: 100%; height: auto; }
}
}
