"""Integer enumerations of solve and solution statuses."""
from enum import IntEnum


class SolveStatus(IntEnum):
    """How the last solve ended."""

    UNSTARTED = 0
    STOPPED = 1
    FAILED = 2
    COMPLETED = 3


class SolStatus(IntEnum):
    """What the last solve found."""

    NOTFOUND = 0
    OPTIMAL = 1
    FEASIBLE = 2
    INFEASIBLE = 3
    UNBOUNDED = 4
