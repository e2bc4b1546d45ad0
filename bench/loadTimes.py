"""A table of the times that files take, through Python and in C++. Arguments: the program that measures C++, then files or
folders. Passes of both take turns, so that what else the machine does meets both; of every figure the median counts."""

import pathlib
import statistics
import subprocess
import sys
import time

import typdescriptor

PASSES, ROUNDS = 7, 15


def split_lines(path):
    """The least that a reader in Python alone does: take the lines apart at their equals signs."""
    with open(path, encoding="latin-1") as file:
        return [line.split(";")[0].partition("=") for line in file]


def is_device(path):
    try:
        typdescriptor.load(path)
    except typdescriptor.LoadError as error:
        print(f"left out: {error}", file=sys.stderr)
        return False
    return True


def median_of(work):
    times = []
    for _ in range(ROUNDS):
        start = time.perf_counter()
        work()
        times.append((time.perf_counter() - start) * 1e6)
    return statistics.median(times)


def main(program, places):
    files = [str(file) for place in map(pathlib.Path, places)
             for file in (sorted(place.iterdir()) if place.is_dir() else [place])
             if file.suffix.lower()[:3] == ".gs" and is_device(file)]
    columns = ("C++ compile, check", "Python, type file's facts", "C++ loadDevice", "Python load", "Python load, to_dict",
               "lines split in Python")
    figures = {file: [[] for _ in columns] for file in files}
    for _ in range(PASSES):
        lines = subprocess.run([program, str(ROUNDS), *files], check=True, capture_output=True, text=True).stdout.split("\n")
        for file, line in zip(files, lines):
            compiled, loaded = map(float, line.split())
            measured = [compiled, median_of(lambda: typdescriptor.load(file, with_gsd_facts=False)),
                        loaded, median_of(lambda: typdescriptor.load(file)),
                        median_of(lambda: typdescriptor.load(file).to_dict()), median_of(lambda: split_lines(file))]
            for times, figure in zip(figures[file], measured):
                times.append(figure)
    print(f"| file | lines | {' | '.join(columns)} | Python / C++, same work |")
    print("|---|" + "---:|" * (len(columns) + 2))
    rows = []
    for file, passes in figures.items():
        medians = [statistics.median(times) for times in passes]
        rows.append(medians)
        lines = pathlib.Path(file).read_bytes().count(b"\n")
        cells = " | ".join(f"{figure:,.0f} us" for figure in medians)
        print(f"| {pathlib.Path(file).name} | {lines} | {cells} | {medians[3] / medians[2]:.2f} |")
    cells = " | ".join(f"{statistics.median(column):,.0f} us" for column in zip(*rows))
    print(f"| median | | {cells} | {statistics.median(row[3] / row[2] for row in rows):.2f} |")


main(sys.argv[1], sys.argv[2:])
