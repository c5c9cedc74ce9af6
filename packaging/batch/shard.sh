#!/bin/sh
# SPDX-License-Identifier: Apache-2.0

# Converts part I of N of a batch on the machine where it is started:
#
#     shard.sh I/N LIST OUT [OPTION...]
#
#   LIST     file with the names of the drawings, one per line, the same for every part; or, if there are too many for the
#            memory of a process, a separate file for each part: lists/% means lists/1 in part 1
#   OUT      folder for the outputs
#   OPTION   option of orvprint, such as -f pdf --keep-folders
#
# Environment variables:
#
#   ORVPRINT   command to run (default: orvprint)
#   JOBS       number of processes (default: 1)
#   REPORTS    folder for the reports (default: OUT.reports)
#
# The drawings, LIST, OUT and REPORTS must be on storage shared by all machines. A part may be run again at any time,
# even concurrently: each attempt writes its own report, and an output is renamed to its final name when it is complete.

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

# The attempt that creates the file owns it: two concurrent attempts must not share a report.
attempt=1
until (set -o noclobber; : >"$name.$attempt.jsonl") 2>/dev/null; do
    attempt=$((attempt + 1))
    [ $attempt -le 1000 ] || { echo "shard.sh: cannot make a report: $name.$attempt.jsonl" >&2; exit 1; }
done
rm -f "$name.done"

# Drawings that earlier attempts have converted are skipped. With --pdeathsig, the command ends together with this
# script, which an engine may kill alone; otherwise it would continue unattended.
code=0
cat "$name".*.jsonl | setpriv --pdeathsig TERM -- "${ORVPRINT:-orvprint}" \
    --out-dir "$out" -j "${JOBS:-1}" --keep-going --retry 2 --quiet \
    --resume /dev/stdin --report "$name.$attempt.jsonl" "$@" || code=$?

# 11: some drawings failed. The reasons are in the report, and another attempt would fail, too.
case $code in
    0 | 11) : >"$name.done" ;;
    *) exit $code ;;
esac
