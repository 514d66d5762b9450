# A network of hosts in namespaces of its own, and what its tests share. Sourced with the arguments of the test: the
# daemon and the test's program. Everything runs in new namespaces for network, mounts and processes, so nothing is
# left behind, however it ends.

slpd=$1
program=$2
port=4270

if [ -z "${NETWORK_TEST_INSIDE:-}" ]; then
  command -v ip >/dev/null || { echo "skipped: there is no ip command (package iproute2)"; exit 77; }
  into=(unshare --net --mount --pid --fork --kill-child --mount-proc)
  [ "$(id -u)" -eq 0 ] || into+=(--user --map-root-user)
  if ! "${into[@]}" sh -c 'mount -t tmpfs tmpfs /run && ip link add probe type bridge' 2>/dev/null; then
    echo "skipped: network namespaces are not permitted here"
    exit 77
  fi
  exec "${into[@]}" env NETWORK_TEST_INSIDE=yes "$0" "$@"
fi

mount -t tmpfs tmpfs /run
mkdir -p /run/netns /run/hosts
ip link set lo up
ip link add bridge type bridge mcast_snooping 0
ip link set bridge up
failures=0

# add_host NUMBER: a host hNUMBER with the address 10.77.0.NUMBER.
add_host() {
  ip netns add "h$1"
  ip link add "p$1" type veth peer name eth0 netns "h$1"
  ip link set "p$1" master bridge up
  ip -n "h$1" address add "10.77.0.$1/24" dev eth0
  ip -n "h$1" link set lo up
  ip -n "h$1" link set eth0 up
  mkdir -p "/run/hosts/$1"
}

# on NUMBER COMMAND...: runs a command on a host, with the host's configuration for its SLP calls.
on() {
  local host=$1
  shift
  OpenSLPConfig="/run/hosts/$host/slp.conf" ip netns exec "h$host" "$@"
}

# start_daemon NUMBER [LINE of the configuration]...: a daemon with one service, service:x://hNUMBER.
start_daemon() {
  local folder=/run/hosts/$1 host=$1
  shift
  printf '%s\n' "net.slp.port = $port" "net.slp.randomWaitBound = 100" "net.slp.datagramTimeouts = 200,200,200" "$@" \
    >"$folder/slp.conf"
  printf 'service:x://h%s,en,65535\n\n' "$host" >"$folder/slp.reg"
  rm -f "$folder/slpd.pid"
  ip netns exec "h$host" "$slpd" --config "$folder/slp.conf" --regfile "$folder/slp.reg" \
    --pidfile "$folder/slpd.pid" 2>>"$folder/log" &
  local tries=0
  until [ -s "$folder/slpd.pid" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 400 ] || { echo "the daemon of host $host does not start:"; cat "$folder/log"; exit 1; }
    sleep 0.05 # nothing tells when another process has written a file
  done
}

# kill_daemon NUMBER: ends it without a chance to say so.
kill_daemon() {
  kill -9 "$(cut -d' ' -f1 "/run/hosts/$1/slpd.pid")"
}

# services FIRST LAST: the URLs of these hosts' services, as network_program prints them.
services() {
  local i
  for ((i = $1; i <= $2; i++)); do echo "service:x://h$i"; done | LC_ALL=C sort
}

# expect WHAT EXPECTED ACTUAL: counts what is not as it should be.
expect() {
  if [ "$2" = "$3" ]; then
    echo "ok: $1"
  else
    echo "FAILED: $1"
    diff <(echo "$2") <(echo "$3") || true
    failures=$((failures + 1))
  fi
}

# expect_soon WHAT EXPECTED COMMAND...: the command comes to print what is expected within 20 seconds.
expect_soon() {
  local what=$1 expected=$2 actual end=$((SECONDS + 20))
  shift 2
  while actual=$("$@") || true; [ "$actual" != "$expected" ] && [ "$SECONDS" -lt "$end" ]; do
    sleep 0.1 # nothing tells when another host has been told of a service
  done
  expect "$what" "$expected" "$actual"
}

finish() {
  if [ "$failures" -gt 0 ]; then
    tail -n 30 /run/hosts/*/log
  fi
  exit "$((failures > 0))"
}
