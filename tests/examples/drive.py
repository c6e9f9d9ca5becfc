"""Runs examples/tessarine.py for the tests.

choose PID PATH [OPENER...]: what comes of it, as JSON.    kinds FILE: of each "STATUS MESSAGE" in it.
"""

import json
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../examples"))
import tessarine

seconds = int(os.environ.get("TESSARINE_SECONDS", 10))
lock_seconds = int(os.environ.get("TESSARINE_LOCK_SECONDS", 60))
word, *words = sys.argv[1:]
if word == "kinds":
    for line in open(words[0], encoding="utf-8"):
        status, message = line.rstrip("\n").split(" ", 1)
        print(tessarine.kind_of(int(status), message))
else:
    pid, path, *opener = words
    open_panel = (lambda: subprocess.run(opener, check=True)) if opener else None
    try:
        chosen = tessarine.choose(
            int(pid), path, seconds=seconds, open_panel=open_panel, lock_seconds=lock_seconds
        )
        print(json.dumps({"path": chosen.path, "command": chosen.result["command"]}))
    except tessarine.Failure as failure:
        answer = {
            "kind": failure.kind,
            "message": failure.message,
            "mayHaveChosen": failure.may_have_chosen,
            "mayRepeat": failure.may_repeat,
        }
        print(json.dumps(answer))
