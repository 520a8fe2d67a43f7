# Runs every *.test file of this folder, each in its own tclsh process (the
# material registry is per process, so files cannot disturb one another).
# Exits non-zero when any test fails or any test file dies.

package require tcltest 2.2
namespace import ::tcltest::*

configure -testdir [file dirname [file normalize [info script]]] {*}$argv
exit [runAllTests]
