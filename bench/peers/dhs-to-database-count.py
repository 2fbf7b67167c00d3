#!/usr/bin/env python3
"""DHS-To-Database's DCF_Parser (harry-gibson/DHS-To-Database) parses a CSPro
text dictionary; prints its item count.

    dhs-to-database-count.py FILE.dcf

The parser module is loaded from $KX_PEERS_DIR/dhs-to-database/src (see
setup.sh); it needs Debian's python3-chardet, so run it with /usr/bin/python3.
DCF_Parser(file, folder).parse() is timed; write() (its CSV output) is not
called. parse() prints one line of its own ("Parsed N lines into M items"),
which is sent to stderr here. Its rows are the dictionary's pseudo-row, the
items (ItemType Item or JoinableItem) and the id items repeated once per
record (ItemType IdItem); the count is the items plus the distinct id items.

With KX_PARSE_REPEAT=K a new DCF_Parser parses the file K times in this
process, and each time's wall-clock seconds go to stderr ("parse-seconds: ...").
"""
import contextlib
import importlib.util
import os
import sys
import tempfile
import time

source = os.path.join(os.environ.get("KX_PEERS_DIR", "/tmp/kx-peers"), "dhs-to-database", "src",
                      "DHS_To_Database", "cspro_parser", "DCF_Parser.py")
found = importlib.util.spec_from_file_location("DCF_Parser", source)
module = importlib.util.module_from_spec(found)
found.loader.exec_module(module)

times = []
for _ in range(max(1, int(os.environ.get("KX_PARSE_REPEAT", "1")))):
    start = time.perf_counter()
    parser = module.DCF_Parser(sys.argv[1], tempfile.gettempdir())
    with contextlib.redirect_stdout(sys.stderr):
        parser.parse()
    times.append(time.perf_counter() - start)
print("parse-seconds:", " ".join(f"{t:.4f}" for t in times), file=sys.stderr)
rows = parser._items
items = sum(1 for r in rows if r["ItemType"] in ("Item", "JoinableItem"))
ids = {r["Name"] for r in rows if r["ItemType"] == "IdItem"}
print(items + len(ids))
