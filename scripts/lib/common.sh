# Shared by the scripts of this folder: sourced, never run.

# Debian's programs before a user's own, and snmpd for users without the folders of the administrator's programs
export PATH=/usr/sbin:/usr/bin:/sbin:/bin:$PATH
root=$(cd "$(dirname "$0")/.." && pwd)

# note KIND NUMBER WHAT: for scripts/summary, which says at the end what was run; the kinds are "seconds" and "count".
note() { [ -z "${HWAGENT_RECORD-}" ] || echo "$*" >> "$HWAGENT_RECORD"; }

# One line before a step that takes long.
step() { echo "==> $*"; }

# fail TEXT: says it and ends the script.
fail() { echo "$(basename "$0"): $*" >&2; exit 1; }

# build_release [TARGET...]: configures the release preset when needed and builds it.
build_release() {
    step "configuring the release build in build/release"
    (cd "$root" && cmake --preset release > /dev/null)
    step "building (the first time takes a few minutes)"
    (cd "$root" && cmake --build --preset release ${1:+--target "$@"})
}

# timed NAME COMMAND...: runs a command and prints how long it took.
timed() {
    local name=$1 begin=$SECONDS
    shift
    step "$name"
    "$@"
    echo "==> $name: $((SECONDS - begin)) s"
    note seconds $((SECONDS - begin)) "$name"
}
