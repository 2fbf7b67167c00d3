#!/usr/bin/env python3
"""Writes the inputs of the memory table in bench/README.md into FOLDER.

    scripts/memory-inputs.py FOLDER [BYTES]

census-50mb.dcf / census-50mb.json: CSPro text and JSON dictionaries of about
50 MB (or BYTES), records of 50 items, a value set of 20 codes on every 2nd item and 3
occurrences on every 7th (about 125,000 items, 160,000 once the occurrences
are expanded: under the readers' limit of 250,000);
occurrences-limit.dcf / .json: 30 items of 9,999 occurrences each (the most
an item may have); nested.json: 100,000 nested arrays; empty-objects.json: a
"levels" array of 10,000,000 empty objects; minimal-items.dcf: 200,000
items of a name, a start and a width only (MINIMAL_ITEMS), 1,000 a record,
where the memory a field costs outweighs the file's size.
"""
import json
import os
import sys

TARGET_BYTES = 50_000_000
ITEMS_PER_RECORD = 50
MINIMAL_ITEMS = 200_000
MINIMAL_ITEMS_PER_RECORD = 1_000


def text_item(i, start):
    occurrences = 3 if i % 7 == 6 else 1
    lines = ["[Item]", f"Label=Item number {i}", f"Name=ITEM{i}", f"Start={start}", "Len=2"]
    if occurrences > 1:
        lines.append(f"Occurrences={occurrences}")
    lines.append("")
    if i % 2 == 0:
        lines += ["[ValueSet]", f"Label=Codes of item {i}", f"Name=ITEM{i}_VS1"]
        lines += [f"Value={code};Answer {code} of item {i}" for code in range(20)]
        lines.append("")
    return lines, 2 * occurrences


def write_text(path):
    head = ["[Dictionary]", "Version=CSPro 7.7", "Label=Memory test", "Name=MEMORY_DICT",
            "RecordTypeStart=1", "RecordTypeLen=1", "Positions=Absolute", "", "[Level]",
            "Label=Level", "Name=LEVEL", "", "[IdItems]", ""]
    size = 0
    with open(path, "w", newline="\r\n") as out:
        out.write("\n".join(head) + "\n")
        i = 0
        while size < TARGET_BYTES:
            if i % ITEMS_PER_RECORD == 0:
                record = i // ITEMS_PER_RECORD
                out.write(f"[Record]\nLabel=Record {record}\nName=REC{record}\nRecordTypeValue='{record % 10}'\n\n")
                start = 2
            lines, width = text_item(i, start)
            start += width
            chunk = "\n".join(lines) + "\n"
            out.write(chunk)
            size += len(chunk)
            i += 1


def json_item(i, start):
    item = {"name": f"ITEM{i}", "labels": [{"text": f"Item number {i}"}], "contentType": "numeric",
            "start": start, "length": 2}
    occurrences = 3 if i % 7 == 6 else 1
    if occurrences > 1:
        item["occurrences"] = {"maximum": occurrences}
    if i % 2 == 0:
        item["valueSets"] = [{"name": f"ITEM{i}_VS1", "labels": [{"text": f"Codes of item {i}"}],
                              "values": [{"labels": [{"text": f"Answer {code} of item {i}"}],
                                          "pairs": [{"value": str(code)}]} for code in range(20)]}]
    return item, 2 * occurrences


def write_json(path):
    records = []
    size = 0
    i = 0
    while size < TARGET_BYTES:
        record = i // ITEMS_PER_RECORD
        items = []
        start = 2
        for _ in range(ITEMS_PER_RECORD):
            item, width = json_item(i, start)
            start += width
            items.append(item)
            size += len(json.dumps(item)) + 1
            i += 1
        records.append({"name": f"REC{record}", "labels": [{"text": f"Record {record}"}],
                        "recordType": str(record % 10), "occurrences": {"maximum": 1}, "items": items})
    dictionary = {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "MEMORY_DICT",
                  "labels": [{"text": "Memory test"}], "recordType": {"start": 1, "length": 1},
                  "levels": [{"name": "LEVEL", "ids": {"items": []}, "records": records}]}
    with open(path, "w") as out:
        json.dump(dictionary, out)


def write_occurrence_limit(folder):
    head = ["[Dictionary]", "Version=CSPro 7.7", "Name=D", "RecordTypeStart=1", "RecordTypeLen=1",
            "Positions=Absolute", "", "[Level]", "Name=L", "", "[IdItems]", "", "[Record]", "Name=R",
            "RecordTypeValue='1'", "RecordLen=5000", ""]
    for i in range(30):
        head += ["[Item]", f"Name=A{i}", "Start=2", "Len=1", "Occurrences=9999", ""]
    with open(os.path.join(folder, "occurrences-limit.dcf"), "w", newline="\r\n") as out:
        out.write("\n".join(head))
    items = [{"name": f"A{i}", "labels": [{"text": "A"}], "contentType": "numeric", "start": 2, "length": 1,
              "occurrences": {"maximum": 9999}} for i in range(30)]
    dictionary = {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "D",
                  "labels": [{"text": "D"}], "recordType": {"start": 1, "length": 1},
                  "levels": [{"name": "L", "ids": {"items": []},
                              "records": [{"name": "R", "labels": [{"text": "R"}], "recordType": "1",
                                           "occurrences": {"maximum": 1}, "items": items}]}]}
    with open(os.path.join(folder, "occurrences-limit.json"), "w") as out:
        json.dump(dictionary, out)


def write_minimal_items(path, items=MINIMAL_ITEMS):
    head = ["[Dictionary]", "Version=CSPro 7.7", "Name=D", "RecordTypeStart=1", "RecordTypeLen=1",
            "Positions=Absolute", "", "[Level]", "Name=L", "", "[IdItems]", ""]
    with open(path, "w", newline="\r\n") as out:
        out.write("\n".join(head) + "\n")
        for i in range(items):
            if i % MINIMAL_ITEMS_PER_RECORD == 0:
                record = i // MINIMAL_ITEMS_PER_RECORD
                out.write(f"[Record]\nName=R{record}\nRecordTypeValue='{record % 10}'\n\n")
            out.write(f"[Item]\nName=I{i}\nStart={2 + i % MINIMAL_ITEMS_PER_RECORD}\nLen=1\n\n")


def write_all(folder, target_bytes=TARGET_BYTES):
    """Writes every input into folder; the two dictionaries are named census-50mb.* whatever their size."""
    global TARGET_BYTES
    TARGET_BYTES = target_bytes
    os.makedirs(folder, exist_ok=True)
    write_text(os.path.join(folder, "census-50mb.dcf"))
    write_json(os.path.join(folder, "census-50mb.json"))
    write_occurrence_limit(folder)
    write_minimal_items(os.path.join(folder, "minimal-items.dcf"))
    depth = 100_000
    with open(os.path.join(folder, "nested.json"), "w") as out:
        out.write('{"a":' + "[" * depth + "]" * depth + "}")
    with open(os.path.join(folder, "empty-objects.json"), "w") as out:
        out.write('{"levels":[' + ",".join(["{}"] * 10_000_000) + "]}")


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    write_all(sys.argv[1], int(sys.argv[2]) if len(sys.argv) == 3 else TARGET_BYTES)


if __name__ == "__main__":
    main()
