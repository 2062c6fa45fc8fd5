#!/usr/bin/env bash
# Run under xvfb-run from the repository root with a debug build in build/; writes PNGs to /tmp/demo.
# The operator's round: build a Program with the mouse, save it, close it, open it again.
cd "$(dirname "$0")/../.." && mkdir -p /tmp/demo
printf '[Settings]\r\nTargets=8\r\nCols=4\r\nLMC-Radio=True\r\nLM-Series=True\r\n' > /tmp/demo/hvn.cfg
ASAN_OPTIONS=detect_leaks=0 build/src/app/halvane --config /tmp/demo/hvn.cfg &
pid=$!
sleep 4
x() { xdotool "$@"; sleep 0.4; }
x mousemove 100 68 click 1; x mousemove 127 89 click 1; sleep 1
x mousemove 601 382 click 1; sleep 1
x mousemove 176 146 click 1
x mousemove 310 206 keydown ctrl click 1 keyup ctrl
x mousemove 444 306 keydown ctrl click 1 keyup ctrl
x mousemove 600 400 click 3; sleep 1
x mousemove 446 361 click 1; x mousemove 646 414 click 1; x mousemove 545 335 click 1 click 1
x mousemove 586 452 click 1; sleep 0.5
x mousemove 92 226 click 1; sleep 0.5
x mousemove 150 257 click 1; sleep 0.5
x mousemove 540 388 click 1; sleep 0.5
import -window root /tmp/demo/1-built.png
# Save As: the dialog's file name box, a name, Return.
x mousemove 100 68 click 1; x mousemove 135 157 click 1; sleep 1.5
import -window root /tmp/demo/2-saveas.png
x mousemove 568 522 click 1
xdotool type --delay 20 /tmp/demo/operator.hvn; sleep 0.3
x key Return; sleep 1
x mousemove 100 68 click 1; x mousemove 130 133 click 1; sleep 0.5
import -window root /tmp/demo/3-closed.png
x mousemove 100 68 click 1; x mousemove 129 111 click 1; sleep 1.5
x mousemove 568 522 click 1
xdotool type --delay 20 /tmp/demo/operator.hvn; sleep 0.3
x key Return; sleep 1.5
x mousemove 1400 900
import -window root /tmp/demo/4-reopened.png
kill $pid; wait $pid 2>/dev/null
