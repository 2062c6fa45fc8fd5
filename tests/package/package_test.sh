#!/usr/bin/env bash
# The Debian package as a range officer's laptop would get it: extracted into a scratch folder, its files
# where the desktop and the console look for them, its desktop entry valid, its dependencies declared,
# its tools answering from where they were installed, and the console starting on the simulated range.
#   package_test.sh PACKAGE_BUILD_DIR VERSION EXAMPLE.hvn BUILD_TREE_CLI
set -uo pipefail
build=$1 version=$2 example=$3 treeCli=$4
deb="$build/halvane_${version}_amd64.deb"
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

[ -f "$deb" ] || { echo "FAIL: no $deb; scripts/package builds it (scripts/test runs it first)"; exit 1; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
dpkg-deb -x "$deb" "$scratch/root" || fail "dpkg-deb -x"
root=$scratch/root

for f in usr/bin/halvane usr/bin/halvane-cli usr/bin/halvane-sim \
  usr/share/applications/halvane.desktop usr/share/icons/hicolor/scalable/apps/halvane.svg \
  usr/share/doc/halvane/manual.html usr/share/doc/halvane/copyright \
  usr/share/man/man1/halvane.1.gz usr/share/man/man1/halvane-cli.1.gz usr/share/man/man1/halvane-sim.1.gz \
  usr/share/doc/halvane/changelog.gz; do
  [ -s "$root/$f" ] || fail "missing /$f"
done
# Settings belong to the user: the package ships none.
[ -z "$(find "$root" -iname 'hvn.cfg')" ] || fail "the package ships an hvn.cfg"
# Every picture the manual shows is in the package beside it.
grep -o 'src="[^"]*"' "$root/usr/share/doc/halvane/manual.html" | sed 's/src="//; s/"$//' | while read -r img; do
  [ -f "$root/usr/share/doc/halvane/$img" ] || echo "FAIL: the manual's $img is not in the package"
done | grep . && failures=$((failures + 1))

desktop-file-validate "$root/usr/share/applications/halvane.desktop" || fail "desktop-file-validate"
depends=$(dpkg-deb -f "$deb" Depends)
for d in libqt6widgets6 libqt6serialport6 libgsf-1-114 qt6-qpa-plugins libc6; do
  [[ ",$depends" == *", $d"* || ",$depends" == *",$d"* ]] || fail "Depends lacks $d: $depends"
done
zcat "$root/usr/share/man/man1/halvane-cli.1.gz" | grep -q '^\.TH HALVANE-CLI "1"' || fail "halvane-cli(1)"

export HOME=$scratch/home XDG_CONFIG_HOME=$scratch/home/.config XDG_RUNTIME_DIR=$scratch/run
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
for tool in halvane halvane-cli halvane-sim; do
  got=$("$root/usr/bin/$tool" --version) || fail "$tool --version exits $?"
  [ "$got" = "$tool $version" ] || fail "$tool --version says '$got'"
done
"$root/usr/bin/halvane-cli" grid "$example" >"$scratch/grid" || fail "the installed halvane-cli grid exits $?"
ASAN_OPTIONS=detect_leaks=0 "$treeCli" grid "$example" >"$scratch/grid-tree"
cmp -s "$scratch/grid" "$scratch/grid-tree" || fail "the installed halvane-cli reads the example otherwise"

# The console on the simulated range for two seconds: still running, with the simulated devices'
# pseudo-terminals open (a range that could not start leaves only its message box up).
QT_QPA_PLATFORM=offscreen "$root/usr/bin/halvane" --simulate >"$scratch/console.log" 2>&1 &
console=$!
sleep 2
if ! kill -0 $console 2>/dev/null; then
  wait $console
  fail "the console ended with $? within two seconds"
  cat "$scratch/console.log"
elif ! ls -l /proc/$console/fd | grep -q ptmx; then
  fail "the console runs, but its simulated range has no pseudo-terminal open"
fi
kill $console 2>/dev/null
wait $console 2>/dev/null

[ $failures -eq 0 ] && echo "package $deb: $(du -k "$deb" | cut -f1) KiB; Depends: $depends"
exit $((failures > 0))
