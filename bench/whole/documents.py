"""The documents of the whole-process workload: 60 MB each, the same in every run."""

import os
import random
import re

BYTES = 60_000_000
REAL = "/usr/share/mime/packages/freedesktop.org.xml"  # Debian: shared-mime-info


def words(generator, count):
    letters = "etaoinshrdlu"
    return " ".join("".join(generator.choice(letters) for _ in range(generator.randint(2, 9))) for _ in range(count))


def record(generator, number):
    return ('<record id="%d" kind="%s">\n  <name>%s</name>\n  <place>%s</place>\n  <price>%d.%02d</price>\n</record>\n'
            % (number, generator.choice(["part", "whole", "spare"]), words(generator, 2), words(generator, 2),
               generator.randint(1, 999), generator.randint(0, 99)))


def element_with_attributes(generator, number):
    return "<item %s/>\n" % " ".join('attr-%s="%012d"' % (letter, generator.randrange(10 ** 12))
                                     for letter in "abcdefghij")


def paragraph(generator, number):
    text = words(generator, 150).split(" ")
    for mark in ("&amp;", "&lt;", "<em>now</em>"):
        text.insert(generator.randrange(len(text)), mark)
    return "<p>%s</p>\n" % " ".join(text)


def write_repeated(path, make):
    """A root over pieces that `make(generator, number)` returns: 2,000 different ones, over and over."""
    generator = random.Random(1)
    block = "".join(make(generator, 100_000 + number) for number in range(2000)).encode()
    with open(path, "wb") as out:
        out.write(b'<?xml version="1.0" encoding="UTF-8"?>\n<root>\n')
        while out.tell() < BYTES:
            out.write(block)
        out.write(b"</root>\n")


def write_real(path):
    """25 times a document as it is met in the wild, without its document type, in one root."""
    with open(REAL, "rb") as source:
        content = source.read()
    content = re.sub(rb"^<\?xml.*?\?>", b"", content, flags=re.S)
    content = re.sub(rb"<!DOCTYPE[^\[>]*(\[.*?\]\s*)?>", b"", content, count=1, flags=re.S)
    with open(path, "wb") as out:
        out.write(b'<?xml version="1.0" encoding="UTF-8"?>\n<all>\n' + 25 * content + b"</all>\n")


def make_all(folder):
    """Writes what is not there yet. Returns the paths by the documents' names, and a line for each that is left out."""
    os.makedirs(folder, exist_ok=True)
    makers = {
        "records": lambda path: write_repeated(path, record),
        "attributes": lambda path: write_repeated(path, element_with_attributes),
        "prose": lambda path: write_repeated(path, paragraph),
        "freedesktop": write_real,
    }
    paths, left_out = {}, []
    for name, make in makers.items():
        path = os.path.join(folder, name + ".xml")
        if name == "freedesktop" and not os.path.exists(REAL):
            left_out.append("whole.freedesktop: %s is missing (Debian: shared-mime-info)" % REAL)
            continue
        if not os.path.exists(path):
            make(path + ".new")
            os.rename(path + ".new", path)
        paths[name] = path
    return paths, left_out
