#!/usr/bin/env python3
"""Checks a DDI Codebook 2.5 document against what it must hold.

Usage: check_ddi.py DDI_FILE EXPECTED_JSON

EXPECTED_JSON is an object; every key is optional, and only what it names
is compared:

    {
      "vars": [
        {"name": "AGE",                        # found by name in dataDscr
         "StartPos": 9, "EndPos": 11, "width": 3,   # of its location; null: no location
         "labl": {"": "Age", "fr": "Âge"},     # xml:lang -> text ("" for none), all of them;
                                               # a plain string: the first labl's text
         "catgry": [{"catValu": "1", "labl": "Yes", "missing": false}],  # in order
         "valrng": [["1", "20"]],              # in order: [min, max] for a range (null for
         "invalrng": [["990", "997"], "999"]}  # an open end), a plain string for an item
      ],
      "varQnty": 35,                           # fileTxt/dimensns/varQnty
      "caseQnty": 12,                          # null: there must be none
      "recGrp": [{"rectype": "H", "keyvar": "V1 V2", "logRecL": "68", "varQnty": "14",
                  "labl": "Housing record"}]   # in order; logRecL and varQnty of recDimnsn,
    }                                          # labl as for vars, other keys are attributes

Numbers may be given as numbers or strings. Every difference is printed;
the exit status is 1 when there is any, 0 otherwise.
"""

import json
import sys
import xml.etree.ElementTree as ET

NS = {"ddi": "ddi:codebook:2_5"}
XML_LANG = "{http://www.w3.org/XML/1998/namespace}lang"
VAR_KEYS = {"name", "StartPos", "EndPos", "width", "labl", "catgry", "valrng", "invalrng"}
CATGRY_KEYS = {"catValu", "labl", "missing"}


def text(value):
    """An expected value as the document's text: numbers become strings."""
    if value is None or isinstance(value, str):
        return value
    if isinstance(value, bool):
        return "Y" if value else "N"
    return str(value)


def labels_of(element, where, differences):
    """The labl children of element as {xml:lang or "": text}."""
    labels = {}
    for labl in element.findall("ddi:labl", NS):
        lang = labl.get(XML_LANG, "")
        if lang in labels:
            differences.append(f"{where}: two labl for language {lang!r}")
        labels[lang] = "".join(labl.itertext())
    return labels


def check_labels(element, expected, where, differences):
    if isinstance(expected, str):
        first = element.find("ddi:labl", NS)
        actual = None if first is None else "".join(first.itertext())
        if actual != expected:
            differences.append(f"{where}: labl is {actual!r}, expected {expected!r}")
        return
    actual = labels_of(element, where, differences)
    if actual != expected:
        differences.append(f"{where}: labl is {actual!r}, expected {expected!r}")


def check_location(var, expected, where, differences):
    location = var.find("ddi:location", NS)
    for key in ("StartPos", "EndPos", "width"):
        if key not in expected:
            continue
        want = text(expected[key])
        have = None if location is None else location.get(key)
        if have != want:
            differences.append(f"{where}: location {key} is {have!r}, expected {want!r}")


def check_categories(var, expected, where, differences):
    categories = var.findall("ddi:catgry", NS)
    if len(categories) != len(expected):
        differences.append(f"{where}: {len(categories)} catgry, expected {len(expected)}")
    for i, (catgry, want) in enumerate(zip(categories, expected), start=1):
        place = f"{where} catgry {i}"
        for key in sorted(set(want) - CATGRY_KEYS):
            differences.append(f"{place}: unknown expectation {key!r}")
        if "catValu" in want:
            value = catgry.find("ddi:catValu", NS)
            have = None if value is None else "".join(value.itertext())
            if have != text(want["catValu"]):
                differences.append(f"{place}: catValu is {have!r}, expected {text(want['catValu'])!r}")
        if "labl" in want:
            check_labels(catgry, want["labl"], place, differences)
        if "missing" in want:
            have = catgry.get("missing", "N") == "Y"
            if have != bool(want["missing"]):
                differences.append(f"{place}: missing is {have}, expected {bool(want['missing'])}")


def ranges_of(var, element):
    """Each range as [min, max] (None for an open end), each item as its value, in order."""
    ranges = []
    for group in var.findall(f"ddi:{element}", NS):
        for child in group:
            if child.tag == f"{{{NS['ddi']}}}range":
                ranges.append([child.get("min"), child.get("max")])
            elif child.tag == f"{{{NS['ddi']}}}item":
                ranges.append(child.get("VALUE"))
    return ranges


def normalised_ranges(expected):
    return [[text(e[0]), text(e[1])] if isinstance(e, list) else text(e) for e in expected]


def check_ranges(var, element, expected, where, differences):
    if any(isinstance(e, list) and len(e) != 2 for e in expected):
        differences.append(f"{where}: each {element} range must be [min, max]")
        return
    have = ranges_of(var, element)
    want = normalised_ranges(expected)
    if have != want:
        differences.append(f"{where}: {element} is {have!r}, expected {want!r}")


def check_var(vars_by_name, expected, differences):
    name = expected.get("name")
    if name is None:
        differences.append(f"a var expectation without a name: {expected!r}")
        return
    where = f"var {name!r}"
    for key in sorted(set(expected) - VAR_KEYS):
        differences.append(f"{where}: unknown expectation {key!r}")
    found = vars_by_name.get(name, [])
    if len(found) != 1:
        differences.append(f"{where}: {len(found)} var elements with this name, expected 1")
        if not found:
            return
    var = found[0]
    check_location(var, expected, where, differences)
    if "labl" in expected:
        check_labels(var, expected["labl"], where, differences)
    if "catgry" in expected:
        check_categories(var, expected["catgry"], where, differences)
    for element in ("valrng", "invalrng"):
        if element in expected:
            check_ranges(var, element, expected[element], where, differences)


def check_quantity(file_text, key, expected, differences):
    element = file_text.find(f"ddi:dimensns/ddi:{key}", NS) if file_text is not None else None
    have = None if element is None else "".join(element.itertext()).strip()
    if have != text(expected):
        differences.append(f"dimensns {key} is {have!r}, expected {text(expected)!r}")


def check_record_groups(file_text, expected, differences):
    groups = file_text.findall("ddi:fileStrc/ddi:recGrp", NS) if file_text is not None else []
    if len(groups) != len(expected):
        differences.append(f"{len(groups)} recGrp, expected {len(expected)}")
    for i, (group, want) in enumerate(zip(groups, expected), start=1):
        place = f"recGrp {i}"
        for key, value in want.items():
            if key in ("logRecL", "varQnty"):
                element = group.find(f"ddi:recDimnsn/ddi:{key}", NS)
                have = None if element is None else "".join(element.itertext()).strip()
            elif key == "labl":
                check_labels(group, value, place, differences)
                continue
            else:
                have = group.get(key)
            if have != text(value):
                differences.append(f"{place}: {key} is {have!r}, expected {text(value)!r}")


def check(document, expected):
    differences = []
    root = document.getroot()
    if root.tag != f"{{{NS['ddi']}}}codeBook":
        return [f"the root is {root.tag}, not codeBook in {NS['ddi']}"]
    vars_by_name = {}
    for var in root.findall("ddi:dataDscr/ddi:var", NS):
        vars_by_name.setdefault(var.get("name"), []).append(var)
    for want in expected.get("vars", []):
        check_var(vars_by_name, want, differences)
    file_text = root.find("ddi:fileDscr/ddi:fileTxt", NS)
    for key in ("caseQnty", "varQnty"):
        if key in expected:
            check_quantity(file_text, key, expected[key], differences)
    if "recGrp" in expected:
        check_record_groups(file_text, expected["recGrp"], differences)
    return differences


def main(argv):
    if len(argv) != 3:
        print(__doc__.strip().splitlines()[2], file=sys.stderr)
        return 2
    try:
        document = ET.parse(argv[1])
    except (OSError, ET.ParseError) as error:
        print(f"{argv[1]}: {error}")
        return 1
    try:
        with open(argv[2], encoding="utf-8") as f:
            expected = json.load(f)
    except (OSError, ValueError) as error:
        print(f"{argv[2]}: {error}")
        return 1
    differences = check(document, expected)
    for difference in differences:
        print(difference)
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
