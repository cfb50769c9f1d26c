#!/usr/bin/python3
"""Checks the exports of traces: a viewer rejects a malformed event and misdraws slices that overlap.

Usage: check_exports.py ZQAFT SCHEMA TRACE...
Prints a line for each fault. Exits with 1 if there is one.
"""

import json
import subprocess
import sys
from collections import Counter, defaultdict
from decimal import Decimal

import jsonschema


def reject_constant(name):
    raise ValueError(f"{name} is no JSON")


def faults_of_names(events):
    """Each track and each process has one name and one place."""
    named = Counter((e["name"], e["pid"], e["tid"] if e["name"].startswith("thread") else None)
                    for e in events if e["ph"] == "M")
    for key, count in named.items():
        if count > 1:
            yield f"{key} comes {count} times"
    for kind in ("name", "sort_index"):
        tracks = {(e["pid"], e["tid"]) for e in events if e["ph"] in "XBi"}
        yield from (f"track {t} has no thread_{kind}" for t in tracks if ("thread_" + kind, *t) not in named)
        processes = {e["pid"] for e in events}
        yield from (f"process {p} has no process_{kind}" for p in processes if ("process_" + kind, p, None) not in named)


def slices_of(events):
    """The slices of each track as (begin, end, name), and the faults of B and E events."""
    slices, open_slices, faults = defaultdict(list), defaultdict(list), []
    for event in events:
        track = (event["pid"], event.get("tid"))
        if event["ph"] == "X":
            slices[track].append((event["ts"], event["ts"] + event["dur"], event["name"]))
        elif event["ph"] == "B":
            open_slices[track].append(event)
        elif event["ph"] == "E" and not open_slices[track]:
            faults.append(f"track {track}: an E at {event['ts']} without a B")
        elif event["ph"] == "E":
            begun = open_slices[track].pop()
            slices[track].append((begun["ts"], event["ts"], begun["name"]))
    faults += [f"track {track}: {e['name']} at {e['ts']} has no E" for track, left in open_slices.items() for e in left]
    return slices, faults


def faults_of_nesting(slices):
    """Slices of one track nest or do not overlap."""
    for track, each in slices.items():
        around = []
        for begin, end, name in sorted(each, key=lambda s: (s[0], -s[1])):
            if end < begin:
                yield f"track {track}: {name} ends at {end}, before it begins at {begin}"
            while around and around[-1] <= begin:
                around.pop()
            if around and end > around[-1]:
                yield f"track {track}: {name} at {begin} ends at {end}, after {around[-1]} of the slice around it"
            around.append(end)


def faults_of(text, validator):
    try:
        export = json.loads(text, parse_float=Decimal, parse_constant=reject_constant)
    except ValueError as fault:
        return [f"no JSON: {fault}"]
    malformed = [f"{e.json_path}: {e.message[:200]}" for e in validator.iter_errors(export)]
    if malformed:
        return malformed
    slices, faults = slices_of(export["traceEvents"])
    if not slices:
        faults.append("no slice: every example has a finger or a key")
    return [*faults, *faults_of_names(export["traceEvents"]), *faults_of_nesting(slices)]


def main(zqaft, schema_path, *traces):
    with open(schema_path, encoding="utf-8") as file:
        schema = json.load(file, parse_float=Decimal)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failed = not traces
    for trace in traces:
        text = subprocess.run([zqaft, "export", "--format", "chrome", trace, "-o", "-"],
                              stdout=subprocess.PIPE, check=True).stdout
        for fault in faults_of(text, validator):
            print(f"{trace}: {fault}")
            failed = True
    print(f"{len(traces)} exports")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
