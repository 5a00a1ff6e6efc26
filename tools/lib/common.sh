# shellcheck shell=bash
# Sourced by the scripts of this repository: how they speak, fail, wait and end what they started.

say() {
  printf '%s\n' "$*"
}

step() {
  printf '\n==> %s\n' "$*"
}

fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# wait_until SECONDS WHAT COMMAND...: asks COMMAND twenty times a second until it succeeds; fails, naming WHAT, when it
# never does.
wait_until() {
  local seconds=$1 what=$2
  shift 2
  local end=$((SECONDS + seconds))
  until "$@" >/dev/null 2>&1; do
    if ((SECONDS >= end)); then
      printf 'error: waited %s s in vain: %s\n' "$seconds" "$what" >&2
      return 1
    fi
    sleep 0.05
  done
}

# end_process PID: asks it to end, gives it five seconds, then makes it.
end_process() {
  local pid=$1
  kill -TERM "$pid" 2>/dev/null || return 0
  local tries=0
  while kill -0 "$pid" 2>/dev/null; do
    if ((++tries > 100)); then
      kill -KILL "$pid" 2>/dev/null
      break
    fi
    sleep 0.05
  done
  wait "$pid" 2>/dev/null || true
}
