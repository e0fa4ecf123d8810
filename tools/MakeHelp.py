"""Puts the help file together: one HTML file that needs no other, with all pictures inside it.

Usage: MakeHelp.py FOLDER FILE
FOLDER holds help.css, the chapters text/NN-*.html and their pictures. The table of contents is made of the headings.
"""

import base64
import html
import os
import re
import struct
import sys

KINDS = {".png": "image/png", ".svg": "image/svg+xml"}
HEADING = re.compile(r'<h([23]) id="([^"]+)">(.*?)</h\1>', re.DOTALL)
PICTURE = re.compile(r'(<img [^>]*?)src="([^"]+)"([^>]*>)')
LOGO = '<img src="logo.svg" alt="">'


def read(path):
    with open(path, "rb") as file:
        return file.read()


def with_pictures(text, folder):
    """Pictures become part of the text. A screenshot gets its size, so that nothing jumps while the page loads."""
    def put(match):
        path = os.path.join(folder, match.group(2))
        data = read(path)
        size = ""
        if data.startswith(b"\x89PNG"):
            size = ' width="%d" height="%d"' % struct.unpack(">II", data[16:24])
        return '%ssrc="data:%s;base64,%s"%s%s' % (match.group(1), KINDS[os.path.splitext(path)[1]],
                                                 base64.b64encode(data).decode(), size, match.group(3))
    return PICTURE.sub(put, text)


def contents(text):
    """The headings as a list of links, chapters with what is below them."""
    lines, open_chapter = ['<nav id="contents"><h2>Contents</h2>', "<ol>"], False
    for level, name, title in HEADING.findall(text):
        entry = '<a href="#%s">%s</a>' % (name, title)
        if level == "2":
            lines.append(("</ul></li>\n" if open_chapter else "") + "<li>" + entry + "<ul>")
            open_chapter = True
        else:
            lines.append("<li>" + entry + "</li>")
    return "\n".join(lines + ["</ul></li>", "</ol></nav>"]).replace("<ul>\n</ul>", "")


def whole(folder):
    chapters = sorted(name for name in os.listdir(os.path.join(folder, "text")) if name.endswith(".html"))
    up = '<p class="top"><a href="#contents">Contents</a></p>\n</section>'
    text = "\n".join(read(os.path.join(folder, "text", name)).decode("utf-8").replace("</section>", up)
                     for name in chapters)
    head = ('<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
            '<meta name="viewport" content="width=device-width, initial-scale=1">\n<title>%s</title>\n<style>\n%s'
            "</style>\n</head>\n<body>\n"
            % (html.escape("Corvane Help"), read(os.path.join(folder, "help.css")).decode("utf-8")))
    top = ("<header>" + LOGO + "<div><h1>Corvane Help</h1>"
           "<p>Making web pages, web-packs and emails without knowing HTML</p></div></header>\n")
    foot = "\n<footer>Corvane 2</footer>\n</body>\n</html>\n"
    return head + with_pictures(top + contents(text) + "\n<main>\n" + text + "</main>" + foot, folder)


def main():
    folder, target = sys.argv[1:]
    text = whole(folder)
    os.makedirs(os.path.dirname(os.path.abspath(target)), exist_ok=True)
    with open(target, "w", encoding="utf-8", newline="\n") as file:
        file.write(text)


if __name__ == "__main__":
    main()
