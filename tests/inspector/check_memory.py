#!/usr/bin/env python3
"""The inspector's peak memory stays within 20 times the input's size plus
50 MB on each input of scripts/memory-inputs.py, with the two dictionaries
made at 10 MB (a size at which the bound is tight).

    check_memory.py INSPECTOR SCRIPTS_DIR WORK_DIR
"""
import importlib.util
import os
import resource
import subprocess
import sys

BOUND_FACTOR = 20
BOUND_BASE = 50_000_000
DICTIONARY_BYTES = 10_000_000


def peak_bytes(command):
    """Runs command alone in a fresh child and returns its peak resident size in bytes."""
    probe = ("import resource, subprocess, sys\n"
             "subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)\n"
             "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)\n")
    out = subprocess.run([sys.executable, "-c", probe] + command, check=True, capture_output=True, text=True)
    return int(out.stdout) * 1024


def main():
    inspector, scripts, work = sys.argv[1:4]
    script = importlib.util.spec_from_file_location("memory_inputs", os.path.join(scripts, "memory-inputs.py"))
    inputs = importlib.util.module_from_spec(script)
    script.loader.exec_module(inputs)
    inputs.write_all(work, DICTIONARY_BYTES)
    failed = False
    for name in sorted(os.listdir(work)):
        path = os.path.join(work, name)
        size = os.path.getsize(path)
        bound = BOUND_FACTOR * size + BOUND_BASE
        peak = peak_bytes([inspector, "--decimal", "yes-to-all", path])
        verdict = "ok" if peak <= bound else "OVER"
        failed |= peak > bound
        print(f"{verdict:4} {name}: {size:,} bytes, peak {peak:,} bytes, bound {bound:,}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
