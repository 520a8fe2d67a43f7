# Both packages used from four threads at once, each with its own
# interpreter: they define materials and layups (under names of their own
# and under names they all redefine), rate them with every command, and
# compare what they get with what one thread alone got first.  Run by ctest as its own
# test (label threads); exits 77, "skipped", where the Thread package is
# missing.
#
#   LAMINATE_THREAD_ROUNDS=N tclsh threads.tcl      (default 150 rounds)

if {[catch {package require Thread 2.7}]} {
    puts "SKIPPED: the Thread package is not installed (Debian package tcl-thread)"
    exit 77
}
package require tcltest 2.2
namespace import ::tcltest::*

set rounds 150
if {[info exists env(LAMINATE_THREAD_ROUNDS)]} {
    set rounds $env(LAMINATE_THREAD_ROUNDS)
}

# The work of one thread, also run alone for the reference answers.  It
# defines the materials it is given and answers, per material, the results
# of every command as one list.
set work {
    package require laminate::analysis

    # Records: a [0/45/-45/90]s laminate and a cross-ply, of one ply type.
    proc ply {angle} {
        list 161000 11380 0.32 5170 5170 3980 1600 200 2560 73 90 60 90 0 $angle 0.125 1.6e-5 1
    }
    proc record {angles} {
        set r [llength $angles]
        foreach a $angles {lappend r {*}[ply $a]}
        return $r
    }
    set ::records [dict create \
        quasi [record {0 45 -45 90 90 -45 45 0}] \
        cross [record {0 90 90 0}]]
    set ::cases {{100 0 0 0 0 0 0 0} {-80 40 20 0 0 0 0 0} {0 0 0 5 -3 1 2 1}}

    # Every answer the packages give for material name under the cases.
    proc answers {name} {
        set out {}
        set loads [lindex $::cases 1]
        lappend out [last_layer $name]
        foreach type {FS_TW stresses FS_LaRCm3 shearStress13_lam} {
            lappend out [laminate_results $type $name 1 $loads]
        }
        lappend out [laminate::abd $name]
        lappend out [dict get [laminate::evaluate $name $loads] fpf]
        foreach c {tsaiwu hashin larc04} {
            lappend out [laminate::fpf $name $loads -criterion $c]
        }
        lappend out [laminate::batch $name $::cases]
        lappend out [laminate::envelope $name -plane {1 2} -points 12]
        return $out
    }

    # The same plies as a named material, for layups.
    set ::layups [dict create quasi {[0/±45/90]s} cross {[0/90]s}]
    proc material {name} {
        laminate::material $name {E1 161000 E2 11380 nu12 0.32 G12 5170 G13 5170
            G23 3980 Xc 1600 Yc 200 Xt 2560 Yt 73 S12 90 S23 60 S13 90 t 0.125 sw 1.6e-5}
    }

    # Defines kind under name (strictly, as a layup, or through the lenient
    # command for a name of laminate_material's) and answers for it.
    proc round {name kind strict} {
        if {$strict eq "layup"} {
            material ply-$name
            laminate::layup $name [dict get $::layups $kind] -material ply-$name
        } elseif {$strict} {
            laminate::define $name [dict get $::records $kind]
        } else {
            laminate_material $name [dict get $::records $kind]
        }
        answers $name
    }
}

# The reference: every answer from a single thread, before any other runs.
eval $work
set expected [dict create]
foreach kind {quasi cross} {
    dict set expected $kind [round ref-$kind $kind 1]
}

# Each thread works rounds times over its own names and a name all share
# (they all define the same record under it, so any answer to it must be
# that record's), and returns the rounds whose answers differ.
proc worker {id rounds expected} {
    return [string map [list @ID@ $id @ROUNDS@ $rounds @EXPECTED@ [list $expected]] {
        set wrong {}
        set expected @EXPECTED@
        for {set i 0} {$i < @ROUNDS@} {incr i} {
            set kind [expr {($i + @ID@) % 2 ? "quasi" : "cross"}]
            if {[round own-@ID@-$kind $kind 1] ne [dict get $expected $kind]} {
                lappend wrong own/$i
            }
            if {[round lenient-@ID@-$i $kind 0] ne [dict get $expected $kind]} {
                lappend wrong lenient/$i
            }
            if {[round shared quasi 1] ne [dict get $expected quasi]} {
                lappend wrong shared/$i
            }
            if {[round layup-@ID@ $kind layup] ne [dict get $expected $kind]} {
                lappend wrong layup/$i
            }
            if {[round shared-layup quasi layup] ne [dict get $expected quasi]} {
                lappend wrong shared-layup/$i
            }
        }
        set wrong
    }]
}

test threads-1.1 {four threads give the answers of one thread} -body {
    set threads {}
    foreach id {1 2 3 4} {
        set t [thread::create -joinable]
        thread::send $t $work
        thread::send -async $t [worker $id $rounds $expected] result($id)
        lappend threads $t
    }
    set outcome {}
    foreach id {1 2 3 4} {
        if {![info exists result($id)]} {
            vwait result($id)
        }
        lappend outcome $id [lrange $result($id) 0 4]
    }
    foreach t $threads {
        thread::release $t
        thread::join $t
    }
    set outcome
} -result {1 {} 2 {} 3 {} 4 {}}

cleanupTests
exit [expr {$::tcltest::numTests(Failed) > 0}]
