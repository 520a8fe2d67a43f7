# text.tcl -- the report as plain-text tables: the laminate, the ply
# stresses, the model's failure indices, the reserve factors of every ply
# and the first-ply failure of each criterion; and the events of a
# last-ply failure.

# The units in words.
proc ::laminate::report::unitsText {units} {
    lassign $units force length
    if {$force eq ""} {
        return "those of the record (F force, L length; -units names them)"
    }
    set u [units $force $length]
    return "force $force, length $length (stresses [dict get $u stress];\
        N and Q in [dict get $u line], M in [dict get $u moment])"
}

# A number right-aligned in width columns, for the tables.
proc ::laminate::report::cell {width value} {
    format %${width}s [number $value -ascii 1]
}

# A reserve factor for the tables: its value, "never" for a ply that never
# fails, a word (nostrength, nodata, ...) as it is; then the mode.  args go
# to number.
proc ::laminate::report::factorText {factor {mode ""} {criterion ""} args} {
    if {[string is double -strict $factor] && $factor == Inf} {
        return never
    }
    if {![string is double -strict $factor]} {
        return $factor
    }
    set text [number $factor {*}$args]
    if {$mode ne "" && $mode ne $criterion && $mode ne "none"} {
        append text " " $mode
    }
    return $text
}

# The text report of a laminate (a description from define) rated under
# one load case (a rating from rate).
proc ::laminate::report::tables {info rating} {
    variable criteria
    set loads [dict get $rating loads]
    set evaluation [dict get $rating evaluation]
    set plies [dict get $evaluation plies]
    set n [llength $plies]
    set out {}
    lappend out "Laminate: [dict get $info source]"
    lappend out "Units:    [unitsText [dict get $info units]]"
    lassign $loads N1 N2 N12 M1 M2 M12 Q1 Q2
    lappend out "Loads:    N1 N2 N12 = $N1 $N2 $N12   M1 M2 M12 = $M1 $M2 $M12   Q1 Q2 = $Q1 $Q2"
    set applied [expr {[dict exists $rating applied] ? [dict get $rating applied] : {}}]
    if {[llength $applied]} {
        lappend out "Applied:  [appliedText $applied -ascii 1]"
    }
    set length [lindex [dict get $info units] 1]
    lappend out [format "  %d plies, total thickness %s %s; lay-up (layer 1 first): %s" $n \
        [number [dict get $info thickness] -ascii 1] \
        [expr {$length eq "" ? "(record length unit)" : $length}] \
        [join [lmap a [dict get $info angles] {angle $a -ascii 1}] /]]

    lappend out "" "Ply stresses in ply axes \[[dict get [units {*}[dict get $info units]] stress]\]\
        (1 along the fibres, 2 across them)[expr {[dict exists $applied -dT] || [dict exists $applied -dM]
            ? ", of the loads alone" : ""}]"
    lappend out [format "%4s %7s  %-6s %10s %10s %10s %10s %10s" \
        ply angle face sigma1 sigma2 tau12 tau23 tau13]
    # Round-off against the largest stress of the whole table.
    set rows {}
    foreach p $plies {
        foreach key {stresstop stresses stressbas} {
            lappend rows [dict get $p $key]
        }
        lappend rows [list [dict get $p shearStress23_lam] [dict get $p shearStress13_lam]]
    }
    set scale [largest $rows]
    set k 0
    foreach p $plies {
        incr k
        foreach face {top middle bottom} key {stresstop stresses stressbas} {
            set line [format "%4s %7s  %-6s" \
                [expr {$face eq "top" ? $k : ""}] \
                [expr {$face eq "top" ? [angle [dict get $p angle] -ascii 1] : ""}] $face]
            foreach value [lindex [clean [list [dict get $p $key]] -scale $scale] 0] {
                append line " " [cell 10 $value]
            }
            if {$face eq "middle"} {
                set shear [list [dict get $p shearStress23_lam] [dict get $p shearStress13_lam]]
                foreach value [lindex [clean [list $shear] -scale $scale] 0] {
                    append line " " [cell 10 $value]
                }
            }
            lappend out $line
        }
    }
    lappend out "  top: the face nearer layer 1 (lower z); tau23 and tau13 (transverse\
        shear) are constant through each ply."

    lappend out "" "Failure indices of the model's criteria under the loads alone (at their limit"
    lappend out "from 1; the TW factor below 1)"
    lappend out "  Tsai-Wu    criterion value at the worse face"
    lappend out "  TW factor  load multiplier that takes the mid-ply Tsai-Wu value to 1 (at most 200)"
    lappend out "  Hashin     fibre (H fib) and matrix (H mat) indices at the worse face"
    lappend out "  LaRC04     index of each mode at the worse face: m1 matrix tension,"
    lappend out "             m2 matrix compression, m3 fibre tension, m4 fibre kinking,"
    lappend out "             m5 matrix compression under high fibre compression,"
    lappend out "             m6 matrix tension under fibre compression"
    lappend out "  --         ply with failure flag 0: not assessed"
    lappend out "  none       no TW factor: a zero strength, or no in-plane stress at the top face"
    lappend out "  limit      the indices at their limit; whether a ply fails the reserve factors tell"
    lappend out [format "%4s %7s %9s %9s %9s %9s %9s %9s %9s %9s %9s %9s  %s" \
        ply angle Tsai-Wu "TW factor" "H fib" "H mat" m1 m2 m3 m4 m5 m6 indices]
    set oddLaRC 0
    set k 0
    foreach p $plies {
        incr k
        lassign [verdict $p] state reasons
        set line [format "%4d %7s" $k [angle [dict get $p angle] -ascii 1]]
        if {$state eq "not assessed"} {
            append line [string repeat [format " %9s" --] 10]
            lappend out "$line  not assessed"
            continue
        }
        set factor [dict get $p FS_TW_simple]
        append line " " [cell 9 [dict get $p FS_TW]] " "
        if {$factor < 0} {
            append line [format %9s none]
        } else {
            append line [cell 9 $factor]
        }
        foreach key {hashin_fibre hashin_matrix FS_LaRCm1 FS_LaRCm2 FS_LaRCm3
                FS_LaRCm4 FS_LaRCm5 FS_LaRCm6} {
            set value [dict get $p $key]
            append line " " [cell 9 $value]
            if {[string match FS_LaRC* $key] && (![finite $value] || abs($value) >= 1e6)} {
                set oddLaRC 1
            }
        }
        append line [expr {$state eq "reached" ? "  limit ([join $reasons {, }])" : "  ok"}]
        lappend out $line
    }
    if {$oddLaRC} {
        lappend out "  Huge, Inf or NaN LaRC04 values: modes 1 and 6 of a thick ply divide by"
        lappend out "  its in-plane shear stress tau12, which is (nearly) zero there."
    }

    set shown [shownCriteria $rating]
    lappend out "" "Reserve factors (RF): the multiple of the loads at which each ply fails by each"
    lappend out "criterion, with the mode; below 1 the ply fails under these loads"
    set cells {}
    set width 10
    foreach f [dict get $rating factors] {
        lassign $f ply c factor mode
        set text [factorText $factor $mode $c -ascii 1]
        dict set cells $ply $c $text
        set width [expr {max($width, [string length $text])}]
    }
    set head [format "%4s %7s" ply angle]
    foreach c $shown {
        append head [format "  %-*s" $width [criterionTitle $c]]
    }
    lappend out [string trimright $head]
    foreach ply [lsort -integer [dict keys $cells]] {
        set line [format "%4d %7s" $ply [angle [lindex [dict get $info angles] $ply-1] -ascii 1]]
        foreach c $shown {
            set text --
            if {[dict exists $cells $ply $c]} {
                set text [dict get $cells $ply $c]
            }
            append line [format "  %-*s" $width $text]
        }
        if {$ply in [dict get $rating failed]} {
            append line "  FAILED"
        }
        lappend out [string trimright $line]
    }
    set words [wordNotes [dict get $rating factors]]
    if {[llength $words]} {
        lappend out {*}[lmap w $words {string cat "  " $w}]
    }

    lappend out "" "First-ply failure (the factor all loads may be multiplied by):"
    dict for {c f} [dict get $rating fpf] {
        if {![dict exists $applied -fos]} {
            set f [dict remove $f mos]
        }
        lappend out [format "  %-10s %s" [criterionTitle $c] [fpfSentence $f -ascii 1]]
    }
    set failed [dict get $rating failed]
    if {[llength $failed]} {
        lappend out "FAILED: ply [join $failed {, }] fail[expr {[llength $failed] == 1 ? "s" : ""}]\
            under these loads (a reserve factor below 1)."
    } else {
        lappend out "No assessed ply fails under these loads."
    }
    join $out \n
}

# The criteria of a rating in the order rated (its criteria key, else the
# order they first appear among the factors).
proc ::laminate::report::shownCriteria {rating} {
    if {[dict exists $rating criteria]} {
        return [dict get $rating criteria]
    }
    set shown {}
    foreach f [dict get $rating factors] {
        if {[lindex $f 1] ni $shown} {
            lappend shown [lindex $f 1]
        }
    }
    return $shown
}

# The temperature, moisture and safety options applied to a rating (a dict
# of -dT -dM -fos, those given) in words.  args go to number.
proc ::laminate::report::appliedText {applied args} {
    set parts {}
    if {[dict exists $applied -dT]} {
        lappend parts "temperature change dT = [number [dict get $applied -dT] {*}$args]"
    }
    if {[dict exists $applied -dM]} {
        lappend parts "moisture change dM = [number [dict get $applied -dM] {*}$args]"
    }
    set text [join $parts ", "]
    if {[llength $parts]} {
        append text " (their residual stresses held in the reserve factors)"
    }
    if {[dict exists $applied -fos]} {
        set fos [number [dict get $applied -fos] {*}$args]
        append text [expr {[llength $parts] ? "; " : ""}] \
            "factor of safety $fos (margin of safety MoS = RF / $fos - 1)"
    }
    return $text
}

# What each word a criterion answers in place of a reserve factor means,
# one line per word that occurs among the factors.
proc ::laminate::report::wordNotes {factors} {
    set meaning {
        never "never: the criterion does not reach 1 along the load path"
        nostrength "nostrength: a strength the criterion needs is not given"
        nodata "nodata: another value the criterion needs is missing or out of its range"
        nonfinite "nonfinite: a stress is not finite or beyond 1e100"
        badparameter "badparameter: a criterion parameter is out of its range"
        unassessed "unassessed: the ply is not assessed (a core or filler)"
    }
    set notes {}
    foreach f $factors {
        set factor [lindex $f 2]
        set word [expr {[string is double -strict $factor] && $factor == Inf ? "never" : $factor}]
        if {[dict exists $meaning $word] && [dict get $meaning $word] ni $notes} {
            lappend notes [dict get $meaning $word]
        }
    }
    return $notes
}
