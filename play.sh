#!/bin/sh
# Installs what is missing, builds the game and starts it. Arguments are the
# program's switches, such as -inawindow or -software.
set -eu
launch=$PWD
cd "$(dirname "$0")"
root=$PWD
. setup/setup.sh

install_packages
build release marlowick
say "Starting Marlowick"
cd "$launch"
status=0
"$root/build/release/marlowick" "$@" || status=$?
if [ "$status" = 0 ]; then
    say "Marlowick has ended."
else
    say "Marlowick ended with an error (exit code $status); the lines above say why."
fi
exit "$status"
