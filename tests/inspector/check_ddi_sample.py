#!/usr/bin/python3
"""The DDI document the inspector writes for a sample: valid by the DDI
Alliance's schema, and holding what the sample says.

usage: check_ddi_sample.py valid INSPECTOR SCHEMA_DIR WORKDIR SAMPLE
       check_ddi_sample.py faithful INSPECTOR EXPECTED_JSON WORKDIR SAMPLE

valid: writes the document with `INSPECTOR --ddi OUT SAMPLE` and validates
it with `xmllint --schema SCHEMA_DIR/codebook.xsd`. Skipped (exit status 77,
one line saying why) without the schema folder or xmllint (Debian
libxml2-utils).

faithful: writes the document and compares it with EXPECTED_JSON, the
variables, locations, categories with their missing flags and ranges that
the sample's own text gives (check_ddi.py).
"""

import os
import shutil
import sys

import check_ddi
import kxcheck


def write_document(inspector, workdir, sample):
    os.makedirs(workdir, exist_ok=True)
    out = os.path.join(workdir, os.path.basename(sample) + ".xml")
    r = kxcheck.run_inspector(inspector, ["--ddi", out, sample])
    if r.returncode != 0:
        print("FAIL: the inspector exited %d: %s" % (r.returncode, r.stderr.decode(errors="replace")))
        sys.exit(1)
    return out


def check_valid(inspector, schema_dir, workdir, sample):
    schema = os.path.join(schema_dir, "codebook.xsd")
    if not os.path.isfile(schema):
        print("SKIP: no DDI Codebook 2.5 schema at %s (shared/ddi-codebook-2.5 beside the checkout)" % schema)
        return kxcheck.SKIP
    xmllint = shutil.which("xmllint")
    if not xmllint:
        print("SKIP: xmllint is not installed (Debian package libxml2-utils)")
        return kxcheck.SKIP
    document = write_document(inspector, workdir, sample)
    r = kxcheck.run([xmllint, "--noout", "--nonet", "--schema", schema, document])
    print(r.stderr.decode(errors="replace").strip())
    return 0 if r.returncode == 0 else 1


def check_faithful(inspector, expected, workdir, sample):
    document = write_document(inspector, workdir, sample)
    return check_ddi.main(["check_ddi.py", document, expected])


def main(argv):
    if len(argv) != 6 or argv[1] not in ("valid", "faithful"):
        print(__doc__, file=sys.stderr)
        return 2
    mode, inspector, reference, workdir, sample = argv[1:]
    if mode == "valid":
        return check_valid(inspector, reference, workdir, sample)
    return check_faithful(inspector, reference, workdir, sample)


if __name__ == "__main__":
    sys.exit(main(sys.argv))
