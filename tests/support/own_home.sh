#!/bin/bash
# Runs a command with a home of its own, which goes with it: own_home.sh COMMAND...
# What was downloaded for tests stays where it is, below CORVANE_CACHE.
set -euo pipefail
export CORVANE_CACHE="${CORVANE_CACHE:-${XDG_CACHE_HOME:-${HOME:-/nonexistent}/.cache}/corvane}"
if [[ -z ${XAUTHORITY:-} && -e ${HOME:-}/.Xauthority ]]; then
  export XAUTHORITY=$HOME/.Xauthority
fi
if [[ -n ${WAYLAND_DISPLAY:-} && $WAYLAND_DISPLAY != /* ]]; then
  export WAYLAND_DISPLAY=${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY
fi
HOME=$(mktemp -d "${TMPDIR:-/tmp}/corvane-home-XXXXXX")
trap 'rm -rf "$HOME"' EXIT
trap 'exit 143' TERM
mkdir -p -m 700 "$HOME"/{runtime,.config,.cache,.local,.local/share,.local/state}
export CORVANE_OWN_HOME=$HOME
export HOME XDG_CONFIG_HOME=$HOME/.config XDG_CACHE_HOME=$HOME/.cache XDG_DATA_HOME=$HOME/.local/share
export XDG_STATE_HOME=$HOME/.local/state XDG_RUNTIME_DIR=$HOME/runtime
unset DBUS_SESSION_BUS_ADDRESS
"$@"
