#!/usr/bin/env python3
"""Checks the console on a terminal: a prompt, line editing, history, and a clean end.

usage: terminal_test.py TESSARO BUNDLE
"""
import os
import pty
import select
import signal
import sys
import time


class Terminal:
    def __init__(self, *command):
        self.printed = ""
        self.process, self.descriptor = pty.fork()
        if self.process == 0:
            os.environ["TERM"] = "xterm"
            os.execv(command[0], command)

    def expect(self, text):
        """Waits until `text` is printed; what stood before it is forgotten."""
        end = time.monotonic() + 30
        while text not in self.printed:
            if time.monotonic() > end:
                raise AssertionError(f"{text!r} does not come; there is {self.printed!r}")
            if select.select([self.descriptor], [], [], 0.2)[0]:
                self.printed += os.read(self.descriptor, 4096).decode("utf-8", "replace")
        before, _, self.printed = self.printed.partition(text)
        return before

    def type(self, text):
        os.write(self.descriptor, text.encode())

    def end(self):
        try:
            while os.read(self.descriptor, 4096):
                pass
        except OSError:
            pass
        return os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])


def session(program, bundle):
    terminal = Terminal(program, "run", "--bundle", bundle, "--connect", ":=127.0.0.1:1")
    terminal.expect("loaded Sample")
    terminal.expect("tessaro> ")
    return terminal


def main():
    program, bundle = sys.argv[1:]

    terminal = session(program, bundle)
    terminal.type("choose 5\x7f4\r")  # the 5 is taken back
    terminal.expect("[x] Marked")
    terminal.expect("tessaro> ")
    terminal.type("\x1b[A\r")  # the line before, again
    terminal.expect("4     Marked")
    terminal.expect("tessaro> ")
    terminal.type("choose 1\r")
    terminal.expect("row 2 * \"green\"")
    terminal.expect("tessaro> ")
    terminal.type("close\r")
    terminal.expect("dialog 2000 closed by item 2")
    terminal.expect("tessaro> ")
    terminal.type("choose 8\r")  # a transfer to a port where nobody listens
    terminal.expect("The transfer has failed.")  # without a key pressed
    terminal.expect("tessaro> ")
    terminal.type("answer 1\r")
    terminal.expect("alert answered 1")
    terminal.expect("tessaro> ")
    terminal.type("choose 1\r")
    terminal.expect("row 2 * \"green\"")
    terminal.expect("tessaro> ")
    terminal.type("\x04")  # end of input
    terminal.expect("dialog 2000 closed by item 2")
    assert terminal.end() == 0

    terminal = session(program, bundle)
    os.kill(terminal.process, signal.SIGINT)
    assert terminal.end() == 0
    return 0


if __name__ == "__main__":
    sys.exit(main())
