# Sourced by the scripts at the root: `ensure_packages build test` installs what is missing of those lists of
# tools/packages. Says nothing and asks nobody when nothing is missing.

packages_file="$(dirname "${BASH_SOURCE[0]}")/packages"

list_packages() {    # LIST...: the packages of the lists
    local list
    for list in "$@"; do
        sed -n "s/^$list //p" "$packages_file"
    done
}

missing_packages() { # PACKAGE...: those that are not installed
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
    done
}

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# Package lists that are too old to hold the files they name show as a failed install: then they are fetched anew.
install_packages() {
    local install=(env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@")
    as_root "${install[@]}" || { as_root apt-get update && as_root "${install[@]}"; }
}

ensure_packages() {
    local missing log
    mapfile -t missing < <(missing_packages $(list_packages "$@"))
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        echo "These packages are missing, and installing them takes root or sudo. As root, run:" >&2
        echo "apt-get update && apt-get install -y --no-install-recommends ${missing[*]}" >&2
        return 1
    fi
    echo "Installing ${missing[*]} ..." >&2
    log="$(mktemp)"
    if ! install_packages "${missing[@]}" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        echo "The packages could not be installed." >&2
        return 1
    fi
    rm -f "$log"
}
