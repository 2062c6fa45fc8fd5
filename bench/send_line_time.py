#!/usr/bin/env python3
"""The whole Send of a Program of 200 targets changing every second for 120 seconds, to the simulated
transmitter pacing a real 9600-baud line; compared with the line time of the bytes the console sent."""
import os
import subprocess
import sys
import tempfile
import time

build = sys.argv[1] if len(sys.argv) > 1 else "build/bench"
sim = os.path.join(build, "src/sim/halvane-sim")
cli = os.path.join(build, "src/cli/halvane-cli")
TARGETS, SECONDS = 200, 120
BYTE_TIME = 10 / 9600

with tempfile.TemporaryDirectory() as folder:
    program = os.path.join(folder, "every-second.hvn")
    lines = ['"Target",%d' % TARGETS, '"Groups","0"', '"Seconds",%d' % SECONDS]
    for row in range(SECONDS):
        lines += ['"%s"' % ("Friend" if (row + col) % 2 else "Foe") for col in range(TARGETS)]
    with open(program, "wb") as f:
        f.write(("\r\n".join(lines) + "\r\n").encode())
    image = subprocess.run([cli, "--config", os.devnull, "image", program], check=True, capture_output=True).stdout
    values = image.count(b"\r\n")
    blocks = 1 if values <= 254 else round((values - 254) / 256 + 0.5) + 1
    sent = 5 + 2 + 256 + (blocks - 1) * 258
    received = 7 + (blocks - 1) + 5

    server = subprocess.Popen([sim, "--device", "transmitter", "--pace", "--quiet"], stdout=subprocess.PIPE, text=True)
    try:
        device = server.stdout.readline().strip().split("=", 1)[1]
        server.stdout.readline()  # the Wi-Fi line
        start = time.monotonic()
        subprocess.run([cli, "--config", os.devnull, "send", program, "--place", "1", "--device", device],
                       check=True, capture_output=True)
        took = time.monotonic() - start
    finally:
        server.terminate()
        server.wait()

line = sent * BYTE_TIME
both = (sent + received) * BYTE_TIME
print(f"send of {TARGETS} targets x {SECONDS} s: {values} image values, {blocks} blocks, {sent} bytes sent, "
      f"{received} received")
print(f"  took {took:.2f} s; line time of the bytes sent {line:.2f} s ({100 * (took / line - 1):+.1f}%); "
      f"of both directions {both:.2f} s ({100 * (took / both - 1):+.1f}%)")
