"""Starts of the program under test, as its user, without loading it each time."""

import dataclasses
import fcntl
import json
import os
import signal
import socket
import struct
import subprocess

USER = int(os.environ.get("FAULTS_USER", "65534"))  # of the programs under test
SO_SNDBUFFORCE = 32  # beyond the limit of ordinary users
PATIENCE = 15  # seconds until a program counts as one that never ends
TOP = os.path.realpath(os.path.join(os.path.dirname(__file__), "../.."))
ORVANECTL = os.environ.get("ORVANECTL", os.path.join(TOP, "build/dev/cli/orvanectl"))
INTERPOSER = os.environ.get("FAULTS_LIBRARY", os.path.join(TOP, "build/dev/tests/faults/liborvane_faults.so"))


@dataclasses.dataclass
class Result:
    status: int
    output: str
    errors: str
    timed_out: bool = False

    @property
    def json(self):
        return json.loads(self.output)


class StartServer:
    """The other end of StartServer.cpp: one process at a time. Belongs to the mounts of whoever made it."""

    def __init__(self):
        self.socket, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.socket.setsockopt(socket.SOL_SOCKET, SO_SNDBUFFORCE, 1 << 21)
        self.written = [os.memfd_create(name) for name in ("output", "errors")]
        for file in self.written:
            fcntl.fcntl(file, fcntl.F_SETFL, os.O_APPEND)
        with theirs:
            self.process = subprocess.Popen(
                [ORVANECTL], env={"LD_PRELOAD": INTERPOSER, "FAULTS_SERVER": str(USER)}, cwd="/", umask=0o022,
                stdin=theirs, stdout=self.written[0], stderr=self.written[1])

    def close(self):
        self.socket.close()
        self.process.wait()
        for file in self.written:
            os.close(file)

    def run(self, words, values, folder, when_stopped=None):
        """How the program ends. `when_stopped` is called once the program stops itself, which is killed then."""
        for file in self.written:
            os.ftruncate(file, 0)
        parts = [folder, str(len(words) + 1), ORVANECTL, *words, *(f"{name}={value}" for name, value in values.items())]
        # On the processors that the caller has now, as a program that it starts itself.
        os.sched_setaffinity(self.process.pid, os.sched_getaffinity(0))
        self.socket.settimeout(None)
        self.socket.send(b"".join(os.fsencode(part) + b"\0" for part in parts))
        process = self.answer()
        self.socket.settimeout(PATIENCE)
        timed_out = False
        try:
            status = self.answer()
        except TimeoutError:
            timed_out = True
        if when_stopped is not None:
            when_stopped()
        if timed_out or os.WIFSTOPPED(status):
            os.kill(process, signal.SIGKILL)
            self.socket.settimeout(None)
            status = self.answer()
        return Result(os.waitstatus_to_exitcode(status), *map(self.text, self.written), timed_out)

    def answer(self):
        message = self.socket.recv(4)
        if not message:
            raise RuntimeError(f"{ORVANECTL} does not start: {self.text(self.written[1])}")
        return struct.unpack("i", message)[0]

    @staticmethod
    def text(file):
        return os.pread(file, os.fstat(file).st_size, 0).decode(errors="replace")
