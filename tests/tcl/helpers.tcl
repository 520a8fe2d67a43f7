# Shared by every test file: loads the package and builds material records.

package require tcltest 2.2
namespace import ::tcltest::*
package require Laminate 1.0

# One layer of a record, field by field in record order.  The defaults make
# a 1-thick, 0-degree ply whose stresses and strains are easy to work out by
# hand (compliance 1/E1 = 0.01, -nu12/E1 = -0.003, 1/E2 = 0.1, 1/G12 = 0.2).
set ::layerFields {E1 E2 nu12 G12 G13 G23 Xc Yc Xt Yt S12 S23 S13 s8
    angle t sw flag}
set ::layerDefaults {E1 100 E2 10 nu12 0.3 G12 5 G13 4 G23 3 Xc 50 Yc 20
    Xt 50 Yt 20 S12 10 S23 8 S13 6 s8 0.5 angle 0 t 1 sw 1.5 flag 1}

# [layer ?field value ...?]: the 18 numbers of one layer.
proc layer {args} {
    set d [dict merge $::layerDefaults $args]
    lmap f $::layerFields {dict get $d $f}
}

# [record layer ...]: a full record, the layer count first.
proc record {args} {
    concat [llength $args] {*}$args
}

# Runs script in a new tclsh with the package loaded and returns what it
# printed: for tests that need the registry in a known state (it is per
# process and never shrinks).  The script finds the default layer in $ply.
proc fresh {script} {
    exec [interpreter] << "package require Laminate\nset ply {[layer]}\n$script"
}

# Numbers equal to about 1e-9 of the largest magnitude in the list (so a
# rounding residue beside a large value counts as zero).  Nested lists are
# flattened one level, so {{1 2} {3}} matches {1 2 3}.
proc approxMatch {expected actual} {
    set expected [concat {*}$expected]
    set actual [concat {*}$actual]
    if {[llength $expected] != [llength $actual]} {
        return 0
    }
    set scale 0.0
    foreach e $expected {
        set scale [expr {max($scale, abs($e))}]
    }
    foreach e $expected a $actual {
        if {![string is double -strict $a]
                || abs($e - $a) > 1e-9 * $scale + 1e-12} {
            return 0
        }
    }
    return 1
}
customMatch approx approxMatch
