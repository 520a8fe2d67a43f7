# The HTML report in a real browser: headless Chromium renders the page the
# report job writes to a PNG, and its console stays silent (the page's
# security policy turns any script or outside fetch into a console error).
# Run by ctest under the label "browser"; without a Chromium it prints SKIP
# and exits 77, which ctest counts as skipped.  scripts/deps.sh installs
# Debian's chromium-headless-shell when it can; LAMINATE_CHROMIUM names
# another binary.

source [file join [file dirname [info script]] report_helpers.tcl]
configure {*}$argv

set browser ""
foreach candidate [list [expr {[info exists env(LAMINATE_CHROMIUM)] ? $env(LAMINATE_CHROMIUM) : ""}] \
        chromium-headless-shell chromium] {
    if {$candidate ne "" && [auto_execok $candidate] ne ""} {
        set browser [lindex [auto_execok $candidate] 0]
        break
    }
}
if {$browser eq ""} {
    puts "SKIP: no headless Chromium (chromium-headless-shell or chromium) on PATH;\
        scripts/deps.sh installs it where it can, LAMINATE_CHROMIUM names one"
    exit 77
}

test browser-1.1 {Chromium renders the HTML report to a PNG with nothing in its console} -setup {
    set dir [makeDirectory browser]
    set profile [file join $dir profile]
    file mkdir $profile
} -body {
    set html [file join $dir report.html]
    set png [file join $dir report.png]
    lassign [runReport -html $html] status - err
    set log [file join $dir console.log]
    catch {
        # The sanitizer build preloads its runtimes into tclsh; not into the browser.
        exec env -u LD_PRELOAD $browser --headless --no-sandbox --disable-gpu --disable-quic --no-first-run \
            --disable-background-networking --disable-component-update --disable-sync \
            --user-data-dir=$profile --enable-logging=stderr --v=0 \
            --window-size=1000,2600 --screenshot=$png file://$html 2>$log
    }
    set console [lsearch -all -inline [split [slurp $log] \n] *:CONSOLE*]
    set chan [open $png rb]
    set head [read $chan 24]
    close $chan
    binary scan $head x16IuIu width height
    list $status $err $console [string range $head 1 3] $width $height \
        [expr {[file size $png] > 50000}]
} -cleanup {
    removeDirectory browser
} -result {0 {} {} PNG 1000 2600 1}

set failed [expr {$::tcltest::numTests(Failed) > 0}]
cleanupTests
exit $failed
