# End-to-end tests that drive the Wine desktop from the Linux side (clicks, screenshots).
#
# The tray's presentation tests (Tests/e2e/tray_presentation_*) need none of this: Wine starts Linux
# programs from a Windows process, so the end-to-end program runs xdotool and ImageMagick's import
# itself and checks the outcome through the platform (windows, pixels, the log, the doubles' records).
# A start of a Linux program under Wine gives no handle to wait on: /bin/sh leaves the exit code in a
# file that the test polls (Tests/e2e/tray_presentation_desktop_win32.cpp).
