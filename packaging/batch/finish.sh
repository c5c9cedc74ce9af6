#!/bin/sh
# SPDX-License-Identifier: Apache-2.0

# Completes a batch after all its parts have stopped:
#
#     finish.sh N OUT
#
# Merges the reports of all parts and attempts into OUT.jsonl and OUT.html, prints a summary, and removes files that
# killed attempts have left in OUT. Exits with 1 and prints the unfinished parts, in the syntax of sbatch's --array; if
# all are finished, exits like `orvprint report`: 0, or 11 if drawings failed.

set -eu

[ $# = 2 ] || { echo "usage: finish.sh N OUT" >&2; exit 2; }
parts=$1 out=$2
reports=${REPORTS:-$out.reports}

undone=
for part in $(seq "$parts"); do
    [ -e "$reports/$part-of-$parts.done" ] || undone=$undone,$part
done
if [ -n "$undone" ]; then
    echo "finish.sh: not done: ${undone#,}" >&2
    exit 1
fi

rm -rf "$out"/.orvprint-*
exec "${ORVPRINT:-orvprint}" report "$reports"/*-of-"$parts".*.jsonl --merged "$out.jsonl" --html "$out.html"
