# What the demo does in a way of its own on Linux: the daemon is a plain process. Sourced by scripts/demo, not run; the
# demo's files lie in $work.

demo_daemon=

# Builds, and makes the programs known by their names.
demo_programs() {
  need_packages "${build_packages[@]}"
  demo_build release
  export PATH="$PWD/build/release/bin:$PATH"
}

# Announces the services of the registration file with the settings of $work/slp.conf. Fails when it can't.
demo_serve() {
  slpd --config "$work/slp.conf" --regfile "$work/services.reg" --pidfile "$work/slpd.pid" --log "$work/slpd.log" &
  demo_daemon=$!
  for _ in $(seq 100); do
    [ -s "$work/slpd.pid" ] && return 0
    kill -0 "$demo_daemon" 2>/dev/null || break
    sleep 0.05
  done
  wait "$demo_daemon" || true
  demo_daemon=
  return 1
}

demo_end_serving() {
  kill -TERM "$demo_daemon"
  wait "$demo_daemon"
  demo_daemon=
}

# Lets the library start a daemon of its own, with the same settings.
demo_let_library_serve() {
  export KELSD_SLPD="$PWD/build/release/bin/slpd" KELSD_SLPD_PIDFILE="$work/own.pid"
}

# Ends whatever still runs.
demo_clean_up() {
  # Only after a failure does a daemon that the library started still run.
  [ ! -s "$work/own.pid" ] || kelsd slpd stop || true
  if [ -n "$demo_daemon" ] && kill -0 "$demo_daemon" 2>/dev/null; then
    kill -TERM "$demo_daemon"
    wait "$demo_daemon" || true
  fi
}
