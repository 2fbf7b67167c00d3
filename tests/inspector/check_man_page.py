#!/usr/bin/python3
"""Checks the inspector's man page, tools/keladmin-inspect.1.

usage: check_man_page.py lint MANPAGE
       check_man_page.py options INSPECTOR MANPAGE
       check_man_page.py render MANPAGE

lint: `groff -man -ww -z MANPAGE` (every warning on) exits 0 and writes
nothing on stderr.

options: every option that `INSPECTOR --help` names appears in the OPTIONS
section of the rendered man page, and every option that the man page's OPTIONS section describes is
named by --help, so that the two cannot drift apart; the page's title line
carries the version that `INSPECTOR --version` prints; EXIT STATUS describes
the statuses 0, 1, 2, 3 and 4, and the help names them too.

render: `man -l MANPAGE` renders it at 60, 80 and 200 columns with nothing on
stderr, with the sections NAME, SYNOPSIS, DESCRIPTION, OPTIONS, FORMATS,
OUTPUT, READING NOTES, EXIT STATUS, FILES, EXAMPLES and SEE ALSO.

Exit status 0 when every check holds, 1 otherwise (every failed check is
listed), 77 (skipped) when groff or man is not installed.
"""

import re
import shutil
import sys

import kxcheck

SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "FORMATS", "OUTPUT", "READING NOTES", "EXIT STATUS",
            "FILES", "EXAMPLES", "SEE ALSO"]
EXIT_STATUSES = ["0", "1", "2", "3", "4", "5", "6"]
OPTION = re.compile(r"(?<![\w-])(--[a-z][a-z-]*[a-z])")


def need(program):
    path = shutil.which(program)
    if not path:
        print("SKIP: %s is not installed (Debian package %s)" % (program, "groff" if program == "groff" else "man-db"))
        sys.exit(77)
    return path


def run(command, env=None):
    return kxcheck.run(command, env)


def rendered(manpage):
    """The page as plain text, wide enough that no option is broken."""
    r = run([need("groff"), "-man", "-Tascii", "-rLL=250n", "-P-c", "-P-b", "-P-o", "-P-u", manpage])
    return r.stdout.decode("ascii", errors="replace")


def sections_of(text):
    """Section name -> its text, from the unindented headings of the rendered page."""
    out, name = {}, None
    for line in text.splitlines():
        if line and not line[0].isspace() and line.upper() == line and not line.startswith("KELADMIN"):
            name = line.strip()
            out[name] = []
        elif name:
            out[name].append(line)
    return {k: "\n".join(v) for k, v in out.items()}


def check_lint(manpage, failures):
    r = run([need("groff"), "-man", "-ww", "-z", manpage])
    if r.returncode != 0:
        failures.append("groff exited %d" % r.returncode)
    if r.stderr:
        failures.append("groff warns:\n" + r.stderr.decode(errors="replace"))


def check_options(inspector, manpage, failures):
    help_text = run([inspector, "--help"]).stdout.decode()
    version = run([inspector, "--version"]).stdout.decode().split(" (")[0].strip()
    page = rendered(manpage)
    sections = sections_of(page)
    in_help = set(OPTION.findall(help_text))
    described = set(OPTION.findall(sections.get("OPTIONS", "")))
    if len(in_help) < 10:
        failures.append("--help names only %s" % sorted(in_help))
    for option in sorted(in_help - described):
        failures.append("%s is in --help but not in the man page's OPTIONS" % option)
    for option in sorted(described - in_help):
        failures.append("%s is described in the man page but not in --help" % option)
    with open(manpage, encoding="utf-8") as f:
        title = next((line for line in f if line.startswith(".TH ")), "")
    if not version or '"%s"' % version not in title:
        failures.append("the title line %r does not carry %r" % (title.strip(), version))
    status = sections.get("EXIT STATUS", "")
    for code in EXIT_STATUSES:
        if not re.search(r"^\s+%s\s" % code, status, re.M):
            failures.append("EXIT STATUS does not describe status %s" % code)
        if not re.search(r"(status:|,)\s*%s " % code, help_text):
            failures.append("--help does not name exit status %s" % code)


def check_render(manpage, failures):
    man = need("man")
    for width in ("60", "80", "200"):
        r = run([man, "-l", manpage], {"MANWIDTH": width, "MANPAGER": "cat", "PAGER": "cat", "LANG": "C.UTF-8"})
        text = r.stdout.decode(errors="replace")
        if r.returncode != 0 or r.stderr:
            failures.append("man -l at %s columns: exit %d, %s" % (width, r.returncode,
                                                                     r.stderr.decode(errors="replace")))
        missing = [s for s in SECTIONS if not re.search(r"^%s$" % s, text, re.M)]
        if missing:
            failures.append("man -l at %s columns shows no section %s" % (width, ", ".join(missing)))


def main(argv):
    mode = argv[1] if len(argv) > 1 else ""
    if not ((mode in ("lint", "render") and len(argv) == 3) or (mode == "options" and len(argv) == 4)):
        print(__doc__, file=sys.stderr)
        return 2
    failures = []
    if mode == "lint":
        check_lint(argv[2], failures)
    elif mode == "render":
        check_render(argv[2], failures)
    else:
        check_options(argv[2], argv[3], failures)
    for failure in failures:
        print("FAIL: " + failure)
    if not failures:
        print("%s: every check holds" % mode)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
