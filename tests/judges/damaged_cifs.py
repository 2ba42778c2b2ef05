#!/usr/bin/python3
"""Damages CIFs and looks for differences that neither reader tells.

    damaged_cifs.py READINGS COUNT FILE_OR_FOLDER...

READINGS is build/tests/readings. COUNT files are drawn (with a fixed seed) from those below the
folders; each is damaged once in each of the ways below, and what READ full and READ cif make of it
is compared with gemmi's reading where gemmi reads it at all. A difference that neither an exception of
read_full.py nor a warning covers is printed and makes the script fail.
"""
import collections
import os
import random
import re
import sys
import tempfile

import read_full
from read_full import gemmi


# ---- ways to damage a text ----

def some_line(lines, draw, test):
    """Place of a line for which the test holds, -1 without one."""
    places = [k for k, line in enumerate(lines) if test(line)]
    return draw.choice(places) if places else -1


def without_a_line(lines, draw):
    del lines[draw.randrange(len(lines))]


def line_twice(lines, draw):
    at = draw.randrange(len(lines))
    lines.insert(at, lines[at])


def columns_swapped(lines, draw):
    """Two names of one loop."""
    names = [k for k, line in enumerate(lines) if line.strip().startswith("_atom_site_")]
    if not names:
        return
    a = draw.choice(names)
    in_loop = [k for k in names if set(range(min(a, k), max(a, k))) <= set(names)]
    b = draw.choice(in_loop)
    lines[a], lines[b] = lines[b], lines[a]


def quotes_changed(lines, draw):
    lines[:] = [line.replace("'", '"') if draw.random() < 0.5 else line.replace("'", "")
                for line in lines]


def quote_lost(lines, draw):
    at = some_line(lines, draw, lambda line: "'" in line)
    if at >= 0:
        lines[at] = lines[at][::-1].replace("'", "", 1)[::-1]


def tabs(lines, _):
    lines[:] = [re.sub(" +", "\t", line) if not line.startswith(";") else line for line in lines]


def upper_case_names(lines, _):
    lines[:] = [re.sub(r"^(\s*)(_\S+|loop_|data_)", lambda m: m[0].upper(), line)
                for line in lines]


def one_long_line(lines, draw):
    """Rows of a loop of sites on one line."""
    at = some_line(lines, draw, lambda line: re.match(r"\s*[A-Z][a-z]?\d+ .*\d\.\d", line))
    if at < 0:
        return
    end = at
    while end + 1 < len(lines) and re.match(r"\s*[A-Z][a-z]?\d+ .*\d\.\d", lines[end + 1]):
        end += 1
    lines[at:end + 1] = [" ".join(lines[at:end + 1])]


def rows_over_lines(lines, draw):
    at = some_line(lines, draw, lambda line: re.match(r"\s*[A-Z][a-z]?\d+ .*\d\.\d", line))
    if at >= 0:
        words = lines[at].split()
        lines[at:at + 1] = [" ".join(words[:2]), " " + " ".join(words[2:])]


def character_lost(lines, draw):
    at = some_line(lines, draw, lambda line: len(line) > 1)
    if at >= 0:
        k = draw.randrange(len(lines[at]))
        lines[at] = lines[at][:k] + lines[at][k + 1:]


def letter_for_digit(lines, draw):
    at = some_line(lines, draw, lambda line: re.search(r"\d", line))
    if at >= 0:
        digits = [m.start() for m in re.finditer(r"\d", lines[at])]
        k = draw.choice(digits)
        lines[at] = lines[at][:k] + draw.choice("OlxS,") + lines[at][k + 1:]


def stray_word(lines, draw):
    at = some_line(lines, draw, lambda line: line.strip() and not line.startswith(";"))
    if at >= 0:
        lines[at] += " stray"


def comment_in_a_row(lines, draw):
    at = some_line(lines, draw, lambda line: line.strip() and not line.startswith(";"))
    if at >= 0:
        words = lines[at].split()
        lines[at:at + 1] = [words[0] + " # a comment", " ".join(words[1:])]


def cut_short(lines, draw):
    del lines[draw.randrange(len(lines)):]


def value_unknown(lines, draw):
    at = some_line(lines, draw, lambda line: re.match(r"_\S+\s+\S+$", line))
    if at >= 0:
        lines[at] = lines[at].split()[0] + " " + draw.choice("?.")


def line_ends(ends):
    def damage(lines, _):
        lines[:] = [ends.join(lines)]
    return damage


def loops_moved(lines, draw):
    """A loop with what follows it goes to the end."""
    starts = [k for k, line in enumerate(lines) if line.strip().lower() == "loop_"]
    if len(starts) > 1:
        k = draw.randrange(len(starts) - 1)
        loop = lines[starts[k]:starts[k + 1]]
        del lines[starts[k]:starts[k + 1]]
        lines += loop


DAMAGES = {
    "line lost": without_a_line, "line twice": line_twice, "columns swapped": columns_swapped,
    "quotes changed": quotes_changed, "quote lost": quote_lost, "tabs": tabs,
    "upper case": upper_case_names, "long line": one_long_line, "row over lines": rows_over_lines,
    "character lost": character_lost, "letter for digit": letter_for_digit,
    "stray word": stray_word, "comment": comment_in_a_row, "cut short": cut_short,
    "value unknown": value_unknown, "CR LF": line_ends("\r\n"), "CR": line_ends("\r"),
    "loop moved": loops_moved,
}


def damaged(text, damage, seed):
    lines = text.split("\n")
    DAMAGES[damage](lines, random.Random(seed))
    return "\n".join(lines)


# ---- what is silent ----

def structures(name):
    """The structures that gemmi reads by title; None where it does not read the file."""
    try:
        document = gemmi.cif.read_string(read_full.plain_text(name))
    except (RuntimeError, ValueError):
        return None
    return {block.name.replace("#", ""): block for block in document
            if read_full.is_structure(block)}  # gemmi calls a block without a name "#"


def has_open_bracket(name):
    """An esd without its closing bracket: gemmi has no number then, both readers take the digits."""
    return re.search(r"\d\(\d+\s", read_full.plain_text(name)) is not None


def silent_in_full(name, theirs, full):
    """What READ full reads otherwise than gemmi without a word."""
    if has_open_bracket(name):
        return
    ours = {block["title"]: block for block in full}
    for title, block in theirs.items():
        mine = ours.get(title)
        if mine is None:
            yield title, "not found"
        elif mine["kind"] == "block" and not mine["told"]:
            found = [what for what, exception in read_full.compare_block(mine, block)
                     if exception is None]
            if found:
                yield title, "; ".join(found[:3])


def silent_in_plain(full, plain, told):
    """What READ cif reads otherwise than READ full without a word."""
    by_title = collections.Counter(block["title"] for block in full)
    for number, mine in enumerate(plain, 1):
        start = "Block #%3d %s: " % (number, mine["title"])
        said = any(start in line or "block #%3d " % number in line for line in told)
        other = [block for block in full if block["title"] == mine["title"]]
        if said or by_title[mine["title"]] != 1 or not mine["sites"]:
            continue
        if other[0]["kind"] == "unread":
            if other[0]["status"] == "2":
                yield mine["title"], "READ full does not read it"
        elif read_full.parts_that_differ(other[0], mine):
            yield mine["title"], "READ cif: " + ", ".join(
                sorted(read_full.parts_that_differ(other[0], mine)))


def main():
    program, count, *places = sys.argv[1:]
    names = read_full.cifs_below(places)
    drawn = random.Random(17).sample(names, min(int(count), len(names)))
    counts = collections.Counter()
    with tempfile.TemporaryDirectory() as folder:
        what_was_done = {}
        for number, name in enumerate(drawn):
            text = read_full.plain_text(name)
            for damage in DAMAGES:
                path = os.path.join(folder, "%04d_%s.cif" % (number, damage.replace(" ", "_")))
                with open(path, "w", encoding="utf-8", newline="") as file:
                    file.write(damaged(text, damage, number))
                what_was_done[path] = (name, damage)
        for path, (full, plain, told) in read_full.readings(program, list(what_was_done)).items():
            name, damage = what_was_done[path]
            theirs = structures(path)
            counts["files"] += 1
            counts["gemmi reads"] += theirs is not None
            silent = list(silent_in_full(path, theirs, full)) if theirs is not None else []
            silent += silent_in_plain(full, plain, told)
            counts["silent"] += len(silent)
            for title, what in silent:
                print("%s, %s, block %s: %s" % (name, damage, title, what))
            if silent and os.environ.get("KEEP_DAMAGED"):
                os.system("cp '%s' '%s'" % (path, os.environ["KEEP_DAMAGED"]))
    for what, number in counts.items():
        print("%6d  %s" % (number, what))
    sys.exit(1 if counts["silent"] else 0)


if __name__ == "__main__":
    main()
