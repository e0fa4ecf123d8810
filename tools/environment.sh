# shellcheck shell=bash
# What ./run, ./test and ./bench share; sourced by them in the project's folder.

# The browser engine refuses to start its sandbox as root, and draws in software where there is no graphics card.
prepareBrowser() {
  if [[ $EUID -eq 0 ]]; then
    export QTWEBENGINE_DISABLE_SANDBOX=1
  fi
  if [[ ! -e /dev/dri ]]; then
    export QT_QUICK_BACKEND="${QT_QUICK_BACKEND:-software}"
    export QTWEBENGINE_CHROMIUM_FLAGS="${QTWEBENGINE_CHROMIUM_FLAGS:---disable-gpu}"
  fi
}

# What the compiler's cache has to overlook to keep what was compiled with precompiled headers.
export CCACHE_SLOPPINESS="${CCACHE_SLOPPINESS:-pch_defines,time_macros}"

# A folder that goes with the script, for what its programs want to leave somewhere.
makeScratch() {
  scratch=$(mktemp -d)
  started=()
  trap endStarted EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  if [[ ! -d ${XDG_RUNTIME_DIR:-} ]]; then
    mkdir -m 700 "$scratch/runtime"
    export XDG_RUNTIME_DIR="$scratch/runtime"
  fi
}

endStarted() {
  local at
  # The last one started ends first: a window manager before its display.
  for ((at = ${#started[@]} - 1; at >= 0; --at)); do
    kill "${started[at]}" 2>/dev/null || true
    wait "${started[at]}" 2>/dev/null || true
  done
  rm -rf "$scratch"
}

# waitUntil SECONDS COMMAND...: tells whether the command came true in time.
waitUntil() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    ((SECONDS < end)) || return 1
    sleep 0.1
  done
}

hasWindowManager() {
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

# A display of its own with a window manager, so that nothing shows up on the user's.
startDisplay() {
  unset WAYLAND_DISPLAY
  Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp >"$scratch/display" 2>"$scratch/display.log" </dev/null &
  started+=($!)
  if ! waitUntil 30 test -s "$scratch/display"; then
    cat "$scratch/display.log" >&2
    echo "the virtual display doesn't start" >&2
    return 1
  fi
  DISPLAY=:$(<"$scratch/display")
  export DISPLAY
  openbox --sm-disable >"$scratch/openbox.log" 2>&1 </dev/null &
  started+=($!)
  if ! waitUntil 30 hasWindowManager; then
    cat "$scratch/openbox.log" >&2
    echo "the window manager doesn't start" >&2
    return 1
  fi
}

# What the three build with, and where: a preset of CMake and its folder.
preset=dev buildFolder=build

# stage NAME COMMAND...: tells that a stage begins. A command that fails says why in one sentence, its last line.
stage() {
  echo "== $1"
  shift
  "$@"
}

# Whether a file as large as a program can be written in the folder.
hasRoom() {
  local trial=$1/room.$$ code=0
  head -c 20000000 /dev/zero 2>/dev/null >"$trial" || code=1
  rm -f "$trial"
  return $code
} 2>/dev/null

# giveUp STAGE WORDS...: the one sentence of a stage that failed, with the disk's word where that is full; false.
giveUp() {
  local name=$1 folder
  shift
  for folder in "$buildFolder" "${TMPDIR:-/tmp}"; do
    if ! mkdir -p "$folder" 2>/dev/null || ! hasRoom "$folder"; then
      set -- "there is no room in $folder: the disk is full or locked"
      break
    fi
  done
  echo "$name: failed, $*" >&2
  return 1
}

# logged NAME COMMAND...: the command's output goes into reports/NAME.log of the build and is shown only when it fails.
logged() {
  local log=$buildFolder/reports/$1.log
  shift
  mkdir -p "$buildFolder/reports" 2>/dev/null || return 1
  { "$@" >"$log" 2>&1 </dev/null; } 2>/dev/null && return
  cat "$log" >&2 || true
  return 1
}

configure() {
  logged configure cmake --preset "$preset" || giveUp configure "cmake says why above" || return 1
  # On a full disk cmake says that all went well.
  [[ -s $buildFolder/CMakeCache.txt && -s $buildFolder/build.ninja ]] ||
    giveUp configure "its files can't be written in $buildFolder: the disk is full or locked"
}

# A log sees how far the build is every quarter of a minute, and all that isn't told of a step that went well.
progress() {
  local line next=$SECONDS
  while IFS= read -r line; do
    if [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]]; then
      ((SECONDS >= next)) || continue
      next=$((SECONDS + 15))
      line="build: step ${BASH_REMATCH[1]} of ${BASH_REMATCH[2]}"
    fi
    [[ $line == "ninja: no work to do." ]] || echo "$line"
  done
}

# build [TARGET...]: a terminal sees the progress as it is.
build() {
  local command=(cmake --build "$buildFolder" --parallel "$(nproc)")
  [[ $# -eq 0 ]] || command+=(--target "$@")
  if [[ -t 1 ]]; then
    "${command[@]}"
  else
    NINJA_STATUS="[%f/%t] " "${command[@]}" 2>&1 | progress
  fi || giveUp build "the compiler or its tool says why above"
}

# Programs that were built with the sanitizers stop at their first finding. The engine deletes some of its own objects
# by the size of a base class. The software driver of OpenGL leaks when it's unloaded; nothing here draws with it.
prepareSanitizers() {
  export ASAN_OPTIONS=detect_leaks=1:new_delete_type_mismatch=0
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  export QT_QPA_OFFSCREEN_NO_GLX=1 QT_XCB_GL_INTEGRATION=none
  export LSAN_OPTIONS=print_suppressions=0:suppressions=$PWD/tests/support/leaks.supp
}
