#!/usr/bin/env bash
# Installs /tmp/pelmora.deb, runs it and purges it. For a bare system that ./scripts/try-package makes;
# to be run there by root.
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive PATH=/usr/sbin:/usr/bin:/sbin:/bin
step() { echo "-- $*"; }
as_user=(
  setpriv --reuid=65534 --regid=65534 --clear-groups
  env HOME=/tmp/user XDG_RUNTIME_DIR=/tmp/user/run LC_ALL=C.UTF-8
)
step "installing"
apt-get -qq update
apt-get -qq -y install --no-install-recommends /tmp/pelmora.deb >/tmp/install.log 2>&1 || {
  tail -n 20 /tmp/install.log
  exit 1
}
dpkg -L pelmora | while read -r path; do [ ! -f "$path" ] || echo "$path"; done >/tmp/files
apt-get -qq -y install --no-install-recommends xvfb x11-utils >/tmp/install.log 2>&1
rm -rf /tmp/user
mkdir -p /tmp/user/run
chmod 700 /tmp/user/run
chown -R 65534:65534 /tmp/user
step "pelmora --version"
"${as_user[@]}" pelmora --version
"${as_user[@]}" pelmora --help >/dev/null
step "pelmora render"
"${as_user[@]}" pelmora render --samples --out /tmp/user/pile.png --size 640x360 --at 10 2>/dev/null
test -s /tmp/user/pile.png
step "pelmora check"
"${as_user[@]}" pelmora check "/tmp/user/.cache/Pelmora/Sample Pictures" >/tmp/checked
head -n 3 /tmp/checked
step "pelmora settings"
mkfifo /tmp/user/display
"${as_user[@]}" Xvfb -displayfd 3 -nolisten tcp -screen 0 1024x768x24 3>/tmp/user/display >/tmp/user/xvfb.log 2>&1 &
server=$!
read -r number </tmp/user/display
"${as_user[@]}" env DISPLAY=":$number" pelmora settings >/tmp/user/settings.log 2>&1 &
settings=$!
window=
for _ in $(seq 100); do
  windows=$("${as_user[@]}" xwininfo -display ":$number" -root -tree)
  window=$(grep "Pelmora Screen Saver" <<<"$windows") && break
  kill -0 "$settings" || break
  sleep 0.2
done
echo "$window"
[ -n "$window" ]
kill -TERM "$settings"
wait "$settings"
kill "$server"
step "purging"
apt-get -qq -y purge pelmora >/dev/null 2>&1
while read -r path; do [ ! -e "$path" ] || { echo "$path is left"; exit 1; }; done </tmp/files
echo "$(wc -l </tmp/files) files gone"
