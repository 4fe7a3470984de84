#!/usr/bin/env python3
"""Measure how many of the corpus documents' objects the cimxml tool returns.

For every well-formed corpus document outside the DMTF schema folders, the
objects are counted here with Python's own XML parser, independently of our
loader, following DSP0201 and its DTD:

  Q  QUALIFIER.DECLARATION elements
  C  CLASS elements (not below a VALUE)
  I  INSTANCE elements
  P  class and instance paths standing alone: a CLASSNAME, INSTANCENAME,
     OBJECTPATH, INSTANCEPATH, CLASSPATH, LOCALCLASSPATH or LOCALINSTANCEPATH
     directly under IRETURNVALUE, RETURNVALUE, PARAMVALUE or IPARAMVALUE, or
     as the document's root. Paths that name an object, a reference value, a
     key binding's reference or a method call's target are parts of something
     else and are not counted.
  O  IMETHODCALL, METHODCALL, EXPMETHODCALL and the three responses

Then the tool is run on each document; it prints a summary line
"FILE: Q qualifier declarations, C classes, I instances, P paths, O operations".
A document returns all its objects when the tool exits with 0 or 1 and
reports at least the counted Q, C, I and P. Documents without objects are
left out of the percentage. The script measures; it exits with 0 whatever
the tool does.
"""

import argparse
import csv
import gzip
import json
import re
import subprocess
import sys
import xml.etree.ElementTree as ET
from concurrent.futures import ProcessPoolExecutor
from pathlib import Path

REPO_ROOT = Path(__file__).resolve().parent.parent
SCHEMA_FOLDERS = ("dmtf-cim-2.42.0-xml/", "dmtf-cim-2.49.0-compiled/")
CATEGORIES = ("Q", "C", "I", "P", "O")

PATH_ELEMENTS = {"CLASSNAME", "INSTANCENAME", "OBJECTPATH", "INSTANCEPATH",
                 "CLASSPATH", "LOCALCLASSPATH", "LOCALINSTANCEPATH"}
# Only a path directly under one of these is a result or an argument in its
# own right; elsewhere it belongs to an object, a reference or a call target.
PATH_PARENTS = {"IRETURNVALUE", "RETURNVALUE", "PARAMVALUE", "IPARAMVALUE"}
OPERATIONS = {"IMETHODCALL", "METHODCALL", "EXPMETHODCALL",
              "IMETHODRESPONSE", "METHODRESPONSE", "EXPMETHODRESPONSE"}

SUMMARY = re.compile(
    r"^(?P<file>.*): (?P<Q>\d+) qualifier declarations?, (?P<C>\d+) class(?:es)?, "
    r"(?P<I>\d+) instances?, (?P<P>\d+) paths?, (?P<O>\d+) operations?\s*$")


def element_name(tag):
    """Upper-case local name; comments and processing instructions give ''."""
    if not isinstance(tag, str):
        return ""
    return tag.rsplit("}", 1)[-1].upper()


def count_objects(path):
    """Count the objects of one document, as a dict keyed by CATEGORIES."""
    counts = dict.fromkeys(CATEGORIES, 0)
    stack = []  # names of the open elements, the root first
    opener = gzip.open if str(path).endswith(".gz") else open
    with opener(path, "rb") as stream:
        for event, elem in ET.iterparse(stream, events=("start", "end")):
            name = element_name(elem.tag)
            if event == "end":
                stack.pop()
                elem.clear()
                continue
            parent = stack[-1] if stack else None
            if name == "QUALIFIER.DECLARATION":
                counts["Q"] += 1
            elif name == "CLASS" and "VALUE" not in stack:
                counts["C"] += 1
            elif name == "INSTANCE":
                counts["I"] += 1
            elif name in PATH_ELEMENTS and (parent is None or parent in PATH_PARENTS):
                counts["P"] += 1
            elif name in OPERATIONS:
                counts["O"] += 1
            stack.append(name)
    return counts


def parse_summary(stdout):
    """The tool's figures from its last summary line, or None without one."""
    found = None
    for line in stdout.splitlines():
        match = SUMMARY.match(line)
        if match:
            found = {key: int(match.group(key)) for key in CATEGORIES}
    return found


def run_tool(command, timeout):
    """Run the tool; give (outcome, exit status, stdout, first stderr line)."""
    try:
        done = subprocess.run(command, capture_output=True, timeout=timeout)
    except subprocess.TimeoutExpired:
        return "timeout", None, "", ""
    stderr = done.stderr.decode("utf-8", "replace")
    first = next((line.strip() for line in stderr.splitlines() if line.strip()), "")
    crashed = done.returncode < 0 or done.returncode > 2
    return ("crash" if crashed else "ran"), done.returncode, \
        done.stdout.decode("utf-8", "replace"), first


def examine(job):
    """Count one document and, unless only counting, run the tool on it."""
    relative, full, tool_command, timeout = job
    record = {"file": relative, "counted": None, "tool": None, "exit": None,
              "outcome": "not run", "stderr": "", "all_returned": False}
    try:
        record["counted"] = count_objects(full)
    except (ET.ParseError, OSError, EOFError) as error:
        record["count_error"] = str(error)
        record["counted"] = dict.fromkeys(CATEGORIES, 0)
    if tool_command is None:
        return record
    outcome, status, stdout, first = run_tool(tool_command + [str(full)], timeout)
    record.update(outcome=outcome, exit=status, stderr=first)
    if outcome == "ran":
        record["tool"] = parse_summary(stdout)
    record["all_returned"] = (
        outcome == "ran" and status in (0, 1) and record["tool"] is not None
        and all(record["tool"][k] >= record["counted"][k] for k in "QCIP"))
    return record


def has_objects(record):
    return sum(record["counted"][k] for k in "QCIP") > 0


def selected_documents(corpus):
    """Manifest entries that are well-formed and outside the schema folders."""
    with open(corpus / "MANIFEST.tsv", newline="", encoding="utf-8") as manifest:
        rows = csv.DictReader(manifest, delimiter="\t", quoting=csv.QUOTE_NONE)
        return [row["file"] for row in rows
                if row["well_formed(expat)"] == "yes"
                and not row["file"].startswith(SCHEMA_FOLDERS)]


def figures(counts):
    return "/".join(str(counts[k]) for k in "QCIP") if counts else "-"


def report_counts(records, details):
    totals = dict.fromkeys(CATEGORIES, 0)
    for record in records:
        for key in CATEGORIES:
            totals[key] += record["counted"][key]
        if details:
            print(record["file"], *(record["counted"][k] for k in CATEGORIES), sep="\t")
    print(f"documents considered:  {len(records)}")
    print(f"documents with objects: {sum(map(has_objects, records))}")
    print("totals: " + ", ".join(f"{k} {totals[k]}" for k in CATEGORIES))


def report_run(records, details):
    with_objects = [r for r in records if has_objects(r)]
    returned = [r for r in with_objects if r["all_returned"]]
    missing = [r for r in with_objects if not r["all_returned"]]
    share = 100.0 * len(returned) / len(with_objects) if with_objects else 0.0
    print(f"documents considered:        {len(records)}")
    print(f"documents without objects:   {len(records) - len(with_objects)}")
    print(f"documents with objects:      {len(with_objects)}")
    print(f"all objects returned:        {len(returned)} ({share:.1f}%)")
    print(f"missing objects:             {len(missing)} (crashes and timeouts included)")
    print(f"crashes (all documents):     {sum(r['outcome'] == 'crash' for r in records)}")
    print(f"timeouts (all documents):    {sum(r['outcome'] == 'timeout' for r in records)}")
    if details and missing:
        print("# file\tcounted Q/C/I/P\ttool Q/C/I/P\texit\tfirst stderr line")
        for r in missing:
            status = r["exit"]
            if r["outcome"] == "timeout":
                status = "timeout"
            elif status < 0:
                status = f"signal {-status}"
            print(r["file"], figures(r["counted"]), figures(r["tool"]), status,
                  r["stderr"], sep="\t")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--corpus", type=Path, default=REPO_ROOT / "../shared/corpus",
                        help="corpus folder holding MANIFEST.tsv (default: %(default)s)")
    parser.add_argument("--tool", type=Path,
                        default=REPO_ROOT / "build/release/tools/cimxml",
                        help="the cimxml tool (default: %(default)s)")
    parser.add_argument("--tool-arg", action="append", default=[], metavar="ARG",
                        help="extra argument for the tool, before the file; repeatable; "
                             "write --tool-arg=--flag for one that starts with a dash")
    parser.add_argument("--timeout", type=float, default=60.0,
                        help="seconds the tool may take per document (default: 60)")
    parser.add_argument("--count-only", action="store_true",
                        help="only count the objects; do not run the tool")
    parser.add_argument("--details", action="store_true",
                        help="print one TSV line per document missing objects "
                             "(with --count-only: per document counted)")
    parser.add_argument("--json", type=Path, metavar="FILE",
                        help="write the per-document records to FILE as JSON")
    parser.add_argument("--jobs", type=int, default=2,
                        help="worker processes (default: 2)")
    args = parser.parse_args()

    corpus = args.corpus.resolve()
    if not (corpus / "MANIFEST.tsv").is_file():
        parser.error(f"no MANIFEST.tsv in {corpus}")
    tool_command = None
    if not args.count_only:
        if not args.tool.is_file():
            parser.error(f"tool not found: {args.tool}")
        tool_command = [str(args.tool)] + args.tool_arg
    jobs = [(name, corpus / name, tool_command, args.timeout)
            for name in selected_documents(corpus)]

    with ProcessPoolExecutor(max_workers=args.jobs) as pool:
        records = list(pool.map(examine, jobs, chunksize=4))

    for record in records:
        if "count_error" in record:
            print(f"warning: could not count {record['file']}: {record['count_error']}",
                  file=sys.stderr)
    if args.count_only:
        report_counts(records, args.details)
    else:
        report_run(records, args.details)
    if args.json:
        args.json.write_text(json.dumps(records, indent=1) + "\n", encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
