# The HTML report and the three pictures in a real browser: headless
# Chromium renders the page "laminate report" writes, and each picture
# alone, to PNGs, and its console stays silent (the page's security policy
# turns any script or outside fetch into a console error).
# Run by ctest under the label "browser"; without a Chromium it prints SKIP
# and exits 77, which ctest counts as skipped.  scripts/deps.sh installs
# Debian's chromium-headless-shell when it can; LAMINATE_CHROMIUM names
# another binary.

source [file join [file dirname [info script]] report_helpers.tcl]
configure {*}$argv

set ::browser ""
foreach candidate [list [expr {[info exists env(LAMINATE_CHROMIUM)] ? $env(LAMINATE_CHROMIUM) : ""}] \
        chromium-headless-shell chromium] {
    if {$candidate ne "" && [auto_execok $candidate] ne ""} {
        set ::browser [lindex [auto_execok $candidate] 0]
        break
    }
}
if {$::browser eq ""} {
    puts "SKIP: no headless Chromium (chromium-headless-shell or chromium) on PATH;\
        scripts/deps.sh installs it where it can, LAMINATE_CHROMIUM names one"
    exit 77
}

# Renders a file to a PNG of the given size; returns the console lines and
# the PNG's {signature width height size}.
proc render {file png width height profile} {
    set log $png.log
    catch {
        # The sanitizer build preloads its runtimes into tclsh; not into the browser.
        exec env -u LD_PRELOAD $::browser --headless --no-sandbox --disable-gpu --disable-quic \
            --no-first-run --disable-background-networking --disable-component-update \
            --disable-sync --user-data-dir=$profile --enable-logging=stderr --v=0 \
            --window-size=$width,$height --screenshot=$png file://$file 2>$log
    }
    set console [lsearch -all -inline [split [slurp $log] \n] *:CONSOLE*]
    set chan [open $png rb]
    set head [read $chan 24]
    close $chan
    binary scan $head x16IuIu w h
    list $console [list [string range $head 1 3] $w $h [file size $png]]
}

# The screenshots stay in the test's folder (under the build folder) to be
# looked at: report.png, profile.png, ratings.png, envelope.png.
set dir [file join [temporaryDirectory] browser]
file delete -force $dir
file mkdir [file join $dir profile]

test browser-1.1 {Chromium renders the HTML report to a PNG with nothing in its console} -body {
    set html [file join $dir report.html]
    lassign [runLaminate report -html $html -svg $dir] status - err
    lassign [render $html [file join $dir report.png] 1000 4200 [file join $dir profile]] console png
    list $status [llength [split $err \n]] $console [lrange $png 0 2] [expr {[lindex $png 3] > 100000}]
} -result {0 4 {} {PNG 1000 4200} 1}

test browser-1.2 {each picture alone renders at its own size with nothing in the console} -body {
    set results {}
    foreach picture {profile ratings envelope} {
        set svg [file join $dir $picture.svg]
        set root [lindex [elements [slurp $svg] svg $picture] 0]
        lassign [render $svg [file join $dir $picture.png] [dict get $root width] \
            [dict get $root height] [file join $dir profile]] console png
        lappend results $console [expr {[lrange $png 1 2] eq [list [dict get $root width] [dict get $root height]]
            && [lindex $png 3] > 20000}]
    }
    puts "screenshots: [join [lmap p {report profile ratings envelope} {file join $dir $p.png}] {, }]"
    set results
} -result {{} 1 {} 1 {} 1}

set failed [expr {$::tcltest::numTests(Failed) > 0}]
cleanupTests
exit $failed
