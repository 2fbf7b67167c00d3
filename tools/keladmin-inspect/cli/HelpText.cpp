// The help texts, kept free of Qt so that the small program in front of the
// inspector can print them without loading the library.
#include "HelpText.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kxinspect {

const char *const UsageText =
    "Usage:\n"
    "  keladmin-inspect [--format cspro|cspro8|spss|stata] [--json | --csv]\n"
    "                   [--wide] [--decimal ask|yes-to-all|no-to-all] [--no-notes]\n"
    "                   [--fail-on-notes] [--html PAGE] [--verbose] FILE\n"
    "  keladmin-inspect --lookup FILE --separator tab|comma|semicolon|colon|blank\n"
    "                   [--check] [--max-messages N] [--json | --csv] [--wide]\n"
    "                   [--verbose]\n"
    "  keladmin-inspect --codebook [--format cspro|cspro8|spss|stata]\n"
    "                   [--json | --csv] [--wide] FILE\n"
    "  keladmin-inspect --ddi OUT [--codebook] [--format F] FILE\n"
    "  keladmin-inspect --diff [--json] [--html PAGE] [--ignore-labels]\n"
    "                   [--format F] OLD NEW\n"
    "  keladmin-inspect --help | --version\n";

const char *const HelpText =
    "\n"
    "Opens a data description with the importer of its format, as the front end\n"
    "does (openFile, then TKxDataProvider::genericGetFieldsFrom), and prints the\n"
    "data-source description: provider id and type, record-type start and length,\n"
    "the groups (record types) and one row per field with its name, label, type,\n"
    "start, size, decimals, minimum, maximum, missing and not-applicable codes,\n"
    "group and value labels; then the reading notes, if the reading wrote any.\n"
    "For SPSS and Stata files the header also says what the file says about\n"
    "itself: row count, file format version, text encoding, byte order, creation\n"
    "time and file label (\"fileMetadata\" in the JSON, null where it is silent).\n"
    "\n"
    "Formats, detected from the content unless --format is given:\n"
    "  cspro    CSPro text dictionary (.dcf), first line [Dictionary]\n"
    "  cspro8   CSPro 8 JSON dictionary, first character {\n"
    "  spss     SPSS system file (.sav, .zsav), magic $FL2 or $FL3\n"
    "  stata    Stata data file (.dta): <stata_dta> (versions 117-119) or a\n"
    "           first byte 104-119 followed by a byte-order byte 1 or 2\n"
    "\n"
    "Options:\n"
    "  --format F        force the format F instead of detecting it\n"
    "  --json            print one JSON document instead of the aligned table;\n"
    "                    it carries every text whole and every message. Its keys\n"
    "                    are described by the JSON Schema in\n"
    "                    share/keladmin-inspect/keladmin-inspect.schema.json;\n"
    "                    \"schemaVersion\" (now 1) is raised when they change\n"
    "  --csv             print CSV (RFC 4180) instead of the aligned table: one\n"
    "                    header row, then one row per field with the table's\n"
    "                    columns; the value labels cell holds \"code=label\"\n"
    "                    entries joined by \"; \", never cut (a label can itself\n"
    "                    hold \"; \": --json lists them one by one). With --lookup,\n"
    "                    one row per label and its count (COUNT, LABEL). UTF-8\n"
    "                    without a byte-order mark, every record ended by CR LF,\n"
    "                    a field in double quotes (its quotes doubled) when it\n"
    "                    holds a comma, a double quote, CR or LF; texts as read,\n"
    "                    control characters kept. The notes and the lookup\n"
    "                    messages are left out (--json has them). Not with --json\n"
    "  --wide            keep long labels whole in the table (by default a label\n"
    "                    longer than 60 characters is cut to 59 characters and\n"
    "                    an ellipsis, U+2026)\n"
    "  --decimal MODE    answer of the decimal-code prompt of CSPro text\n"
    "                    dictionaries (a value set with a code such as 0.5):\n"
    "                    no-to-all (default) drops such value sets, yes-to-all\n"
    "                    turns those codes into 0, ask shows the dialog; ask needs\n"
    "                    a display and is answered no-to-all without one\n"
    "  --html PAGE       also write the description as one self-contained HTML\n"
    "                    page to PAGE (inline CSS and SVG, no script, nothing\n"
    "                    loaded from elsewhere); stdout carries the table, the\n"
    "                    JSON or the CSV as without it. The page has a summary, for\n"
    "                    CSPro a drawing of every record's columns (a ruler,\n"
    "                    the items, subitems on a second row, the identification\n"
    "                    items on every record, overlaps, gaps and the\n"
    "                    record-type code marked) or for SPSS and Stata a table\n"
    "                    of the variables, then the fields with their value\n"
    "                    labels and the reading notes (unless --no-notes).\n"
    "                    A page that cannot be written gives status 5\n"
    "  --codebook        print the codebook instead of the front end's reading:\n"
    "                    what the file says as its own format means it (CSPro's\n"
    "                    languages, ranges, special values, linked value sets,\n"
    "                    computed positions and record lengths; SPSS and Stata\n"
    "                    formats, user-missing and extended missing values,\n"
    "                    measure and alignment). The table lists the records and\n"
    "                    one row per variable (primary labels); --json gives\n"
    "                    every fact and every language, described by\n"
    "                    share/keladmin-inspect/keladmin-codebook.schema.json;\n"
    "                    --csv one row per variable with a label column per\n"
    "                    language. Not with --decimal, --no-notes, --fail-on-notes\n"
    "                    or --html, which concern the front end's reading\n"
    "  --ddi OUT         write the codebook as one DDI Codebook 2.5 document\n"
    "                    (XML, namespace ddi:codebook:2_5, valid by the DDI\n"
    "                    Alliance's schema) to OUT, - for the standard output:\n"
    "                    the file's layout (CSPro records with their record types\n"
    "                    and lengths), its variables with their columns, labels\n"
    "                    per language, categories (missing ones marked) and\n"
    "                    ranges. A repeated item gives one variable per\n"
    "                    occurrence, NAME_1, NAME_2, ... OUT is written whole or\n"
    "                    not at all (status 5)\n"
    "  --diff OLD NEW    compare the codebooks of two files, of any two formats:\n"
    "                    records and variables added, removed, renamed (matched\n"
    "                    by record, start and width, or by label), moved,\n"
    "                    resized; occurrences, types, decimals, formats, missing\n"
    "                    values, labels per language, value sets and their\n"
    "                    values. One row per change, grouped by record, most\n"
    "                    serious first (layout, then content, then wording);\n"
    "                    --json gives one document described by\n"
    "                    share/keladmin-inspect/keladmin-diff.schema.json;\n"
    "                    --html PAGE also writes a page with both files' column\n"
    "                    rulers, the changed variables marked. Exit status 0\n"
    "                    when nothing changed, 6 when something did\n"
    "  --ignore-labels   with --diff: leave label wording out\n"
    "  --no-notes        leave the reading notes out (no Notes section in the\n"
    "                    table, no \"notes\" key in the JSON)\n"
    "  --fail-on-notes   exit with status 3 when the reading wrote at least one\n"
    "                    note (also with --no-notes)\n"
    "  --lookup FILE     read FILE as a lookup file (one key and label a line)\n"
    "  --separator S     separator between key and label in the lookup file;\n"
    "                    blank also takes several blanks as one separator\n"
    "  --check           also check key sizes, duplicate keys and separators; the\n"
    "                    messages start with the line number and \"_\"; exit with\n"
    "                    status 4 when there is at least one message\n"
    "  --max-messages N  messages after which the 'too many' message is issued\n"
    "                    (default 100); it takes the place of message N+1, and\n"
    "                    the table shows the first N, that line, and how many more\n"
    "                    were not shown (\"Messages:\" gives the total, --json\n"
    "                    lists them all)\n"
    "  --verbose         also show the library's debug log on stderr\n"
    "  --help            show this text\n"
    "  --version         show the versions of this program, of the library, of\n"
    "                    ReadStat and of Qt\n"
    "\n"
    "Names and labels are printed as read (save for the cut of long labels in the\n"
    "table). Control characters in them (such as the occurrence numbers of CSPro\n"
    "text items) are shown as \\uXXXX in the table, escaped the JSON way in the\n"
    "JSON, and kept as they are in the CSV, so that it reads back exactly.\n"
    "\n"
    "Reading notes say where the reading dropped, shortened or reinterpreted what\n"
    "the file says: the line of the file (\"-\" in the table where lines mean\n"
    "nothing, 0 in the JSON), the subject, a kind such as value-set-dropped, and\n"
    "one sentence. The table ends with them and a count by kind; the JSON carries\n"
    "them in the top-level array \"notes\" (keys line, subject, kind, text).\n"
    "\n"
    "Exit status: 0 success, 1 the file is missing, unreadable, unrecognised,\n"
    "yields no fields or entries, or the library reported an error (one line on\n"
    "stderr names the file and the problem in words: the error's number with its\n"
    "text; for error 242 of a CSPro text dictionary also \"(line N of the file)\",\n"
    "the last line of the section where the reading failed; for a JSON\n"
    "dictionary the parser's error with its line and column), 2 wrong usage,\n"
    "3 reading notes with --fail-on-notes, 4 lookup messages with\n"
    "--check, 5 the output could not be written whole (standard output or the\n"
    "--html page, on a full disk or a closed pipe: one line on stderr names it\n"
    "and the system's reason, and a page not written whole leaves the old one\n"
    "in place), 6 --diff found changes; with 3, 4 and 6 the whole output is\n"
    "printed first.\n";

const char *standardOutputFailure(int earlierError)
{
    errno = 0;
    const bool flushed = std::fflush(stdout) == 0;
    const int flushError = errno;
    if (flushed && !std::ferror(stdout))
        return nullptr;
    if (!flushed && flushError != 0)
        return std::strerror(flushError);
    return std::strerror(earlierError != 0 ? earlierError : EIO);
}

int writeHelp()
{
    errno = 0;
    if (std::fputs(UsageText, stdout) == EOF || std::fputs(HelpText, stdout) == EOF)
        return errno != 0 ? errno : EIO;
    return 0;
}

} // namespace kxinspect
