# What the demo does in a way of its own for Windows: programs run under Wine, in a prefix in $work, and the daemon is the
# service of that prefix. Sourced by scripts/demo, not run; the demo's files lie in $work.
source scripts/lib/wine.sh

# windows_program NAME [ARGUMENT...]: its lines end as they do here.
windows_program() { "${wine_command[@]}" "$PWD/build/windows/bin/$1.exe" "${@:2}" </dev/null | tr -d '\r'; }
kelsd() { windows_program kelsd "$@"; }
slpd() { windows_program slpd "$@"; }
example_find_servers() { windows_program example_find_servers; }
example_announce_and_find() { windows_program example_announce_and_find; }

demo_programs() {
  need_packages "${build_packages[@]}" "${test_packages[@]}" "${windows_packages[@]}"
  demo_build windows --target slpd kelsd example_find_servers example_announce_and_find
  echo "Making a Wine prefix"
  enter_wine_prefix "$work/wine"
}

demo_serve() {
  slpd install --config "$work/slp.conf" --regfile "$work/services.reg" --log "$work/slpd.log" >/dev/null
  kelsd slpd start >/dev/null 2>"$work/start.log" && return 0
  slpd uninstall >/dev/null
  return 1
}

demo_end_serving() {
  kelsd slpd stop >/dev/null
  slpd uninstall >/dev/null
}

demo_let_library_serve() { slpd install --config "$work/slp.conf" >/dev/null; }

demo_clean_up() { end_wine_prefix "$work/wine"; }
