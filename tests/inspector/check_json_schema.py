#!/usr/bin/python3
"""Validates the inspector's --json output against its JSON Schema:
docs/keladmin-inspect.schema.json for the front end's reading,
docs/keladmin-codebook.schema.json for --codebook.

usage: check_json_schema.py valid SCHEMA INSPECTOR WORKDIR ARG...
       check_json_schema.py rejects SCHEMA INSPECTOR WORKDIR ARG...
       check_json_schema.py schema SCHEMA

valid: runs `INSPECTOR --json ARG...` (exit status 0, or 4 with --check on a
file with messages) and validates the document. An ARG "@bad-lookup" stands
for a lookup file written here with a duplicate key and a line without a
separator, so that --check gives messages.

rejects: the document of `INSPECTOR --json ARG...` must pass, the same
document with a reading note added must pass, and every wrong variant of it
(a key missing, a value of the wrong type, an unknown key, a note with a key
too many or too few, another schemaVersion) must be rejected, so that the
validation cannot pass by accepting anything.

schema: the schema itself is a valid draft 2020-12 schema, every property
has a "description", and every object it describes is closed
(additionalProperties false).

Needs Python's jsonschema (Debian package python3-jsonschema); without it the
test is skipped (exit status 77). Exit status 0 when every check holds, 1
otherwise.
"""

import copy
import json
import os
import sys

import kxcheck

try:
    import jsonschema
    from jsonschema import Draft202012Validator
except ImportError:
    print("SKIP: Python's jsonschema with draft 2020-12 is missing (Debian package python3-jsonschema)")
    sys.exit(77)


run = kxcheck.run_inspector


def load_validator(path):
    with open(path, encoding="utf-8") as f:
        schema = json.load(f)
    Draft202012Validator.check_schema(schema)
    return schema, Draft202012Validator(schema)


def expand(args, workdir):
    """Writes the files that placeholders stand for."""
    out = []
    for arg in args:
        if arg == "@bad-lookup":
            os.makedirs(workdir, exist_ok=True)
            arg = os.path.join(workdir, "bad-lookup.txt")
            with open(arg, "w", encoding="utf-8") as f:
                f.write("01\tNorth\n01\tSouth\n02 no separator\n03\tEast\n")
        out.append(arg)
    return out


def document_of(inspector, args, workdir, failures):
    r = run(inspector, ["--json"] + expand(args, workdir))
    allowed = (0, 4) if "--check" in args else (0, 6) if "--diff" in args else (0,)
    if r.returncode not in allowed:
        failures.append("the inspector exited %d: %s" % (r.returncode, r.stderr.decode(errors="replace")))
        return None
    return json.loads(r.stdout)


def errors_of(validator, document):
    """Whether the document is valid; if not, the errors within the branch it is meant for, cut short."""
    if validator.is_valid(document):
        return []
    if "oneOf" not in validator.schema:
        return ["%s: %s" % ("/".join(str(p) for p in e.absolute_path) or "(root)", e.message[:300])
                for e in validator.iter_errors(document)]
    kind = "lookup" if isinstance(document, dict) and "separator" in document else "dictionary"
    branch = {k: v for k, v in validator.schema.items() if k != "oneOf"}
    branch["$ref"] = "#/$defs/" + kind
    errors = ["%s: %s" % ("/".join(str(p) for p in e.absolute_path) or "(root)",
                          e.message if len(e.message) <= 300 else e.message[:300] + "...")
              for e in Draft202012Validator(branch).iter_errors(document)]
    return errors or ["(root): no branch of the schema fits"]


def check_valid(validator, document, failures):
    for error in errors_of(validator, document):
        failures.append("not valid: " + error)
    if not failures and document.get("kind") == "codebook":
        print("valid codebook document (%d variables)" % len(document["variables"]))
    elif not failures and document.get("kind") == "comparison":
        print("valid comparison document (%d changes)" % len(document["changes"]))
    elif not failures:
        kind = "lookup" if "separator" in document else "dictionary"
        print("valid %s document (%d fields or labels, %s)" % (
            kind, len(document.get("fields", document.get("labelFrequencies", []))),
            "%d notes" % len(document["notes"]) if "notes" in document else "no notes key"))


def a_note():
    return {"line": 12, "subject": "AGE_VS2", "kind": "value-set-dropped",
            "text": "value set AGE_VS2 dropped: the value line 'Value=0 1:14 15:19' lists several codes"}


def codebook_variants(variant, document):
    """What the codebook schema must reject."""
    variable = document["variables"][0]
    variant("kind other than codebook", lambda d: d.update(kind="dictionary"))
    variant("labels as a text", lambda d: d.update(labels="Census"))
    variant("no languages", lambda d: d.update(languages=[]))
    variant("a row count below 0", lambda d: d.update(rowCount=-1))
    variant("recordType without length", lambda d: d["recordType"].pop("length"))
    variant("a variable's start of 0", lambda d: d["variables"][0].update(start=0))
    variant("a variable without valueSets", lambda d: d["variables"][0].pop("valueSets"))
    variant("a variable with an unknown key", lambda d: d["variables"][0].update(size=3))
    variant("an unknown storage", lambda d: d["variables"][0].update(storage="decimal"))
    variant("0 occurrences", lambda d: d["variables"][0].update(occurrences=0))
    variant("a value without codes", lambda d: d["variables"][0].update(valueSets=[{
        "name": "S", "labels": [], "link": None, "linkFilled": False,
        "values": [{"codes": [], "labels": ["x"], "special": None, "note": None, "image": None}]}]))
    variant("an unknown special value", lambda d: d["variables"][0].update(missing=[{
        "from": "9", "special": "UNKNOWN", "label": None}]))
    variant("a code as a number", lambda d: d["variables"][0].update(missing=[{
        "from": 9, "special": None, "label": None}]))
    if variable.get("record") is None:
        variant("an empty record name instead of null", lambda d: d["variables"][0].update(record=""))


def comparison_variants(variant, document):
    """What the comparison schema must reject."""
    variant("kind other than comparison", lambda d: d.update(kind="codebook"))
    variant("positionsCompared as a text", lambda d: d.update(positionsCompared="yes"))
    variant("old without format", lambda d: d["old"].pop("format"))
    variant("an unknown change kind", lambda d: d["changes"][0].update(kind="variable-teleported"))
    variant("a severity of 4", lambda d: d["changes"][0].update(severity=4))
    variant("a change without detail", lambda d: d["changes"][0].pop("detail"))
    variant("a change with an unknown key", lambda d: d["changes"][0].update(column=3))
    variant("an empty variable instead of null", lambda d: d["changes"][0].update(variable=""))


def wrong_variants(document):
    """(what is wrong, the document with it)."""
    variants = []

    def variant(what, change):
        d = copy.deepcopy(document)
        change(d)
        variants.append((what, d))

    items = "fields" if "fields" in document else "labelFrequencies"
    if document.get("kind") == "codebook":
        items = "variables"
        codebook_variants(variant, document)
    elif document.get("kind") == "comparison":
        items = "variables"
        comparison_variants(variant, document)
    variant("schemaVersion missing", lambda d: d.pop("schemaVersion"))
    variant("schemaVersion 2", lambda d: d.update(schemaVersion=2))
    variant("schemaVersion as a text", lambda d: d.update(schemaVersion="1"))
    if "file" in document:
        variant("file missing", lambda d: d.pop("file"))
        variant("file as a number", lambda d: d.update(file=1))
    variant("an unknown top-level key", lambda d: d.update(extra=True))
    variant("notes as an object", lambda d: d.update(notes={}))
    variant("a note without kind", lambda d: d.update(notes=[{k: v for k, v in a_note().items() if k != "kind"}]))
    variant("a note with a key too many", lambda d: d.update(notes=[dict(a_note(), column=3)]))
    variant("a note's line as a text", lambda d: d.update(notes=[dict(a_note(), line="12")]))
    variant("a note's line below 0", lambda d: d.update(notes=[dict(a_note(), line=-1)]))
    if items == "variables":
        pass
    elif items == "fields":
        variant("a field's start as a text", lambda d: d["fields"][0].update(start="2"))
        variant("a field without valueLabels", lambda d: d["fields"][0].pop("valueLabels"))
        variant("a field with an unknown key", lambda d: d["fields"][0].update(width=3))
        variant("a value label's code as a number", lambda d: d["fields"][0].update(
            valueLabels=[{"code": 1, "label": "One"}]))
        variant("an unknown format", lambda d: d.update(format="excel"))
        variant("formatDetected as a text", lambda d: d.update(formatDetected="true"))
        variant("a group without recordType", lambda d: d.update(groups=[{"name": "G"}]))
        if "fileMetadata" in document:
            meta = "fileMetadata"
            variant("an SPSS or Stata file without fileMetadata", lambda d: d.pop(meta))
            variant("a row count as a text", lambda d: d[meta].update(rowCount="12"))
            variant("a negative row count", lambda d: d[meta].update(rowCount=-1))
            variant("an unknown byte order", lambda d: d[meta].update(byteOrder="middle-endian"))
            variant("a creation time with a zone", lambda d: d[meta].update(creationTime="2026-11-21T09:13:27Z"))
            variant("a file label of null", lambda d: d[meta].update(label=None))
            variant("fileMetadata without encoding", lambda d: d[meta].pop("encoding"))
            variant("fileMetadata with an unknown key", lambda d: d[meta].update(compression="rows"))
        else:
            variant("fileMetadata on a CSPro dictionary", lambda d: d.update(fileMetadata={
                "rowCount": None, "formatVersion": None, "encoding": None, "byteOrder": None,
                "creationTime": None, "label": ""}))
    else:
        variant("a count of 0", lambda d: d["labelFrequencies"][0].update(count=0))
        variant("a message as a number", lambda d: d.update(messages=[3]))
        variant("an unknown separator", lambda d: d.update(separator="pipe"))
        variant("entries missing", lambda d: d.pop("entries"))
    return variants


def check_rejects(validator, document, failures):
    if not document.get("fields", document.get("labelFrequencies",
                                               document.get("variables", document.get("changes")))):
        failures.append("the document has nothing to change")
        return
    check_valid(validator, document, failures)
    if document.get("kind") not in ("codebook", "comparison"):
        check_accepts_notes(validator, document, failures)
    for what, variant in wrong_variants(document):
        if validator.is_valid(variant):
            failures.append("accepted with " + what)
        else:
            print("rejected with %s" % what)


def check_accepts_notes(validator, document, failures):
    with_note = copy.deepcopy(document)
    with_note["notes"] = [a_note(), dict(a_note(), line=0, subject="income", kind="width-first-digit")]
    for error in errors_of(validator, with_note):
        failures.append("a document with notes is not valid: " + error)


def walk(node, path, failures):
    """Every property described, every described object closed."""
    if isinstance(node, dict):
        if node.get("type") == "object" and node.get("additionalProperties") is not False:
            failures.append("%s: an object without additionalProperties false" % path)
        for name, prop in node.get("properties", {}).items():
            if "description" not in prop:
                failures.append("%s/properties/%s: no description" % (path, name))
        for key, value in node.items():
            # A condition names properties to test them, not to describe them.
            if key != "if":
                walk(value, path + "/" + key, failures)
    elif isinstance(node, list):
        for i, value in enumerate(node):
            walk(value, "%s/%d" % (path, i), failures)


def main(argv):
    if len(argv) < 3 or argv[1] not in ("valid", "rejects", "schema") or (argv[1] != "schema" and len(argv) < 6):
        print(__doc__, file=sys.stderr)
        return 2
    failures = []
    try:
        schema, validator = load_validator(argv[2])
    except (OSError, ValueError, jsonschema.SchemaError) as e:
        print("FAIL: the schema cannot be used: %s" % e)
        return 1
    if argv[1] == "schema":
        walk(schema, "#", failures)
    else:
        document = document_of(argv[3], argv[5:], argv[4], failures)
        if document is not None:
            (check_valid if argv[1] == "valid" else check_rejects)(validator, document, failures)
    for failure in failures:
        print("FAIL: " + failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
