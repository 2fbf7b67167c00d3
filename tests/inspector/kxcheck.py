"""What the inspector's Python checks share: running a program as a user
would, without a display, and with the sanitizer settings the test build needs."""

import os
import subprocess

SKIP = 77  # the exit status CTest reads as "skipped"


def environment(extra=None):
    """The test's environment without a display (the inspector must never
    wait for a dialog), plus EXTRA. Under the sanitizers leak detection is
    off: the library keeps some objects alive on purpose."""
    env = dict(os.environ, **(extra or {}))
    env.pop("DISPLAY", None)
    env.pop("WAYLAND_DISPLAY", None)
    env["ASAN_OPTIONS"] = (env.get("ASAN_OPTIONS", "") + ":detect_leaks=0").lstrip(":")
    return env


def run(command, extra_env=None, timeout=120):
    """Runs COMMAND (a list) and returns the completed process, output captured."""
    return subprocess.run(command, capture_output=True, env=environment(extra_env), timeout=timeout)


def run_inspector(inspector, args):
    """Runs the inspector with ARGS."""
    return run([inspector] + list(args))
