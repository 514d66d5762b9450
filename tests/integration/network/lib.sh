# A network of hosts in namespaces of its own, and what its tests share. Sourced with the arguments of the test: the
# daemon and the test's programs. Everything runs in new namespaces for network, mounts and processes, so nothing is
# left behind, however it ends.

slpd=$1
program=$2
forged_datagram=$3
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

# require_ipv6: skips the test where the system has none.
require_ipv6() {
  if [ ! -e /proc/net/if_inet6 ]; then
    echo "skipped: this system has no IPv6"
    exit 77
  fi
}

# require_nobody: skips the test where no program can become the user nobody, as one without the administrator's rights
# over all users can't.
require_nobody() {
  if ! { setpriv --reuid "$(id -u nobody)" --regid "$(id -g nobody)" --clear-groups true; } 2>/dev/null; then
    echo "skipped: the user nobody is not there, or a program may not become it here"
    exit 77
  fi
}

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

# add_ipv6_host NUMBER: a host hNUMBER with the address fd00:77::NUMBER, and that of its link.
add_ipv6_host() {
  add_host "$1"
  ip -n "h$1" address del "10.77.0.$1/24" dev eth0
  ip -n "h$1" address add "fd00:77::$1/64" dev eth0 nodad
}

# groups_of_types NUMBER: the groups of types that a host hears at its network, one a line.
groups_of_types() {
  ip -n "h$1" -6 maddress show dev eth0 | sed -n 's/.*inet6 \(ff0[25]::1:1[0-3][0-9a-f][0-9a-f]\).*/\1/p' | LC_ALL=C sort -u
}

# link_address NUMBER: the IPv6 address of a host's link, once other hosts have had the time to object to it.
link_address() {
  ip -n "h$1" -6 -o address show dev eth0 scope link -tentative | sed -n 's/.* inet6 \([^/ ]*\).*/\1/p'
}

# await_link_address NUMBER: until there is one.
await_link_address() {
  local tries=0
  until [ -n "$(link_address "$1")" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 400 ] || { echo "host $1 gets no address of its link"; exit 1; }
    sleep 0.05 # nothing tells when an address may be used
  done
}

# on NUMBER COMMAND...: runs a command on a host, with the host's configuration for its SLP calls.
on() {
  local host=$1
  shift
  OpenSLPConfig="/run/hosts/$host/slp.conf" ip netns exec "h$host" "$@"
}

# start_daemon NUMBER [LINE of the configuration]...: a daemon with one service, service:x://hNUMBER, and those that the
# host has been given.
start_daemon() {
  local folder=/run/hosts/$1 host=$1
  shift
  printf '%s\n' "net.slp.port = $port" "net.slp.randomWaitBound = 100" "net.slp.datagramTimeouts = 200,200,200" "$@" \
    >"$folder/slp.conf"
  printf 'service:x://h%s,en,65535\n\n' "$host" >"$folder/slp.reg"
  if [ -f "$folder/more.reg" ]; then cat "$folder/more.reg" >>"$folder/slp.reg"; fi
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

# kill_daemon NUMBER: ends it without a chance to say so. Its sockets are closed then.
kill_daemon() {
  local daemon
  daemon=$(cut -d' ' -f1 "/run/hosts/$1/slpd.pid")
  kill -9 "$daemon"
  wait "$daemon" || true
}

# services FIRST LAST: the URLs of these hosts' services, as network_program prints them.
services() {
  local i
  for ((i = $1; i <= $2; i++)); do echo "service:x://h$i"; done | LC_ALL=C sort
}

# give_many NUMBER: 50 more services for a host's daemon that starts afterwards. No datagram holds them all.
give_many() {
  many "$1" "$1" | sed 's/$/,en,65535\n/' >"/run/hosts/$1/more.reg"
}

# many FIRST LAST: the URLs of what these hosts have been given, as network_program prints them.
many() {
  local host service
  for ((host = $1; host <= $2; host++)); do
    for ((service = 1; service <= 50; service++)); do echo "service:many://h$host:$((9000 + service))/one/of/many"; done
  done | LC_ALL=C sort
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

# Milliseconds that a daemon has to follow, from the command that changes an address on.
limit=2000
# When the last change began, and by how much the machine had been late then, in milliseconds.
changed=0
delayed=0

now() { echo "$((${EPOCHREALTIME/[.,]/} / 1000))"; }

# read_delay VARIABLE: the milliseconds that the machine itself has been late so far.
read_delay() {
  [ -n "${delay_PID:-}" ] || coproc delay { exec "$program" delay; }
  echo >&"${delay[1]}"
  read -r "$1" <&"${delay[0]}"
}

# change COMMAND...: runs a command that changes addresses; what follows is measured from its beginning.
change() {
  read_delay delayed
  changed=$(now)
  "$@"
}

# in_time WHAT EXPECTED COMMAND...: the command comes to print what is expected, and has done so within the limit. What
# a machine that stands still adds to that is not the daemon's.
in_time() {
  local what=$1 expected=$2 actual took late
  shift 2
  while true; do
    actual=$("$@" 2>&1) || true
    took=$(($(now) - changed))
    read_delay late
    took=$((took - (late - delayed)))
    if [ "$actual" = "$expected" ] || [ "$took" -gt "$limit" ]; then break; fi
    sleep 0.01 # nothing tells when another process has opened a socket
  done
  expect "$what, after $took ms" "$expected within $limit ms" \
    "$actual within $([ "$took" -le "$limit" ] && echo "$limit" || echo "$took") ms"
}

finish() {
  if [ "$failures" -gt 0 ]; then
    tail -n 30 /run/hosts/*/log
  fi
  exit "$((failures > 0))"
}
