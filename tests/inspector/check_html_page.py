#!/usr/bin/python3
"""Checks the page that `keladmin-inspect --html` writes for one sample.

usage: check_html_page.py INSPECTOR SAMPLE WORKDIR

The fields the page must show come from the inspector's --json output of the
same file; which items are subitems and how long each record is come from the
CSPro text dictionary itself. The page is read with Python's html.parser.
Every field must have its box in its record's drawing at its start and width
(x = left + (start - 1) * scale, width = size * scale, with the drawing's
declared scale and left margin), identification items on every record,
subitems on a row below their parent, the record-type code's columns shaded,
and exactly the gaps and overlaps that the fields imply. SPSS and Stata pages
have the variable table instead of drawings. Exit status 0 when every check
holds, 1 otherwise (every failed check is listed).
"""

import html.parser
import json
import os
import sys

import kxcheck

BOX_CLASSES = ("item", "id", "subitem")
COMMON_RECORD = "Common"  # the record of the identification items


def printable(text):
    """The name as the inspector shows it: control characters as \\uXXXX."""
    return "".join("\\u%04x" % ord(c) if ord(c) < 0x20 or 0x7F <= ord(c) < 0xA0 else c for c in text)


run = kxcheck.run_inspector


class Page(html.parser.HTMLParser):
    """Every element with its attributes and the drawing it lies in, and every table's rows of cell texts."""

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.elements = []  # (tag, attrs, record of the enclosing drawing or None)
        self.tables = []  # (class, rows of cell texts)
        self.texts = []  # (tag, class, record, text) of svg text elements
        self._record = None
        self._cell = None
        self._text = None

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag == "svg" and attrs.get("class") == "record":
            self._record = attrs.get("data-record")
        self.elements.append((tag, attrs, self._record))
        if tag == "table":
            self.tables.append((attrs.get("class"), []))
        elif tag == "tr" and self.tables:
            self.tables[-1][1].append([])
        elif tag in ("td", "th"):
            self._cell = []
        elif tag == "text":
            self._text = (attrs.get("class"), [])

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)

    def handle_endtag(self, tag):
        if tag == "svg":
            self._record = None
        elif tag in ("td", "th") and self._cell is not None and self.tables and self.tables[-1][1]:
            self.tables[-1][1][-1].append("".join(self._cell).strip())
            self._cell = None
        elif tag == "text" and self._text is not None:
            self.texts.append((self._text[0], self._record, "".join(self._text[1])))
            self._text = None

    def handle_data(self, data):
        if self._cell is not None:
            self._cell.append(data)
        if self._text is not None:
            self._text[1].append(data)


def dcf_layout(path):
    """From a CSPro text dictionary: the names of its subitems and each record's RecordLen."""
    subitems, record_lengths = set(), {}
    section, values = None, {}

    def close():
        if section == "[item]" and values.get("itemtype", "").lower() == "subitem":
            subitems.add(values.get("name", ""))
        if section == "[record]" and "recordlen" in values:
            record_lengths[values.get("name", "")] = int(values["recordlen"])

    with open(path, encoding="utf-8-sig") as f:
        for line in f:
            line = line.strip()
            if line.startswith("["):
                close()
                section, values = line.lower(), {}
            elif "=" in line:
                key, value = line.split("=", 1)
                values[key.strip().lower()] = value.strip()
    close()
    return subitems, record_lengths


def expected_marks(boxes, end):
    """Overlaps (columns shared by two boxes that are not subitems) and gaps (columns no box covers)."""
    owners = {}
    for start, size in boxes:
        for c in range(start, start + size):
            owners[c] = owners.get(c, 0) + 1
    gaps = [c for c in range(1, end + 1) if owners.get(c, 0) == 0]
    overlaps = [c for c in range(1, end + 1) if owners.get(c, 0) > 1]
    return set(gaps), set(overlaps)


def columns_of(rects):
    cols = set()
    for r in rects:
        start, size = int(r["data-start"]), int(r["data-len"])
        cols.update(range(start, start + size))
    return cols


class Checker:
    def __init__(self, name):
        self.name = name
        self.failures = []

    def expect(self, condition, message):
        if not condition:
            self.failures.append(message)
        return condition


def check_self_contained(page, raw, ck):
    for tag, attrs, _ in page.elements:
        ck.expect(tag not in ("script", "link", "img", "iframe", "object", "embed"),
                  "element <%s> in the page" % tag)
        ck.expect("src" not in attrs and "href" not in attrs, "<%s> refers to another file" % tag)
    ck.expect("<script" not in raw.lower(), "'<script' in the page")
    ck.expect("url(" not in raw and "@import" not in raw, "the style loads something")
    ck.expect(any(tag == "style" for tag, _, _ in page.elements), "no inline style")


def rects_in(page, record):
    return [a for tag, a, r in page.elements if tag == "rect" and r == record]


def check_box(field, kind, rects, svg, ck):
    """The field's one box: its class, its columns, and x and width from the drawing's scale and left margin."""
    label = "%s in %s" % (printable(field["name"]), svg["data-record"])
    found = [r for r in rects if r.get("class") in BOX_CLASSES and r.get("data-name") == printable(field["name"])]
    if not ck.expect(len(found) == 1, "%s: %d boxes, expected 1" % (label, len(found))):
        return None
    box = found[0]
    scale, left = int(svg["data-scale"]), int(svg["data-left"])
    start, size = field["start"], field["size"]
    wanted = (("class", box.get("class"), kind),
              ("data-start", int(box["data-start"]), start),
              ("data-len", int(box["data-len"]), size),
              ("x", float(box["x"]), left + (start - 1) * scale),
              ("width", float(box["width"]), size * scale))
    for attribute, got, expected in wanted:
        ck.expect(got == expected, "%s: %s %s, expected %s" % (label, attribute, got, expected))
    return box


def parents_of(fields, subitems):
    """A subitem belongs to the nearest preceding item of its record that is not a subitem."""
    parents, last = {}, {}
    for f in fields:
        if f["name"] in subitems:
            parents[f["name"]] = last.get(f["group"])
        else:
            last[f["group"]] = f["name"]
    return parents


def of_class(rects, css_class):
    return [r for r in rects if r.get("class") == css_class]


def check_boxes(record, rects, svg, fields, subitems, ck):
    boxes = {}
    for f in fields:
        kind = "id" if f["group"] == COMMON_RECORD else "subitem" if f["name"] in subitems else "item"
        boxes[f["name"]] = check_box(f, kind, rects, svg, ck)
    drawn = len([r for r in rects if r.get("class") in BOX_CLASSES])
    ck.expect(drawn == len(fields), "%s: %d boxes for %d fields" % (record, drawn, len(fields)))
    for sub, parent in parents_of(fields, subitems).items():
        if boxes.get(sub) and boxes.get(parent):
            below = float(boxes[sub]["y"]) >= float(boxes[parent]["y"]) + float(boxes[parent]["height"])
            ck.expect(below, "%s: subitem %s not below %s" % (record, sub, parent))


def check_record_type(record, rects, group, doc, ck):
    wanted = (doc["recordTypeStart"], doc["recordTypeLength"])
    code, band = of_class(rects, "rectype"), of_class(rects, "rectype-band")
    if not ck.expect(len(code) == 1 and len(band) == 1,
                     "%s: %d record-type codes and %d bands" % (record, len(code), len(band))):
        return
    for r in code + band:
        got = (int(r["data-start"]), int(r["data-len"]))
        ck.expect(got == wanted, "%s: record type at %s, expected %s" % (record, got, wanted))
    got = code[0].get("data-name")
    ck.expect(got == group["recordType"], "%s: record-type code %s, expected %s" % (record, got, group["recordType"]))


def check_ruler(record, page, svg, end, record_lengths, ck):
    if record in record_lengths:
        ck.expect(end == record_lengths[record],
                  "%s: the fields end at %d, RecordLen says %d" % (record, end, record_lengths[record]))
    ck.expect(int(svg["data-end"]) == end, "%s: ruler ends at %s, expected %d" % (record, svg["data-end"], end))
    ticks = [t for cls, r, t in page.texts if cls == "tick" and r == record]
    ck.expect("1" in ticks and str(end) in ticks, "%s: ruler numbers %s lack 1 or %d" % (record, ticks, end))


def check_marks(record, rects, solid, end, ck):
    gaps, overlaps = expected_marks(solid, end)
    for css_class, wanted in (("gap", gaps), ("overlap", overlaps)):
        drawn = columns_of(of_class(rects, css_class))
        ck.expect(drawn == wanted,
                  "%s: %s drawn at %s, expected %s" % (record, css_class, sorted(drawn), sorted(wanted)))


def check_record(page, svg, group, doc, subitems, record_lengths, ck):
    record = group["name"]
    rects = rects_in(page, record)
    fields = [f for f in doc["fields"] if f["group"] in (record, COMMON_RECORD)]
    check_boxes(record, rects, svg, fields, subitems, ck)
    check_record_type(record, rects, group, doc, ck)
    record_type = (doc["recordTypeStart"], doc["recordTypeLength"])
    end = max([record_type[0] + record_type[1] - 1] + [f["start"] + f["size"] - 1 for f in fields])
    check_ruler(record, page, svg, end, record_lengths, ck)
    solid = [record_type] + [(f["start"], f["size"]) for f in fields if f["name"] not in subitems]
    check_marks(record, rects, solid, end, ck)


def check_drawings(page, doc, sample, ck):
    subitems, record_lengths = dcf_layout(sample) if doc["format"] == "cspro" else (set(), {})
    svgs = [a for tag, a, _ in page.elements if tag == "svg" and a.get("class") == "record"]
    names = [s["data-record"] for s in svgs]
    groups = [g["name"] for g in doc["groups"]]
    if not ck.expect(names == groups, "drawings %s, groups %s" % (names, groups)):
        return
    for svg, group in zip(svgs, doc["groups"]):
        check_record(page, svg, group, doc, subitems, record_lengths, ck)
    ck.expect(subitems <= {f["name"] for f in doc["fields"]}, "subitems %s not all among the fields" % sorted(subitems))


MAX_RULER_WIDTH = 660  # the codebook's rulers fit an A4 page (tools/keladmin-inspect/write/CodebookPage.h)


def check_codebook_rulers(page, codebook, ck):
    """The codebook's rulers: each record's wrap onto rulers at most MAX_RULER_WIDTH wide that follow
    one another from column 1 to the record's last column, and each variable of the record (and each
    identification item) has a box on every ruler its columns reach, cut to that ruler's columns."""
    svgs = [a for tag, a, _ in page.elements if tag == "svg" and a.get("class") == "record codebook"]
    records = [r["name"] for r in codebook["records"]]
    names = []
    for s in svgs:
        if not names or names[-1] != s["data-record"]:
            names.append(s["data-record"])
    if not ck.expect(names == records, "codebook rulers of %s, records %s" % (names, records)):
        return
    rect_type = codebook["recordType"]
    for record in records:
        rulers = [s for s in svgs if s["data-record"] == record]
        variables = [v for v in codebook["variables"] if v["isId"] or v["record"] == record]
        spans = [(v["start"], v["start"] + v["width"] * (1 if v["isSubitem"] else v["occurrences"]) - 1) for v in variables]
        end = max([rect_type["start"] + rect_type["length"] - 1] + [e for _, e in spans])
        first = 1
        for svg in rulers:
            ck.expect(int(svg["width"]) <= MAX_RULER_WIDTH,
                      "%s: a codebook ruler %s pixels wide" % (record, svg["width"]))
            ck.expect(int(svg.get("data-first", "1")) == first,
                      "%s: a ruler starts at column %s, expected %d" % (record, svg.get("data-first", "1"), first))
            first = int(svg["data-end"]) + 1
        ck.expect(first == end + 1, "%s: the rulers end at column %d, expected %d" % (record, first - 1, end))
        boxes = [(a.get("data-name"), int(a["data-start"]), int(a["data-len"]))
                 for a in rects_in_codebook(page, record)
                 if a.get("data-name") and a.get("class", "").split(" ")[0] in BOX_CLASSES]
        for v, (lo, hi) in zip(variables, spans):
            shown = v["name"] if v["occurrences"] == 1 else "%s \u00d7%d" % (v["name"], v["occurrences"])
            got = sorted((s, n) for name, s, n in boxes if name == shown)
            wanted = []
            for svg in rulers:
                a, b = int(svg.get("data-first", "1")), int(svg["data-end"])
                if lo <= b and hi >= a:
                    wanted.append((max(lo, a), min(hi, b) - max(lo, a) + 1))
            ck.expect(got == sorted(wanted), "%s: %s drawn at %s, expected %s" % (record, shown, got, wanted))


def rects_in_codebook(page, record):
    """The rect elements of the codebook rulers of one record."""
    out, inside = [], False
    for tag, attrs, _ in page.elements:
        if tag == "svg":
            inside = attrs.get("class") == "record codebook" and attrs.get("data-record") == record
        elif tag == "rect" and inside:
            out.append(attrs)
    return out


def check_variables(page, doc, ck):
    tables = [rows for cls, rows in page.tables if cls == "variables"]
    if not ck.expect(len(tables) == 1, "%d variable tables" % len(tables)):
        return
    rows = tables[0][1:]
    expected = [[str(i + 1), printable(f["name"]), f["type"], str(f["size"])] for i, f in enumerate(doc["fields"])]
    got = [r[:4] for r in rows]
    ck.expect(got == expected, "variable rows %s, expected %s" % (got, expected))
    drawings = [a for tag, a, _ in page.elements if tag == "svg" and a.get("class") == "record"]
    ck.expect(not drawings, "%d drawings on an SPSS/Stata page" % len(drawings))


def check_fields_table(page, doc, ck):
    tables = [rows for cls, rows in page.tables if cls == "fields"]
    if ck.expect(len(tables) == 1, "%d field tables" % len(tables)):
        names = [r[0] for r in tables[0][1:]]
        ck.expect(names == [printable(f["name"]) for f in doc["fields"]], "field table names %s" % names)


def main():
    if len(sys.argv) != 4:
        print(__doc__)
        return 2
    inspector, sample, workdir = sys.argv[1:]
    ck = Checker(os.path.basename(sample))
    os.makedirs(workdir, exist_ok=True)
    page_path = os.path.join(workdir, os.path.basename(sample).replace(".", "_") + ".html")

    as_json = run(inspector, ["--json", sample])
    as_table = run(inspector, [sample])
    with_page = run(inspector, ["--html", page_path, sample])
    for what, r in (("--json", as_json), ("table", as_table), ("--html", with_page)):
        if r.returncode != 0:
            print("FAIL %s: %s exits %d: %s" % (ck.name, what, r.returncode, r.stderr.decode(errors="replace")))
            return 1
    ck.expect(with_page.stdout == as_table.stdout, "--html changes what is written to stdout")
    doc = json.loads(as_json.stdout)
    with open(page_path, encoding="utf-8") as f:
        raw = f.read()
    page = Page()
    page.feed(raw)
    page.close()

    check_self_contained(page, raw, ck)
    if doc["format"] in ("cspro", "cspro8"):
        check_drawings(page, doc, sample, ck)
        check_codebook_rulers(page, json.loads(run(inspector, ["--codebook", "--json", sample]).stdout), ck)
    else:
        check_variables(page, doc, ck)
    check_fields_table(page, doc, ck)

    if ck.failures:
        print("FAIL %s (%s):" % (ck.name, page_path))
        for failure in ck.failures:
            print("  " + failure)
        return 1
    print("ok %s: %d fields checked in %s" % (ck.name, len(doc["fields"]), page_path))
    return 0


if __name__ == "__main__":
    sys.exit(main())
