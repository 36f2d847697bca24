"""Archives that nobody means well by: make-archives.py FOLDER OUTSIDE, or FOLDER for one of many entries."""

import gzip
import io
import os
import stat
import struct
import sys
import tarfile
import zipfile

folder = sys.argv[1]
outside = sys.argv[-1]
FILE, LINK, HARD, DIRECTORY = tarfile.REGTYPE, tarfile.SYMTYPE, tarfile.LNKTYPE, tarfile.DIRTYPE


def tar(name, entries, mode="w"):
    with tarfile.open(os.path.join(folder, name), mode, errors="surrogateescape") as archive:
        for path, kind, value in entries:
            info = tarfile.TarInfo(path)
            info.type = kind
            info.mode = 0 if name == "closed.tar" else 0o4644
            if kind == FILE:
                info.size = len(value)
            elif kind in (LINK, HARD):
                info.linkname = value
            archive.addfile(info, io.BytesIO(value) if kind == FILE else None)


def pack(name, entries):
    with zipfile.ZipFile(os.path.join(folder, name), "w", zipfile.ZIP_DEFLATED) as archive:
        for path, kind, value in entries:
            info = zipfile.ZipInfo(path)
            info.create_system = 3
            info.external_attr = (stat.S_IFLNK | 0o777 if kind == LINK else stat.S_IFREG | 0o644) << 16
            archive.writestr(info, value)


if len(sys.argv) == 2:
    tar("many.tar", [("%d/%d" % (i % 100, i), FILE, b"") for i in range(20000)])
    sys.exit()

links = [("a", FILE, b"a"), ("d/up", LINK, "../a"), ("d/in", LINK, "b"), ("d/b", FILE, b"b"),
         ("absolute", LINK, outside + "/secret"), ("up", LINK, "../" * 9 + outside[1:] + "/secret"),
         ("dangling", LINK, "../nothing"), ("by", LINK, "absolute"), ("none", LINK, "nothing")]
through = [("l", LINK, outside), ("l/evil", FILE, b"x")]
for make, ending in ((tar, ".tar"), (pack, ".zip")):
    make("links" + ending, links)
    make("through" + ending, through)
    make("above" + ending, [("ok", FILE, b"x"), ("../evil", FILE, b"x")])
    make("root" + ending, [(outside + "/evil", FILE, b"x")])
    make("fine" + ending, [("a/..b", FILE, b"x")])
    make("onlylink" + ending, [("l", LINK, "/etc/passwd")])
    make("folder" + ending, [("pasta/x", FILE, b"x"), ("pasta/l", LINK, "../other"),
                             ("__MACOSX/._x", FILE, b"x")])
    make("bomb" + ending, [(str(i), FILE, bytes(1 << 20)) for i in range(40)])
tar("fotos.tar.gz", [("ção", FILE, b"1"), ("b", FILE, b"2")], "w:gz")
tar("hard.tar", [("h", HARD, outside + "/secret"), ("h", FILE, b"x")])
tar("hardup.tar", [("a", FILE, b""), ("h link to a", HARD, "../" * 9 + outside[1:] + "/secret")])
tar("hardby.tar", [("l", LINK, outside), ("h", HARD, "l/secret")])
tar("hardin.tar", [("a", FILE, b"a"), ("h", HARD, "a")])
tar("device.tar", [("a", FILE, b"x"), ("null", tarfile.CHRTYPE, None)])
tar("pipe.tar", [("a", FILE, b"x"), ("fifo", tarfile.FIFOTYPE, None)])
tar("closed.tar", [(".", DIRECTORY, None), ("d", DIRECTORY, None), ("d/a", FILE, b"1"), ("b", FILE, b"2")])
tar("names.tar", [("a\nb", FILE, b"1"), ("c\x01\x1b[31m", FILE, b"2"), ("x" * 255, FILE, b"3"),
                  ("d\udce7", FILE, b"4"), ("c_\x7f[31m", FILE, b"5")])
with gzip.open(os.path.join(folder, "liar.gz"), "wb") as file:
    file.write(bytes(40 << 20))
with open(os.path.join(folder, "liar.gz"), "r+b") as file:
    file.seek(-4, os.SEEK_END)
    file.write(struct.pack("<I", 1))

# Says one byte and holds forty million: in both headers, so that a listing believes it.
path = os.path.join(folder, "liar.zip")
pack("liar.zip", [("big", FILE, os.urandom(1 << 20) * 40)])
data = bytearray(open(path, "rb").read())
struct.pack_into("<I", data, 22, 1)
struct.pack_into("<I", data, data.rindex(b"PK\1\2") + 24, 1)
open(path, "wb").write(data)
