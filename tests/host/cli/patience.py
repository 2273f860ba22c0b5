"""Waiting for what a blade takes its time for."""

import time

PATIENCE = 20  # seconds


def until(happens):
    """Waits for something, and returns what it was; fails when it does not happen."""
    end = time.monotonic() + PATIENCE
    while not (found := happens()):
        assert time.monotonic() < end, "it did not happen"
        time.sleep(0.05)
    return found
