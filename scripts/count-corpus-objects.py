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

Each count is made twice. "All" counts every such element wherever it
stands. "Placed" counts only the objects that stand where the DTD puts them:
the object and every element above it are DTD elements with their children in
the order and number of their content models, their required attributes
present and their enumerated attributes within their lists, and the root is
CIM or one of the object and path elements that the full grammar reads as a
document (ROOT_ELEMENTS). Elements below an object are not checked: the loader
keeps an object when one of its values is bad. The deliberately broken
documents of the peers' test suites (a root named CIMX, an ERROR root, a CLASS
without its NAME) carry no placed objects.

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

# The document elements that the full grammar reads besides CIM.
ROOT_ELEMENTS = {"CIM", "CLASS", "INSTANCE", "QUALIFIER.DECLARATION", "VALUE.OBJECT",
                 "VALUE.NAMEDINSTANCE", "VALUE.NAMEDOBJECT", "VALUE.OBJECTWITHPATH",
                 "VALUE.OBJECTWITHLOCALPATH", "VALUE.INSTANCEWITHPATH"} | PATH_ELEMENTS
DTD_FILE = "../shared/dtd/DSP0203_2.4.0.dtd"

SUMMARY = re.compile(
    r"^(?P<file>.*): (?P<Q>\d+) qualifier declarations?, (?P<C>\d+) class(?:es)?, "
    r"(?P<I>\d+) instances?, (?P<P>\d+) paths?, (?P<O>\d+) operations?\s*$")


def element_name(tag):
    """Upper-case local name; comments and processing instructions give ''."""
    if not isinstance(tag, str):
        return ""
    return tag.rsplit("}", 1)[-1].upper()


class Dtd:
    """Content models and attributes of the CIM-XML DTD, read from its file."""

    ATTRIBUTE = re.compile(r"(\S+)\s+(CDATA|NMTOKEN|ID|\([^)]*\))\s+"
                           r"(#REQUIRED|#IMPLIED|(?:#FIXED\s+)?(?:'[^']*'|\"[^\"]*\"))")
    TOKEN = re.compile(r"#PCDATA|[A-Za-z][\w.-]*|[(),|?*+]")

    def __init__(self, path):
        text = re.sub(r"<!--.*?-->", "", Path(path).read_text(encoding="utf-8"), flags=re.S)
        entities = dict(re.findall(r'<!ENTITY\s+%\s+(\S+)\s+"(.*?)"\s*>', text, flags=re.S))
        while re.search(r"%[\w.-]+;", text):
            text = re.sub(r"%([\w.-]+);", lambda m: entities[m.group(1)], text)
        self.models = {name: re.compile(self.model_pattern(model))
                       for name, model in re.findall(r"<!ELEMENT\s+(\S+)\s+(.*?)>", text,
                                                     flags=re.S)}
        self.required = {}
        self.choices = {}
        for name, body in re.findall(r"<!ATTLIST\s+(\S+)(.*?)>", text, flags=re.S):
            for attribute, kind, default in self.ATTRIBUTE.findall(body):
                if default == "#REQUIRED":
                    self.required.setdefault(name, []).append(attribute)
                if kind.startswith("("):
                    values = {v.strip() for v in kind.strip("()").split("|")}
                    self.choices.setdefault(name, {})[attribute] = values

    @classmethod
    def model_pattern(cls, model):
        """A regular expression over the children's names, each followed by a space."""
        model = model.strip()
        if model == "EMPTY":
            return ""
        if model == "ANY":
            return ".*"
        pieces = []
        for token in cls.TOKEN.findall(model):
            if token == "#PCDATA":
                pieces.append("(?:)")
            elif token == "(":
                pieces.append("(?:")
            elif token == ",":
                continue
            elif token in ")|?*+":
                pieces.append(token)
            else:
                pieces.append(f"(?:{re.escape(token)} )")
        return "".join(pieces).replace("(?:)|", "").replace("(?:(?:))", "(?:)")

    def valid(self, element, name):
        """Whether the element itself follows the DTD; its children are not entered."""
        model = self.models.get(name)
        if model is None:
            return False
        if not model.fullmatch("".join(element_name(c.tag) + " " for c in element
                                       if element_name(c.tag))):
            return False
        if any(a not in element.attrib for a in self.required.get(name, ())):
            return False
        return all(element.attrib[a] in values
                   for a, values in self.choices.get(name, {}).items() if a in element.attrib)


DTD = None


def load_dtd(path):
    global DTD
    DTD = Dtd(path)


def count_objects(path):
    """Count the objects of one document: a dict keyed by CATEGORIES, counted
    everywhere, and one counted only where the DTD places them."""
    counts = dict.fromkeys(CATEGORIES, 0)
    placed = dict.fromkeys(CATEGORIES, 0)
    opener = gzip.open if str(path).endswith(".gz") else open
    with opener(path, "rb") as stream:
        root = ET.parse(stream).getroot()
    root_name = element_name(root.tag)
    # Each entry: element, its parent's name, its ancestors' names, whether it
    # and every element above it follow the DTD.
    pending = [(root, None, (), root_name in ROOT_ELEMENTS)]
    while pending:
        elem, parent, above, placed_above = pending.pop()
        name = element_name(elem.tag)
        if not name:
            continue
        is_placed = placed_above and DTD.valid(elem, name)
        category = None
        if name == "QUALIFIER.DECLARATION":
            category = "Q"
        elif name == "CLASS" and "VALUE" not in above:
            category = "C"
        elif name == "INSTANCE":
            category = "I"
        elif name in PATH_ELEMENTS and (parent is None or parent in PATH_PARENTS):
            category = "P"
        elif name in OPERATIONS:
            category = "O"
        if category:
            counts[category] += 1
            placed[category] += is_placed
        pending.extend((child, name, above + (name,), is_placed) for child in elem)
    return counts, placed


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
    record = {"file": relative, "counted": None, "placed": None, "tool": None, "exit": None,
              "outcome": "not run", "stderr": "", "all_returned": False,
              "placed_returned": False}
    try:
        record["counted"], record["placed"] = count_objects(full)
    except (ET.ParseError, OSError, EOFError) as error:
        record["count_error"] = str(error)
        record["counted"] = dict.fromkeys(CATEGORIES, 0)
        record["placed"] = dict.fromkeys(CATEGORIES, 0)
    if tool_command is None:
        return record
    outcome, status, stdout, first = run_tool(tool_command + [str(full)], timeout)
    record.update(outcome=outcome, exit=status, stderr=first)
    if outcome == "ran":
        record["tool"] = parse_summary(stdout)
    ran = outcome == "ran" and status in (0, 1) and record["tool"] is not None
    for flag, key in (("all_returned", "counted"), ("placed_returned", "placed")):
        record[flag] = ran and all(record["tool"][k] >= record[key][k] for k in "QCIP")
    return record


def has_objects(record, key="counted"):
    return sum(record[key][k] for k in "QCIP") > 0


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
    totals = {key: dict.fromkeys(CATEGORIES, 0) for key in ("counted", "placed")}
    for record in records:
        for key, total in totals.items():
            for category in CATEGORIES:
                total[category] += record[key][category]
        if details:
            print(record["file"], figures(record["counted"]), figures(record["placed"]),
                  sep="\t")
    print(f"documents considered:  {len(records)}")
    for key, total in totals.items():
        print(f"{key}: documents with objects "
              f"{sum(has_objects(r, key) for r in records)}; totals "
              + ", ".join(f"{k} {total[k]}" for k in CATEGORIES))


def report_share(records, key, flag, title):
    """Print how many documents with objects (by key) had them all returned."""
    with_objects = [r for r in records if has_objects(r, key)]
    returned = sum(r[flag] for r in with_objects)
    share = 100.0 * returned / len(with_objects) if with_objects else 0.0
    print(f"{title}:")
    print(f"  documents with objects:    {len(with_objects)}")
    print(f"  all objects returned:      {returned} ({share:.1f}%)")
    print(f"  missing objects:           {len(with_objects) - returned}"
          " (crashes and timeouts included)")
    return [r for r in with_objects if not r[flag]]


def report_run(records, details):
    print(f"documents considered:        {len(records)}")
    print(f"crashes (all documents):     {sum(r['outcome'] == 'crash' for r in records)}")
    print(f"timeouts (all documents):    {sum(r['outcome'] == 'timeout' for r in records)}")
    missing = report_share(records, "counted", "all_returned", "objects wherever they stand")
    missing_placed = report_share(records, "placed", "placed_returned",
                                  "objects where the DTD places them")
    if details and missing:
        placed_files = {r["file"] for r in missing_placed}
        print("# file\tcounted Q/C/I/P\tplaced Q/C/I/P\ttool Q/C/I/P\texit\t"
              "placed miss\tfirst stderr line")
        for r in missing:
            status = r["exit"]
            if r["outcome"] == "timeout":
                status = "timeout"
            elif status < 0:
                status = f"signal {-status}"
            print(r["file"], figures(r["counted"]), figures(r["placed"]), figures(r["tool"]),
                  status, "yes" if r["file"] in placed_files else "no", r["stderr"], sep="\t")


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
    dtd_file = REPO_ROOT / DTD_FILE
    if not dtd_file.is_file():
        parser.error(f"no DTD at {dtd_file}")
    load_dtd(dtd_file)
    jobs = [(name, corpus / name, tool_command, args.timeout)
            for name in selected_documents(corpus)]

    with ProcessPoolExecutor(max_workers=args.jobs, initializer=load_dtd,
                             initargs=(dtd_file,)) as pool:
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
