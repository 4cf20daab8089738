# What the checks of an installed root share. They run in a network namespace (tests/in-namespace)
# and set `root` before they read this file.

: "${root:?}"

die() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# As an ordinary user, with a home that is gone with the root's /tmp.
as_user() {
    (become_user "$@")
}

# The same in place of the shell that says so, which `&` makes: its id is the program's.
become_user() {
    exec chroot --userspec=65534:65534 "$root" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/tmp/home \
        LC_ALL=C.UTF-8 "$@"
}

make_home() {
    rm -rf "$root/tmp/home"
    install -d -m 700 -o 65534 -g 65534 "$root/tmp/home"
}

# Starts the simulated ECU on its own ports and sets `simulator`.
start_simulator() {
    local output=$root/tmp/simulator.log
    : >"$output"
    become_user tarvio-ecu-simulator >"$output" 2>&1 &
    simulator=$!
    for _ in $(seq 100); do
        ! grep -q '^listening on 127.0.0.1:50002$' "$output" || return 0
        sleep 0.1
    done
    die "the simulated ECU did not start: $(cat "$output")"
}

stop_simulator() {
    kill "$simulator"
    wait "$simulator" || die "the simulated ECU ended with status $?"
}
