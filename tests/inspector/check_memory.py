#!/usr/bin/env python3
"""The inspector's peak memory stays within 2 KB per field plus 20 times the
input's size plus 50 MB on each input of scripts/memory-inputs.py, with the
two dictionaries made at 10 MB (a size at which the bound is tight).

Every input is read in the table mode. The file of minimal items, where the
memory of a field outweighs the file's size, is read in every output mode:
table, --json, --html, --codebook (table and JSON) and --ddi. The per-field
term counts only the fields this script knows of (that file's items); for
the other inputs the bound is the stricter 20 times the size plus 50 MB.

    check_memory.py INSPECTOR SCRIPTS_DIR WORK_DIR
"""
import importlib.util
import os
import subprocess
import sys

BYTES_PER_FIELD = 2048
BOUND_FACTOR = 20
BOUND_BASE = 50_000_000
DICTIONARY_BYTES = 10_000_000
MINIMAL_ITEMS_FILE = "minimal-items.dcf"


def peak_bytes(command):
    """Runs command alone in a fresh child and returns its peak resident size in bytes."""
    probe = ("import resource, subprocess, sys\n"
             "status = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode\n"
             "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, status)\n")
    out = subprocess.run([sys.executable, "-c", probe] + command, check=True, capture_output=True, text=True)
    peak, status = out.stdout.split()
    return int(peak) * 1024, int(status)


def modes(work, name):
    """The inspector's arguments before the file, one list per mode to measure on input name."""
    if name != MINIMAL_ITEMS_FILE:
        return {"table": ["--decimal", "yes-to-all"]}
    return {"table": [], "--json": ["--json"], "--html": ["--html", os.path.join(work, "page.html")],
            "--codebook": ["--codebook"], "--codebook --json": ["--codebook", "--json"],
            "--ddi": ["--ddi", os.path.join(work, "codebook.xml")]}


def main():
    inspector, scripts, work = sys.argv[1:4]
    script = importlib.util.spec_from_file_location("memory_inputs", os.path.join(scripts, "memory-inputs.py"))
    inputs = importlib.util.module_from_spec(script)
    script.loader.exec_module(inputs)
    inputs_dir = os.path.join(work, "inputs")
    inputs.write_all(inputs_dir, DICTIONARY_BYTES)
    failed = False
    for name in sorted(os.listdir(inputs_dir)):
        path = os.path.join(inputs_dir, name)
        size = os.path.getsize(path)
        fields = inputs.MINIMAL_ITEMS if name == MINIMAL_ITEMS_FILE else 0
        bound = BYTES_PER_FIELD * fields + BOUND_FACTOR * size + BOUND_BASE
        for mode, arguments in modes(work, name).items():
            peak, status = peak_bytes([inspector] + arguments + [path])
            over = peak > bound
            # The minimal file is valid: each of its modes must also succeed.
            broken = name == MINIMAL_ITEMS_FILE and status != 0
            failed |= over or broken
            verdict = "OVER" if over else "FAIL" if broken else "ok"
            print(f"{verdict:4} {name} ({mode}): {size:,} bytes, {fields:,} fields, peak {peak:,} bytes, "
                  f"bound {bound:,}, exit status {status}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
