#!/bin/sh
# Installs what is missing, builds everything and runs every test.
#   ./test.sh              the release build
#   ./test.sh --sanitize   under AddressSanitizer and UndefinedBehaviorSanitizer
#   ./test.sh --threads    under ThreadSanitizer
set -eu
cd "$(dirname "$0")"
. setup/setup.sh

case "${1:-}" in
    "") preset=release ;;
    --sanitize) preset=asan-ubsan ;;
    --threads) preset=tsan ;;
    *) fail "Unknown argument $1; ./test.sh takes none, --sanitize or --threads." ;;
esac

install_packages
say "Checking the form of the code"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run -Werror ||
    fail "The lines above differ from .clang-format; clang-format -i FILE mends a file."
build "$preset"
levels=0
if [ "$preset" = release ]; then
    say "Checking the levels"
    "build/$preset/tools/vexo-levels" check content || levels=1
fi
say "Testing ($preset)"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1
# A screen for the tests of the GL device, when there is none; it stays up between two of
# them. Under the sanitizers they are skipped: the GL driver's own leaks would fail them.
screen=
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || screen="xvfb-run -a -s -noreset"
[ "$preset" = release ] || screen="env -u DISPLAY -u WAYLAND_DISPLAY"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
status=0
$screen ctest --test-dir "build/$preset" -j "$(nproc)" --output-on-failure --no-tests=error >"$log" 2>&1 ||
    status=$?
grep -vE '^ +Start +[0-9]+:' "$log" | grep -vE 'Test +#[0-9]+: .* Passed ' || true
failed=$(grep -cE 'Test +#[0-9]+: .*\*\*\*(Failed|Timeout|Exception|Not Run)' "$log" || true)
passed=$(grep -cE 'Test +#[0-9]+: .* Passed ' "$log" || true)
if [ "$status" = 0 ]; then
    say "Every test passed."
else
    say "Some tests failed; the lines above say which."
fi
printf '%s passed, %s failed\n' "$passed" "$failed"
if [ "$levels" != 0 ]; then
    say "The check of the levels failed; its lines at the top say which."
    status=1
fi
exit "$status"
