# SPDX-License-Identifier: MIT
# What the scripts at the root share; sourced by them. Everything that is said goes to standard error, because standard
# output belongs to the program.

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages=(
	g++ cmake ninja-build pkg-config
	libsvgpp-dev libboost-dev              # the attribute grammar and the XML parser
	libcli11-dev nlohmann-json3-dev        # the host program
	libcairo2-dev libpango1.0-dev          # the renderer
	libgtest-dev
)
test_packages=(
	binutils clang-format
	python3 python3-numpy python3-pil librsvg2-bin # pictures to compare with
)

# install_missing PACKAGE…: installs the Debian packages that are not there yet; does nothing when all are.
install_missing()
{
	local package missing=()
	for package in "$@"; do
		[[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
	done
	((${#missing[@]})) || return 0
	local as_root=()
	if ((EUID != 0)); then
		if ! command -v sudo >/dev/null; then
			echo "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
			return 1
		fi
		as_root=(sudo)
	fi
	echo "Installing ${missing[*]}" >&2
	"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q update >&2 </dev/null
	"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
		apt-get -q -y --no-install-recommends install "${missing[@]}" >&2 </dev/null
}

# build PRESET [TARGET…]: configures where that has not been done, and builds the targets (all when none is named).
build()
{
	local preset=$1
	shift
	(
		cd "$project"
		# Ninja configures again by itself when a build file has changed.
		[[ -f build/$preset/build.ninja ]] || cmake --preset "$preset" >&2
		cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 |
			sed -u '/^ninja: no work to do/d; /Re-checking globbed directories/d' >&2
	)
}
