#!/bin/sh
# SPDX-License-Identifier: Apache-2.0

# Converts part I of N of a batch, on whichever machine it is started:
#
#     shard.sh I/N LIST OUT [OPTION...]
#
#   LIST     names of drawings, one a line, the same file for every part; or, for more drawings than a process should keep
#            in mind, a list of its own for each part: lists/% is lists/1 in part 1
#   OUT      the folder of the outputs
#   OPTION   of orvprint, such as -f pdf --keep-folders
#
# In the environment:
#
#   ORVPRINT   the command (default: orvprint)
#   JOBS       its processes (default: 1)
#   REPORTS    folder of the reports (default: OUT.reports)
#
# The drawings, LIST, OUT and REPORTS are on storage that all machines share. A part may be run again at any time, also
# beside itself: each attempt has a report of its own, and an output gets its name when it is complete.

set -eu

[ $# -ge 3 ] || { echo "usage: shard.sh I/N LIST OUT [OPTION...]" >&2; exit 2; }
part=$1 list=$2 out=$3
shift 3
reports=${REPORTS:-$out.reports}
name=$reports/${part%/*}-of-${part#*/}
mkdir -p "$out" "$reports"

case $list in
    *%*) set -- --files-from "${list%%\%*}${part%/*}${list#*%}" "$@" ;;
    *) set -- --files-from "$list" --shard "$part" "$@" ;;
esac

# Creating the file claims it: two attempts that start at the same time must not share a report.
attempt=1
until (set -o noclobber; : >"$name.$attempt.jsonl") 2>/dev/null; do
    attempt=$((attempt + 1))
    [ $attempt -le 1000 ] || { echo "shard.sh: cannot make a report: $name.$attempt.jsonl" >&2; exit 1; }
done
rm -f "$name.done"

# Skips what earlier attempts have finished. The command ends with this script (--pdeathsig): an engine may kill only
# the script, and the command would continue with nobody waiting for it.
code=0
cat "$name".*.jsonl | setpriv --pdeathsig TERM -- "${ORVPRINT:-orvprint}" \
    --out-dir "$out" -j "${JOBS:-1}" --keep-going --retry 2 --quiet \
    --resume /dev/stdin --report "$name.$attempt.jsonl" "$@" || code=$?

# Exit code 11: some drawings failed. The report says why; another attempt would not help.
case $code in
    0 | 11) : >"$name.done" ;;
    *) exit $code ;;
esac
