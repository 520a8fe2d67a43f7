# format.tcl -- numbers and units as the report prints them: one number
# form for tables, pages and pictures, round-off shown as 0, and one
# spelling of every unit.

namespace eval ::laminate::report {
    # Significant digits of every number printed for people.
    variable digits 4
    # Below this fraction of the largest entry of its matrix or table, a
    # value is rounding residue and is printed as 0 (B of a symmetric
    # laminate, the shear stress of a 0-degree ply under tension).
    variable roundoff 1e-12
}

# 1 when value is a finite number.  NaN is not, nor a word such as
# "undefined" that a command may give in place of a number.
proc ::laminate::report::finite {value} {
    expr {[string is double -strict $value]
        && ![string match -nocase *nan* $value] && abs($value) < Inf}
}

# A number as the data attributes and CSV files keep it: 10 significant
# digits; Inf, -Inf and NaN spelt so; any other word kept as it is.
proc ::laminate::report::num {value} {
    if {[finite $value]} {
        return [format %.10g $value]
    }
    if {![string is double -strict $value]} {
        return $value
    }
    if {[string match -nocase *nan* $value]} {
        return NaN
    }
    return [expr {$value > 0 ? "Inf" : "-Inf"}]
}

# A number for people: `digits` significant digits, trailing zeros kept
# (1.500, 0.04510, 812.3), no exponent from 1e-3 up to 1e6 (a value of 10^digits
# or more shows all its integer digits), a true minus sign, infinity as the
# sign, NaN and other words as they are.  -ascii 1 keeps the ASCII minus
# and writes Inf, for plain-text tables.
proc ::laminate::report::number {value args} {
    variable digits
    set opts [dict merge [list -digits $digits -ascii 0] $args]
    set d [dict get $opts -digits]
    set ascii [dict get $opts -ascii]
    if {![finite $value]} {
        set text [num $value]
        if {!$ascii && $text in {Inf -Inf}} {
            return [expr {$text eq "Inf" ? "\u221e" : "\u2212\u221e"}]
        }
        return $text
    }
    if {$value == 0} {
        return 0
    }
    # The magnitude after rounding to d digits: 9.9996 is 10.00, not 9.9996.
    set rounded [format %.[expr {$d - 1}]e $value]
    set exponent [expr {int(floor(log10(abs($rounded))))}]
    if {abs($rounded) < 1e-3 || abs($rounded) >= 1e6} {
        set text $rounded
    } else {
        set text [format %.[expr {max(0, $d - 1 - $exponent)}]f $value]
    }
    if {$ascii} {
        return $text
    }
    string map {- \u2212} $text
}

# A ply angle in degrees as written: 45, -45, 22.5 (no digits added).
proc ::laminate::report::angle {value args} {
    set text [format %g $value]
    if {[dict exists $args -ascii] && [dict get $args -ascii]} {
        return $text
    }
    string map {- \u2212} $text
}

# The values of a matrix (a list of rows) or of a flat list with round-off
# set to 0: every entry below `roundoff` of the largest finite magnitude
# among all of them.  With -scale S, that largest magnitude is S instead
# (to clean a block against the whole matrix it belongs to).
proc ::laminate::report::clean {values args} {
    variable roundoff
    set largest [dict get [dict merge [list -scale [largest $values]] $args] -scale]
    set limit [expr {$roundoff * $largest}]
    lmap row $values {
        lmap v $row {
            # (Not as an expr result: expr refuses to return a NaN.)
            if {[finite $v] && abs($v) < $limit} {string cat 0.0} else {set v}
        }
    }
}

# The largest finite magnitude in a list or a list of rows (0 for none).
proc ::laminate::report::largest {values} {
    set largest 0.0
    foreach row $values {
        foreach v $row {
            if {[finite $v]} {
                set largest [expr {max($largest, abs($v))}]
            }
        }
    }
    return $largest
}

# Unit labels from a force and a length unit (either may be empty: a record
# carries no units, and F and L then stand for them).  One spelling for
# every unit: N/mm\u00b2, N\u00b7mm/mm.
proc ::laminate::report::units {force length} {
    if {$force eq ""} {set force F}
    if {$length eq ""} {set length L}
    dict create force $force length $length \
        stress "$force/$length\u00b2" line "$force/$length" \
        moment "$force\u00b7$length/$length" \
        A "$force/$length" B $force D "$force\u00b7$length" H "$force/$length"
}

# The load components in the order of a load vector.
proc ::laminate::report::loadNames {} {
    return {N1 N2 N12 M1 M2 M12 Q1 Q2}
}

# "N1 [N/mm]": a load component (index from 1) with its unit.
proc ::laminate::report::loadLabel {index units} {
    set name [lindex [loadNames] $index-1]
    set unit [dict get $units [expr {[string index $name 0] eq "M" ? "moment" : "line"}]]
    return "$name \[$unit\]"
}
