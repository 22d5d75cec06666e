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
  printf '[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%s\r\nUctyNotControl=311,321,331\r\n' "$(cat var/db/port)" >"$ini"
  # The demo institute's letterhead values of the PDF order forms.
  printf '[HLAVICKA]\r\nTELEFON=266 001 000\r\nFAX=266 001 099\r\nEMAIL=ustav@lhotka.example\r\nWWW=www.lhotka.example\r\nNAZEV-ENG=Institute of Clinical Research Lhotka\r\nODDELENI-ENG=Department of Laboratory Medicine\r\n' >>"$ini"
fi
# The column definitions of the demo exports (db/demo/exports), so that a period can be
# imported at once; the file is Windows-1250 like the exports whose headings it names.
if ! grep -q 'DEFINE POZICE TAB' "$ini"; then
  printf '%s\r\n' '[DEFINE POZICE TAB]' 'Datum=1' 'Doklad=2' 'Text=3' 'Castka=4' 'Ucet MD=5' 'Ucet DAL=6' \
    'Grant MD=7' 'Grant DAL=8' 'Nazev MD=9' 'Nazev DAL=10' 'N_Datum=Datum' 'N_Doklad=Doklad' 'N_Text=Text' \
    'N_Castka=Částka' 'N_Ucet MD=Účet MD' 'N_Ucet DAL=Účet DAL' 'N_Grant MD=Středisko MD' \
    'N_Grant DAL=Středisko DAL' 'N_Nazev MD=Název MD' 'N_Nazev DAL=Název DAL' \
    '[DEFINE POZICE TAB2]' 'N_Ucet=1' 'N_Nazev=2' 'N_Stredisko=3' 'N_Stav=4' 'N_Mena=5' 'Ucet=Účet' \
    'Nazev=Název účtu' 'Stredisko=Středisko' 'Stav=Stav' 'Mena=Měna' \
    '[ROZPOCET]' 'Filtr pro UctyRozp=672*' | iconv -f UTF-8 -t CP1250 >>"$ini"
fi

# The demo institute, once; `scripts/dbserver reset` starts again from nothing.
build/src/app/fondarix-cli init-db --demo

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  echo "run.sh: no display; start it under one, e.g.: xvfb-run -a ./run.sh" >&2
  exit 1
fi
exec build/src/app/fondarix "$@"
