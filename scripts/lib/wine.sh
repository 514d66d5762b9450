# A Wine prefix of the scripts' own: no display, nothing of the user's Wine, quiet. Sourced, not run.

# The command that runs a Windows program, and whatever that starts. Wine needs a page at an address that Windows programs
# expect; once in a thousand starts the system's random layout has put something else there.
wine_command=(wine)
if setarch -R true 2>/dev/null; then wine_command=(setarch -R wine); fi

# enter_wine_prefix FOLDER: what this shell starts from here on runs in the prefix FOLDER, which is made if need be. Two
# shells may do so at the same time. Nothing is left to do where the caller is in that prefix already.
enter_wine_prefix() {
  [ "${WINEPREFIX:-}" = "$1" ] && return 0
  mkdir -p "$1"
  # No first-run offers of browsers and runtimes, no menu entries, no links from the prefix to the user's folders.
  export WINEPREFIX=$1 WINEARCH=win64 WINEDEBUG=-all HOME=$1 WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
  unset DISPLAY WAYLAND_DISPLAY
  (
    flock 9
    # The first program in a prefix makes its files, and with each new server it starts the prefix's services. They
    # would hold on to its output for good, so it isn't the program that somebody reads from. Nor is it wineboot: that
    # starts them a second time, and of two service managers one doesn't know the other's services. The server ends
    # a minute after the last program.
    if wineserver -p60 9>&-; then
      "${wine_command[@]}" cmd /c exit </dev/null >"$1/first-program.log" 2>&1 9>&-
    fi
  ) 9>"$1/lock" 2>/dev/null
}

# wine_processes FOLDER: id and name of each process in the prefix.
wine_processes() {
  local process
  for process in /proc/[0-9]*; do
    if grep -qzxF "WINEPREFIX=$1" "$process/environ" 2>/dev/null; then
      echo "${process#/proc/} $(cat "$process/comm" 2>/dev/null)"
    fi
  done
}

# wine_server FOLDER: the id of the prefix's server; nothing where none runs.
wine_server() { wine_processes "$1" | sed -nE 's/^([0-9]+) wineserver.*/\1/p'; }

# end_wine_prefix FOLDER: ends what still runs in the prefix, its server among it, and waits for that.
end_wine_prefix() {
  [ -d "$1" ] || return 0
  WINEPREFIX=$1 wineserver -k || true
  WINEPREFIX=$1 wineserver -w || true
  # Programs whose server has died wait for it for ever.
  wine_processes "$1" | sed -nE 's/^([0-9]+) .*\.exe$/\1/p' | xargs -r kill -9 || true
}
