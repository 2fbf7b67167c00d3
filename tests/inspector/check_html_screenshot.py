#!/usr/bin/python3
"""Renders the page that `keladmin-inspect --html` writes for one sample in
headless Chromium and checks that the screenshot is not blank.

usage: check_html_screenshot.py INSPECTOR SAMPLE WORKDIR

The screenshot (1280 x 2000) is left in WORKDIR. It is decoded here with zlib
and must hold more than a handful of distinct colours. A CSPro page must show
its drawings: the fill colours of items, identification items and the
record-type code, and, above the first row of boxes, a ruler with dark ticks
and numbers. An SPSS or Stata page must show its tables (header colour, dark
text). Exit status 0 when it does, 1 when not, 77 (skipped) when
/usr/bin/chromium is missing.
"""

import json
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

import kxcheck

CHROMIUM = "/usr/bin/chromium"
SKIPPED = 77
WIDTH, HEIGHT = 1280, 2000

# Colours the page's style gives the drawing and the tables (tools/keladmin-inspect/write/HtmlWriter.cpp).
ITEM = (0xDB, 0xE9, 0xF6)
IDENTIFICATION = (0xE4, 0xDC, 0xF2)
RECORD_TYPE = (0xFB, 0xD3, 0x8D)
RULER_MARK = (0xC9, 0xD3, 0xDE)
TABLE_HEADER = (0xE8, 0xEE, 0xF5)
WHITE = (0xFF, 0xFF, 0xFF)


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def unfilter(kind, line, prior, bpp):
    """One scan line of a PNG without its filter (types 0 to 4)."""
    if kind == 0:
        return line
    out = bytearray(line)
    n = len(out)
    if kind == 1:
        for i in range(bpp, n):
            out[i] = (out[i] + out[i - bpp]) & 0xFF
    elif kind == 2:
        if any(line):
            for i in range(n):
                out[i] = (out[i] + prior[i]) & 0xFF
        else:
            out = bytearray(prior)
    elif kind == 3:
        for i in range(n):
            left = out[i - bpp] if i >= bpp else 0
            out[i] = (out[i] + ((left + prior[i]) >> 1)) & 0xFF
    elif kind == 4:
        for i in range(n):
            left = out[i - bpp] if i >= bpp else 0
            upper_left = prior[i - bpp] if i >= bpp else 0
            out[i] = (out[i] + paeth(left, prior[i], upper_left)) & 0xFF
    else:
        raise ValueError("PNG filter type %d" % kind)
    return out


def decode_png(path):
    """(width, height, rows of RGB tuples' bytes) of an 8-bit, non-interlaced RGB or RGBA PNG."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("not a PNG file")
    pos, idat, header = 8, [], None
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat.append(body)
        pos += 12 + length
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or colour not in (2, 6) or interlace:
        raise ValueError("PNG of depth %d, colour type %d, interlace %d" % (depth, colour, interlace))
    bpp = 3 if colour == 2 else 4
    raw = zlib.decompress(b"".join(idat))
    stride = width * bpp
    rows, prior = [], bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        line = unfilter(raw[start], raw[start + 1:start + 1 + stride], prior, bpp)
        prior = line
        rows.append(bytes(line) if bpp == 3 else bytes(b for i, b in enumerate(line) if i % 4 != 3))
    return width, height, rows


def pixels(row):
    return [tuple(row[i:i + 3]) for i in range(0, len(row), 3)]


def dark(p):
    return p[0] + p[1] + p[2] < 3 * 110


def run_inspector(inspector, sample, page):
    r = kxcheck.run_inspector(inspector, ["--json", "--html", page, sample])
    if r.returncode != 0:
        raise RuntimeError("the inspector exits %d: %s" % (r.returncode, r.stderr.decode(errors="replace")))
    return json.loads(r.stdout)["format"]


def screenshot(page, png):
    profile = tempfile.mkdtemp(prefix="kx-chromium-")
    try:
        args = [CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                "--disable-background-networking", "--disable-component-update", "--disable-sync",
                "--user-data-dir=" + profile, "--screenshot=" + png, "--window-size=%d,%d" % (WIDTH, HEIGHT),
                "file://" + os.path.abspath(page)]
        r = subprocess.run(args, capture_output=True, timeout=120)
        if r.returncode != 0 or not os.path.exists(png):
            raise RuntimeError("chromium exits %d: %s" % (r.returncode, r.stderr.decode(errors="replace")[-2000:]))
    finally:
        shutil.rmtree(profile, ignore_errors=True)


def count_colours(rows):
    counts = {}
    for row in rows:
        for p in pixels(row):
            counts[p] = counts.get(p, 0) + 1
    return counts


def ruler_problems(rows):
    """The rows above the first box must hold the ruler: its marked cells with dark ticks and numbers about them."""
    # The legend's swatches have the boxes' colours too, but in a few pixels a row only.
    def boxes_in(row):
        p = pixels(row)
        return p.count(ITEM) + p.count(IDENTIFICATION)

    first_box = next((y for y, row in enumerate(rows) if boxes_in(row) >= 200), None)
    if first_box is None:
        return ["no row of boxes"]
    band = rows[max(0, first_box - 40):first_box]
    marks = sum(pixels(row).count(RULER_MARK) for row in band)
    ticks = sum(sum(1 for p in pixels(row) if dark(p)) for row in band)
    problems = []
    if marks < 50:
        problems.append("%d pixels of the ruler's marked columns above the first row of boxes" % marks)
    if ticks < 50:
        problems.append("%d dark pixels (ticks, numbers) above the first row of boxes" % ticks)
    return problems


def check(format_, rows):
    counts = count_colours(rows)
    problems = []
    if len(counts) <= 8:
        problems.append("only %d distinct colours" % len(counts))
    if counts.get(WHITE, 0) == WIDTH * HEIGHT:
        problems.append("all white")
    if format_ in ("cspro", "cspro8"):
        wanted = (("item", ITEM, 2000), ("identification item", IDENTIFICATION, 500),
                  ("record-type code", RECORD_TYPE, 100))
        problems += ruler_problems(rows)
    else:
        wanted = (("table header", TABLE_HEADER, 2000),)
    for name, colour, least in wanted:
        if counts.get(colour, 0) < least:
            problems.append("%d pixels of the %s colour, expected at least %d" % (counts.get(colour, 0), name, least))
    darks = sum(n for p, n in counts.items() if dark(p))
    if darks < 1000:
        problems.append("%d dark pixels of text" % darks)
    return problems, len(counts)


def main():
    if len(sys.argv) != 4:
        print(__doc__)
        return 2
    inspector, sample, workdir = sys.argv[1:]
    name = os.path.basename(sample)
    if not os.access(CHROMIUM, os.X_OK):
        print("SKIP %s: %s is missing (Debian package chromium; ./scripts/quickstart.sh test installs it)"
              % (name, CHROMIUM))
        return SKIPPED
    os.makedirs(workdir, exist_ok=True)
    stem = os.path.join(workdir, name.replace(".", "_"))
    page, png = stem + ".html", stem + ".png"
    if os.path.exists(png):
        os.remove(png)
    format_ = run_inspector(inspector, sample, page)
    screenshot(page, png)
    width, height, rows = decode_png(png)
    if (width, height) != (WIDTH, HEIGHT):
        print("FAIL %s: screenshot of %dx%d, expected %dx%d" % (name, width, height, WIDTH, HEIGHT))
        return 1
    problems, colours = check(format_, rows)
    if problems:
        print("FAIL %s (%s):" % (name, png))
        for p in problems:
            print("  " + p)
        return 1
    print("ok %s: %d colours in %s" % (name, colours, png))
    return 0


if __name__ == "__main__":
    sys.exit(main())
