# laminate.tcl -- the laminate a report is about: defined from a stacking
# sequence of library materials or from a record, described for the
# tables and pictures, and rated under one load case.

namespace eval ::laminate::report {
    # The bundled laminate: a quasi-isotropic stack of the bundled material
    # IM-carbon/epoxy (a typical intermediate-modulus carbon fibre /
    # toughened epoxy prepreg, cured ply thickness 0.125 mm), in N and mm,
    # so stresses in N/mm\u00b2.  Its load case: biaxial tension with
    # in-plane shear, bending and twisting moments and transverse shear,
    #   N1 N2 N12 [N/mm]   M1 M2 M12 [N\u00b7mm/mm]   Q1 Q2 [N/mm].
    variable defaults [dict create \
        layup "\[0/\u00b145/90\]s" material IM-carbon/epoxy \
        loads {300 100 40 10 0 3 6 3}]
}

# Defines the laminate `name` and returns its description, a dict:
#   name, source (words naming it), layup (the notation, or "" for a
#   record), units {force length} (empty words for a record: it carries
#   none), record (the record it was defined from), angles and flags (per
#   ply, layer 1 first), allowables (per ply a dict Xt Xc Yt Yc S12 S13
#   S23; 0 where not given), thickness (total).
# Options:
#   -record TEXT     a record, read by laminate::define; -source names it
#   -layup NOTATION  a stacking sequence or ply list for laminate::layup
#                    (default: the bundled [0/\u00b145/90]s), -material its
#                    ply material (default IM-carbon/epoxy), -thickness the
#                    ply thickness for materials without one
#   -materials FILE  a material library to load besides the bundled one
#   -units {F L}     the force and length units (default: from the plies'
#                    unit system; none for a record)
# Errors: the package's own (code LAMINATE ...), the message led by
# "record SOURCE: " or "layup NOTATION: ".
proc ::laminate::report::define {name args} {
    variable defaults
    set known {-record -source -layup -material -thickness -materials -units}
    set opts [dict create -record "" -source "" -layup "" -material "" \
        -thickness "" -materials "" -units ""]
    if {[llength $args] % 2} {
        return -code error -errorcode {LAMINATE OPTION} "define: options come in pairs"
    }
    foreach {key value} $args {
        if {$key ni $known} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "bad option \"$key\": must be [join $known {, }]"
        }
        dict set opts $key $value
    }
    set units [dict get $opts -units]
    if {$units ne "" && [llength $units] != 2} {
        return -code error -errorcode {LAMINATE OPTION -units} \
            "-units needs a force and a length unit, as \"N mm\", got \"$units\""
    }
    set record [dict get $opts -record]
    if {$record ne ""} {
        if {[dict get $opts -layup] ne "" || [dict get $opts -material] ne ""} {
            return -code error -errorcode {LAMINATE OPTION -record} \
                "-record cannot be given with -layup or -material"
        }
        set source [dict get $opts -source]
        if {[catch {laminate::define $name $record} message options]} {
            dict set options -level 0
            return -options $options "record $source: $message"
        }
        set layup ""
        if {$units eq ""} {
            set units {{} {}}
        }
    } else {
        laminate::material load bundled
        if {[dict get $opts -materials] ne ""} {
            laminate::material load [dict get $opts -materials]
        }
        set layup [dict get $opts -layup]
        set material [dict get $opts -material]
        if {$layup eq ""} {
            set layup [dict get $defaults layup]
        }
        if {$material eq ""} {
            set material [dict get $defaults material]
        }
        set layupArgs {}
        if {[string index [string trimleft $layup] 0] eq "\["} {
            lappend layupArgs -material $material
        }
        if {[dict get $opts -thickness] ne ""} {
            lappend layupArgs -thickness [dict get $opts -thickness]
        }
        if {[catch {laminate::layup $name $layup {*}$layupArgs} message options]} {
            dict set options -level 0
            return -options $options "layup $layup: $message"
        }
        set description [laminate::describe $name]
        set record [dict get $description record]
        if {$units eq ""} {
            set units [expr {[dict get $description units] eq "N-m-Pa" ? {N m} : {N mm}}]
        }
        set source [dict get $opts -source]
        if {$source eq ""} {
            set source "$layup of $material"
            if {$layup eq [dict get $defaults layup] && $material eq [dict get $defaults material]} {
                set source "bundled $source"
            }
        }
    }
    describe $name $record $source $layup $units
}

# The description define returns, from the record.
proc ::laminate::report::describe {name record source layup units} {
    set n [lindex $record 0]
    set angles {}
    set flags {}
    set allowables {}
    set thickness 0.0
    for {set k 0} {$k < $n} {incr k} {
        set layer [lrange $record [expr {1 + 18 * $k}] [expr {18 * $k + 18}]]
        lassign $layer E1 E2 nu12 G12 G13 G23 Xc Yc Xt Yt S12 S23 S13 spare angle t sw flag
        lappend angles [expr {double($angle)}]
        lappend flags [expr {$flag}]
        lappend allowables [dict create Xt $Xt Xc $Xc Yt $Yt Yc $Yc S12 $S12 S13 $S13 S23 $S23]
        set thickness [expr {$thickness + $t}]
    }
    dict create name $name source $source layup $layup units $units record $record \
        angles $angles flags $flags allowables $allowables thickness $thickness
}

# The record text of a file ("-" for standard input) with its comments
# ("#" to the end of the line) removed.
proc ::laminate::report::readRecord {path} {
    if {$path eq "-"} {
        set text [read stdin]
    } else {
        if {[file isdirectory $path] || [catch {open $path r} chan]} {
            return -code error -errorcode {REPORT RECORD} \
                "cannot read record file \"$path\""
        }
        set text [read $chan]
        close $chan
    }
    regsub -all -line {#.*$} $text {} text
    return $text
}

# The options of a rating, checked: a dict of -criteria (a list of the
# catalogue's names, default `criteria`) and, only where given, -dT, -dM
# (finite numbers) and -fos (finite, above 0).  The model's criteria
# (tsaiwu hashin larc04) are refused: they have no reserve factor per ply
# with residual stresses, and the report rates with laminate::rate alone.
# Errors: code LAMINATE OPTION option or LAMINATE CRITERION MODEL name.
proc ::laminate::report::ratingOptions {words {known {-criteria -dT -dM -fos}}} {
    variable criteria
    variable modelCriteria
    if {[llength $words] % 2} {
        return -code error -errorcode {LAMINATE OPTION} \
            "option \"[lindex $words end]\" needs a value"
    }
    set opts [dict create -criteria $criteria]
    foreach {key value} $words {
        if {$key ni $known} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "bad option \"$key\": must be [join $known {, }]"
        }
        dict set opts $key $value
    }
    foreach key {-dT -dM} {
        if {[dict exists $opts $key] && ![finite [dict get $opts $key]]} {
            return -code error -errorcode [list LAMINATE OPTION $key] \
                "$key: expected a finite number, got \"[dict get $opts $key]\""
        }
    }
    if {[dict exists $opts -fos]} {
        set fos [dict get $opts -fos]
        if {![finite $fos] || $fos <= 0} {
            return -code error -errorcode {LAMINATE OPTION -fos} \
                "-fos: expected a finite number above 0, got \"$fos\""
        }
    }
    set list [dict get $opts -criteria]
    if {[catch {llength $list} n] || $n == 0} {
        return -code error -errorcode {LAMINATE OPTION -criteria} \
            "-criteria: expected a list of criteria, got \"$list\""
    }
    foreach c $list {
        if {[dict exists $modelCriteria $c]} {
            return -code error -errorcode [list LAMINATE CRITERION MODEL $c] \
                "-criteria: \"$c\" is one of the model's criteria, which give no reserve\
                factor per ply: name the catalogue's (its counterpart is\
                [dict get $modelCriteria $c]); the model's indices are in the\
                failure-index table"
        }
    }
    return $opts
}

# The temperature, moisture and safety options of a rating that were given,
# as a flat list to pass on to the analysis commands.
proc ::laminate::report::appliedOptions {opts} {
    set applied {}
    foreach key {-dT -dM -fos} {
        if {[dict exists $opts $key]} {
            lappend applied $key [dict get $opts $key]
        }
    }
    return $applied
}

# Rates the laminate a description (from define) names under one load case
# with laminate::rate: a dict of
#   loads       the 8 loads
#   evaluation  laminate::evaluate's answer (with -dT/-dM when given)
#   abd         laminate::abd's answer
#   criteria    the criteria rated
#   applied     the -dT, -dM, -fos given, as a dict (empty for none)
#   factors     per assessed ply and criterion {ply criterion rf mode face
#               verdict mos}, layer 1 first, the criteria in the order
#               given: laminate::rate's rf (a number from 0 to Inf, or its
#               verdict word), mode, face, verdict and mos
#   failed      the plies failing under the loads: an rf below 1 (0 too:
#               failed on residual stresses) by some criterion
#   fpf         per criterion the laminate's first-ply failure, as
#               laminate::rate gives it
# Options: -criteria (catalogue names, default tsaiwu2d puck maxstrain),
# -dT, -dM, -fos (see ratingOptions).
proc ::laminate::report::rate {info loads args} {
    set opts [ratingOptions $args]
    set name [dict get $info name]
    set applied [appliedOptions $opts]
    set criteria [dict get $opts -criteria]
    set answer [laminate::rate $name $loads -criteria $criteria {*}$applied]
    set evaluation [laminate::evaluate $name $loads {*}[dict remove $applied -fos]]
    set factors {}
    set k 0
    foreach ply [dict get $answer plies] {
        incr k
        foreach c $criteria {
            if {![dict exists $ply $c]} continue
            set r [dict get $ply $c]
            # A core or filler (assess 0) is not rated: its row stays empty.
            if {[dict get $r verdict] eq "unassessed"} continue
            lappend factors [list $k $c [dict get $r rf] [dict get $r mode] \
                [dict get $r face] [dict get $r verdict] [dict get $r mos]]
        }
    }
    dict create loads $loads evaluation $evaluation abd [laminate::abd $name] \
        criteria $criteria applied $applied factors $factors \
        failed [failedPlies $factors] fpf [dict get $answer fpf]
}
