"""What tests of faults are made of."""
import os
import subprocess
import unittest

from harness.programs import Programs, program

with_few_descriptors = unittest.skipIf("undefined" in os.environ.get("LUMORA_SANITIZE", ""),
                                       "the check of virtual tables needs a pipe of its own to look at memory")


class Case(Programs):
    def start(self, *command, **options):
        """Through pipes, unless options say otherwise."""
        pipes = {name: subprocess.PIPE for name in ("stdin", "stdout", "stderr")}
        return super().start(*command, **{**pipes, **options})

    def rows(self, page, *words, **options):
        """A page of the Settings application, without a window."""
        return self.run_program(program("lumora-settings"), "--root", self.root, "--rows", page, *words, **options)

    def expect_failure(self, result, *reasons):
        """That a program says why it failed, for one of the reasons, in a single line."""
        self.assertEqual((result.returncode, result.stdout), (1, ""), result.stderr)
        name = os.path.basename(result.args[0])
        self.assertRegex(result.stderr, rf"\A{name}: [^\n]+\n\Z")
        self.assertTrue(any(reason in result.stderr for reason in reasons), f"{reasons} in {result.stderr}")
