#!/usr/bin/env bash
# Sets up what is missing, builds, starts the private database server with the demo
# institute, and launches the desktop client.
set -euo pipefail
cd "$(dirname "$0")"
root=$PWD

scripts/install-deps
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target fondarix fondarix-cli

# The private server and the workstation's configuration live under var/ (git-ignored).
scripts/dbserver start
export FONDARIX_MYCNF="$root/var/db/fondarix.cnf"
export FONDARIX_WINDIR="$root/var/config"
mkdir -p "$FONDARIX_WINDIR"
ini="$FONDARIX_WINDIR/Fondarix MySQL.ini"
if [ ! -f "$ini" ]; then
  printf '[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%s\r\n' "$(cat var/db/port)" >"$ini"
  # The demo institute's letterhead values of the PDF order forms.
  printf '[HLAVICKA]\r\nTELEFON=266 001 000\r\nFAX=266 001 099\r\nEMAIL=ustav@lhotka.example\r\nWWW=www.lhotka.example\r\nNAZEV-ENG=Institute of Clinical Research Lhotka\r\nODDELENI-ENG=Department of Laboratory Medicine\r\n' >>"$ini"
fi

# The demo institute, once; `scripts/dbserver reset` starts again from nothing.
build/src/app/fondarix-cli init-db --demo

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  echo "run.sh: no display; start it under one, e.g.: xvfb-run -a ./run.sh" >&2
  exit 1
fi
exec build/src/app/fondarix "$@"
