#!/usr/bin/env python3
"""pycspro (tech-acs/pycspro) parses a CSPro text dictionary; prints its item count.

    pycspro-count.py FILE.dcf

The peer's package is imported from $KX_PEERS_DIR/pycspro/src (see setup.sh);
it needs Debian's python3-transitions, so run it with /usr/bin/python3. The
file is read as pycspro's README shows: open(path).read(), then
DictionaryParser(text).parse().

With KX_PARSE_REPEAT=K the file is read and parsed K times in this process,
and each time's wall-clock seconds go to stderr ("parse-seconds: ...").
"""
import os
import sys
import time

sys.path.insert(0, os.path.join(os.environ.get("KX_PEERS_DIR", "/tmp/kx-peers"), "pycspro", "src"))
from pycspro import DictionaryParser  # noqa: E402



def parse(path):
    with open(path, "r", encoding="utf-8") as f:
        raw = f.read()
    return DictionaryParser(raw).parse()


times = []
for _ in range(max(1, int(os.environ.get("KX_PARSE_REPEAT", "1")))):
    start = time.perf_counter()
    parsed = parse(sys.argv[1])
    times.append(time.perf_counter() - start)
print("parse-seconds:", " ".join(f"{t:.4f}" for t in times), file=sys.stderr)
if parsed is None:
    sys.exit("pycspro: the dictionary was not parsed to its end")
level = parsed["Dictionary"]["Level"]
print(len(level.get("IdItems", [])) + sum(len(r.get("Items", [])) for r in level.get("Records", [])))
