# shellcheck shell=bash disable=SC2034
# Set-up of a Debian 12 machine, sourced by the other scripts: checks for what a build needs and
# installs what is missing. Quick when nothing is.
#
#   source scripts/setup.sh; set_up "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"

# The top of the source tree, whatever the working directory.
ORBELO_TOP=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

BUILD_PACKAGES=(g++ cmake ninja-build)
# What weigh and scalesim are built with.
TOOL_PACKAGES=(libcli11-dev nlohmann-json3-dev libarchive-dev libfmt-dev gettext)
# What the tests are built with; zip and unzip make and open the bundle, groff formats the manual
# pages, jq reads the notes on the models.
TEST_PACKAGES=(libgtest-dev libgmock-dev libpugixml-dev zip unzip groff-base jq)
# What a release is packed with.
RELEASE_PACKAGES=(git zip unzip dpkg-dev)
# The second compiler, for the preset of its name.
CLANG_PACKAGES=(clang)
# The fuzz targets need the run-time of its sanitizers, too.
FUZZ_PACKAGES=("${CLANG_PACKAGES[@]}" libclang-rt-dev)

set_up_fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# Prints those of the packages that aren't installed.
missing_packages() {
  local package
  for package in "$@"; do
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || echo "$package"
  done
}

# Installs those of the packages that are missing.
set_up() {
  if ! command -v apt-get >/dev/null; then
    set_up_fail "this is no Debian: install the equivalents of $* and run cmake --preset release."
  fi
  local missing
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]})) || return 0

  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null ||
      set_up_fail "missing: ${missing[*]}. Neither root nor sudo here; as root run: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]} ..."
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq)
  if ! { "${apt[@]}" update && "${apt[@]}" install --no-install-recommends -y "${missing[@]}" >/dev/null; }; then
    set_up_fail "apt could not install ${missing[*]}; what it said stands above."
  fi
}

# Configures (once) and builds the targets of a preset, all without targets. Says nothing unless
# something is built or fails.
build_preset() {
  local preset=$1
  shift
  local build=$ORBELO_TOP/build/$preset output
  if [[ ! -f $build/build.ninja ]]; then
    output=$(cd "$ORBELO_TOP" && cmake --preset "$preset" 2>&1) ||
      set_up_fail "cmake --preset $preset failed:"$'\n'"$output"
  fi
  local targets=()
  (($#)) && targets=(--target "$@")
  (cd "$ORBELO_TOP" && cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}") ||
    set_up_fail "the build of preset $preset failed; what the compiler said stands above."
}
