#!/usr/bin/python3
"""Lists compound files with olefile in the form of `mppinspect ls`.

Usage: olefile_listing.py FILE...
For each file prints a line "== FILE", then either one line per entry below the root
("D|S <TAB> size <TAB> crc32|- <TAB> path", sorted by path) or one line "!! <error>".
"""
import sys
import zlib

import olefile


def escape(name):
    out = []
    for ch in name:
        if ord(ch) < 0x20 or ch in "/\\":
            for byte in ch.encode("utf-8"):
                out.append("\\x%02X" % byte)
        else:
            out.append(ch)
    return "".join(out)


def listing(path):
    lines = []
    with olefile.OleFileIO(path) as ole:
        for entry_path in ole.listdir(streams=True, storages=True):
            printed = "/".join(escape(name) for name in entry_path)
            if ole.get_type(entry_path) == olefile.STGTY_STORAGE:
                lines.append("D\t0\t-\t" + printed)
            else:
                data = ole.openstream(entry_path).read()
                lines.append("S\t%d\t%08x\t%s" % (len(data), zlib.crc32(data) & 0xFFFFFFFF, printed))
    return sorted(lines, key=lambda line: line.split("\t")[3])


def main():
    out = sys.stdout
    for path in sys.argv[1:]:
        out.write("== %s\n" % path)
        try:
            for line in listing(path):
                out.write(line + "\n")
        except Exception as error:  # any refusal is reported, not raised
            out.write("!! %s\n" % str(error).replace("\n", " "))
    out.flush()


if __name__ == "__main__":
    main()
