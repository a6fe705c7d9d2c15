#!/usr/bin/env bash
# Runs the scripts of examples/slurm on a real Slurm: starts its daemons with two nodes on this
# machine, collects from both, decodes a generated fabric through both, loses a node and a part, and
# ends all of it. Needs root. It takes some minutes with a million ports and is not part of the gate.
# usage: scripts/check_slurm.sh [PORTS]      a million ports by default
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/need.sh

ports=${1:-1000000}
need "${build_packages[@]}" libbenchmark-dev nlohmann-json3-dev slurmctld slurmd slurm-client munge sqlite3
[ "$(id -u)" -eq 0 ] || {
  echo 'error: the daemons of Slurm need root' >&2
  exit 1
}
if [ -z "${CABLEINFO:-}" ] || [ -z "${MAKE_FABRIC:-}" ]; then
  {
    cmake --preset release -DCABLE_INFO_BUILD_TESTS=OFF -DCABLE_INFO_BUILD_BENCH=ON
    cmake --build --preset release --target cableinfo make_fabric
  } >&2
fi
CABLEINFO=$(realpath "${CABLEINFO:-build/release/cli/cableinfo}")
MAKE_FABRIC=$(realpath "${MAKE_FABRIC:-build/release/bench/make_fabric}")
export CABLEINFO
examples=$PWD/examples/slurm

work=$(mktemp -d /tmp/check_slurm.XXXXXX)
chmod 755 "$work"
daemons=()

# Daemons are children of this script and are ended by their numbers; so are steps they left.
stop() {
  local pid
  for pid in "${daemons[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${daemons[@]}"; do wait "$pid" 2>/dev/null || true; done
}
finish() {
  local status=$?
  scancel --quiet --user=root 2>/dev/null || true
  stop
  [ "$status" -eq 0 ] || tail -n 20 "$work"/*.log >&2 || true
  rm -rf "$work"
  exit "$status"
}
trap finish EXIT
trap 'exit 1' INT TERM

start() {
  local log=$1
  shift
  "$@" >>"$work/$log.log" 2>&1 &
  daemons+=($!)
}

free_port() {
  python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

host=$(hostname -s)
mkdir -m 755 "$work/state" "$work/spool"
dd if=/dev/urandom of="$work/munge.key" bs=128 count=1 status=none
chmod 400 "$work/munge.key"
cat >"$work/slurm.conf" <<END
ClusterName=check
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=$(free_port)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket=$work/munge.socket
ProctrackType=proctrack/pgid
TaskPlugin=task/none
MpiDefault=none
ReturnToService=2
SlurmdTimeout=10
InactiveLimit=0
SchedulerParameters=sched_interval=1,sched_min_interval=10000
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
StateSaveLocation=$work/state
SlurmdSpoolDir=$work/spool/%n
SlurmctldPidFile=$work/slurmctld.pid
SlurmdPidFile=$work/slurmd-%n.pid
NodeName=n1 NodeHostname=$host NodeAddr=127.0.0.1 Port=$(free_port) CPUs=1
NodeName=n2 NodeHostname=$host NodeAddr=127.0.0.1 Port=$(free_port) CPUs=1
PartitionName=main Nodes=n1,n2 Default=YES State=UP
END
export SLURM_CONF=$work/slurm.conf

start munged munged --foreground --force --key-file="$work/munge.key" --socket="$work/munge.socket" \
  --pid-file="$work/munged.pid" --seed-file="$work/munge.seed" --log-file="$work/munge.log"
until [ -S "$work/munge.socket" ]; do sleep 0.1; done
start slurmctld slurmctld -D
start_node() { start "slurmd-$1" slurmd -D -N "$1"; }
start_node n1
start_node n2
n2=${daemons[-1]}

await_nodes() {
  local count=$1 tries=0
  until [ "$(sinfo -h -N -o %N --states=idle --responding 2>/dev/null | sort -u | wc -l)" -eq "$count" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 120 ] || {
      echo "error: $count nodes were expected:" >&2
      sinfo -N >&2 || true
      exit 1
    }
    sleep 0.5
  done
}
await_nodes 2
say() { printf '%4d s  %s\n' "$SECONDS" "$*"; }
expect() {
  cmp "$1" "$2" || {
    echo "error: $3" >&2
    exit 1
  }
}
say 'two nodes are up'

# A port of a generated sysfs tree with an EEPROM file takes the place of the cables of the nodes.
mkdir -p "$work/sys/bus/i2c/devices/3-0050"
echo port1 >"$work/sys/bus/i2c/devices/3-0050/port_name"
printf '\x11\x08\x04%0125d\x11%062d\x11%064d' 0 0 0 | tr 0 '\0' >"$work/sys/bus/i2c/devices/3-0050/eeprom"
export READ_OPTIONS="--sysfs $work/sys"
"$CABLEINFO" read --sysfs "$work/sys" >"$work/one.jsonl"
cat "$work/one.jsonl" "$work/one.jsonl" >"$work/both.jsonl"

"$examples/collect.sh" "$work/fabric.jsonl" "$work/nodes"
expect "$work/fabric.jsonl" "$work/both.jsonl" 'the snapshot is not that of both nodes'
say 'collected from both nodes'

"$CABLEINFO" store "$work/fabric.db" --taken-at 2026-01-31 "$work/fabric.jsonl"
[ "$(sqlite3 "$work/fabric.db" 'SELECT count(*) FROM snapshot')" -eq 1 ]
say 'stored the snapshot'

# A lost node is named, the other one is read; a second run reads the node that came back.
rm -r "$work/nodes"
kill "$n2"
wait "$n2" 2>/dev/null || true
scontrol update nodename=n2 state=down reason=check
status=0
"$examples/collect.sh" "$work/lost.jsonl" "$work/nodes" 2>"$work/lost.txt" || status=$?
if [ "$status" -ne 1 ] || ! grep -q 'no modules of these nodes: n2$' "$work/lost.txt"; then
  cat "$work/lost.txt" >&2
  exit 1
fi
expect "$work/lost.jsonl" "$work/one.jsonl" 'the snapshot is not that of the node that is left'
say 'a lost node was named'
start_node n2
scontrol update nodename=n2 state=resume
await_nodes 2
"$examples/collect.sh" "$work/again.jsonl" "$work/nodes"
expect "$work/again.jsonl" "$work/both.jsonl" 'the second run lacks the node that came back'
say 'the second run read the node that came back'

"$MAKE_FABRIC" "$ports" >"$work/archive.jsonl"
"$CABLEINFO" table -q "$work/archive.jsonl" -o "$work/cables.csv" 2>"$work/table.txt"
say "one process decoded $ports ports"
"$examples/decode.sh" "$work/archive.jsonl" "$work/slurm.csv" "$work/parts" 8 -- table 2>"$work/decode.txt"
expect "$work/slurm.csv" "$work/cables.csv" 'the table of the job array differs'
used=$(squeue --noheader --states=all --array --format='%t %j %N' |
  awk '$1 == "CD" && $2 == "decode_part.sh" { print $3 }' | sort -u | paste -sd' ')
[ "$used" = 'n1 n2' ] || {
  echo "error: not both nodes took part: $used" >&2
  exit 1
}
say 'both nodes decoded them to the same bytes'

# A part that was lost is decoded again to the same bytes; the others stay.
cp -r "$work/parts" "$work/before"
rm "$work/parts/3" "$work/parts/6"
"$examples/decode.sh" "$work/archive.jsonl" "$work/again.csv" "$work/parts" 8 -- table 2>"$work/decode.txt"
expect "$work/again.csv" "$work/cables.csv" 'the table of the second run differs'
expect "$work/parts/3" "$work/before/3" 'the second run of a part gave other bytes'
rm -r "$work/before"
say 'the second run of two parts gave the same bytes'

# A part that fails is named, and the output is not written.
rm -r "$work/parts"
head -n 1000 "$work/archive.jsonl" >"$work/small.jsonl"
cat >"$work/failing" <<END
#!/usr/bin/env bash
[ "\${SLURM_ARRAY_TASK_ID:-}" != 2 ] || exit 3
exec "$CABLEINFO" "\$@"
END
chmod +x "$work/failing"
status=0
CABLEINFO=$work/failing "$examples/decode.sh" "$work/small.jsonl" "$work/small.csv" "$work/parts" 3 -- \
  table 2>"$work/failed.txt" || status=$?
if [ "$status" -ne 1 ] || [ -e "$work/small.csv" ] ||
  ! grep -q 'these parts failed: 2$' "$work/failed.txt"; then
  cat "$work/failed.txt" >&2
  exit 1
fi
"$examples/decode.sh" "$work/small.jsonl" "$work/small.csv" "$work/parts" 3 -- table 2>/dev/null
"$CABLEINFO" table -q "$work/small.jsonl" -o "$work/cables.csv" 2>/dev/null
expect "$work/small.csv" "$work/cables.csv" 'the table after a failed part differs'
say 'a part that failed was named and run again'

rm -r "$work/parts"
"$examples/decode.sh" "$work/small.jsonl" "$work/verdicts.jsonl" "$work/parts" 1 -- check --json 2>/dev/null
"$CABLEINFO" check -q --json "$work/small.jsonl" 2>/dev/null | grep -v '"summary"' >"$work/expected.jsonl" || true
expect "$work/verdicts.jsonl" "$work/expected.jsonl" 'the verdicts differ'
"$CABLEINFO" store -q "$work/fabric.db" --taken-at 2026-02-01 "$work/small.jsonl" 2>/dev/null
[ "$(sqlite3 "$work/fabric.db" 'SELECT count(*) FROM snapshot')" -eq 2 ]
say 'checked through a node, and stored'
