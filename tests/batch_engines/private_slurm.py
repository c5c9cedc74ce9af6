# SPDX-License-Identifier: Apache-2.0
"""A private Slurm for tests, with two nodes on this machine: no services, no other users, only loopback addresses."""

import getpass
import os
import socket
import subprocess
from pathlib import Path

from machine import Machine, Machines, command_line, wait_for

# Time-outs are as short as Slurm permits. Nodes have loopback addresses, and daemons listen on no others.
CONFIGURATION = """
ClusterName=orv
SlurmctldHost=localhost(127.0.0.1)
SlurmctldPort={ports[0]}
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
AuthInfo=socket={folder}/run/munge.sock,cred_expire=5
CredType=cred/munge
CommunicationParameters=NoCtldInAddrAny,NoInAddrAny
MailProg=/bin/true
MpiDefault=none
SwitchType=switch/none
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
JobCompType=jobcomp/none
SchedulerType=sched/backfill
SchedulerParameters=batch_sched_delay=0,sched_interval=1,default_queue_depth=1000,bf_interval=1
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
StateSaveLocation={folder}/state
SlurmctldPidFile={folder}/run/slurmctld.pid
SlurmctldLogFile={folder}/log/slurmctld.log
SlurmdPidFile={folder}/run/slurmd-%n.pid
SlurmdLogFile={folder}/log/slurmd-%n.log
SlurmdSpoolDir={folder}/spool/%n
SlurmdTimeout=5
SlurmctldTimeout=10
InactiveLimit=0
MinJobAge=600
KillWait=2
Waittime=0
ReturnToService=0
JobRequeue=1
MaxArraySize=1001
NodeName=n1 NodeHostname={host} NodeAddr=127.0.0.1 Port={ports[1]} CPUs=1 RealMemory=500 State=UNKNOWN
NodeName=n2 NodeHostname={host} NodeAddr=127.0.0.1 Port={ports[2]} CPUs=1 RealMemory=500 State=UNKNOWN
PartitionName=batch Nodes=ALL Default=YES MaxTime=INFINITE State=UP
"""

UNFINISHED = {"PENDING", "RUNNING", "COMPLETING", "CONFIGURING", "REQUEUED", "SUSPENDED", "STOPPED"}


def free_ports(count):
    """Returns loopback ports that are currently free."""
    sockets = [socket.create_server(("127.0.0.1", 0)) for _ in range(count)]
    ports = [listener.getsockname()[1] for listener in sockets]
    for listener in sockets:
        listener.close()
    return ports


class PrivateSlurm(Machines):
    """Slurm daemons that run within a `with` statement."""

    def __init__(self, folder):
        super().__init__(folder)
        # Not every user's PATH contains the folders of the daemons.
        self.environment = {**os.environ, "SLURM_CONF": f"{folder}/etc/slurm.conf",
                            "PATH": os.environ["PATH"] + ":/usr/sbin:/sbin"}

    def start(self):
        for name in ["etc", "run", "log", "state", "spool/n1", "spool/n2"]:
            (self.folder / name).mkdir(parents=True)
        # munged requires that other users can reach its socket. Key and configuration are closed to them.
        (self.folder / "run").chmod(0o755)
        (self.folder / "etc").chmod(0o700)
        configuration = CONFIGURATION.format(folder=self.folder, user=getpass.getuser(), host=socket.gethostname(),
                                             ports=free_ports(3))
        (self.folder / "etc/slurm.conf").write_text(configuration)
        self.start_munge()
        self.add("control", "slurmctld", "-D", "-f", self.environment["SLURM_CONF"])
        wait_for(lambda: "UP" in self.output("scontrol", "ping"), "slurmctld", needs=self.machines["control"])
        for node in ["n1", "n2"]:
            self.add(node, "slurmd", "-D", "-N", node, "-f", self.environment["SLURM_CONF"])
        wait_for(lambda: self.output("sinfo", "-h", "-N", "-o", "%T").split() == ["idle", "idle"], "both nodes")

    def start_munge(self):
        key, run = self.folder / "etc/munge.key", self.folder / "run"
        subprocess.run(["mungekey", "--create", f"--keyfile={key}"], check=True, env=self.environment)
        self.add("munge", "munged", "-F", f"--key-file={key}", f"--socket={run}/munge.sock",
                 f"--pid-file={run}/munged.pid", f"--seed-file={self.folder}/state/munged.seed")
        wait_for((run / "munge.sock").exists, "munged", needs=self.machines["munge"])

    def add(self, name, program, *arguments):
        self.machines[name] = Machine(name, [program, *arguments], self.folder / f"log/{name}.out", self.environment)

    def output(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, timeout=60).stdout

    def nodes(self):
        return [self.machines["n1"], self.machines["n2"]]

    def daemon_of(self, node):
        [daemon] = [pid for pid in node.processes() if command_line(pid)[:1] in ([b"slurmd"], [b"/usr/sbin/slurmd"])]
        return daemon

    def submit(self, command, environment):
        """Submits a job. Returns its number."""
        result = subprocess.run(["sbatch", "--parsable", *map(str, command)], env={**self.environment, **environment},
                                cwd=self.folder, capture_output=True, text=True, timeout=60)
        if result.returncode != 0:
            raise RuntimeError("sbatch: " + result.stderr)
        return result.stdout.strip()

    def states(self, job):
        """Returns the state of each task. Without -r, waiting tasks would be listed as one."""
        return self.output("squeue", "-h", "-r", "-t", "all", "-j", job, "-o", "%T").split()

    def wait_until_done(self, job):
        """Waits until a job has ended. Returns the final states of its tasks."""
        def ended():
            states = self.states(job)
            return states if states and not UNFINISHED & set(states) else None
        return wait_for(ended, f"job {job}", 1800, pause=0.5)

    def set_down(self, node):
        self.output("scontrol", "update", f"nodename={node.name}", "state=DOWN", "reason=lost")
