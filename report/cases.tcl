# cases.tcl -- load-case tables: reads a CSV of load cases as it comes,
# rates it through laminate::batch a chunk at a time and writes one CSV row
# of first-ply-failure results per input row, so that a table of any length
# runs in the same small memory.
#
# The input's first non-blank row names the columns: N1 N2 N12 M1 M2 M12 Q1
# Q2, each once, in any order and any letter case, and optionally id.
# Blank lines are passed over.  Every other line is one row: a field never
# holds a line break, so a quote left open can never swallow the rows after
# it.  Every row, good or malformed, gives exactly one output row, with its
# line number, in input order.
#
# The input is read as bytes: lines are split on LF (a CR before it is
# dropped), a line with a NUL byte or bytes that are not UTF-8 is malformed,
# and an id is written back byte for byte.

namespace eval ::laminate::report::cases {
    variable loadNames {N1 N2 N12 M1 M2 M12 Q1 Q2}
    # The criteria of a table rated without -criteria: laminate::batch's
    # own default, so that a table rated here reads as one rated by it.
    variable criteria {tsaiwu hashin larc04}
    # Good rows handed to one laminate::batch call, and so rows held in
    # memory at once: small enough for the progress line to move, large
    # enough for the call to cost nothing.
    variable chunk 2000
    # Bytes read from the input at once (split into lines at once, so a
    # block of empty lines costs a list of that many elements).
    variable block 262144
    # The longest line read, in bytes (its LF and CR not counted).  A longer
    # line is malformed and is not kept in memory.
    variable maxLine 65536
    # A load: the decimal reals laminate::define reads in a record,
    # [+-]digits[.digits][e[+-]digits] (or [+-].digits...): no hexadecimal,
    # octal, binary, no inf or nan.  "010" is ten.
    variable decimal {^[+-]?(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?$}
    # Words strtod reads as infinities or NaN: refused as not finite, as
    # laminate::define refuses them.
    variable nonFinite {^[+-]?(?:[iI][nN][fF](?:[iI][nN][iI][tT][yY])?|[nN][aA][nN](?:\(.*\))?)$}
    # One UTF-8 character as bytes (no overlong forms, no surrogates, at
    # most U+10FFFF).
    variable utf8Char {(?:[\x01-\x7f]|[\xc2-\xdf][\x80-\xbf]|\xe0[\xa0-\xbf][\x80-\xbf]|[\xe1-\xec\xee\xef][\x80-\xbf]{2}|\xed[\x80-\x9f][\x80-\xbf]|\xf0[\x90-\xbf][\x80-\xbf]{2}|[\xf1-\xf3][\x80-\xbf]{3}|\xf4[\x80-\x8f][\x80-\xbf]{2})}
}

proc ::laminate::report::cases::fail {message} {
    return -code error -level 2 -errorcode {REPORT CASES} $message
}

# Reads text as one load value.  Returns "" and sets valueVar to the value
# (a double) when text is a finite decimal real; otherwise returns why not,
# in laminate::define's words: NUMBER (not a decimal real) or FINITE.
proc ::laminate::report::cases::number {text valueVar} {
    variable decimal
    variable nonFinite
    upvar 1 $valueVar value
    if {![regexp $decimal $text]} {
        return [expr {[regexp $nonFinite $text] ? "FINITE" : "NUMBER"}]
    }
    # The text is decimal, so scan reads it as strtod does (never as octal).
    scan $text %g value
    if {$value != $value || abs($value) == Inf} {
        return FINITE
    }
    return ""
}

# A field's text quoted back in a message: at most 40 bytes, never cut
# inside a UTF-8 character.
proc ::laminate::report::cases::shown {text} {
    if {[string length $text] <= 40} {
        return $text
    }
    set cut 40
    while {$cut > 0 && ([scan [string index $text $cut] %c] & 0xC0) == 0x80} {
        incr cut -1
    }
    return "[string range $text 0 $cut-1]..."
}

# Why a line (bytes, without its LF) cannot be read as text: a NUL byte or
# bytes that are not UTF-8, with the byte's column (from 1); "" when it can.
proc ::laminate::report::cases::badBytes {text} {
    variable utf8Char
    set nul [string first \0 $text]
    if {$nul >= 0} {
        return "NUL byte at column [expr {$nul + 1}]"
    }
    if {[regexp {[\x80-\xff]} $text]} {
        regexp -indices "^$utf8Char*" $text valid
        set at [expr {[lindex $valid 1] + 1}]
        if {$at < [string length $text]} {
            return [format "not UTF-8: byte 0x%02x at column %d" \
                [scan [string index $text $at] %c] [expr {$at + 1}]]
        }
    }
    return ""
}

# The fields of one line, blanks (space, tab) around each removed.  Fields
# are separated by commas; a field may be quoted ("a, b", "say ""hi"""),
# and the quotes must close on the same line.  Returns {fields ""}, or
# {{} why} for a line that breaks the quoting.  names: the column names,
# for messages.
proc ::laminate::report::cases::fields {text names} {
    if {[string first \" $text] < 0} {
        return [list [lmap f [split $text ,] {string trim $f " \t"}] ""]
    }
    set fields {}
    set end [string length $text]
    set i 0
    while 1 {
        set k [llength $fields]
        set what [expr {$k < [llength $names] ? "column [lindex $names $k]"
            : "field [expr {$k + 1}]"}]
        set comma [string first , $text $i]
        set stop [expr {$comma < 0 ? $end : $comma}]
        set quote [string first \" $text $i]
        if {$quote >= 0 && $quote < $stop
                && [string trim [string range $text $i $quote-1] " \t"] eq ""} {
            # A quoted field: up to the quote not doubled.
            set value ""
            set from [expr {$quote + 1}]
            while 1 {
                set close [string first \" $text $from]
                if {$close < 0} {
                    return [list {} "$what: its opening quote is not closed on\
                        this line (a field cannot hold a line break)"]
                }
                append value [string range $text $from $close-1]
                if {[string index $text $close+1] ne "\""} {
                    break
                }
                append value \"
                set from [expr {$close + 2}]
            }
            set comma [string first , $text $close]
            set stop [expr {$comma < 0 ? $end : $comma}]
            if {[string trim [string range $text $close+1 $stop-1] " \t"] ne ""} {
                return [list {} "$what: text after its closing quote"]
            }
        } else {
            set value [string range $text $i $stop-1]
            if {[string first \" $value] >= 0} {
                return [list {} "$what: a quote inside an unquoted field (quote\
                    the whole field and double its quotes)"]
            }
        }
        lappend fields [string trim $value " \t"]
        if {$comma < 0} {
            return [list $fields ""]
        }
        set i [expr {$comma + 1}]
    }
}

# The header as a dict: column name (N1 ... Q2, id) -> field position.
proc ::laminate::report::cases::readHeader {text lineNo} {
    variable loadNames
    set why [badBytes $text]
    if {$why eq ""} {
        lassign [fields $text {}] fields why
    }
    if {$why ne ""} {
        fail "line $lineNo: $why"
    }
    set columns {}
    set position 0
    foreach field $fields {
        set name [lsearch -inline -nocase -exact [linsert $loadNames end id] $field]
        if {$name eq ""} {
            fail "line $lineNo: unknown column \"[encoding convertfrom utf-8 [shown $field]]\":\
                the columns are [join $loadNames ,] in any order, and optionally id"
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

# What a row is read with, from the header: the column names in field
# order (for messages), the field positions of N1 ... Q2, and that of id
# (-1 when there is none).
proc ::laminate::report::cases::layout {header} {
    variable loadNames
    set names [lrepeat [dict size $header] ""]
    dict for {name position} $header {
        lset names $position $name
    }
    set idAt -1
    if {[dict exists $header id]} {
        set idAt [dict get $header id]
    }
    list $names [lmap name $loadNames {dict get $header $name}] $idAt
}

# One data line as {line id loads error}: loads the 8 values in the order
# N1 ... Q2, or error the reason the row is malformed (loads then empty,
# and id too when the line could not be split).  The common line (no
# quote, no blank, ASCII, good numbers) takes the shortest way.
proc ::laminate::report::cases::readRow {text lineNo layout} {
    variable loadNames
    variable decimal
    lassign $layout names positions idAt
    if {[string first \0 $text] >= 0 || [regexp {[\x80-\xff]} $text]} {
        set why [badBytes $text]
        if {$why ne ""} {
            return [list $lineNo "" {} $why]
        }
    }
    if {[string first \" $text] >= 0} {
        lassign [fields $text $names] fields why
        if {$why ne ""} {
            return [list $lineNo "" {} $why]
        }
    } elseif {[regexp {[ \t]} $text]} {
        set fields [lmap f [split $text ,] {string trim $f " \t"}]
    } else {
        set fields [split $text ,]
    }
    # (Never through expr: an id may read as a number, "nan(1)" among them.)
    set id ""
    if {$idAt >= 0} {
        set id [lindex $fields $idAt]
    }
    if {[llength $fields] != [llength $names]} {
        return [list $lineNo $id {} "[llength $fields] fields where the header has\
            [llength $names]"]
    }
    set loads {}
    foreach name $loadNames at $positions {
        set text [lindex $fields $at]
        if {[regexp $decimal $text]} {
            # Decimal, so scan reads it as strtod does (never as octal).
            scan $text %g value
            if {abs($value) < Inf} {
                lappend loads $value
                continue
            }
        }
        if {$text eq ""} {
            return [list $lineNo $id {} "$name: empty"]
        }
        if {[number $text value] eq "FINITE"} {
            return [list $lineNo $id {} "$name: must be finite, got \"[shown $text]\""]
        }
        return [list $lineNo $id {} "$name: must be a decimal number,\
            got \"[shown $text]\""]
    }
    list $lineNo $id $loads ""
}

# A CSV field: quoted when it holds a comma, a quote or a line break.
proc ::laminate::report::cases::quote {text} {
    if {[regexp {[",\r\n]} $text]} {
        return "\"[string map {\" \"\"} $text]\""
    }
    return $text
}

# The output table's header: line, id (when the input has one), then the
# factor, ply, face and mode of each criterion (and its margin of safety
# with a factor of safety, mos 1), and the error of a malformed row.
proc ::laminate::report::cases::header {hasId criteria mos} {
    set columns [list line]
    if {$hasId} {
        lappend columns id
    }
    foreach c $criteria {
        lappend columns ${c}_factor ${c}_ply ${c}_face ${c}_mode
        if {$mos} {
            lappend columns ${c}_mos
        }
    }
    lappend columns error
}

# Rates a table: reads it from chan (configured here for bytes), rates its
# good rows on material and writes the results table to out (bytes; the
# caller configures it) in input order, a chunk of rows at a time.
#   bad       stop: after the first malformed row nothing more is rated or
#             written, but the rest is read so that every malformed row is
#             reported; skip: a malformed row is written with its error.
#   onBad     command prefix called with (line, message) for each
#             malformed row, the message as text.
#   progress  command prefix called with (cases, bytes read) after each
#             chunk, or "" for none.
#   batch     the options of laminate::batch: -criterion LIST (default
#             `criteria`) and any of -dT, -dM, -fos.
# Returns a dict: hasId, cases (rows read), bad (malformed rows), and per
# criterion c lowest.c {factor line} (empty when nothing was rated) and
# below.c (cases with a factor below 1).  A header that cannot be used is
# an error (code REPORT CASES), with its line number.
proc ::laminate::report::cases::stream {chan material out bad onBad progress {batch {}}} {
    variable block
    variable maxLine
    variable loadNames
    variable criteria
    fconfigure $chan -translation binary
    if {[dict exists $batch -criterion]} {
        set criteria [dict get $batch -criterion]
    }
    set job [dict create material $material out $out mode $bad onBad $onBad \
        header {} layout {} pending {} good 0 rating 1 batch $batch criteria $criteria \
        hasId 0 cases 0 bad 0]
    foreach c $criteria {
        dict set job lowest.$c {}
        dict set job below.$c 0
    }
    # A line longer than the longest read is handed on as "\n", which no
    # line holds, and its bytes are not kept.
    set cap [expr {$maxLine + 1}]  ;# a CR may precede the LF
    set lineNo 0
    set carry ""      ;# the start of a line whose LF has not come yet
    set skipping 0    ;# 1 when that line is already too long (not kept)
    set bytes 0
    while 1 {
        set data [read $chan $block]
        incr bytes [string length $data]
        set atEnd [eof $chan]
        set lines [split $data \n]
        set rest [lindex $lines end]
        set lines [lreplace $lines end end]
        if {[llength $lines]} {
            if {$skipping} {
                lset lines 0 \n
            } else {
                lset lines 0 $carry[lindex $lines 0]
            }
            set carry $rest
            set skipping 0
        } elseif {!$skipping} {
            append carry $rest
        }
        if {[string length $carry] > $cap} {
            set carry ""
            set skipping 1
        }
        if {$atEnd && $skipping} {
            lappend lines \n
        } elseif {$atEnd && $carry ne ""} {
            lappend lines $carry
        }
        foreach text $lines {
            incr lineNo
            if {[string index $text end] eq "\r"} {
                set text [string range $text 0 end-1]
            }
            take job $lineNo $text
            if {[dict get $job good] >= $::laminate::report::cases::chunk} {
                rateChunk job
                if {$progress ne ""} {
                    {*}$progress [dict get $job cases] $bytes
                }
            }
        }
        if {$atEnd} {
            break
        }
    }
    if {![dict size [dict get $job header]]} {
        fail "the load-case table is empty: it needs a header row\
            naming [join $loadNames ,]"
    }
    rateChunk job
    if {$progress ne ""} {
        {*}$progress [dict get $job cases] $bytes 1
    }
    dict remove $job material out mode onBad header layout pending good rating batch criteria
}

# Takes one line (bytes, without its line end; "\n" for one too long) into
# the job: the header, a blank line passed over, or a row added to the
# pending chunk.
proc ::laminate::report::cases::take {jobVar lineNo text} {
    variable maxLine
    upvar 1 $jobVar job
    if {$text eq "\n" || [string length $text] > $maxLine} {
        set row [list $lineNo "" {} "line longer than $maxLine bytes"]
    } else {
        if {$lineNo == 1 && [string range $text 0 2] eq "\xef\xbb\xbf"} {
            set text [string range $text 3 end]  ;# a UTF-8 byte-order mark
        }
        if {[string trim $text " \t"] eq ""} {
            return
        }
        if {![dict size [dict get $job header]]} {
            set header [readHeader $text $lineNo]
            dict set job header $header
            dict set job layout [layout $header]
            dict set job hasId [dict exists $header id]
            set batch [dict get $job batch]
            puts -nonewline [dict get $job out] "[join [header [dict get $job hasId] \
                [dict get $job criteria] [dict exists $batch -fos]] ,]\n"
            return
        }
        set row [readRow $text $lineNo [dict get $job layout]]
    }
    if {![dict size [dict get $job header]]} {
        fail "line $lineNo: [lindex $row 3]"
    }
    dict incr job cases
    set error [lindex $row 3]
    if {$error ne ""} {
        dict incr job bad
        {*}[dict get $job onBad] $lineNo [encoding convertfrom utf-8 $error]
        if {[dict get $job mode] eq "stop"} {
            # Nothing more is rated or written; the rest is only read.
            dict set job rating 0
            dict set job pending {}
            dict set job good 0
        }
    }
    if {[dict get $job rating]} {
        dict lappend job pending $row
        if {$error eq ""} {
            dict incr job good
        }
    }
}

# Rates the job's pending rows through laminate::batch and writes them all,
# in order; the chunk is then empty.  A case the batch refuses (it names
# it "case K: ...") becomes a malformed row with that message and the rest
# is rated again, so one row never takes its chunk down with it.
proc ::laminate::report::cases::rateChunk {jobVar} {
    upvar 1 $jobVar job
    set batch [dict get $job batch]
    set criteria [dict get $job criteria]
    set mos [dict exists $batch -fos]
    set rows [dict get $job pending]
    dict set job pending {}
    dict set job good 0
    if {![dict get $job rating]} {
        return
    }
    set rated {}
    while 1 {
        set slots {}
        set loads {}
        set k 0
        foreach row $rows {
            if {[lindex $row 3] eq ""} {
                lappend slots $k
                lappend loads [lindex $row 2]
            }
            incr k
        }
        if {![llength $loads]} {
            set rated {}
            break
        }
        if {![catch {laminate::batch [dict get $job material] $loads {*}$batch} rated options]} {
            break
        }
        if {[lindex [dict get $options -errorcode] 0] ne "LAMINATE"
                || ![regexp {^case ([0-9]+): (.*)$} $rated -> k message]
                || $k < 1 || $k > [llength $slots]} {
            return -options $options $rated
        }
        set slot [lindex $slots $k-1]
        lset rows $slot 3 $message
        dict incr job bad
        {*}[dict get $job onBad] [lindex $rows $slot 0] $message
        if {[dict get $job mode] eq "stop"} {
            dict set job rating 0
            return
        }
    }
    set hasId [dict get $job hasId]
    set text ""
    set k 0
    foreach row $rows {
        lassign $row line id loads error
        append text $line
        if {$hasId} {
            append text , [quote $id]
        }
        if {$error ne ""} {
            append text [string repeat , [expr {1 + [llength $criteria] * ($mos ? 5 : 4)}]] \
                [quote $error] \n
            continue
        }
        set result [lindex $rated $k]
        incr k
        foreach c $criteria {
            set f [dict get $result $c]
            set factor [dict get $f factor]
            append text , $factor , [dict get $f ply] , [dict get $f face] , [dict get $f mode]
            if {$mos} {
                append text , [dict get $f mos]
            }
            if {![string is double -strict $factor]} {
                continue
            }
            if {$factor < 1} {
                dict incr job below.$c
            }
            set lowest [dict get $job lowest.$c]
            if {![llength $lowest] || $factor < [lindex $lowest 0]} {
                dict set job lowest.$c [list $factor $line]
            }
        }
        append text ,\n
    }
    puts -nonewline [dict get $job out] $text
}

# A progress bar on stderr, redrawn in place: the share read (when the
# input's size is known, else the cases done), cases done, rate and the
# time left.  start is the [clock milliseconds] of the run's start, size
# the input's size in bytes (0 when unknown); done ends the line.
proc ::laminate::report::cases::showProgress {start size cases bytes {done 0}} {
    set seconds [expr {max(1, [clock milliseconds] - $start) / 1000.0}]
    set rate [format "%d cases, %.0f cases/s" $cases [expr {$cases / $seconds}]]
    if {$size > 0} {
        set share [expr {min(1.0, double($bytes) / $size)}]
        set left [expr {$share > 0 ? $seconds * (1 - $share) / $share : 0}]
        set filled [expr {int(round(30 * $share))}]
        set line [format "\r\[%s%s\] %3.0f%% %s, %.1f s left" [string repeat # $filled] \
            [string repeat . [expr {30 - $filled}]] [expr {100 * $share}] $rate $left]
    } else {
        set line "\r$rate"
    }
    puts -nonewline stderr "$line  "
    if {$done} {
        puts stderr ""
    }
    flush stderr
}

# 1 when stderr is a terminal: only a terminal channel knows -mode.
proc ::laminate::report::cases::stderrIsTerminal {} {
    expr {![catch {fconfigure stderr -mode}]}
}

# Rates a load-case table read from the channel `in` on the laminate
# `name` and writes the results table to the channel `out`; returns the
# statistics of stream (cases, bad, lowest.C, below.C, hasId).  Options:
#   -bad stop|skip   what a malformed row does (default stop)
#   -onbad CMD       called with the line and the message of each malformed
#                    row (default: nothing)
#   -progress CMD    called with (cases, bytes read) after each chunk of
#                    rows, and (cases, bytes, 1) at the end
#   -criteria LIST   the criteria, of the catalogue or the model (default
#                    laminate::batch's: tsaiwu hashin larc04)
#   -dT T, -dM M, -fos F   passed to laminate::batch (-fos adds a column
#                    C_mos after each criterion's mode)
proc ::laminate::report::cases {name in out args} {
    set known {-bad -onbad -progress -criteria -dT -dM -fos}
    if {[llength $args] % 2} {
        return -code error -errorcode {LAMINATE OPTION} \
            "option \"[lindex $args end]\" needs a value"
    }
    set opts [dict create -bad stop -onbad {} -progress {}]
    foreach {key value} $args {
        if {$key ni $known} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "bad option \"$key\": must be [join $known {, }]"
        }
        dict set opts $key $value
    }
    if {[dict get $opts -bad] ni {stop skip}} {
        return -code error -errorcode {LAMINATE OPTION -bad} \
            "-bad is stop or skip, not \"[dict get $opts -bad]\""
    }
    set onBad [dict get $opts -onbad]
    if {$onBad eq ""} {
        set onBad {apply {{line message} {}}}
    }
    set batch {}
    if {[dict exists $opts -criteria]} {
        dict set batch -criterion [dict get $opts -criteria]
    }
    foreach key {-dT -dM -fos} {
        if {[dict exists $opts $key]} {
            dict set batch $key [dict get $opts $key]
        }
    }
    cases::stream $in $name $out [dict get $opts -bad] $onBad [dict get $opts -progress] $batch
}
