"""The same as ClipboardPeer, with GTK: offer text|image FILE, or read text|files|image."""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GdkPixbuf, Gtk

_, action, kind, *file = sys.argv
clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)
if action == "read":
    if kind == "image":
        image = clipboard.wait_for_image()
        print(image.get_width() if image else 0)
    elif kind == "files":
        print("".join(clipboard.wait_for_uris() or []).removeprefix("file://"))
    else:
        print(clipboard.wait_for_text())
else:
    if kind == "image":
        clipboard.set_image(GdkPixbuf.Pixbuf.new_from_file(file[0]))
    else:
        clipboard.set_text(open(file[0], encoding="utf-8").read(), -1)
    Gtk.main()
