# Debian packages that the scripts need, and how they get onto the machine. Sourced, not run.

# What it takes to build the library, the daemon and the tool. Without libseccomp the daemon filters no system calls.
build_packages=(g++ cmake ninja-build ccache libasio-dev libcli11-dev nlohmann-json3-dev libseccomp-dev)

# What the tests need besides: GoogleTest (its sources serve the cross build), the Windows cross compiler, a lister of
# exported symbols, the checker of the source style, and what makes networks of hosts and lets them lose packets.
test_packages=(libgtest-dev libgmock-dev googletest g++-mingw-w64-x86-64-posix binutils clang-format iproute2 nftables)

# What runs the Windows test programs.
windows_packages=(wine wine64)

# What the lint run needs besides.
lint_packages=(clang clang-tidy)

# What the programs with the address sanitizer and the fuzz targets need besides: clang builds them in half the time that g++
# takes, and its libraries have libFuzzer too. (Its thread sanitizer lets no test replace the heap's functions.)
sanitizer_packages=(clang libclang-rt-dev)

# What the benchmarks, and the lint run that reads them, need besides.
bench_packages=(libbenchmark-dev)

# need_packages NAME...: installs those that are missing and says which; without the right to, says what to run.
need_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=(env)
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
      if ! { command -v sudo >/dev/null && [ -t 0 ]; }; then
        echo "These packages are missing, and installing them takes root. Please run:" >&2
        echo "  apt-get install ${missing[*]}" >&2
        return 1
      fi
    fi
    as_root=(sudo env)
  fi
  echo "Installing: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"; } \
    >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    echo "Installing failed. By hand: apt-get install ${missing[*]}" >&2
    return 1
  fi
  rm -f "$log"
}
