#!/usr/bin/env bash
# Decodes a large file of port records on the nodes of a Slurm cluster, with a job array. The output
# is that of one process, byte for byte.
# usage: decode.sh INPUT.jsonl OUTPUT FOLDER PARTS [SBATCH OPTIONS...] -- COMMAND [OPTIONS...]
#
#   examples/slurm/decode.sh archive.jsonl cables.csv parts 64 --time=30 -- table
#   examples/slurm/decode.sh archive.jsonl verdicts.jsonl parts 64 -- check --json
#
# COMMAND is table, export or check --json. The summaries of `check` are left out, and its rules
# that compare ports see only the ports of one part. FOLDER, which all nodes must see, receives one
# file per part. A part that fails is listed, and OUTPUT is not written (status 1); a second run
# with the same FOLDER decodes only the missing parts. CABLEINFO is the program.
set -euo pipefail

input=$(realpath "${1:?the port records}")
output=${2:?the file to write}
folder=${3:?a folder that all nodes see}
parts=${4:?the number of parts}
shift 4
sbatch_options=()
while [ "${1---}" != -- ]; do
  sbatch_options+=("$1")
  shift
done
shift || true
command=("$@")
[ ${#command[@]} -gt 0 ] || command=(table)
export CABLEINFO=${CABLEINFO:-cableinfo}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)

# The rows of each part are written without a header; it is written once, below.
part_command=("${command[@]}")
[ "${command[0]}" != table ] || part_command+=(--no-header)

missing() {
  local part
  for ((part = 1; part <= parts; ++part)); do
    [ -e "$folder/$part" ] || echo "$part"
  done | paste -sd,
}

todo=$(missing)
if [ -n "$todo" ]; then
  # --wait returns when the last part is done; its status is that of the worst.
  sbatch --wait --quiet --array="$todo" --output="$folder/%a.log" --requeue "${sbatch_options[@]}" \
    "$here/decode_part.sh" "$input" "$folder" "$parts" "${part_command[@]}" || true
fi
todo=$(missing)
# The messages about the ports of each part, in the order of the parts.
for ((part = 1; part <= parts; ++part)); do
  [ ! -s "$folder/$part.log" ] || sed "s|^|part $part: |" "$folder/$part.log" >&2
done
[ -z "$todo" ] || {
  echo "decode.sh: $output is not written; these parts failed: $todo" >&2
  exit 1
}

temporary=$(mktemp "$output.XXXXXX")
trap 'rm -f "$temporary"' EXIT
{
  [ "${command[0]}" != table ] || "$CABLEINFO" "${command[@]}" </dev/null
  for ((part = 1; part <= parts; ++part)); do
    cat "$folder/$part"
  done | if [ "${command[0]}" = check ]; then grep -v '^{"format_version":1,"summary":' || true; else cat; fi
} >"$temporary"
chmod 644 "$temporary"
mv "$temporary" "$output"
