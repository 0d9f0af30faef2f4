#!/usr/bin/env python3
"""Checks the console on a terminal: a prompt, line editing, history, transfers meanwhile, and a clean end.

usage: terminal_test.py TESSARO BUNDLE
"""
import os
import pty
import select
import signal
import socket
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


def session(program, bundle, port=1):
    """A session whose transfers go to a port of this machine; nobody listens at port 1."""
    terminal = Terminal(program, "run", "--bundle", bundle, "--connect", f":=127.0.0.1:{port}")
    terminal.expect("loaded Sample")
    terminal.expect("tessaro> ")
    return terminal


def main():
    program, bundle = sys.argv[1:]
    signal.alarm(120)  # a session that does not end fails the test

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

    with socket.create_server(("127.0.0.1", 0)) as silent:  # takes the connection and says nothing
        terminal = session(program, bundle, silent.getsockname()[1])
        terminal.type("choose 8\r")
        terminal.expect("a transfer is under way")
        terminal.expect("tessaro> ")
        terminal.type("choose 4\r")
        terminal.expect("[x] Marked")
        terminal.expect("tessaro> ")
        terminal.type("wait\r")
        time.sleep(0.3)
        os.kill(terminal.process, signal.SIGINT)
        terminal.expect("the transfer goes on")
        assert terminal.end() == 0
    return 0


if __name__ == "__main__":
    sys.exit(main())
