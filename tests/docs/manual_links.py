#!/usr/bin/env python3
"""The operator's manual: every file and #anchor it links to exists, it links nowhere outside its
folder, and every picture in its images folder is shown (a stale shot is a wrong manual)."""
import os, sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    def __init__(self):
        super().__init__()
        self.ids, self.refs = set(), []

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        self.ids.add(attrs.get("id"))
        self.refs += [(self.getpos()[0], attrs[k]) for k in ("src", "href") if attrs.get(k) is not None]


manual = os.path.abspath(sys.argv[1])
folder, page, faults, shown = os.path.dirname(manual), Page(), [], set()
page.feed(open(manual, encoding="utf-8").read())
for line, ref in page.refs:
    url = urlsplit(ref)
    target = os.path.normpath(os.path.join(folder, unquote(url.path)))
    if url.scheme or url.netloc:
        faults.append(f"line {line}: leaves the manual: {ref}")
    elif url.path and not os.path.isfile(target):
        faults.append(f"line {line}: no such file: {ref}")
    elif not url.path and url.fragment not in page.ids:
        faults.append(f"line {line}: no such anchor: {ref}")
    shown.add(target)
images = os.path.join(folder, "images")
faults += [f"images/{n} is not shown" for n in sorted(os.listdir(images)) if os.path.join(images, n) not in shown]
if faults or not shown:
    sys.exit("\n".join(faults) or "the manual links to nothing")
