# SPDX-License-Identifier: MIT
"""What all tests of the package share."""

import gc
import unittest


class TestCase(unittest.TestCase):
    """A garbage collection after every test: what was freed too early, or twice, shows where it happened."""

    def run(self, result=None):
        try:
            return super().run(result)
        finally:
            gc.collect()
