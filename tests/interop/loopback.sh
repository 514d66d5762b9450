#!/usr/bin/env bash
# A service that the Windows build registers is found by the native tool, and the other way round: by a question to one
# host and by multicast, over the loopback interface.
#
# usage: loopback.sh NATIVE WINDOWS EMULATOR WORK
#   NATIVE, WINDOWS  the folders with kelsd and slpd of either build
#   EMULATOR         runs a Windows program in a Wine prefix: EMULATOR PREFIX PROGRAM ARGUMENT...
#   WORK             a folder for what the test makes; it is made anew
# Exit status: 0 all found, 77 there are no native programs, else not.
set -euo pipefail
native=$1 windows=$2 emulator=$3 work=$4

if ! [ -x "$native/kelsd" ] || ! [ -x "$native/slpd" ]; then
  echo "There are no native programs in $native: build the preset \"debug\" first."
  exit 77
fi

rm -rf "$work"
mkdir -p "$work"
export KELSD_SLPD="$native/slpd" KELSD_SLPD_PIDFILE="$work/slpd.pid"
configuration=$work/slp.conf
# The file system's root is a drive of every Wine prefix.
windows_configuration=Z:${configuration//\//\\}
url=service:zdrest.tamro:http://127.0.0.1:8080

# kelsd WHO ARGUMENT...: the tool of the build WHO. With replace=exec it takes the place of the shell that calls it.
replace=
kelsd() {
  case $1 in
    native) $replace "$native/kelsd" "${@:2}" --config "$configuration" ;;
    windows) $replace "$emulator" "$work/wine" "$windows/kelsd.exe" "${@:2}" --config "$windows_configuration" ;;
  esac
}
windows_slpd() { "$emulator" "$work/wine" "$windows/slpd.exe" "$@"; }

registering=
cleanup() {
  [ -z "$registering" ] || kill "$registering" 2>/dev/null || true
  # Nobody's unless a step failed.
  kelsd native slpd stop >/dev/null 2>&1 || true
  [ ! -d "$work/wine" ] || WINEPREFIX=$work/wine WINEDEBUG=-all wineserver -k || true
}
trap cleanup EXIT

fail() {
  echo "FAILED: $*"
  tail -n +1 "$work"/*.log
  exit 1
}

# register WHO: registers the service in the background, with WHO for its server name. The port is none of those that
# other tests take. It may be another program's: then the daemon doesn't start, and the next port is tried.
register() {
  local log=$work/$1-registers.log
  for _ in 1 2 3 4 5; do
    printf 'net.slp.port = %s\nnet.slp.interfaces = 127.0.0.1\nnet.slp.useScopes = TAMRO\n' \
      $((26000 + RANDOM % 6000)) >"$configuration"
    replace=exec kelsd "$1" register zdrest --address 127.0.0.1:8080 --attr "x-server-name=$1" \
      </dev/null >"$log" 2>&1 &
    registering=$!
    for _ in $(seq 300); do
      ! grep -q '^Registered' "$log" || return 0
      kill -0 "$registering" 2>/dev/null || break
      sleep 0.1
    done
    kill "$registering" 2>/dev/null || true
  done
  fail "$1 could not register the service"
}

# expect_found WHO REGISTRAR [OPTION...]: WHO finds the service, and reads that it is the one of REGISTRAR.
expect_found() {
  local answer way=${*:3}
  answer=$(kelsd "$1" find zdrest "${@:3}" --json | tr -d '\r') || fail "$1: find zdrest $way"
  [[ $answer == *"\"url\": \"$url\""* ]] || fail "$1: find zdrest $way: $answer"
  answer=$(kelsd "$1" attributes "$url" "${@:3}" --json | tr -d '\r') || fail "$1: attributes $way"
  [[ $answer == *"\"x-server-name\": \"$2\""* ]] || fail "$1: attributes $way: $answer"
  echo "$1 has found the service of $2 by ${way:-multicast}"
}

# expect_gone WHO: WHO is told that there is no service any more.
expect_gone() {
  local status=0
  kelsd "$1" find zdrest --address 127.0.0.1 >"$work/gone.log" 2>&1 || status=$?
  [ "$status" -eq 1 ] || fail "$1 was to find nothing, but ended with status $status"
  echo "$1 finds no service any more"
}

# 1. The Windows build registers, its daemon under the service manager of the prefix; the native tool finds.
: >"$configuration"
windows_slpd install --config "$windows_configuration" >"$work/install.log" 2>&1 || fail "slpd install"
register windows
expect_found native windows --address 127.0.0.1
expect_found native windows
# Before the program's next renewal, minutes from here, nobody brings the service back.
kelsd windows deregister "$url" >"$work/deregister.log" 2>&1 || fail "deregister"
expect_gone native
kill "$registering"
wait "$registering" || true
registering=
kelsd windows slpd stop >"$work/stop.log" 2>&1 || fail "slpd stop"
windows_slpd uninstall >"$work/uninstall.log" 2>&1 || fail "slpd uninstall"

# 2. The native tool registers, the Windows build finds.
register native
expect_found windows native --address 127.0.0.1
expect_found windows native
kill "$registering"
wait "$registering" || fail "the native registration ended with an error"
registering=
expect_gone windows
kelsd native slpd stop >"$work/stop.log" 2>&1 || fail "slpd stop"
