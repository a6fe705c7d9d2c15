#!/usr/bin/env bash
# One part of decode.sh: decodes the lines of part SLURM_ARRAY_TASK_ID of PARTS.
# usage: decode_part.sh INPUT.jsonl FOLDER PARTS COMMAND [OPTIONS...]
set -uo pipefail

input=$1
folder=$2
parts=$3
shift 3
part=$SLURM_ARRAY_TASK_ID

# `split` divides the file into parts of equal size at ends of lines. The part gets its name only
# when all of it was read and decoded: status 1 means that some ports were bad, 5 and 6 are verdicts
# of `check`.
split --number="l/$part/$parts" "$input" | "${CABLEINFO:-cableinfo}" "$@" -j "${SLURM_CPUS_ON_NODE:-1}" \
  -q >"$folder/$part.new"
status=("${PIPESTATUS[@]}")
case "${status[0]} ${status[1]}" in
  "0 0" | "0 1" | "0 5" | "0 6") mv "$folder/$part.new" "$folder/$part" ;;
  *)
    rm -f "$folder/$part.new"
    exit 1
    ;;
esac
