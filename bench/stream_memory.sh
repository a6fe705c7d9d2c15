#!/usr/bin/env bash
# Shows what a million ports cost `cableinfo table` in time and memory. The memory must not grow
# with their number: more than 64 MiB is a failure.
#   bench/stream_memory.sh [PROGRAM [PORTS]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

program=${1:-build/release/host/cableinfo}
ports=${2:-1000000}

# The sample fabric over and over, each copy of a switch or adapter with GUIDs of its own.
fabric() {
  awk -v ports="$1" '
    { line[NR] = $0 }
    END {
      for (n = 0; n < ports; ++n) {
        port = line[n % NR + 1]
        gsub(/"0xa0b1c2/, sprintf("\"0x%06x", int(n / NR)), port)
        print port
      }
    }' examples/fabric.jsonl
}

measure() {
  fabric "$1" | python3 -c '
import resource, subprocess, sys, time
start = time.monotonic()
status = subprocess.call([sys.argv[1], "table", "-o", "/dev/null"], stderr=subprocess.DEVNULL)
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print(f"{int(sys.argv[2]):>9,} ports: {time.monotonic() - start:6.1f} s, "
      f"{used.ru_utime + used.ru_stime:6.1f} s of CPU, {used.ru_maxrss / 1024:5.1f} MiB at most")
sys.exit(status or used.ru_maxrss > 64 * 1024)' "$program" "$1"
}

measure "$((ports / 100))"
measure "$ports"
