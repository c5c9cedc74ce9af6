#!/bin/sh
# SPDX-License-Identifier: Apache-2.0

# A batch by GNU parallel over ssh, a job for each part:
#
#     parallel.sh HOSTS 64 LIST OUT [OPTION...]
#
# HOSTS has a login a line, such as "4/print1" for four parts at a time on print1. The arguments from LIST on and the
# environment are those of shard.sh, which stands beside this file. All of it is on storage that the machines share, under
# the same names. finish.sh then tells what is left to do; the same command does it.
#
# PARALLEL_SSH may give options to ssh. It needs keys without questions (BatchMode), and should notice machines that do not
# answer: ConnectTimeout, ServerAliveInterval.

set -eu

[ $# -ge 4 ] || { echo "usage: parallel.sh HOSTS PARTS LIST OUT [OPTION...]" >&2; exit 2; }
hosts=$1 parts=$2 list=$3 out=$4
shift 4
here=$(cd "$(dirname "$0")" && pwd)
reports=${REPORTS:-$out.reports}
mkdir -p "$reports"

# --resume-failed, because --resume counts a failed part as done. Each retry runs on another machine if there is one. No
# --return: outputs are on shared storage, and copying each part back takes seconds.
# shellcheck disable=SC2046  # numbers
exec parallel --sshloginfile "$hosts" --workdir "$PWD" --retries 3 --joblog "$reports/joblog" --resume-failed \
    --env ORVPRINT --env JOBS --env REPORTS --env SOURCE_DATE_EPOCH \
    --quote "$here/shard.sh" "{}/$parts" "$list" "$out" "$@" ::: $(seq "$parts")
