#!/usr/bin/python3
"""Prints the page that `keladmin-inspect --html` writes for a dictionary with
a 628-column record to PDF in headless Chromium and checks the printed pages.

usage: check_html_print.py INSPECTOR WORKDIR

The dictionary is written into WORKDIR: one identification item, the record
WIDE (78 items of 8 columns after the record type and the identification
item: columns 1 to 628) and the record SHORT. The PDF is read with poppler's
pdftotext -bbox-layout (the words of each page with their boxes, in points)
and turned into PNG pages with pdftoppm, which stay in WORKDIR to look at.

On paper (A4, 12 mm margins: the text may reach 561 points from the left):
- every codebook ruler's numbers, the first and last column of each of its
  pieces, are printed whole inside the margins and at their own size (no
  ruler is cut or shrunk to fit); the front end's drawings, one a record,
  are printed whole, shrunk to the page's width;
- each record of the codebook starts a page of its own;
- the codebook table's header is repeated on every page its rows reach.

A control page, the same with one ruler 2,000 pixels wide added, must fail
the first check, so that the check is known to see a cut ruler. Exit status 0 when all
hold, 1 otherwise, 77 (skipped) without /usr/bin/chromium or pdftotext.
"""

import html.parser
import os
import re
import shutil
import subprocess
import sys

import kxcheck

CHROMIUM = "/usr/bin/chromium"
SKIPPED = 77
PAGE_RIGHT = 595.0 - 12 / 25.4 * 72  # A4 width less the right margin, in points
SMALLEST_NUMBER = 6.0  # points: the ruler's 11px numbers print at about 8


def write_dictionary(path):
    lines = ["[Dictionary]", "Label=Wide records", "Name=WIDE_DICT", "RecordTypeStart=1", "RecordTypeLen=1",
             "Positions=Absolute", "[Level]", "Name=LEVEL1", "[IdItems]",
             "[Item]", "Label=Case", "Name=CASEID", "Start=2", "Len=3",
             "[Record]", "Label=A record of 628 columns", "Name=WIDE", "RecordTypeValue='W'"]
    for i in range(78):
        lines += ["[Item]", "Label=Item %d of the wide record" % (i + 1), "Name=V%02d" % (i + 1),
                  "Start=%d" % (5 + 8 * i), "Len=8"]
    lines += ["[Record]", "Label=A short record", "Name=SHORT", "RecordTypeValue='S'",
              "[Item]", "Label=Age", "Name=AGE", "Start=5", "Len=2"]
    with open(path, "w", encoding="utf-8") as f:
        f.write("\n".join(lines) + "\n")


class Rulers(html.parser.HTMLParser):
    """The rulers of a page, (record, first column, last column) each: the codebook's, which wrap,
    and the front end's drawings, one a record, which print shrunk to the page's width."""

    def __init__(self):
        super().__init__()
        self.codebook = []
        self.front_end = []

    def handle_starttag(self, tag, attrs):
        a = dict(attrs)
        if tag == "svg" and a.get("class") in ("record", "record codebook"):
            ruler = (a.get("data-record"), int(a.get("data-first", "1")), int(a["data-end"]))
            (self.codebook if a["class"] == "record codebook" else self.front_end).append(ruler)


def print_pdf(page, pdf):
    subprocess.run([CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu", "--no-pdf-header-footer",
                    "--print-to-pdf=" + pdf, "file://" + os.path.abspath(page)],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=120, check=False)
    return os.path.exists(pdf)


def pdf_pages(pdf):
    """Each page's words as (text, xMin, yMin, xMax, yMax) in points."""
    out = subprocess.run(["pdftotext", "-bbox-layout", pdf, "-"], capture_output=True, check=True).stdout
    pages = []
    for page in re.findall(rb"<page .*?</page>", out, re.S):
        words = []
        for m in re.finditer(rb'<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">([^<]*)</word>',
                             page):
            words.append((m.group(5).decode(), float(m.group(1)), float(m.group(2)), float(m.group(3)),
                          float(m.group(4))))
        pages.append(words)
    return pages


def ruler_problems(rulers, pages, smallest=SMALLEST_NUMBER):
    """Ruler numbers not printed whole, inside the margins and at least \a smallest points high."""
    problems = []
    for record, first, last in rulers:
        for column in (first, last):
            placed = [w for page in pages for w in page if w[0] == str(column)]
            whole = [w for w in placed if w[3] <= PAGE_RIGHT + 0.5 and w[4] - w[2] >= smallest]
            if not whole:
                problems.append("%s: the ruler's column %d is not printed whole (%s)"
                                % (record, column, [(round(w[3]), round(w[4] - w[2], 1)) for w in placed]))
    return problems


def page_of(pages, text):
    return [i for i, page in enumerate(pages) if any(w[0] == text for w in page)]


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 2
    inspector, workdir = sys.argv[1:]
    if not os.path.exists(CHROMIUM) or not shutil.which("pdftotext"):
        print("SKIP: needs %s and pdftotext (poppler-utils)" % CHROMIUM)
        return SKIPPED
    os.makedirs(workdir, exist_ok=True)
    dictionary = os.path.join(workdir, "wide.dcf")
    page = os.path.join(workdir, "wide.html")
    pdf = os.path.join(workdir, "wide.pdf")
    write_dictionary(dictionary)
    r = kxcheck.run_inspector(inspector, ["--html", page, dictionary])
    if r.returncode != 0:
        print("FAIL: the inspector exits %d: %s" % (r.returncode, r.stderr.decode(errors="replace")))
        return 1
    with open(page, encoding="utf-8") as f:
        raw = f.read()
    parser = Rulers()
    parser.feed(raw)
    codebook_rulers = parser.codebook
    if os.path.exists(pdf):
        os.remove(pdf)
    if not print_pdf(page, pdf):
        print("FAIL: Chromium wrote no PDF")
        return 1
    pages = pdf_pages(pdf)
    subprocess.run(["pdftoppm", "-r", "60", "-png", pdf, os.path.join(workdir, "wide-page")], check=False)

    problems = []
    wide = [x for x in codebook_rulers if x[0] == "WIDE"]
    if len(wide) < 2:
        problems.append("the 628 columns of WIDE are on %d ruler(s), not wrapped" % len(wide))
    problems += ruler_problems(codebook_rulers, pages)
    # The front end's drawings are not cut either, though smaller.
    problems += ruler_problems(parser.front_end, pages, smallest=0.5)

    # A page of its own per record: the headings of the two records are on different pages, after the first.
    wide_heading = [i for i, p in enumerate(pages) if any(w[0] == "WIDE:" for w in p)]
    short_heading = [i for i, p in enumerate(pages) if any(w[0] == "SHORT:" for w in p)]
    if not wide_heading or not short_heading or wide_heading[0] == 0 or short_heading[0] <= wide_heading[0]:
        problems.append("record headings on pages WIDE %s, SHORT %s" % (wide_heading, short_heading))

    # The headers repeat on every page with rows of their table: the codebook's rows say "numeric" and
    # its header "Occ.", the front end's fields say "INTEGER" and their header "Dec".
    for row_word, header, table in (("numeric", "Occ.", "the codebook's"), ("INTEGER", "Dec", "the fields'")):
        rows = page_of(pages, row_word)
        if len(rows) < 2:
            problems.append("%s table is on %d page(s); it should need several" % (table, len(rows)))
        missing = [i + 1 for i in rows if i not in set(page_of(pages, header))]
        if missing:
            problems.append("pages %s hold rows of %s table without its header" % (missing, table))

    # The control: one ruler 2,000 pixels wide is cut or shrunk, and the check sees it.
    control = os.path.join(workdir, "control.html")
    control_pdf = os.path.join(workdir, "control.pdf")
    with open(control, "w", encoding="utf-8") as f:
        f.write(raw.replace("</body>", '<svg class="record" data-record="CONTROL" data-end="9999" width="2000" '
                            'height="30"><text x="1960" y="20" style="font-size:11px">9999</text>'
                            '<text x="4" y="20" style="font-size:11px">8888</text></svg></body>'))
    if print_pdf(control, control_pdf):
        if not ruler_problems([("CONTROL", 8888, 9999)], pdf_pages(control_pdf)):
            problems.append("the control ruler, 2000 pixels wide, passed the check")
    else:
        problems.append("Chromium wrote no PDF of the control page")

    if problems:
        print("FAIL:\n  " + "\n  ".join(problems))
        return 1
    print("ok: %d pages, %d codebook rulers" % (len(pages), len(codebook_rulers)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
