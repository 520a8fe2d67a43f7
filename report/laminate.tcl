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

# Rates the laminate a description (from define) names under one load case:
# a dict of
#   loads       the 8 loads
#   evaluation  laminate::evaluate's answer
#   abd         laminate::abd's answer
#   factors     the ply factors (plyFactors), or for a laminate of more
#               plies than maxPlies only each criterion's first ply to fail
#   complete    1 when factors holds every assessed ply
#   failed      the plies failing under the loads (by the factors)
#   fpf         per criterion, laminate::fpf's answer
# -criteria chooses the criteria (default tsaiwu hashin larc04).
proc ::laminate::report::rate {info loads args} {
    variable criteria
    variable maxPlies
    set opts [dict merge [list -criteria $criteria] $args]
    set name [dict get $info name]
    set evaluation [laminate::evaluate $name $loads]
    set n [llength [dict get $evaluation plies]]
    set fpf {}
    foreach c [dict get $opts -criteria] {
        dict set fpf $c [dict get [laminate::fpf $name $loads -criterion $c] $c]
    }
    if {$n <= $maxPlies} {
        set factors [plyFactors [dict get $info record] $loads -criteria [dict get $opts -criteria]]
        set complete 1
    } else {
        set factors {}
        dict for {c f} $fpf {
            if {[dict get $f ply] > 0} {
                lappend factors [list [dict get $f ply] $c [dict get $f factor] \
                    [dict get $f mode] [dict get $f face]]
            }
        }
        set complete 0
    }
    dict create loads $loads evaluation $evaluation abd [laminate::abd $name] \
        factors $factors complete $complete failed [failedPlies $factors] fpf $fpf
}
