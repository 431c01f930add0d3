"""The shape of all cases."""


class Group:
    """Cases that share a template. `name` is the beginning of the names of them all."""

    file_system = "tmpfs"

    def __init__(self, name):
        self.name = name

    def prepare(self, world):
        """Makes the template; called once before list and run."""

    def list(self, world):
        raise NotImplementedError

    def run(self, world, case):
        """What is wrong, in words."""
        raise NotImplementedError
