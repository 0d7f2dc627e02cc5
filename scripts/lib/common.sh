# shellcheck shell=bash
# What every script here shares. Sourced, never run; sets the shell's rules and goes to the root of
# the repository.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

say() {
    printf '%s\n' "$*" >&2
}

fail() {
    say "$(basename "$0"): $*"
    exit 1
}

# quietly COMMAND...: runs the command and shows what it printed only if it fails.
quietly() {
    local output status=0
    output=$(mktemp)
    "$@" >"$output" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        cat "$output" >&2
        say "failed with status $status: $*"
    fi
    rm -f "$output"
    return "$status"
}

# wait_until SECONDS COMMAND...: asks again and again until the command succeeds; fails when the time
# is over.
wait_until() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        [ "$SECONDS" -lt "$end" ] || return 1
        sleep 0.02
    done
}
