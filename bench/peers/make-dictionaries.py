#!/usr/bin/env python3
"""Writes CSPro text dictionaries (.dcf) for the side-by-side runs of bench/peers.

    bench/peers/make-dictionaries.py FOLDER [ITEMS...]

Writes FOLDER/dict-N.dcf for every N in ITEMS (default 1000 10000 100000).
Each file has exactly N [Item] sections: one id item (CASE_ID) and N - 1
items in records of 50 (the last record holds what is left). Every item has a
value set of 5 to 10 single codes; on every 10th item (as in
bench_readers) it ends with a range (90:98) and a missing code (99, followed
by Name=MISSING,Special). No item has occurrences,
so every reader sees the same number of items (CSPro2sql and rdhs expand
occurrences into several columns).

The layout is what CSPro 7 writes: UTF-8 with a byte order mark, CRLF line
ends, one blank line between sections, every [Record] with the attributes
CSWeb's parser requires (Label, RecordTypeValue, RecordLen). The file ends
with a single line end after the last Value line: pycspro splits the text on
blank lines and fails on an empty last section.
"""
import os
import sys

ITEMS_PER_RECORD = 50
ITEM_LEN = 3
FIRST_START = 11  # record type in 1-4, CASE_ID in 5-10


def value_set(i, label):
    lines = ["[ValueSet]", f"Label={label}", f"Name=ITEM{i}_VS1"]
    for code in range(1, 6 + i % 6):
        lines.append(f"Value={code};Answer {code} of item {i}")
    if i % 10 == 0:
        lines += ["Value=90:98;Other answers", "Value=99;Not reported", "Name=MISSING,Special"]
    return lines


def dictionary(items):
    out = ["\ufeff[Dictionary]", "Version=CSPro 7.7", f"Label=Generated dictionary of {items} items",
           f"Name=GEN{items}_DICT", "RecordTypeStart=1", "RecordTypeLen=4", "Positions=Absolute",
           "ZeroFill=No", "DecimalChar=No", "",
           "[Level]", "Label=Questionnaire", "Name=QUEST", "",
           "[IdItems]", "",
           "[Item]", "Label=Case identifier", "Name=CASE_ID", "Start=5", "Len=6", "ZeroFill=Yes", ""]
    out += value_set(0, "Case identifier")
    record_items = items - 1
    for k in range(record_items):
        i = k + 1
        if k % ITEMS_PER_RECORD == 0:
            r = k // ITEMS_PER_RECORD + 1
            in_record = min(ITEMS_PER_RECORD, record_items - k)
            out += ["", "[Record]", f"Label=Record {r}", f"Name=REC{r}", f"RecordTypeValue='{r:04d}'",
                    "Required=No", "MaxRecords=1", f"RecordLen={FIRST_START - 1 + in_record * ITEM_LEN}"]
        label = f"Item number {i}"
        out += ["", "[Item]", f"Label={label}", f"Name=ITEM{i}",
                f"Start={FIRST_START + (k % ITEMS_PER_RECORD) * ITEM_LEN}", f"Len={ITEM_LEN}", ""]
        out += value_set(i, label)
    return "\r\n".join(out) + "\r\n"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    folder = sys.argv[1]
    sizes = [int(a) for a in sys.argv[2:]] or [1000, 10000, 100000]
    os.makedirs(folder, exist_ok=True)
    for n in sizes:
        if n < 2:
            sys.exit("ITEMS must be at least 2")
        with open(os.path.join(folder, f"dict-{n}.dcf"), "w", encoding="utf-8", newline="") as f:
            f.write(dictionary(n))


if __name__ == "__main__":
    main()
