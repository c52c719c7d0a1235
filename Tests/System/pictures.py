"""What a picture that was written says of itself: whether it is whole, its size, its words."""

import re
import struct
import subprocess
import xml.etree.ElementTree
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def png_size(contents):
    """Width and height; an AssertionError when anything of the file is missing or damaged."""
    assert contents.startswith(SIGNATURE), "no PNG signature"
    at, kinds, pixels, size, samples = len(SIGNATURE), [], b"", None, None
    while at < len(contents):
        length, kind = struct.unpack_from(">I4s", contents, at)
        data = contents[at + 8:at + 8 + length]
        checksum, = struct.unpack_from(">I", contents, at + 8 + length)
        assert checksum == zlib.crc32(kind + data), f"a damaged {kind} chunk"
        kinds.append(kind)
        if kind == b"IHDR":
            size = struct.unpack_from(">II", data)
            samples = {2: 3, 6: 4}[data[9]]  # bytes a pixel: without transparency three
        if kind == b"IDAT":
            pixels += data
        at += 12 + length
    assert (kinds[0], kinds[-1]) == (b"IHDR", b"IEND"), "not whole"
    rows = zlib.decompress(pixels)
    assert len(rows) == size[1] * (1 + samples * size[0]), "rows are missing"
    return size


def svg_size(contents):
    """Width and height in pixels, of well-formed XML."""
    root = xml.etree.ElementTree.fromstring(contents)
    assert root.tag == "{http://www.w3.org/2000/svg}svg", root.tag
    return tuple(float(root.get(name).removesuffix("px")) for name in ("width", "height"))


def pdf_places(path):
    """Of each word of a PDF of one page, by the words: the word, and its box in the page's units."""
    done = subprocess.run(["pdftotext", "-bbox", str(path), "-"], capture_output=True, timeout=60,
                          check=True)
    words = re.findall(r'<word xMin="(.*?)" yMin="(.*?)" xMax="(.*?)" yMax="(.*?)">(.*?)</word>',
                       done.stdout.decode())
    return sorted((word, *map(float, box)) for *box, word in words)


def pdf_title(path):
    """What a reader of the file calls it."""
    done = subprocess.run(["pdfinfo", str(path)], capture_output=True, timeout=60, check=True)
    lines = [line for line in done.stdout.decode().splitlines() if line.startswith("Title:")]
    return lines[0].removeprefix("Title:").strip() if lines else None


def pdf_words(path):
    """The words of the only page, in the order in which they stand."""
    assert path.read_bytes().startswith(b"%PDF-")
    assert path.read_bytes().rstrip().endswith(b"%%EOF")
    done = subprocess.run(["pdftotext", "-layout", str(path), "-"], capture_output=True, timeout=60,
                          check=True)
    text = done.stdout.decode()
    assert text.count("\f") == 1, "not one page"
    return text.split()
