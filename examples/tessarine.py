"""Chooses a file or folder in a browser's Open panel: tessarine --verify, from Python 3.9 on.

    choose(812, "/tmp/report.txt")    # in the panel that is open, or opens within ten seconds
    choose(812, "/tmp/report.txt", open_panel=lambda: page.click("input[type=file]"))
"""

import contextlib
import fcntl
import json
import os
import shutil
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

MARGIN_SECONDS = 5  # that the process has beyond the tool's own watchdog


@dataclass(frozen=True)
class Chosen:
    path: str  # what the panel took, without links
    seen: str  # before its button was pressed: "folder shown" or "entry selected"
    result: dict  # all that the tool printed


class Failure(Exception):
    """kind: request (correct the call), no-panel, not-chosen (the panel is as open as before),
    unknown (the panel may have taken something: look at the page), busy, no-tool."""

    def __init__(self, kind, message):
        super().__init__(f"{kind}: {message}")
        self.kind = kind
        self.message = message
        self.may_have_chosen = kind == "unknown"
        self.may_repeat = kind in ("no-panel", "not-chosen", "busy")


REQUESTS = (
    "folder does not exist: ",
    "path does not exist: ",
    "path is not a directory: ",
    "not verified: the path is ",
    "not verified: no process has the pid ",
    "not verified: a file for a folder panel: ",
    "not verified: a folder for a file panel: ",
)


def kind_of(status, message):
    if status == 2 or message.startswith(REQUESTS):
        return "request"
    if " is unknown" in message or not message.startswith("not verified: "):
        return "unknown"
    return "no-panel" if message.startswith("not verified: no open panel of ") else "not-chosen"


@contextlib.contextmanager
def lock_of(pid, seconds):
    """One call at a time for each browser. The tool inherits the lock, should this process die."""
    folder = Path.home() / ".cache" / "tessarine"
    folder.mkdir(mode=0o700, parents=True, exist_ok=True)
    end = time.monotonic() + seconds
    with open(folder / f"{pid}.lock", "a") as lock:
        while True:
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
                break
            except BlockingIOError:
                if time.monotonic() > end:
                    raise Failure("busy", f"another call works on the browser {pid}") from None
            time.sleep(0.1)
        yield lock.fileno()


def choose(pid, path, *, seconds=10, open_panel=None, tool=None, lock_seconds=60):
    """What the panel of the browser `pid` chose; otherwise raises Failure."""
    program = shutil.which(tool or os.environ.get("TESSARINE") or "tessarine")
    if program is None:
        raise Failure("no-tool", "no tessarine: name it, or set TESSARINE or PATH")
    path = os.path.realpath(path) if path else ""
    command = "choose-folder" if os.path.isdir(path) else "choose-path"
    words = [command, "--verify", "--pid", str(pid), "--path", path, "--timeout", str(seconds)]
    with lock_of(pid, lock_seconds) as lock:
        if open_panel:
            open_panel()
        return run([os.path.abspath(program), *words], max(seconds + 8, 12) + MARGIN_SECONDS, lock)


def run(words, limit, lock):
    try:
        end = subprocess.run(
            words, stdin=subprocess.DEVNULL, capture_output=True, timeout=limit, pass_fds=[lock]
        )
    except subprocess.TimeoutExpired:
        raise Failure("unknown", f"tessarine did not end within {limit} s") from None
    except OSError as error:
        raise Failure("no-tool", str(error)) from None
    if end.returncode == 0:
        with contextlib.suppress(ValueError, KeyError):
            result = json.loads(end.stdout)
            return Chosen(result["verifiedPath"], result["verified"], result)
    message = end.stderr.decode(errors="replace").strip() or f"ended with {end.returncode}"
    raise Failure(kind_of(end.returncode, message), message)
