# report.tcl -- package laminate::report: the report of a laminate as text
# tables, SVG pictures and one HTML page, and tables of load cases rated
# a chunk at a time.  It draws and formats what the commands of
# laminate::analysis compute; it computes nothing of its own but the rays
# that refine a failure envelope.  Manual page: laminate_report(3tcl).

package require Tcl 8.5
package require laminate::analysis 1.0

namespace eval ::laminate::report {
    variable version 1.0
    variable library [file dirname [file normalize [info script]]]
    namespace export define readRecord rate plyFactors tables profile ratings \
        curve envelope pictures page cases number clean units loads plane \
        writeFile lpfcurve lpfTable
}

# (In a procedure of its own: the package is loaded at the global level,
# whose variables are the script's that requires it.)
apply {{} {
    foreach file {format svg laminate plies text pictures envelope lpf html cases} {
        uplevel #0 [list source -encoding utf-8 [file join $::laminate::report::library $file.tcl]]
    }
}}

# The three pictures of a rated laminate, as {file caption svg}:
# profile.svg, ratings.svg and envelope.svg.  Options:
#   -plane {I J}   the envelope's plane, positions from 1 or names
#                  (default {1 2}: N1 N2)
#   -criteria L    the envelope's criteria (default: the rating's)
#   -tolerance T   the envelope's refinement (see curve)
# The envelope holds the rating's -dT, -dM and -fos as the factors do.
proc ::laminate::report::pictures {info rating args} {
    set opts [dict merge [list -plane {1 2} -criteria [shownCriteria $rating] \
        -tolerance 0.002] $args]
    set name [dict get $info name]
    set units [units {*}[dict get $info units]]
    set loads [dict get $rating loads]
    set applied [expr {[dict exists $rating applied] ? [dict get $rating applied] : {}}]
    set subtitle "[dict get $info source]; loads N1 \u2026 Q2 = [join $loads { }]"
    set plane [plane [dict get $opts -plane]]
    set curves {}
    foreach c [dict get $opts -criteria] {
        dict set curves $c [curve $name $plane $c -tolerance [dict get $opts -tolerance] {*}$applied]
    }
    set names [lmap i $plane {lindex [loadNames] $i-1}]
    set notes {}
    set envelopeTitle "First-ply failure envelope, [join $names \u2013]"
    if {[llength $applied]} {
        set notes [list "Applied: [appliedText $applied]."]
        if {[dict exists $applied -fos]} {
            set envelopeTitle "Allowable loads (first-ply failure / FoS), [join $names \u2013]"
        }
    }
    set profileNotes {}
    if {[dict exists $applied -dT] || [dict exists $applied -dM]} {
        set profileNotes [list "The stresses of the loads alone: the residual stresses of\
            the temperature and moisture change are held in the reserve factors."]
    }
    list \
        [list profile.svg "Stresses through the thickness, one panel per component;\
            z upward, layer 1 at the bottom" \
            [profile [dict get $rating evaluation] -subtitle $subtitle -units $units \
                -allowables [dict get $info allowables] -failed [dict get $rating failed] \
                -notes $profileNotes]] \
        [list ratings.svg "Reserve factor of every ply by each criterion, with the\
            failure mode; failure below 1" \
            [ratings [dict get $rating factors] -subtitle $subtitle \
                -angles [dict get $info angles] -notes $notes]] \
        [list envelope.svg "First-ply failure envelope in the [join $names \u2013] plane,\
            the other loads zero" \
            [envelope $curves $plane $loads -units $units \
                -title $envelopeTitle \
                -subtitle [dict get $info source] \
                -notes [concat [list [toleranceNote [dict get $opts -tolerance]]] $notes]]]
}

# The envelope picture's note on how smooth its curves are.
proc ::laminate::report::toleranceNote {tolerance} {
    return "Curves refined until every chord lies within [format %g $tolerance] of the\
        curve, each axis measured in units of the envelope's extent on it."
}

# The 8 loads of a load case from words, each read as a load of a table
# (a finite decimal number: "010" is ten, no hexadecimal), written back in
# their shortest exact form.  An error (code REPORT LOADS) names the load.
proc ::laminate::report::loads {words} {
    if {[catch {llength $words} n] || $n != 8} {
        return -code error -errorcode {REPORT LOADS} "loads: expected 8 values\
            N1 N2 N12 M1 M2 M12 Q1 Q2, got \"$words\""
    }
    lmap name [loadNames] word $words {
        switch -- [cases::number $word value] {
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

# A plane of two load components from "N1 N2", "1 2" or "N1,N2": {I J},
# positions from 1.  An error (code REPORT PLANE) says what is wrong.
proc ::laminate::report::plane {text} {
    set plane {}
    foreach word [split [string map {, " "} $text]] {
        if {$word eq ""} continue
        set k [lsearch -exact -nocase [loadNames] $word]
        if {$k >= 0} {
            lappend plane [expr {$k + 1}]
        } elseif {[string is integer -strict $word] && $word >= 1 && $word <= 8} {
            lappend plane [expr {$word}]
        } else {
            return -code error -errorcode {REPORT PLANE} \
                "-plane: \"$word\" is no load component (N1 ... Q2 or 1 ... 8)"
        }
    }
    if {[llength $plane] != 2 || [lindex $plane 0] == [lindex $plane 1]} {
        return -code error -errorcode {REPORT PLANE} \
            "-plane needs two different load components, as \"N1 N2\""
    }
    return $plane
}

# Writes text (UTF-8) to path through a temporary file beside it, renamed
# onto it at the end, so that a failed write never leaves a half-written
# file and keeps the one a previous run wrote.
proc ::laminate::report::writeFile {path text} {
    set tmp $path.tmp[pid]
    set chan [open $tmp w]
    fconfigure $chan -encoding utf-8
    if {[catch {puts -nonewline $chan $text; close $chan} message options]} {
        catch {close $chan}
        file delete $tmp
        return -options $options $message
    }
    file rename -force $tmp $path
}

package provide laminate::report 1.0
