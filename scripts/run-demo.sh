#!/usr/bin/env bash
# Builds everything, starts the device simulator and then the tool, set up to talk to it.
# Usage: scripts/run-demo.sh [uki-kiranto|ukps-ks|ukps-ab|ukps-ks-2]   (default uki-kiranto)
# The build goes to build/ (or $KIRANTO_BUILD); the run happens in a scratch folder that is kept
# afterwards for its logs. The simulator stops when the tool exits.
set -euo pipefail
cd "$(dirname "$0")/.."

variant=${1:-uki-kiranto}
case "$variant" in
uki-kiranto | ukps-ks | ukps-ab | ukps-ks-2) ;;
*)
    echo "usage: $0 [uki-kiranto|ukps-ks|ukps-ab|ukps-ks-2]" >&2
    exit 2
    ;;
esac

build=${KIRANTO_BUILD:-build}
scripts/setup.sh "$build"

scratch=$(mktemp -d "${TMPDIR:-/tmp}/kiranto-demo.XXXXXX")
link="$scratch/ttyKIRANTO"

"$build/tools/kiranto-sim" --variant "$variant" --link "$link" --exit-with-parent \
    --state "$scratch/device-state.json" --log "$scratch/device.log" \
    >"$scratch/simulator.out" 2>"$scratch/simulator.err" &
sim=$!
stop_simulator() {
    kill "$sim" 2>/dev/null || true
    wait "$sim" 2>/dev/null || true
}
trap stop_simulator EXIT
trap 'exit 130' INT TERM

# The simulator prints its link path once the line is ready.
for _ in $(seq 200); do
    [ -s "$scratch/simulator.out" ] && break
    if ! kill -0 "$sim" 2>/dev/null; then
        cat "$scratch/simulator.err" >&2
        exit 1
    fi
    sleep 0.05
done
if [ ! -s "$scratch/simulator.out" ]; then
    echo "The simulator did not come up; see $scratch/simulator.err" >&2
    exit 1
fi

# Portable layout: the program with a "config" folder beside it.
cp "$build/src/kiranto-link" "$scratch/kiranto-link"
mkdir -p "$scratch/config"
cat >"$scratch/config/config.json" <<EOF
{
    "connection": {
        "port": "$link",
        "variant": "$variant"
    }
}
EOF

echo "Device simulator ($variant) on $link"
echo "Tool: $scratch/kiranto-link, settings in $scratch/config/config.json"
echo "Device transcript: $scratch/device.log"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "Neither DISPLAY nor WAYLAND_DISPLAY is set: running the tool under xvfb-run -a" \
        "(a virtual display; no window will be visible). Stop it with Ctrl+C."
    status=0
    xvfb-run -a "$scratch/kiranto-link" || status=$?
else
    status=0
    "$scratch/kiranto-link" || status=$?
fi
echo "The tool exited ($status); stopping the simulator. Logs stay in $scratch"
exit "$status"
