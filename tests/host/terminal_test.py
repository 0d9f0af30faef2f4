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
import termios
import time


class Terminal:
    def __init__(self, *command):
        self.printed = ""
        self.process, self.descriptor = pty.fork()
        if self.process == 0:
            os.environ.update(TERM="xterm", LC_ALL="C.UTF-8")
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
        os.write(self.descriptor, text.encode("utf-8", "surrogateescape"))

    def end(self):
        try:
            while os.read(self.descriptor, 4096):
                pass
        except OSError:
            pass
        return os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])

    def command(self, text, *expected):
        """Types a line, and waits for what it prints and for the prompt."""
        self.type(text + "\r")
        for each in (*expected, "tessaro> "):
            self.expect(each)


def session(program, bundle, port=1):
    """A session whose transfers go to a port of this machine; nobody listens at port 1."""
    terminal = Terminal(program, "run", "--bundle", bundle, "--connect", f":=127.0.0.1:{port}")
    terminal.expect("loaded ")
    terminal.expect("tessaro> ")
    return terminal


def main():
    program, bundle = sys.argv[1:]
    signal.alarm(120)  # a session that does not end fails the test

    terminal = session(program, bundle)
    terminal.command("choose 5\x7f4", "[x] Marked")  # the 5 is taken back
    terminal.command("\x1b[A", "4     Marked")  # the line before, again
    terminal.command("project open \"/Università/日本語.pln\"", "project \"/Università/日本語.pln\"")
    terminal.command("project open /a\udcffb", "project \"/ab\"")  # a byte that is no text is not taken
    terminal.command("choose 1", "row 2 * \"green\"")
    terminal.command("close", "dialog 2000 closed by item 2")
    terminal.command("choose 8", "The transfer has failed.")  # nobody listens there; told without a key pressed
    terminal.command("answer 1", "alert answered 1")
    terminal.command("choose 1", "row 2 * \"green\"")
    terminal.type("\x04")  # end of input
    terminal.expect("dialog 2000 closed by item 2")
    assert terminal.end() == 0

    terminal = session(program, bundle)
    os.kill(terminal.process, signal.SIGINT)
    assert terminal.end() == 0

    terminal = session(program, bundle.replace("Sample", "EXITS"))
    terminal.type("choose 8\r")  # the add-on ends the program while the prompt waits
    terminal.expect("EXITS has ended the program")
    assert termios.tcgetattr(terminal.descriptor)[3] & termios.ECHO
    assert terminal.end() == 5

    with socket.create_server(("127.0.0.1", 0)) as silent:  # takes the connection and says nothing
        terminal = session(program, bundle, silent.getsockname()[1])
        terminal.command("choose 8", "a transfer is under way")
        terminal.command("choose 4", "[x] Marked")
        terminal.type("wait\r")
        time.sleep(0.3)
        os.kill(terminal.process, signal.SIGINT)
        terminal.expect("the transfer has not finished")
        assert terminal.end() == 0
    return 0


if __name__ == "__main__":
    sys.exit(main())
