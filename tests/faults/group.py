"""The shape of all cases."""

from oracle import Oracle
from scenarios import prepared


class Group:
    """Cases that share a template. `name` is the beginning of the names of them all."""

    file_system = "tmpfs"
    lacks = ""  # features that the file systems do not have

    def __init__(self, name):
        self.name = name

    def prepare(self, world):
        """Makes the template; called once before list and run."""

    def prepare_scenario(self, world, scenario):
        self.scenario = scenario
        self.oracle = Oracle(world, prepared(world, scenario), scenario)

    def list(self, world):
        raise NotImplementedError

    def run(self, world, case):
        """What is wrong, in words."""
        raise NotImplementedError
