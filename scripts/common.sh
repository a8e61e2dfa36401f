# SPDX-License-Identifier: MIT
# What the scripts at the root share; sourced by them. Everything that is said goes to standard error, because standard
# output belongs to the program.

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages=(
	g++ cmake ninja-build pkg-config
	libsvgpp-dev libboost-dev              # the attribute grammar and the XML parser
	zlib1g-dev                             # packed files
	libcli11-dev nlohmann-json3-dev        # the host program
	libarchive-dev nettle-dev              # what batches read and write, and its hashes
	libcairo2-dev libpango1.0-dev          # the renderer
	libpng-dev libturbojpeg0-dev libwebp-dev libgif-dev libexif-dev # the images that it draws
	libgtest-dev
	pybind11-dev python3-dev python3-numpy # the Python package
)
test_packages=(
	binutils git clang libclang-rt-dev clang-format clang-tidy doxygen
	dpkg-dev file python3-pip-whl                  # packages of what is built
	python3-distributed                            # a cluster for the Python package
	python3 python3-numpy python3-pil librsvg2-bin # pictures to compare with
	fonts-dejavu                                   # what their texts are written in
	libglib2.0-dev qt6-base-dev                    # event loops, for the examples
)

lock_timeout=900 # Seconds that the package manager may be busy with something else.

# apt_get ARGS…: apt-get as root, which waits while somebody else is installing packages. It waits for the lock of the
# packages by itself when it is told to, but never for those of the lists and of the archives; then it is tried again.
apt_get()
{
	local errors status deadline=$((SECONDS + lock_timeout))
	while true; do
		status=0
		{
			errors=$("${as_root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive \
				apt-get -q -o DPkg::Lock::Timeout="$lock_timeout" "$@" 2>&1 >&3 3>&- </dev/null) || status=$?
		} 3>&2
		if ((status == 0 || SECONDS >= deadline)) || ! grep -q '^E: Could not get lock' <<<"$errors"; then
			[[ -z $errors ]] || printf '%s\n' "$errors" >&2
			return "$status"
		fi
		sleep 1
	done
}

# install_missing PACKAGE…: installs the Debian packages that are not there yet; does nothing when all are.
install_missing()
{
	local package missing=()
	for package in "$@"; do
		[[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
	done
	((${#missing[@]})) || return 0
	as_root=()
	if ((EUID != 0)); then
		if ! command -v sudo >/dev/null; then
			echo "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
			return 1
		fi
		as_root=(sudo)
	fi
	echo "Installing ${missing[*]}" >&2
	apt_get update
	apt_get -y --no-install-recommends install "${missing[@]}"
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
