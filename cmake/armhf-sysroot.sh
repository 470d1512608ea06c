#!/usr/bin/env bash
# Makes a folder with what the 32-bit ARM build links and runs against: armhf-sysroot.sh FOLDER
#
# The packages come from the machine's own Debian source, but through a state and a cache of apt that lie beside
# FOLDER, and they are only unpacked: the machine's packages and its apt stay as they are. A folder that holds what
# is listed here is left alone, so that only the first run needs the network.
set -euo pipefail

sysroot=$1
work=$sysroot.apt

packages=(
    libc6 libc6-dev libstdc++6                    # what every program runs on
    libegl1 libgles1 libgles2                     # the libraries that applications load
    libegl-mesa0 libgl1-mesa-dri                  # Mesa behind them, with its software rasteriser
    libegl-dev libgles-dev libx11-dev             # headers
    libcli11-dev nlohmann-json3-dev libpng-dev    # tools and examples
    libgtest-dev                                  # tests
)
stamp=$sysroot/.packages

if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "${packages[*]}" ]; then
    exit 0
fi

rm -rf "$sysroot" "$work"
mkdir -p "$sysroot" "$work/state/lists/partial" "$work/cache/archives/partial" "$work/parts"
: >"$work/status"

# Debian's own source, as the machine's settings name it, and no other that they may name besides.
# shellcheck source=/dev/null
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
source=$(apt-get --print-uris update | sed -n "s|^'\(.*/\)dists/$suite/InRelease'.*|\1|p" | head -n 1)
[ -n "$source" ] || { echo "apt has no source of Debian $suite to take armhf packages from" >&2; exit 1; }
echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $source $suite main" >"$work/sources.list"

# Of the machine's settings, how it reaches that source, but nothing that names folders or an architecture or runs a
# program.
apt-config dump | grep -v -e Invoke -e '^Dir' -e '^APT::Architecture' -e '^Acquire::IndexTargets' >"$work/apt.conf"
cat >>"$work/apt.conf" <<TEXT
APT::Architecture "armhf";
APT::Architectures { "armhf"; };
APT::Sandbox::User "root";
Dir::State "$work/state";
Dir::State::status "$work/status";
Dir::Cache "$work/cache";
Dir::Etc::main "/dev/null";
Dir::Etc::parts "$work/parts";
Dir::Etc::preferences "/dev/null";
Dir::Etc::preferencesparts "$work/parts";
Dir::Etc::sourcelist "$work/sources.list";
Dir::Etc::sourceparts "$work/parts";
TEXT

export APT_CONFIG=$work/apt.conf DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -qq -y --download-only --no-install-recommends "${packages[@]}"
for archive in "$work"/cache/archives/*.deb; do
    dpkg -x "$archive" "$sysroot"
done
rm -rf "$work"
# Links that name a place of the target's root would lead to the machine's own files.
find "$sysroot" -type l -lname '/*' | while read -r link; do
    ln -sfnr "$sysroot$(readlink "$link")" "$link"
done
echo "${packages[*]}" >"$stamp"
