#!/bin/sh
# SPDX-License-Identifier: Apache-2.0

# Ends a batch of which no part runs any more:
#
#     finish.sh N OUT
#
# Writes OUT.jsonl and OUT.html from the reports of all parts and attempts, sums up, and removes what attempts that were
# killed have left in OUT. Ends with 1 and names the parts that are not done, in the form of sbatch's --array, else as
# `orvprint report` does: 0, or 11 if drawings failed.

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
