# SPDX-License-Identifier: Apache-2.0
"""Two machines reachable by ssh: two sshd on loopback ports of this machine, with keys made for the test."""

import getpass
import os
import socket
import subprocess
from pathlib import Path

from machine import Machine, Machines, wait_for
from private_slurm import free_ports

SERVER = """
ListenAddress 127.0.0.1
Port {port}
HostKey {folder}/host_key
PidFile {folder}/{name}.pid
AuthorizedKeysFile {folder}/user_key.pub
AuthenticationMethods publickey
StrictModes no
UsePAM no
PermitRootLogin prohibit-password
MaxStartups 100:30:200
MaxSessions 100
"""

CLIENT = """
Host {name}
    HostName 127.0.0.1
    Port {port}
"""

# If a machine does not answer, ssh gives up after a few seconds.
CLIENT_OF_ALL = """
Host *
    User {user}
    IdentityFile {folder}/user_key
    IdentitiesOnly yes
    UserKnownHostsFile {folder}/known_hosts
    GlobalKnownHostsFile /dev/null
    StrictHostKeyChecking accept-new
    BatchMode yes
    ConnectTimeout 5
    ServerAliveInterval 2
    ServerAliveCountMax 2
"""


class PrivateSsh(Machines):
    """The ssh servers, which run within a `with` statement."""

    def start(self):
        self.folder.mkdir(parents=True)
        if os.geteuid() == 0:
            Path("/run/sshd").mkdir(exist_ok=True)  # sshd's folder for privilege separation
        for key in ["host_key", "user_key"]:
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", str(self.folder / key)], check=True)
        client = ""
        for name, port in zip(["node1", "node2"], free_ports(2)):
            configuration = self.folder / f"{name}.conf"
            configuration.write_text(SERVER.format(folder=self.folder, name=name, port=port))
            self.machines[name] = Machine(name, ["/usr/sbin/sshd", "-D", "-e", "-f", configuration],
                                          self.folder / f"{name}.log")
            client += CLIENT.format(name=name, port=port)
            wait_for(lambda: self.answers(port), f"sshd on port {port}", needs=self.machines[name])
        (self.folder / "ssh_config").write_text(
            client + CLIENT_OF_ALL.format(folder=self.folder, user=getpass.getuser()))
        # Each machine converts one part at a time.
        (self.folder / "hosts").write_text("1/node1\n1/node2\n")
        (self.folder / "parallel").mkdir()
        (self.folder / "parallel/will-cite").touch()

    @staticmethod
    def answers(port):
        try:
            with socket.create_connection(("127.0.0.1", port), timeout=5) as connection:
                return connection.recv(4) == b"SSH-"
        except OSError:
            return False

    def nodes(self):
        return [self.machines["node1"], self.machines["node2"]]

    def environment(self):
        return {"PARALLEL_HOME": f"{self.folder}/parallel", "PARALLEL_SSH": f"ssh -F {self.folder}/ssh_config"}
