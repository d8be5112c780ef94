#!/usr/bin/env bash
# Installs what is missing of the Debian packages listed in tools/packages.txt, so that one command
# is enough on a fresh machine. Says nothing and takes no time when nothing is missing; apt-get is
# called, and its lists are refreshed, only for packages that dpkg does not know as installed.
#
# On a system without apt-get the packages have to come by its own means; set
# LITHARA_SKIP_PACKAGES=1 once they are there.
set -euo pipefail

if [[ ${LITHARA_SKIP_PACKAGES:-0} == 1 ]]; then
    exit 0
fi

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$root/tools/packages.txt")

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    {
        echo "This system has no apt-get, so nothing can be installed here for you."
        echo "Install what corresponds to these Debian packages, then start again with"
        echo "LITHARA_SKIP_PACKAGES=1:"
        printf '  %s\n' "${wanted[@]}"
    } >&2
    exit 1
fi

# A package of a foreign architecture is listed too, so the name alone is compared. dpkg-query fails
# when it does not know a package, which is no error here.
installed=$(dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' "${wanted[@]}" \
    2>/dev/null | sed -n 's/ installed$//p' || true)
missing=()
for package in "${wanted[@]}"; do
    if ! grep -qxF -e "$package" <<<"$installed"; then
        missing+=("$package")
    fi
done
if [[ ${#missing[@]} -eq 0 ]]; then
    exit 0
fi

as_root=()
if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        {
            echo "These packages are missing and only root can install them; there is no sudo here:"
            printf '  %s\n' "${missing[@]}"
        } >&2
        exit 1
    fi
    as_root=(sudo)
    echo "Lithara needs packages that are not installed yet; sudo may ask for your password to run:"
    echo "  apt-get update"
    echo "  apt-get install ${missing[*]}"
else
    echo "Installing: ${missing[*]}"
fi

# Another apt run on the machine (unattended upgrades on a fresh one) is waited for. Nothing may
# ask: there may be nobody to answer.
apt_get() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get \
        -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@" </dev/null
}
apt_get -qq update
apt_get -qq --yes --no-install-recommends install "${missing[@]}"
