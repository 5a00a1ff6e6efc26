# shellcheck shell=bash
# Sourced by what runs on Node.js: the backend on the loopback interface and its tests. Both need common.sh.

node_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/build/backend

# what_node_lacks: prints why there is no Node.js to work with; nothing when there is.
what_node_lacks() {
  if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
    printf 'Node.js and npm are not installed'
  elif ! node -e 'process.exit(parseInt(process.versions.node) < 20 ? 1 : 0)'; then
    printf 'Node.js is older than version 20'
  fi
}

# run_on_node SCRIPT ARGUMENT...: in place of this process, with the packages of tests/support/backend. Exits with 77,
# which CTest takes for "skipped", when something is missing.
run_on_node() {
  local lacks
  lacks=$(what_node_lacks)
  if [[ -z $lacks && ! -e $node_folder/installed.json ]]; then
    lacks="its packages are not there; tools/install-node-packages fetches them"
  fi
  if [[ $lacks ]]; then
    say "The backend on the loopback interface cannot run: $lacks."
    exit 77
  fi
  NODE_PATH=$node_folder/node_modules exec node "$@"
}
