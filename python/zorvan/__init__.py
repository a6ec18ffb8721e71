"""Zorvan: state and solve optimisation problems with ordinary Python operators.

Everything public lives in the compiled extension ``zorvan.zorvanlib`` and is
re-exported here, so ``import zorvan`` gives ``zorvan.var``, ``zorvan.problem``,
the constants and the exceptions.
"""
from .zorvanlib import *  # noqa: F401,F403
from . import zorvanlib as _lib
from .enums import SolveStatus, SolStatus  # noqa: F401

# Names starting with an underscore are not taken by the star import.
_init = _lib._init
_getcontrols = _lib._getcontrols
_storesizes = _lib._storesizes

__version__ = _lib.getversion()
