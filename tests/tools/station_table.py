# SPDX-License-Identifier: MIT
"""station_table.py TOOL SHIPPED TABLE RESOURCES: makes a list and a package from a real table of
stations with `stationpackage update`, and holds them, the shipped package and the list in RESOURCES
against the table as an independent reader of JSON has it. Also that what is no whole table changes
nothing."""
import gzip
import json
import pathlib
import re
import subprocess
import sys
import tempfile

TOOL, SHIPPED, TABLE, RESOURCES = map(pathlib.Path, sys.argv[1:])
SKIPPED = 77
FILES = ("Stations.STNPKG", "positions.txt", "stations.txt")


def run(*words, table=None):
    return subprocess.run([TOOL, *words], input=table, capture_output=True, timeout=120)


def facts_of(rows):
    """What a package must say of each station, in the form of what is printed."""
    for row in rows:
        icao, elevation = row["icaoId"], row["elev"]
        if not re.fullmatch("[A-Z][A-Z0-9]{3}", icao or "") or (row["lat"], row["lon"]) == (0, 0):
            continue
        if abs(row["lat"]) <= 90 and abs(row["lon"]) <= 180:
            known = elevation is not None and -500 < elevation < 6000
            yield icao, {
                "iata": row["iataId"] or "", "synop": int(row["wmoId"] or 0),
                "latitude": row["lat"], "longitude": row["lon"],
                "elevation": elevation if known else 0,
                "metar": "METAR" in row["siteType"], "taf": "TAF" in row["siteType"],
                "radar": "NEXRAD" in row["site"],
                "office": bool(re.search(r"\bWFO\b", row["site"])),
                "priority": "" if row["priority"] is None else str(row["priority"])}


def stations_of(package):
    lines = run("print", package).stdout.decode().splitlines()[1:]
    columns = [[field.strip() for field in line.split("\t")] for line in lines]
    return {c[3]: {
        "iata": c[4], "synop": int(c[5]), "latitude": float(c[6]), "longitude": float(c[7]),
        "elevation": int(c[8]), "metar": c[9] == "X", "taf": c[11] == "T", "radar": c[10] == "X",
        "office": c[14] == "F", "priority": c[15]} for c in columns}


def compare(package, facts):
    stations = stations_of(package)
    extra = stations.keys() - facts.keys()
    missing = [icao for icao, fact in facts.items()
               if icao not in stations and (fact["metar"] or fact["taf"])]
    assert not extra and not missing, (extra, missing)
    # A code that several rows claim is one station's only.
    for code, none in (("iata", ""), ("synop", 0)):
        given = [s[code] for s in stations.values() if s[code] != none]
        assert len(given) == len(set(given)), code
        assert set(given) == {facts[icao][code] for icao in stations} - {none}, code
        for icao, station in stations.items():
            facts[icao][code] = none if station[code] == none else facts[icao][code]
    for icao, station in stations.items():
        assert station == facts[icao], (icao, station, facts[icao])
    return len(stations)


def main():
    if not TABLE.exists():
        print(f"skipped: there is no table at {TABLE}")
        return SKIPPED
    rows = json.load(gzip.open(TABLE))
    facts = dict(facts_of(rows))
    listed = (RESOURCES / "stations.txt").read_text()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        made = run("update", TABLE, folder, "2026-02-01")
        assert made.returncode == 0 and not made.stderr, made
        print(made.stdout.decode(), compare(folder / "Stations.STNPKG", facts), "stations compared")
        for line in (folder / "stations.txt").read_text().splitlines():
            assert line[:1] in ("", "!") or line[:2] == "CD" or len(line) == 83 or line.endswith(
                "01-FEB-26"), line
        if (folder / "stations.txt").read_text() == listed:
            for shipped, file in ((SHIPPED, FILES[0]), (RESOURCES / FILES[1], FILES[1])):
                assert shipped.read_bytes() == (folder / file).read_bytes(), file
        else:
            print("the shipped catalogue is of another table")
        before = {file: (folder / file).read_bytes() for file in FILES}
        fewer = rows[:len(rows) * 3 // 4]
        for table, reason in ((TABLE.read_bytes()[:-1], "cut short"),
                              (json.dumps(rows).encode()[:-1], "no table"),
                              (json.dumps(fewer).encode(), "stations, where there were")):
            refused = run("update", "-", folder, table=table)
            assert refused.returncode == 1 and reason in refused.stderr.decode(), (reason, refused)
            assert before == {path.name: path.read_bytes() for path in folder.iterdir()}, reason
        again = run("update", "-", folder, "2026-02-01", table=json.dumps(rows).encode())
        assert again.returncode == 0 and again.stdout == made.stdout, again
        assert before == {file: (folder / file).read_bytes() for file in FILES}
        for words, status in ((("update", TABLE, folder / "none"), 1),
                              (("update", folder / "none", folder), 1),
                              (("update", TABLE, folder, "2026-02-30"), 2)):
            assert run(*words).returncode == status, words
    return 0


sys.exit(main())
