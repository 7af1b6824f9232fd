#!/usr/bin/env python3
"""Makes the keyboard's own list of pinyin, the most frequent first.

    make-list.py UNIHAN-FOLDER WORD-LIST > pinyin.txt

The list begins with notice.txt, which tells whose data it is made from.

UNIHAN-FOLDER holds Unihan_*.txt.bz2 of the Unicode Character Database, as Debian's package unicode-data
does (/usr/share/unicode); WORD-LIST is dict.txt of Debian's package python3-jieba, one word a line with
its frequency and its part of speech.

A line of the list is a text, a blank and the letters that it is typed by, u with diaeresis being v.

Characters come from kHanyuPinlu, which counts each reading, and behind them from the official table of
8105 (kTGH, by its three levels; kTGHZ2013 has the readings). Traditional characters stand before its third
level, by the count of their simplified form, the rarest behind it, by kFrequency. Words are of characters that have been counted;
their readings are not known, so that a word stands at each that its characters make, behind others where
a reading is rare for its character.
"""

import bz2
import itertools
import pathlib
import re
import sys
import unicodedata
from collections import defaultdict

WORD_SCALE = 21  # the word list's frequencies are of a text so many times as long
LEAST_WORD = 200
LONGEST_WORD = 4
LAST_SHOWN = 0x9FA5  # of the block that every Chinese font has; few have what came later
RARE_READING = 0.02  # share of a character's count below which its reading is rare


def fields(folder, name, wanted):
    found = {field: {} for field in wanted}
    with bz2.open(f"{folder}/Unihan_{name}.txt.bz2", "rt", encoding="utf-8") as lines:
        for line in lines:
            parts = line.rstrip("\n").split("\t")
            if len(parts) == 3 and parts[1] in found and 0x4E00 <= int(parts[0][2:], 16) <= LAST_SHOWN:
                found[parts[1]][chr(int(parts[0][2:], 16))] = parts[2]
    return found


def letters(reading):
    """The letters of a reading without its tone: "lǜ" is lv."""
    plain = ""
    for mark in unicodedata.normalize("NFD", reading):
        if mark == "\u0308":
            plain = plain[:-1] + "v"
        elif not unicodedata.combining(mark):
            plain += mark
    return plain if re.fullmatch("[a-z]+", plain) else None


def keys(syllables):
    """What a text of these syllables is typed by. lve and nve are known as lue and nue as well."""
    plain = "".join(syllables)
    other = "".join({"lve": "lue", "nve": "nue"}.get(one, one) for one in syllables)
    return {plain, other}


def counted(readings):
    """Character to syllable to count."""
    counts = defaultdict(lambda: defaultdict(int))
    for character, value in readings["kHanyuPinlu"].items():
        for reading, count in re.findall(r"(\S+)\((\d+)\)", value):
            syllable = letters(reading)
            if syllable and syllable != "r":  # which is no syllable but the end of one
                counts[character][syllable] += int(count)
    return counts


def official(readings, mappings):
    """(place, character, syllable) of the table of 8105: its level, whether the reading is the main one."""
    for character, number in mappings["kTGH"].items():
        place = int(number.split(":")[1].split()[0])
        level = 1 + (place > 3500) + (place > 6500)
        main = {letters(one) for one in readings["kMandarin"].get(character, "").split()}
        told = readings["kTGHZ2013"].get(character, "")
        for reading in re.findall(r":(\S+)", told):
            for one in reading.split(","):
                syllable = letters(one)
                if syllable:
                    yield (level, syllable not in main, place), character, syllable


def traditional(readings, mappings, likes, variants, counts):
    for character in mappings["kBigFive"]:
        if character in mappings["kTGH"]:
            continue
        own = {letters(one) for one in readings["kMandarin"].get(character, "").split()}
        old = readings["kHanyuPinyin"].get(character, "")
        known = own | {letters(one) for one in re.findall(r"[^\s:,]+", old)}
        simple = [chr(int(form[2:], 16)) for form in variants["kSimplifiedVariant"].get(character, "").split()]
        share = defaultdict(int, counts.get(character, {}))
        for syllable in own:
            share[syllable] += 0
        for form in simple:
            for syllable, count in counts[form].items() if form in counts else ():
                if syllable in known:
                    share[syllable] += count
        seldom = int(likes["kFrequency"].get(character, "9").split()[0])
        for syllable, count in share.items():
            if syllable:
                yield (-count, seldom, ord(character)), character, syllable


def words(path, counts):
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            word, frequency, kind = (line.split() + ["", "0", ""])[:3]
            if int(frequency) < LEAST_WORD or kind.startswith("nr") or not 2 <= len(word) <= LONGEST_WORD:
                continue
            if all(character in counts for character in word):
                choices = [counts[character].items() for character in word]
                for syllables in itertools.product(*choices):
                    rare = any(count < RARE_READING * sum(counts[character].values())
                               for character, (_, count) in zip(word, syllables))
                    score = int(frequency) / WORD_SCALE * (0.1 if rare else 1)
                    yield score, word, [syllable for syllable, _ in syllables]


def main():
    folder, word_list = sys.argv[1:]
    readings = fields(folder, "Readings", ("kHanyuPinlu", "kMandarin", "kTGHZ2013", "kHanyuPinyin"))
    mappings = fields(folder, "OtherMappings", ("kTGH", "kBigFive"))
    likes = fields(folder, "DictionaryLikeData", ("kFrequency",))
    variants = fields(folder, "Variants", ("kSimplifiedVariant",))
    counts = counted(readings)

    entries = []  # (order, text, syllables)
    for character, syllables in counts.items():
        for syllable, count in syllables.items():
            if character in mappings["kTGH"]:
                entries.append(((0, -count), character, [syllable]))
    for score, word, syllables in words(word_list, counts):
        entries.append(((0, -score), word, syllables))
    for place, character, syllable in official(readings, mappings):
        entries.append(((1 if place[0] < 3 else 3,) + place, character, [syllable]))
    for place, character, syllable in traditional(readings, mappings, likes, variants, counts):
        entries.append(((2 if place[0] < 0 else 4,) + place, character, [syllable]))

    entries.sort(key=lambda entry: entry[:2])
    known = set()
    sys.stdout.reconfigure(encoding="utf-8")
    notice = pathlib.Path(__file__).with_name("notice.txt").read_text(encoding="utf-8")
    sys.stdout.write("".join(f"# {line}".rstrip() + "\n" for line in notice.splitlines()))
    for _, text, syllables in entries:
        for key in sorted(keys(syllables), reverse=True):
            if (text, key) not in known:
                known.add((text, key))
                sys.stdout.write(f"{text} {key}\n")


if __name__ == "__main__":
    main()
