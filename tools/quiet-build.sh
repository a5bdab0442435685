# Sourced by the scripts at the root: `quiet_build PRESET [TARGET...]` configures and builds, and shows the log only
# if that fails.

quiet_build() {
    local preset="$1" log target=()
    shift
    [ $# -gt 0 ] && target=(--target "$@")
    log="$(mktemp)"
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "${target[@]}"; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        echo "The build '$preset' failed." >&2
        return 1
    fi
    rm -f "$log"
}
