# cases.tcl -- load-case tables: reads a CSV of load cases, rates them all
# through laminate::batch and writes one CSV row of first-ply-failure
# results per case.
#
# The input's first non-blank row names the columns: N1 N2 N12 M1 M2 M12 Q1
# Q2, each once, in any order and any letter case, and optionally id.
# Blank lines are passed over.  A row is malformed when its field count
# differs from the header's or a load is empty, not a number, or infinite.
# Every data row, malformed or not, gives exactly one output row, with the
# line it started on, so no row ever moves.

package require csv

namespace eval ::lamcases {
    variable loadNames {N1 N2 N12 M1 M2 M12 Q1 Q2}
    variable criteria {tsaiwu hashin larc04}
    # Cases handed to one laminate::batch call: small enough for the
    # progress line to move, large enough to cost nothing.
    variable chunk 1000
}

# Reads the table from chan.  Returns a dict:
#   hasId  1 when the table has an id column
#   rows   one {line id loads error} per data row, in order; error is ""
#          for a good row, else the message (loads is then empty)
# A header that cannot be used is an error (code REPORT CASES), with its
# line number.
proc ::lamcases::read {chan} {
    variable loadNames
    set lineNo 0
    set header {}
    set rows {}
    while {[gets $chan text] >= 0} {
        incr lineNo
        set first $lineNo
        # A quoted field may run over several lines.
        while {![csv::iscomplete $text] && [gets $chan more] >= 0} {
            incr lineNo
            append text \n $more
        }
        set text [string trimright $text \r]
        if {$first == 1} {
            set text [string trimleft $text \ufeff]
        }
        if {[string trim $text] eq ""} {
            continue
        }
        set fields [lmap f [csv::split $text] {string trim $f}]
        if {![llength $header]} {
            set header [readHeader $fields $first]
            continue
        }
        lappend rows [readRow $fields $header $first]
    }
    if {![llength $header]} {
        fail "the load-case table is empty: it needs a header row\
            naming [join $loadNames ,]"
    }
    dict create hasId [dict exists $header id] rows $rows
}

proc ::lamcases::fail {message} {
    return -code error -level 2 -errorcode {REPORT CASES} $message
}

# The header as a dict: column name (N1 ... Q2, id) -> field position.
proc ::lamcases::readHeader {fields lineNo} {
    variable loadNames
    set columns {}
    set position 0
    foreach field $fields {
        set name [lsearch -inline -nocase -exact [linsert $loadNames end id] $field]
        if {$name eq ""} {
            fail "line $lineNo: unknown column \"$field\": the columns are\
                [join $loadNames ,] in any order, and optionally id"
        }
        if {[dict exists $columns $name]} {
            fail "line $lineNo: column $name appears twice"
        }
        dict set columns $name $position
        incr position
    }
    set missing [lmap name $loadNames {
        if {[dict exists $columns $name]} continue
        set name
    }]
    if {[llength $missing]} {
        fail "line $lineNo: missing column[expr {[llength $missing] > 1 ? "s" : ""}]\
            [join $missing ,]"
    }
    return $columns
}

# One data row as {line id loads error}.
proc ::lamcases::readRow {fields header lineNo} {
    variable loadNames
    set id [expr {[dict exists $header id] ? [lindex $fields [dict get $header id]] : ""}]
    if {[llength $fields] != [dict size $header]} {
        return [list $lineNo $id {} "[llength $fields] fields where the header has\
            [dict size $header]"]
    }
    set loads {}
    foreach name $loadNames {
        set value [lindex $fields [dict get $header $name]]
        if {$value eq ""} {
            return [list $lineNo $id {} "$name is empty"]
        }
        if {![string is double -strict $value] || [regexp {[a-df-zA-DF-Z]} $value]} {
            # Tcl reads "Inf", "NaN" and "0x1F" as numbers; a load table
            # means none of them: only digits, sign, point and exponent.
            return [list $lineNo $id {} "$name is not a number: \"$value\""]
        }
        lappend loads $value
    }
    list $lineNo $id $loads ""
}

# Rates every good row through laminate::batch.  Returns one result per row
# of `rows`, in order: the fpf dict of a good row, "" for a malformed one.
# progress: a command prefix called with (done, total) after each chunk, or
# "" for none.
proc ::lamcases::run {material rows {progress ""}} {
    variable chunk
    set good {}
    foreach row $rows {
        if {[lindex $row 3] eq ""} {
            lappend good [lindex $row 2]
        }
    }
    set total [llength $good]
    set rated {}
    for {set start 0} {$start < $total} {incr start $chunk} {
        lappend rated {*}[laminate::batch $material \
            [lrange $good $start [expr {$start + $chunk - 1}]]]
        if {$progress ne ""} {
            {*}$progress [llength $rated] $total
        }
    }
    set k 0
    lmap row $rows {
        if {[lindex $row 3] ne ""} {
            string cat
        } else {
            set result [lindex $rated $k]
            incr k
            set result
        }
    }
}

# The output table's header: line, id (when the input has one), then the
# factor, ply, face and mode of each criterion, and the error of a
# malformed row.
proc ::lamcases::header {hasId} {
    variable criteria
    set columns [list line]
    if {$hasId} {
        lappend columns id
    }
    foreach c $criteria {
        lappend columns ${c}_factor ${c}_ply ${c}_face ${c}_mode
    }
    lappend columns error
}

# Writes the results table to chan (last, so that a caller can hand it a
# channel).  A malformed row keeps its line (and id) with empty results and
# its error.
proc ::lamcases::write {table results chan} {
    variable criteria
    set hasId [dict get $table hasId]
    puts $chan [csv::join [header $hasId]]
    foreach row [dict get $table rows] result $results {
        lassign $row line id loads error
        set fields [list $line]
        if {$hasId} {
            lappend fields $id
        }
        foreach c $criteria {
            if {$error eq ""} {
                set f [dict get $result $c]
                lappend fields [dict get $f factor] [dict get $f ply] \
                    [dict get $f face] [dict get $f mode]
            } else {
                lappend fields {} {} {} {}
            }
        }
        lappend fields $error
        puts $chan [csv::join $fields]
    }
}

# A progress line on stderr: cases done, rate and time left, redrawn in
# place.  start is the [clock milliseconds] of the run's start.
proc ::lamcases::showProgress {start done total} {
    set seconds [expr {max(1, [clock milliseconds] - $start) / 1000.0}]
    set rate [expr {$done / $seconds}]
    set left [expr {$rate > 0 ? ($total - $done) / $rate : 0}]
    puts -nonewline stderr [format "\r%d/%d cases, %.0f cases/s, %.1f s left  " \
        $done $total $rate $left]
    if {$done >= $total} {
        puts stderr ""
    }
    flush stderr
}

# 1 when stderr is a terminal: only a terminal channel knows -mode.
proc ::lamcases::stderrIsTerminal {} {
    expr {![catch {fconfigure stderr -mode}]}
}
