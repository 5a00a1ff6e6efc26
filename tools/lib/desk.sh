# shellcheck shell=bash
# Sourced after common.sh by scripts that drive the program on a machine without a display. They set `scratch` to a
# folder that they remove, call `start_desk SIZE`, and end what `started` holds.

: "${scratch:?}"
started=()

# end_started: the last first.
end_started() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; --i)); do
    end_process "${started[i]}"
  done
  started=()
}

# start_desk SIZE: an X server, a session bus and a window manager, and folders of their own for what programs keep.
start_desk() {
  mkdir -p "$scratch/data" "$scratch/config" "$scratch/runtime"
  chmod 700 "$scratch/runtime"
  export XDG_DATA_HOME=$scratch/data XDG_CONFIG_HOME=$scratch/config XDG_RUNTIME_DIR=$scratch/runtime
  unset WAYLAND_DISPLAY XDG_SESSION_TYPE QT_QPA_PLATFORM

  rm -f "$scratch/display" "$scratch/bus"
  Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp -noreset 3>"$scratch/display" >"$scratch/xvfb.log" 2>&1 </dev/null &
  started+=($!)
  wait_until 30 "the X server to name its display" test -s "$scratch/display"
  DISPLAY=:$(<"$scratch/display")
  export DISPLAY
  wait_until 30 "the X server to answer" xdpyinfo

  dbus-daemon --session --nofork --print-address=3 3>"$scratch/bus" >"$scratch/dbus.log" 2>&1 </dev/null &
  started+=($!)
  wait_until 30 "the session bus to name its address" test -s "$scratch/bus"
  DBUS_SESSION_BUS_ADDRESS=$(<"$scratch/bus")
  export DBUS_SESSION_BUS_ADDRESS

  # A window manager that leaves every key to the programs; openbox's own file takes Alt+Space for the window menu.
  cat >"$scratch/openbox.xml" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <theme><name>Clearlooks</name></theme>
  <keyboard></keyboard>
</openbox_config>
END
  openbox --sm-disable --config-file "$scratch/openbox.xml" >"$scratch/openbox.log" 2>&1 </dev/null &
  started+=($!)
  wait_until 30 "the window manager" window_manager_is_up
  hsetroot -add '#2d3a4f' -add '#56657a' -add '#a79a8f' -gradient 0 >/dev/null
}

# know_canvas PROGRAM: the person at the desk has seen the introduction, and the cards that show a newcomer around.
know_canvas() {
  mkdir -p "$XDG_CONFIG_HOME/Tallowby"
  printf '[General]\nlastSeenAppVersion=%s\nlastSeenFeedbackSurveyVersion=v1\ntallowby.hasSeenCanvasTutorial=true\n' \
    "$("$1" --version | cut -d ' ' -f 2)" >"$XDG_CONFIG_HOME/Tallowby/Tallowby.conf"
}

window_manager_is_up() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

# start_program PROGRAM LOG: PROGRAM in the background, what it says in LOG. Sets `agent` to its process.
start_program() {
  # What an earlier one said must not count.
  : >"$2"
  "$1" >"$2" 2>&1 </dev/null &
  agent=$!
  started+=("$agent")
  log=$2
  await "the program to be ready" said '[AppDelegate] ✅ Tallowby ready!'
}

said() {
  grep --quiet --fixed-strings -- "$1" "$log"
}

# said_times COUNT TEXT: the program has said TEXT at least COUNT times.
said_times() {
  (($(grep --count --fixed-strings -- "$2" "$log") >= $1))
}

# await WHAT COMMAND...: waits for what the program does, but not for a program that has gone.
await() {
  local what=$1
  shift
  # shellcheck disable=SC2317 # wait_until calls it
  so_or_gone() { "$@" || ! kill -0 "$agent"; }
  wait_until 30 "$what" so_or_gone "$@"
  kill -0 "$agent" 2>/dev/null || fail "the program ended while it was waited for: $what"
}
