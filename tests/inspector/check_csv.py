#!/usr/bin/python3
"""Reads the inspector's --csv output back and compares it with its --json output.

usage: check_csv.py roundtrip|spreadsheet INSPECTOR WORKDIR CASE
  CASE: --sample FILE        a dictionary (any format the inspector reads)
        --lookup FILE        a tab-separated lookup file
        --hostile json|dcf   a CSPro 8 JSON or CSPro text dictionary written
                             here, whose names and labels hold commas, quotes,
                             line ends, control characters and non-ASCII text

roundtrip: Python's csv module (strict) reads the CSV and must find one header
row with the table's columns and one row per field of the --json output, with
exactly its name, label, type, numbers, bounds, codes, group and value labels
("code=label" entries joined by "; "); for a lookup file one row per label
frequency. The bytes must be UTF-8 without a byte-order mark, every record
ended by CR LF, and quoted exactly where RFC 4180 asks it (a field with a
comma, a double quote, CR or LF), which is how Python's csv writer quotes.

spreadsheet: Gnumeric's ssconvert (a spreadsheet's own CSV reader) imports the
CSV and writes it out again; it must hold as many rows as the header and the
fields. Exit status 77 (skipped) when ssconvert is not installed.

Exit status 0 when every check holds, 1 otherwise (every failed check is listed).
"""

import csv
import io
import json
import os
import shutil
import subprocess
import sys

import kxcheck

DICTIONARY_HEADER = ["NAME", "LABEL", "TYPE", "START", "SIZE", "DEC", "MIN", "MAX", "MISSING", "NOTAPPL", "GROUP",
                     "VALUE LABELS", "NAME NOTE"]
LOOKUP_HEADER = ["COUNT", "LABEL"]

# Texts that a CSV writer must get right: every one of them appears as a label.
HOSTILE_TEXTS = [
    "comma, inside",
    'a "quoted" word',
    '"',
    "two\nlines",
    "crlf\r\ninside",
    "lone\rcarriage return",
    "control \x01\x02\x1f\x7f characters",
    "tab\tinside",
    "nul\x00inside",
    "  blanks at both ends  ",
    "=1+1 looks like a formula",
    "code; and=sign",
    "Île-de-France, 漢字, 😀",
    "",
]


run = kxcheck.run_inspector


def hostile_json_dictionary():
    """A CSPro 8 JSON dictionary: one record, an item per hostile text, each with value labels of them all."""
    values = [{"labels": [{"text": t}], "pairs": [{"value": str(k + 1)}]} for k, t in enumerate(HOSTILE_TEXTS)]
    items = [{"name": "ID", "labels": [{"text": "Identification, \"id\""}], "contentType": "numeric",
              "start": 2, "length": 2}]
    records = []
    for k, text in enumerate(HOSTILE_TEXTS):
        records.append({"name": "ITEM%d" % k, "labels": [{"text": text}], "contentType": "numeric",
                        "start": 4 + 2 * k, "length": 2,
                        "valueSets": [{"name": "VS%d" % k, "labels": [{"text": text}], "values": values}]})
    records.append({"name": 'NAME,WITH "QUOTES"', "labels": [{"text": "odd name"}], "contentType": "alpha",
                    "start": 4 + 2 * len(HOSTILE_TEXTS), "length": 3})
    return {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "HOSTILE",
            "labels": [{"text": "Hostile labels"}], "recordType": {"start": 1, "length": 1},
            "levels": [{"name": "LEVEL", "labels": [{"text": "Level"}], "ids": {"items": items},
                        "records": [{"name": "REC", "labels": [{"text": "Record, \"one\""}], "recordType": "1",
                                     "items": records}]}]}


def hostile_dcf_dictionary():
    """A CSPro text dictionary: labels with what one line can hold, and an item with occurrences."""
    one_line = [t for t in HOSTILE_TEXTS if "\n" not in t and "\r" not in t and "\x00" not in t]
    lines = ["[Dictionary]", "Name=HOSTILE", "RecordTypeStart=1", "RecordTypeLen=1",
             "[Record]", "Name=REC", "Label=Record, \"one\"", "RecordTypeValue='1'"]
    for k, text in enumerate(one_line):
        lines += ["[Item]", "Label=" + text, "Name=ITEM%d" % k, "Start=%d" % (2 + k), "Len=1"]
        lines += ["[ValueSet]", "Label=" + text, "Name=VS%d" % k]
        lines += ["Value=%d;%s" % (v, t) for v, t in enumerate(one_line[:9], start=1)]
    # The occurrence number becomes one control character of each copy's name.
    lines += ["[Item]", "Label=Repeated, \"three\" times", "Name=REP", "Start=40", "Len=1", "Occurrences=3"]
    return "\n".join(lines) + "\n"


def inspector_arguments(case, workdir):
    kind, value = case
    if kind == "--sample":
        return [value]
    if kind == "--lookup":
        return ["--lookup", value, "--separator", "tab"]
    os.makedirs(workdir, exist_ok=True)
    path = os.path.join(workdir, "hostile." + value)
    with open(path, "w", encoding="utf-8", newline="") as f:
        if value == "json":
            json.dump(hostile_json_dictionary(), f, ensure_ascii=False)
        else:
            f.write(hostile_dcf_dictionary())
    return [path]


def name_note(name):
    """The NAME NOTE cell: a front-end occurrence name (NAME_ and the
    occurrence number as one control character) says so; another name with
    control characters says that."""
    if len(name) > 2 and name[-2] == "_" and ord(name[-1]) < 0x20:
        k = ord(name[-1])
        return ("occurrence %d of %s: the name ends with the character U+%04x, as the front end numbers "
                "occurrences; --codebook lists the item once with its occurrences" % (k, name[:-2], k))
    if any(ord(c) < 0x20 or ord(c) == 0x7f for c in name):
        return "the name holds control characters"
    return ""


def expected_rows(doc, lookup):
    """The CSV rows that the --json document stands for."""
    if lookup:
        return [LOOKUP_HEADER] + [[str(f["count"]), f["label"]] for f in doc["labelFrequencies"]]
    rows = [DICTIONARY_HEADER]
    for f in doc["fields"]:
        labels = "; ".join(v["code"] + "=" + v["label"] for v in f["valueLabels"])
        rows.append([f["name"], f["label"], f["type"], str(f["start"]), str(f["size"]), str(f["decimals"]),
                     f["minimum"], f["maximum"], f["missingCode"], f["notApplicableCode"], f["group"], labels,
                     name_note(f["name"])])
    return rows


def canonical_csv(rows):
    """The rows as RFC 4180 CSV with minimal quoting and CR LF record ends."""
    out = io.StringIO(newline="")
    csv.writer(out, lineterminator="\r\n", quoting=csv.QUOTE_MINIMAL).writerows(rows)
    return out.getvalue()


def check_bytes(raw, failures):
    if raw.startswith(b"\xef\xbb\xbf"):
        failures.append("the CSV starts with a byte-order mark")
    if not raw.endswith(b"\r\n"):
        failures.append("the CSV does not end with CR LF")
    try:
        return raw.decode("utf-8")
    except UnicodeDecodeError as e:
        failures.append("the CSV is not UTF-8: %s" % e)
        return raw.decode("utf-8", errors="replace")


def compare_rows(rows, expected, failures):
    if rows[:1] != expected[:1]:
        failures.append("header %r, expected %r" % (rows[:1], expected[:1]))
    if len(rows) != len(expected):
        failures.append("%d rows after the header, expected %d (one per field)" % (len(rows) - 1, len(expected) - 1))
    for n, (got, want) in enumerate(zip(rows[1:], expected[1:]), start=1):
        if got != want:
            failures.append("row %d: %r, expected %r" % (n, got, want))


def check_roundtrip(inspector, args, lookup, failures):
    as_json = run(inspector, ["--json"] + args)
    as_csv = run(inspector, ["--csv"] + args)
    for what, r in (("--json", as_json), ("--csv", as_csv)):
        if r.returncode != 0:
            failures.append("%s exited %d: %s" % (what, r.returncode, r.stderr.decode(errors="replace")))
    if failures:
        return
    expected = expected_rows(json.loads(as_json.stdout), lookup)
    text = check_bytes(as_csv.stdout, failures)
    try:
        rows = list(csv.reader(io.StringIO(text, newline=""), strict=True))
    except csv.Error as e:
        failures.append("Python's csv module cannot read it: %s" % e)
        return
    compare_rows(rows, expected, failures)
    if text != canonical_csv(rows):
        failures.append("the quoting or the record ends differ from RFC 4180's minimal form")
    if len(expected) < 2:
        failures.append("nothing to compare: the --json output has no fields")


def check_spreadsheet(inspector, args, workdir, lookup, failures):
    ssconvert = shutil.which("ssconvert")
    if not ssconvert:
        print("SKIP: ssconvert (Debian package gnumeric) is not installed")
        sys.exit(77)
    as_json = run(inspector, ["--json"] + args)
    as_csv = run(inspector, ["--csv"] + args)
    if as_json.returncode != 0 or as_csv.returncode != 0:
        failures.append("the inspector failed: %s" % (as_json.stderr + as_csv.stderr).decode(errors="replace"))
        return
    expected = expected_rows(json.loads(as_json.stdout), lookup)
    os.makedirs(workdir, exist_ok=True)
    source = os.path.join(workdir, "inspector.csv")
    again = os.path.join(workdir, "spreadsheet.csv")
    with open(source, "wb") as f:
        f.write(as_csv.stdout)
    # Every cell quoted on the way out, so that no line end of a cell can pass for a row's end.
    r = subprocess.run([ssconvert, "--import-type=Gnumeric_stf:stf_csvtab",
                        "--export-type=Gnumeric_stf:stf_assistant", "-O", "quoting-mode=always eol=unix",
                        source, again], capture_output=True, timeout=120, env=dict(os.environ, HOME=workdir))
    if r.returncode != 0:
        failures.append("ssconvert exited %d: %s" % (r.returncode, r.stderr.decode(errors="replace")))
        return
    with open(again, encoding="utf-8", errors="replace", newline="") as f:
        rows = list(csv.reader(f))
    if len(rows) != len(expected):
        failures.append("the spreadsheet reads %d rows, expected %d (the header and one per field)"
                        % (len(rows), len(expected)))
    elif rows[0] != expected[0]:
        failures.append("the spreadsheet reads the header %r" % rows[0])


def main(argv):
    if len(argv) != 6 or argv[1] not in ("roundtrip", "spreadsheet"):
        print(__doc__, file=sys.stderr)
        return 2
    mode, inspector, workdir, case = argv[1], argv[2], argv[3], (argv[4], argv[5])
    workdir = os.path.join(workdir, mode + "-" + os.path.basename(case[1]).replace(".", "_"))
    args = inspector_arguments(case, workdir)
    failures = []
    if mode == "roundtrip":
        check_roundtrip(inspector, args, case[0] == "--lookup", failures)
    else:
        check_spreadsheet(inspector, args, workdir, case[0] == "--lookup", failures)
    for failure in failures:
        print("FAIL: " + failure)
    if not failures:
        print("%s of %s: every check holds" % (mode, case[1]))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
