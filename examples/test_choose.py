"""pytest examples/test_choose.py: a program that chooses, tested on a simulated desktop.

tessarine and tessarine-desktop are found on the PATH.
"""

import json
import shlex
import subprocess

import pytest
import tessarine

BROWSER = 812  # on every desktop that a scenario does not say otherwise of


@pytest.fixture
def desktop(tmp_path, monkeypatch):
    """Serves a desktop with a file panel; gives what tells its state."""
    scenario = tmp_path / "scenario.json"
    scenario.write_text(json.dumps({"panels": [{"mode": "files", "folder": str(tmp_path)}]}))
    socket = str(tmp_path / "desktop")
    serve = ["tessarine-desktop", "serve", str(scenario), "--socket", socket]
    with subprocess.Popen(serve, stdout=subprocess.PIPE, text=True) as service:
        for _ in range(3):  # export NAME='VALUE'
            name, value = shlex.split(service.stdout.readline())[1].split("=", 1)
            monkeypatch.setenv(name, value)
        state = ["tessarine-desktop", "state", "--socket", socket]
        yield lambda: json.loads(subprocess.check_output(state))
        service.terminate()


def test_a_file_is_chosen(desktop, tmp_path):
    report = tmp_path / "a report.txt"
    report.write_text("quarterly figures")
    assert tessarine.choose(BROWSER, str(report)).path == str(report.resolve())
    state = desktop()
    assert state["panels"][0]["outcome"] == "chosen"
    assert state["panels"][0]["path"] == str(report.resolve())
    assert state["verdict"] == "true"


def test_a_folder_is_refused_and_the_panel_stays(desktop, tmp_path):
    with pytest.raises(tessarine.Failure) as failure:
        tessarine.choose(BROWSER, str(tmp_path))
    assert failure.value.kind == "request"
    assert not failure.value.may_have_chosen
    assert desktop()["panels"][0]["outcome"] == "none"
