# shellcheck shell=bash
# What every script shares; sourced, not run. Afterwards $root is the top of the tree.
# Everything here speaks on standard error, so that a program's own output stays clean.

set -euo pipefail

# shellcheck disable=SC2034  # the scripts use it
root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)

# ccache may reuse the tests' precompiled header.
export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}

say() { printf '%s\n' "$*" >&2; }

fail() {
  say "$(basename -- "$0"): $*"
  exit 1
}

cores() { nproc 2>/dev/null || echo 2; }

# usage: prints the comment that opens the calling script and ends it, when asked for.
usage_if_asked() {
  case "${1:-}" in
    -h | --help)
      awk 'NR > 1 { if (!/^#/) exit; sub(/^# ?/, ""); print }' "$0"
      exit 0
      ;;
  esac
}

# A phase is a heading before a long piece of work and a line in the table of timings.
phase_name=
phase_table=

phase() {
  phase_end
  phase_name=$1
  phase_start=$SECONDS
  say
  say "== $phase_name"
}

phase_end() {
  if [ -n "$phase_name" ]; then
    phase_table+=$(printf '  %-44s %5d s' "$phase_name" $((SECONDS - phase_start)))$'\n'
    phase_name=
  fi
}

print_phases() {
  phase_end
  say
  say "Time so far:"
  printf '%s  %-44s %5d s\n' "$phase_table" "together" "$SECONDS" >&2
}
