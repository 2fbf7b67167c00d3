#!/usr/bin/env python3
"""pycspro (tech-acs/pycspro) parses a CSPro text dictionary; prints its item count.

    pycspro-count.py FILE.dcf

The peer's package is imported from $KX_PEERS_DIR/pycspro/src (see setup.sh);
it needs Debian's python3-transitions, so run it with /usr/bin/python3. The
file is read as pycspro's README shows: open(path).read(), then
DictionaryParser(text).parse().
"""
import os
import sys

sys.path.insert(0, os.path.join(os.environ.get("KX_PEERS_DIR", "/tmp/kx-peers"), "pycspro", "src"))
from pycspro import DictionaryParser  # noqa: E402

with open(sys.argv[1], "r", encoding="utf-8") as f:
    raw = f.read()
parsed = DictionaryParser(raw).parse()
if parsed is None:
    sys.exit("pycspro: the dictionary was not parsed to its end")
level = parsed["Dictionary"]["Level"]
print(len(level.get("IdItems", [])) + sum(len(r.get("Items", [])) for r in level.get("Records", [])))
