#!/usr/bin/env bash
# Builds the Debian package of a build folder, checks its control fields and its file list,
# unpacks it into a scratch root and starts the packaged program from there (offscreen, portable
# layout) until it has written its start-up log lines; then stops it with SIGTERM.
# Usage: check_deb.sh <build-dir> <scratch-dir>      Exit 77 (skipped) when a tool is missing.
set -euo pipefail

build=$(cd "$1" && pwd)
scratch=$2

for tool in cpack dpkg-deb dpkg-shlibdeps dpkg; do
    command -v "$tool" >/dev/null || { echo "SKIP: $tool not found (packages cmake, dpkg-dev)"; exit 77; }
done

fail() {
    echo "FAIL: $*"
    exit 1
}

rm -rf "$scratch"
mkdir -p "$scratch/out"
scratch=$(cd "$scratch" && pwd)

echo "== cpack -G DEB"
if ! (cd "$build" && cpack -G DEB -B "$scratch/out") >"$scratch/cpack.log" 2>&1; then
    cat "$scratch/cpack.log"
    fail "cpack failed"
fi
debs=("$scratch"/out/kiranto-link_1.00_*.deb)
[ ${#debs[@]} -eq 1 ] && [ -f "${debs[0]}" ] || fail "expected one kiranto-link_1.00_*.deb in $scratch/out"
deb=${debs[0]}
size=$(stat -c %s "$deb")
echo "package: $(basename "$deb"), $size bytes ($(( (size + 1023) / 1024 )) KiB)"

echo "== dpkg-deb -I"
dpkg-deb -I "$deb"
field() { dpkg-deb -f "$deb" "$1"; }
expect_field() {
    local value
    value=$(field "$1")
    [ "$value" = "$2" ] || fail "$1 is \"$value\", expected \"$2\""
}
expect_field Package kiranto-link
expect_field Version 1.00
expect_field Architecture "$(dpkg --print-architecture)"
expect_field Maintainer "Marvolet <service@marvolet.example>"
expect_field Section electronics
depends=$(field Depends)
# Package names of Depends, alternatives included, one a line.
names=$(tr ',|' '\n\n' <<<"$depends" | sed 's/(.*)//; s/ //g' | sed '/^$/d')
qt_major=$(sed -n 's/^KIRANTO_QT_MAJOR:[A-Z]*=//p' "$build/CMakeCache.txt")
if [ "$qt_major" = 6 ]; then
    qt_libs="libqt6core6 libqt6gui6 libqt6widgets6 libqt6serialport6 libqt6svg6"
else
    qt_libs="libqt5core5a libqt5gui5 libqt5widgets5 libqt5serialport5 libqt5svg5"
fi
for lib in libc6 libstdc++6 $qt_libs; do
    grep -qxF "$lib" <<<"$names" || fail "Depends lacks $lib: $depends"
done
description=$(field Description)
[ "$(head -n 1 <<<"$description")" = "Service tool for KIRANTO insulation and network monitors" ] \
    || fail "Description: $description"
[ "$(grep -c 'Service tool for KIRANTO' <<<"$description")" -eq 1 ] \
    || fail "the summary is repeated in the description: $description"

echo "== dpkg -c"
dpkg -c "$deb" | tee "$scratch/contents.txt"
# Regular files only (dpkg -c: permissions first, path sixth); directories may vary.
files=$(awk '$1 !~ /^d/ { print $6 }' "$scratch/contents.txt" | sort)
expected=$(printf '%s\n' ./usr/bin/kiranto-link ./usr/bin/kiranto-cli \
    ./usr/share/man/man1/kiranto-cli.1.gz \
    ./usr/share/applications/kiranto-link.desktop \
    ./usr/share/icons/hicolor/scalable/apps/kiranto-link.svg | sort)
[ "$files" = "$expected" ] || fail "files in the package:
$files
expected:
$expected"
grep -q '^-rwxr-xr-x .* ./usr/bin/kiranto-link$' "$scratch/contents.txt" \
    || fail "/usr/bin/kiranto-link is not mode 0755"

echo "== dpkg-deb -x"
dpkg-deb -x "$deb" "$scratch/root"
program=$scratch/root/usr/bin/kiranto-link
desktop=$scratch/root/usr/share/applications/kiranto-link.desktop
[ -x "$program" ] || fail "$program is not executable"
grep -qx 'Exec=kiranto-link' "$desktop" || fail "the desktop entry does not start kiranto-link"
grep -qx 'Icon=kiranto-link' "$desktop" || fail "the desktop entry does not name the icon"
file_type=$(od -An -c -N4 "$program" | tr -d ' ')
[ "$file_type" = '177ELF' ] || fail "$program is not an ELF file"
version=$(LANG=C.UTF-8 LC_ALL=C.UTF-8 "$scratch/root/usr/bin/kiranto-cli" --version)
[ "$version" = "kiranto-cli 1.00" ] || fail "kiranto-cli --version says \"$version\""
zcat "$scratch/root/usr/share/man/man1/kiranto-cli.1.gz" | grep -q 'Exit status: 0 ok' \
    || fail "the manual page does not give the exit statuses"

echo "== the README's install command"
readme=$(dirname "$0")/../../README.md
grep -qF "apt install ./$(basename "$deb")" "$readme" \
    || fail "README.md does not install $(basename "$deb") with apt install"
if [ -n "$(ls /var/lib/apt/lists 2>/dev/null | grep -v '^lock$\|^partial$\|^auxfiles$')" ]; then
    apt-get install --simulate --no-install-recommends "$deb" >"$scratch/apt.log" 2>&1 \
        || { cat "$scratch/apt.log"; fail "apt-get cannot install $(basename "$deb")"; }
fi

echo "== run the packaged program (offscreen, portable layout)"
# A "config" folder beside the executable selects the portable layout: the log goes to "logs"
# beside it. HOME points into the scratch folder so that a wrong layout cannot touch the user's.
mkdir -p "$scratch/root/usr/bin/config" "$scratch/home"
HOME=$scratch/home XDG_CONFIG_HOME=$scratch/home/.config XDG_DATA_HOME=$scratch/home/.local/share \
    QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 LC_ALL=C.UTF-8 \
    "$program" >"$scratch/run.out" 2>&1 &
pid=$!
stop() {
    kill -TERM "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
}
trap stop EXIT

logs=$scratch/root/usr/bin/logs
started=0
for _ in $(seq 600); do
    if grep -qsF 'KIRANTO-Link , version  1.00' "$logs"/KIRANTO-Link-*.log; then
        started=1
        break
    fi
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.1
done
if [ $started -ne 1 ]; then
    cat "$scratch/run.out"
    fail "no start-up log line in $logs within 60 s"
fi
# Let it run a little with its window up before stopping it.
sleep 2
kill -0 "$pid" 2>/dev/null || { cat "$scratch/run.out"; fail "the program ended on its own"; }
kill -TERM "$pid"
status=0
wait "$pid" || status=$?
trap - EXIT
# 143 = ended by SIGTERM, the way a desktop session stops it; anything else is a crash.
[ $status -eq 143 ] || [ $status -eq 0 ] || { cat "$scratch/run.out"; fail "exit status $status"; }

log=$(ls "$logs"/KIRANTO-Link-*.log)
echo "log $(basename "$log"):"
cat "$log"
grep -qF -- '[INFO]: ------- Starting log -------' "$log" || fail "no \"Starting log\" line"
grep -qF -- '[INFO]: Loading english translation. true' "$log" || fail "no translation line"
grep -qF -- '[INFO]: KIRANTO-Link , version  1.00' "$log" || fail "no version line"
[ -z "$(find "$scratch/home" -mindepth 1 -print -quit)" ] \
    || fail "the portable program wrote into the home folder: $(find "$scratch/home" -mindepth 1)"
echo "OK: kiranto-link_1.00 package checked, program started and stopped (status $status)"
