"""Archives that nobody means well by: make-archives.py FOLDER OUTSIDE, or FOLDER for one of many entries."""

import bz2
import gzip
import io
import lzma
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
            info.uname, info.gname = "Domain Users", "0 0 0"
            info.mode = 0 if name == "closed.tar" else 0o4644
            if kind == FILE:
                info.size = len(value)
            elif kind in (LINK, HARD):
                info.linkname = value
            archive.addfile(info, io.BytesIO(value) if kind == FILE else None)


class RawInfo(zipfile.ZipInfo):
    """Of a program that writes names in its code page and doesn't say so."""

    def _encodeFilenameFlags(self):
        return self.filename.encode(page), self.flag_bits


def pack(name, entries, info_type=zipfile.ZipInfo):
    with zipfile.ZipFile(os.path.join(folder, name), "w", zipfile.ZIP_DEFLATED) as archive:
        for path, kind, value in entries:
            info = info_type(path)
            info.create_system = 3
            info.external_attr = (stat.S_IFLNK | 0o777 if kind == LINK else stat.S_IFREG | 0o644) << 16
            archive.writestr(info, value)


def many(name, paths):
    """The bytes of a tar of empty files, made by hand because there are so many."""
    header = bytearray(512)
    header[100:108], header[257:265] = b"0000644\0", b"ustar\00000"
    common = sum(header) + 8 * ord(" ")
    with open(os.path.join(folder, name), "wb") as archive:
        for path in paths:
            path = path.encode()
            header[:100] = path.ljust(100, b"\0")
            header[148:156] = b"%06o\0 " % (common + sum(path))
            archive.write(header)
        archive.write(bytes(1024))


if len(sys.argv) == 2:
    paths = ["%d/%d" % (i % 100, i) for i in range(100_000)]
    many("many.tar", paths)
    many("manyabove.tar", paths + ["../evil"])
    sys.exit()


def hostile(make, name, entries):
    """The archive, and a compressed tar that is as bad but too large to be listed before it is unpacked."""
    make(name, entries)
    large = "large" + name.split(".")[0] + ".tar.gz"
    tar(large, [("noise", FILE, os.urandom(2 << 20))] + entries, "w:gz")


links = [("a", FILE, b"a"), ("d/up", LINK, "../a"), ("d/in", LINK, "b"), ("d/b", FILE, b"b"),
         ("absolute", LINK, outside + "/secret"), ("up", LINK, "../" * 9 + outside[1:] + "/secret"),
         ("dangling", LINK, "../nothing"), ("by", LINK, "absolute"), ("none", LINK, "nothing")]
through = [("l", LINK, outside), ("l/evil", FILE, b"x")]
for make, ending in ((tar, ".tar"), (pack, ".zip")):
    make("links" + ending, links)
    hostile(make, "through" + ending, through)
    hostile(make, "above" + ending, [("ok", FILE, b"x"), ("../evil", FILE, b"x")])
    hostile(make, "root" + ending, [(outside + "/evil", FILE, b"x")])
    make("fine" + ending, [("a/..b", FILE, b"x")])
    make("onlylink" + ending, [("l", LINK, "/etc/passwd")])
    make("folder" + ending, [("pasta/x", FILE, b"x"), ("pasta/l", LINK, "../other"),
                             ("__MACOSX/._x", FILE, b"x")])
    make("bomb" + ending, [(str(i), FILE, bytes(1 << 20)) for i in range(40)])
tar("fotos.tar.gz", [("ção", FILE, b"1"), ("b", FILE, b"2")], "w:gz")
hostile(tar, "hard.tar", [("h", HARD, outside + "/secret"), ("h", FILE, b"x")])
hostile(tar, "hardup.tar", [("a", FILE, b""), ("h link to a", HARD, "../" * 9 + outside[1:] + "/secret")])
hostile(tar, "hardby.tar", [("l", LINK, outside), ("h", HARD, "l/secret")])
tar("hardin.tar", [("a", FILE, b"a"), ("h", HARD, "a")])
hostile(tar, "device.tar", [("a", FILE, b"x"), ("null", tarfile.CHRTYPE, None)])
hostile(tar, "pipe.tar", [("a", FILE, b"x"), ("fifo", tarfile.FIFOTYPE, None)])
tar("closed.tar", [(".", DIRECTORY, None), ("d", DIRECTORY, None), ("d/a", FILE, b"1"), ("b", FILE, b"2")])
tar("names.tar", [("a\nb", FILE, b"1"), ("c\x01\x1b[31m", FILE, b"2"), ("x" * 255, FILE, b"3"),
                  ("d\udce7", FILE, b"4"), ("c_\x7f[31m", FILE, b"5")])
with gzip.open(os.path.join(folder, "liar.gz"), "wb") as file:
    file.write(bytes(40 << 20))
with open(os.path.join(folder, "liar.gz"), "r+b") as file:
    file.seek(-4, os.SEEK_END)
    file.write(struct.pack("<I", 1))

# Compressed tars that keep another name, or none, and some that end too early.
tar("inner", [("ção", FILE, b"1"), ("b", FILE, os.urandom(100_000))])
inner = open(os.path.join(folder, "inner"), "rb").read()
for name, content in {
    "noname.tgz": gzip.compress(inner), "dump.bz2": bz2.compress(inner), "x.tbz": bz2.compress(inner),
    "x.txz": lzma.compress(inner), "cut.tar.gz": gzip.compress(inner)[:50_000],
    "cut.tar.bz2": bz2.compress(inner)[:50_000], "cut.tar.xz": lzma.compress(inner)[:50_000],
    "short.tar.gz": gzip.compress(inner[:50_000]), "short.tar.bz2": bz2.compress(inner[:50_000]),
    "short.tar.xz": lzma.compress(inner[:50_000])}.items():
    open(os.path.join(folder, name), "wb").write(content)
with gzip.GzipFile("backup", "wb", fileobj=open(os.path.join(folder, "other.tar.gz"), "wb")) as file:
    file.write(inner)
for page, path in {"cp850": "ação/São.txt", "cp437": "ñandú/5√2.txt", "cp932": "表.txt", "gbk": "新建/测试.txt"}.items():
    pack(page + ".zip", [(path, FILE, b"x"), ("plain", FILE, b"y")], RawInfo)

# A single file of zeros, whose listing takes far longer than to write what a small limit allows.
info = tarfile.TarInfo("zeros")
info.size = 1088 << 20
with open(os.path.join(folder, "long.tar.gz"), "wb") as file:
    file.write(gzip.compress(info.tobuf()) + gzip.compress(bytes(16 << 20)) * 68 + gzip.compress(bytes(1024)))

# Says one byte and holds forty million: in both headers, so that a listing believes it.
path = os.path.join(folder, "liar.zip")
pack("liar.zip", [("big", FILE, os.urandom(1 << 20) * 40)])
data = bytearray(open(path, "rb").read())
struct.pack_into("<I", data, 22, 1)
struct.pack_into("<I", data, data.rindex(b"PK\1\2") + 24, 1)
open(path, "wb").write(data)
