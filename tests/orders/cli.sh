#!/usr/bin/env bash
# kelform as a command-line tool, with no display at all: exit codes, one message per failure,
# pictures written without a window.
set -u
kelform=$1
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
export XDG_RUNTIME_DIR=$out
fail=0
# expect <code> <stderr lines> <args...>
expect() {
  local code=$1 lines=$2; shift 2
  "$kelform" "$@" >"$out/stdout" 2>"$out/stderr"
  local got=$? n
  # Qt's offscreen platform says what it cannot do; that is not kelform's report
  n=$(grep -v "This plugin does not support" "$out/stderr" | grep -c .)
  if [ "$got" != "$code" ] || [ "$n" != "$lines" ]; then
    echo "FAIL: kelform $*: exit $got (want $code), $n error lines (want $lines):"; cat "$out/stderr"; fail=1
  fi
}
expect 0 0 --help
grep -q -- "--screenshot" "$out/stdout" && grep -q "Exit status" "$out/stdout" || { echo "FAIL: --help text"; fail=1; }
expect 0 0 --version
grep -qx "kelform [0-9][0-9.]*" "$out/stdout" || { echo "FAIL: --version says: $(cat "$out/stdout")"; fail=1; }
expect 0 0 --dump
grep -q "quantity (kel::KelNumber)" "$out/stdout" || { echo "FAIL: --dump lists no controls"; fail=1; }
expect 2 2 --no-such-option
expect 2 2 a.ui b.ui
expect 1 1 --dump "$out/missing.ui"
printf 'not a form' >"$out/broken.ui"
expect 1 1 --dump "$out/broken.ui"
expect 1 1 "$out/broken.ui" # no display to show it on
expect 2 2 --gallery "$out/broken.ui"
expect 0 0 --gallery --screenshot "$out/gallery.png"
expect 0 0 --db "$out/orders.sqlite" --png "$out/form.png"
for f in gallery form; do
  [ "$(head -c 4 "$out/$f.png" | tail -c 3)" = PNG ] || { echo "FAIL: no $f.png"; fail=1; }
done
exit $fail
