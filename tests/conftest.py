import os
import subprocess
import sys
import textwrap

import pytest

import zorvan


def run_python(code):
    """Runs code in a fresh interpreter (a process of its own has its own
    engine start count and serial counters); returns the completed process."""
    return subprocess.run(
        [sys.executable, "-X", "dev", "-c", textwrap.dedent(code)],
        capture_output=True, text=True, timeout=120, env=dict(os.environ),
    )


@pytest.fixture
def clean_defaults():
    """Gives a test the user defaults of a fresh module and restores them."""
    zorvan.setdefaults()
    zorvan._getcontrols().zslp_postsolve = 1
    yield zorvan._getcontrols()
    zorvan.setdefaults()
    zorvan._getcontrols().zslp_postsolve = 1
