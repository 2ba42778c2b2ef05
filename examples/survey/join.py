#!/usr/bin/python3
"""join.py SHEETS SITES.csv: joins the sheets of CSV ("all, a line a value") in the folder SHEETS to
a line for each silicon site with four oxygens: the mean Si-O length, and the mean of the Si-O-Si
angles at its oxygens. A site without such an angle has none."""
import csv
import pathlib
import re
import sys
from statistics import mean

HEAD = ["sheet", "title", "site", "ligands", "mean_Si_O", "mean_Si_O_Si"]
SILICON = re.compile(r"Si(?![A-Za-z])")


def sites_of(sheet):
    """(title, site) to the values of the site, in the order of the sheet."""
    ligands, means, angles = {}, {}, {}
    with open(sheet, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            key = row["title"], row["centre"]
            feature, value = row["feature"], row["value"]
            if row["quantity"] == "bond" and "[" in feature:
                ligand = feature[len(row["centre"]) + 1:feature.rindex("[")]
                ligands.setdefault(key, []).append(ligand)
            elif row["quantity"] == "bond" and feature == row["centre"] + "_mean":
                means[key] = float(value)
            elif row["quantity"] == "angles" and "[" in feature:
                ends = feature[:feature.rindex("[")].split("-" + row["centre"] + "-")
                if len(ends) == 2 and all(SILICON.match(end) for end in ends):
                    angles.setdefault(key, []).append((ends, float(value)))
    for (title, site), bonded in ligands.items():
        if not SILICON.match(site) or len(bonded) != 4 or (title, site) not in means:
            continue
        at_oxygens = [mean(value for ends, value in angles[title, oxygen] if site in ends)
                      for oxygen in bonded
                      if any(site in ends for ends, _ in angles.get((title, oxygen), []))]
        angle = f"{mean(at_oxygens):.3f}" if at_oxygens else ""
        yield title, site, len(bonded), f"{means[title, site]:.5f}", angle


def main():
    rows = [(sheet.stem, *site) for sheet in sorted(pathlib.Path(sys.argv[1]).glob("*.csv"))
            for site in sites_of(sheet)]
    with open(sys.argv[2], "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(HEAD)
        writer.writerows(rows)
    print(len(rows), "sites written to", sys.argv[2])


main()
