#!/usr/bin/env bash
# Reads the modules of all nodes of a Slurm cluster into one snapshot, sorted by node.
# usage: collect.sh SNAPSHOT.jsonl FOLDER [SRUN OPTIONS...]
#
#   examples/slurm/collect.sh fabric.jsonl parts --time=5
#
# FOLDER, which all nodes must see, receives one file per node. Nodes without one are named, and the
# snapshot is written without them (status 1). A second run with the same FOLDER reads only those.
# CABLEINFO is the program on the nodes, READ_OPTIONS are options of its command `read`, and
# SLURM_PARTITION names the partition, if not all nodes are meant.
set -euo pipefail

snapshot=${1:?the file to write}
folder=${2:?a folder that all nodes see}
shift 2
program=${CABLEINFO:-cableinfo}
[ -z "${SLURM_PARTITION:-}" ] || export SINFO_PARTITION=$SLURM_PARTITION
read -ra read_options <<<"${READ_OPTIONS:-}"
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)

# The nodes of the options: those of the job that this runs in, or of the partition.
nodes() {
  if [ -n "${SLURM_JOB_NODELIST:-}" ]; then
    scontrol show hostnames "$SLURM_JOB_NODELIST"
  else
    sinfo --noheader --Node --format=%N | sort -u
  fi
}

missing() {
  nodes | while read -r node; do
    [ -e "$folder/$node.jsonl" ] || echo "$node"
  done
}

todo=$(missing)
if [ -n "$todo" ]; then
  # A node that is down would keep the whole job waiting, so only those that answer are asked.
  up=$(sinfo --noheader --Node --responding --states=idle,mixed,allocated,completing --format=%N |
    sort -u | grep -Fxf <(echo "$todo") || true)
  if [ -n "$up" ]; then
    list=$(paste -sd, <<<"$up")
    # A file appears under its name when it is complete, so a node that dies leaves none.
    # The status of a node with an unreadable module is 1; what it could read is in its file.
    # shellcheck disable=SC2016  # expanded on the node
    srun --nodelist="$list" --nodes="$(wc -l <<<"$up")" --ntasks-per-node=1 --overcommit \
      --kill-on-bad-exit=0 --no-kill --label "$@" \
      bash -c 'folder=$1 && shift && exec "$@" -o "$folder/$SLURMD_NODENAME.jsonl"' \
      collect "$folder" "$program" read "${read_options[@]}" ||
      echo "collect.sh: some nodes reported problems; see above" >&2
  fi
fi

lost=$(missing)
temporary=$(mktemp "$snapshot.XXXXXX")
trap 'rm -f "$temporary"' EXIT
nodes | while read -r node; do
  [ ! -e "$folder/$node.jsonl" ] || cat "$folder/$node.jsonl"
done >"$temporary"
chmod 644 "$temporary"
mv "$temporary" "$snapshot"
[ -z "$lost" ] || {
  echo "collect.sh: no modules of these nodes: $(paste -sd' ' <<<"$lost")" >&2
  exit 1
}
