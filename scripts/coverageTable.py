"""Prints gcovr's summary as a table of lines and branches by folder of megset/."""

import json
import sys
from collections import Counter

folders = {}
for file in json.load(open(sys.argv[1]))["files"]:
    folder = "/".join(file["filename"].split("/")[:2])
    for name in (folder, "megset"):
        folders.setdefault(name, Counter()).update(
            {key: file[key] for key in ("line_total", "line_covered", "branch_total", "branch_covered")})

print("| folder | lines | reached | branches | reached |")
print("|---|---:|---:|---:|---:|")
for name, count in sorted(folders.items()):
    line = 100 * count["line_covered"] / max(1, count["line_total"])
    branch = 100 * count["branch_covered"] / max(1, count["branch_total"])
    print(f"| {name} | {count['line_total']} | {line:.1f} % | {count['branch_total']} | {branch:.1f} % |")
