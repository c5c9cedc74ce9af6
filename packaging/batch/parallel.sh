#!/bin/sh
# SPDX-License-Identifier: Apache-2.0

# Runs a batch with GNU parallel over ssh, one job per part:
#
#     parallel.sh HOSTS 64 LIST OUT [OPTION...]
#
# HOSTS contains one login per line, such as "4/print1" for four parts at a time on print1. The arguments from LIST on
# and the environment are those of shard.sh, which must be in the same folder. All files must be on storage that the
# machines share under the same paths. finish.sh then tells which parts remain; running the same command again does
# them.
#
# PARALLEL_SSH may contain ssh options. ssh must not ask questions (BatchMode) and should detect machines that do not
# respond: ConnectTimeout, ServerAliveInterval.

set -eu

[ $# -ge 4 ] || { echo "usage: parallel.sh HOSTS PARTS LIST OUT [OPTION...]" >&2; exit 2; }
hosts=$1 parts=$2 list=$3 out=$4
shift 4
here=$(cd "$(dirname "$0")" && pwd)
reports=${REPORTS:-$out.reports}
mkdir -p "$reports"

# --resume-failed, because --resume treats failed parts as done. --retries uses another machine for each attempt if
# possible. No --return: outputs are on shared storage, and copying the results of a part takes seconds.
# shellcheck disable=SC2046  # numbers
exec parallel --sshloginfile "$hosts" --workdir "$PWD" --retries 3 --joblog "$reports/joblog" --resume-failed \
    --env ORVPRINT --env JOBS --env REPORTS --env SOURCE_DATE_EPOCH \
    --quote "$here/shard.sh" "{}/$parts" "$list" "$out" "$@" ::: $(seq "$parts")
