"""A project as one HTML file, opened in browsers: each page looks as it does by itself, with scripts and without; links
lead from page to page; nothing of the pages runs; each picture is in the file once.

The browsers are the program's own engine and Firefox, and Chromium where it is there.

Usage: one_file_test.py --build FOLDER
"""

import argparse
import base64
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = ""
SKIPPED = 77
WIDTH, HEIGHT = 800, 600
LINK = ('<BR CLEAR="all"><BR><DIV ALIGN="center"><FONT FACE="arial,helvetica" SIZE=3><A HREF="%s">Next Page</A></FONT>'
        "</DIV><BR><BR>")

# Without scripts of their own, so that they can be shown beside what became of them.
PAGES = {
    "wgcard.html":
        '<html><head><title>First &amp; best</title></head><body bgcolor="#FFFFFF" text="#FFFFFF" link="#FFFF00" '
        'background="ruby.jpg" style="font-family: Arial; font-size: 2"><font face="Verdana" size="4">Welcome here'
        '</font><br /><img src="photo.jpg" width="200" height="150" /><img src="small.png" /><br /><table border="1">'
        '<tr><td><font size="3">cell</font> bare</td><td bgcolor="#00ff00" background="small.png">two</td></tr></table>'
        '<a href="Page3.html">to three</a> <a href="#low">down</a></body></html>',
    "Page2.html":
        "<html><head><title>Second</title><style>body{background:#eef url(paper.jpg) repeat-y;margin:20px;"
        "font-family:sans-serif} p{color:green} #x{border:3px solid red} @media screen{h1{color:purple}} * "
        "{line-height:1.3} html body .q>a{color:red} .q a[href^='x,{']{display:none} h1,h2{letter-spacing:2px}</style>"
        "</head>"
        '<body link="#ff0000"><h1>Heading</h1><p id="x">Paragraph</p><img src="photo.jpg" width="100" height="75" />'
        '<span class="q"><a href="wgcard.html">home</a></span><div style="background:url(\'small.png\');width:90px;'
        'height:60px">css</div></body></html>',
    "Page3.html":
        '<html><head><title>Third</title></head><body text="#0000FF" background="heart.jpg" marginwidth="40"><p>Plain'
        '</p><center><img src="hearttop.gif" width="400" height="80" /></center><table><tr><td>of a table</td></tr>'
        '</table><font color="red"><table><tr><td>in red</td></tr></table></font><p align="right">&#1055;&#1088; '
        "&#29483; &eacute;</p></body></html>",
    "Page4.html":
        '<html><head><title></title></head><body><img src="photo.jpg" align="left" width="50%" />beside'
        "</body></html>",
    "Page5.html": "<html><head><title>Fifth</title></head><body>plain and white</body></html>",
}

HOSTILE = ("<html><head><title>Calm</title><script>document.title='ran'</script><meta http-equiv=refresh content='"
           "0;url=about:blank'><style>.page{display:none!important} #p1{background:red} html #p1>.body{color:red} "
           "body{background:url(photo.jpg)} "
           "p{background:url(</style>"
           "</head><body onload=\"document.title='ran'\"><p>shown</p><script>document.title='ran'</script>"
           "<img src=none.gif onerror=\"document.title='ran'\">"
           "<a id=go href=\"java\tscript:document.title='ran'\">x</a>"
           "<svg onload=\"document.title='ran'\"><script>document.title='ran'</script></svg>"
           "<iframe srcdoc=\"<script>parent.document.title='ran'</script>\"></iframe>"
           "<noscript><p>hidden</p></noscript><plaintext></div></div></style><script>document.title='ran'</script>")


class Engine:
    """The program's own."""

    name = "engine"

    def shot(self, url, picture, width=WIDTH, height=HEIGHT, scripts=True):
        self.ask(url, picture, width, height, *([] if scripts else ["--no-scripts"]))

    @staticmethod
    def ask(url, picture, width=WIDTH, height=HEIGHT, *expressions):
        ran = subprocess.run([os.path.join(BUILD, "bin", "page_shot"), url, picture, str(width), str(height),
                              *expressions],
                             capture_output=True, text=True, check=False, timeout=60,
                             env=dict(os.environ, QT_QPA_PLATFORM="offscreen",
                                      **({"QTWEBENGINE_DISABLE_SANDBOX": "1"} if os.geteuid() == 0 else {})))
        assert ran.returncode == 0, ran.stderr
        return ran.stdout.splitlines()


class Firefox:
    name = "firefox"

    def __init__(self, home):
        self.home = home
        for scripts in (True, False):
            os.makedirs(self.profile(scripts))
            with open(os.path.join(self.profile(scripts), "user.js"), "w", encoding="ascii") as file:
                file.write('user_pref("javascript.enabled", %s);\n' % ("true" if scripts else "false"))

    def profile(self, scripts):
        return os.path.join(self.home, "firefox-%d" % scripts)

    def shot(self, url, picture, width=WIDTH, height=HEIGHT, scripts=True):
        subprocess.run(["firefox-esr", "--headless", "--no-remote", "--profile", self.profile(scripts), "--window-size",
                        "%d,%d" % (width, height), "--screenshot", picture, url], capture_output=True, check=True,
                       timeout=120, env=dict(os.environ, HOME=self.home))


class Chromium:
    name = "chromium"

    def __init__(self, home):
        self.home = home

    def shot(self, url, picture, width=WIDTH, height=HEIGHT, scripts=True):
        if not scripts:
            # With scripts switched off it takes no picture, so the file's own one is taken out.
            path, _, place = url.removeprefix("file://").partition("#")
            with open(path, encoding="utf-8") as file:
                text = re.sub(r"(?s)<script>.*?</script>", "", file.read())
            with open(path + ".plain.html", "w", encoding="utf-8") as file:
                file.write(text)
            url = "file://" + path + ".plain.html" + (place and "#" + place)
        subprocess.run(["chromium", "--headless", "--disable-gpu", "--hide-scrollbars", "--no-first-run",
                        "--disable-background-networking", "--disable-component-update", "--disable-sync",
                        "--disable-quic", "--user-data-dir=" + os.path.join(self.home, "chromium"),
                        "--window-size=%d,%d" % (width, height),
                        "--screenshot=" + picture, *(["--no-sandbox"] if os.geteuid() == 0 else []), url],
                       capture_output=True, check=True, timeout=120, env=dict(os.environ, HOME=self.home))


class OneFile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="one-file-")
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.browsers = [Engine(), Firefox(cls.folder)]
        if shutil.which("chromium"):
            cls.browsers.append(Chromium(cls.folder))
        samples = os.path.join(BUILD, "bin", "samples")
        cls.pictures = {}
        for name in ("ruby.jpg", "paper.jpg", "heart.jpg", "hearttop.gif"):
            with open(os.path.join(samples, name), "rb") as file:
                cls.pictures[name] = file.read()
        for name, what in (("photo.jpg", "gradient:red-blue"), ("small.png", "gradient:yellow-green")):
            path = os.path.join(cls.folder, name)
            subprocess.run(["convert", "-size", "90x60", what, path], check=True)
            with open(path, "rb") as file:
                cls.pictures[name] = file.read()

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def project(self, name, files):
        os.makedirs(self.path(name))
        for file, data in files.items():
            with open(self.path(name, file), "wb") as out:
                out.write(data if isinstance(data, bytes) else data.encode("utf-8"))
        return self.path(name)

    def made(self, name, files):
        """The text of the one file of a project, which stays as it was."""
        work = self.project(name, files)
        subprocess.run([os.path.join(BUILD, "bin", "make_pack"), "--one", work, self.path(name + ".html")], check=True,
                       capture_output=True)
        self.assertEqual(set(os.listdir(work)), set(files))
        for file, data in files.items():
            with open(os.path.join(work, file), "rb") as kept:
                self.assertEqual(kept.read(), data if isinstance(data, bytes) else data.encode("utf-8"))
        with open(self.path(name + ".html"), encoding="utf-8") as file:
            return file.read()

    def url(self, name, place=""):
        return "file://" + self.path(name + ".html") + place

    def difference(self, one, other):
        """How many of their points differ."""
        ran = subprocess.run(["compare", "-metric", "AE", one, other, "null:"], capture_output=True, text=True,
                             check=False)
        return int(float(ran.stderr.split()[0]))

    @staticmethod
    def linked(pages):
        """Each page with the link to the next one, as it is in the new file."""
        names = list(pages)
        return {name: text.replace("</body>", LINK % following + "</body>") if following else text
                for (name, text), following in zip(pages.items(), names[1:] + [None])}

    def test_EachPageLooksAsItDoesByItself(self):
        self.made("looks", {**PAGES, **self.pictures})
        self.project("alone", {**self.linked(PAGES), **self.pictures})
        for browser in self.browsers:
            for number, name in enumerate(PAGES, 1):
                alone = self.path("%s-%s.png" % (browser.name, name))
                browser.shot("file://" + self.path("alone", name), alone)
                for scripts in (True, False):
                    with self.subTest(browser=browser.name, page=name, scripts=scripts):
                        within = self.path("%s-%s-%d.png" % (browser.name, name, scripts))
                        browser.shot(self.url("looks", "" if number == 1 else "#p%d" % number), within, scripts=scripts)
                        self.assertEqual(self.difference(alone, within), 0)
        # The comparison can tell pages apart.
        self.assertGreater(self.difference(self.path("firefox-wgcard.html.png"),
                                           self.path("firefox-Page2.html.png")), 1000)

    def test_LeftmarginIsWhatTheEditorShows(self):
        # Some browsers keep the other side free as well, the editor's among them, and some don't.
        page = PAGES["Page3.html"].replace("marginwidth", "leftmargin")
        self.made("margin", {"wgcard.html": page, **self.pictures})
        self.project("margin-alone", {"wgcard.html": page, **self.pictures})
        self.browsers[0].shot("file://" + self.path("margin-alone", "wgcard.html"), self.path("margin-alone.png"))
        self.browsers[0].shot(self.url("margin"), self.path("margin-within.png"))
        self.assertEqual(self.difference(self.path("margin-alone.png"), self.path("margin-within.png")), 0)

    def test_LinksLeadFromPageToPage(self):
        self.made("links", {**PAGES, **self.pictures})
        title = "document.title"
        text = "document.body.innerText.trim().split('\\n')[0]"
        go = "document.querySelector('#%s a[href=\"%s\"]').click()"
        told = Engine.ask(self.url("links"), self.path("links.png"), WIDTH, HEIGHT, title, text, go % ("p1", "#p2"),
                          title, text, go % ("p2", "#p3"), title, go % ("p3", "#p4"), title, go % ("p4", "#p5"), text,
                          "location.hash = ''; ''", title, go % ("p1", "#p3"), title, "history.back()")
        self.assertEqual([line for line in told if line],
                         ["First & best", "Welcome here", "Second", "Heading", "Third", "plain and white",
                          "First & best", "Third"])

    def test_APlaceWithinAPageIsFound(self):
        far = "<br />" * 100
        self.made("places", {"wgcard.html": '<html><body><a href="#low">l</a>%s<a name="low">low</a></body>'
                                            "</html>" % far,
                             "Page2.html": '<html><body><a href="wgcard.html#low">one</a>%s<p id="low">two</p></body>'
                                           "</html>" % far})
        seen = "document.querySelector('%s').getBoundingClientRect().top < innerHeight ? 'in view' : 'out of view'"
        told = Engine.ask(self.url("places"), self.path("places.png"), WIDTH, HEIGHT, seen % "#p1 [name]",
                          "document.querySelector('#p1 a').click()", seen % "#p1 [name]", "location.hash = '#p2'; ''",
                          seen % "#p2 #p2-low", "document.querySelector('#p2 a').click()", seen % "#p1 [name]",
                          "getComputedStyle(document.querySelector('#p2')).display")
        self.assertEqual([line for line in told if line],
                         ["out of view", "in view", "out of view", "in view", "none"])

    def test_NothingOfThePagesRunsAndNothingReachesAnother(self):
        text = self.made("hostile", {"wgcard.html": PAGES["Page5.html"], "Page2.html": HOSTILE,
                                     "Page3.html": PAGES["Page5.html"], **self.pictures})
        self.assertEqual(text.count("<script"), 1)
        self.assertNotRegex(text, r"(?i)\son\w+=|java\s*script:|srcdoc|http-equiv=\"?refresh|@import")
        told = Engine.ask(self.url("hostile", "#p2"), self.path("hostile.png"), WIDTH, HEIGHT, "document.title",
                          "document.querySelector('#p2-go').click(); document.title",
                          "getComputedStyle(document.querySelector('#p2')).display", "location.hash = '#p1'; ''",
                          "document.title", "getComputedStyle(document.querySelector('#p1')).backgroundColor",
                          "document.body.innerText.trim().split('\\n')[0]")
        self.assertEqual([line for line in told if line],
                         ["Calm", "Calm", "block", "Fifth", "rgba(0, 0, 0, 0)", "plain and white"])
        # The pages in front of it and behind it look as they do alone.
        self.project("calm", {"wgcard.html": self.linked({"wgcard.html": PAGES["Page5.html"], "Page2.html": ""})
                              ["wgcard.html"], "Page3.html": PAGES["Page5.html"]})
        for browser in self.browsers:
            for name, place in (("wgcard.html", ""), ("Page3.html", "#p3")):
                browser.shot("file://" + self.path("calm", name), self.path("calm.png"))
                browser.shot(self.url("hostile", place), self.path("calm-one.png"))
                self.assertEqual(self.difference(self.path("calm.png"), self.path("calm-one.png")), 0,
                                 browser.name + name)

    def test_AClassOfAPageMayBeNamedAsItLikes(self):
        pages = {"wgcard.html": '<html><body class="page"><div class="Page p2" id="in">Hello<p class="p2">there</p>'
                                '</div><table><tr><td class="p2 body">cell</td></tr></table></body></html>',
                 "Page2.html": '<html><body bgcolor="#000000" text="#FFFFFF" link="#FF0000"><p class="p1">two</p>'
                               '<a href="wgcard.html#in">back</a></body></html>'}
        self.made("classes", pages)
        self.project("classes-alone", self.linked(pages))
        for browser in self.browsers:
            for name, place, scripts in (("wgcard.html", "", True), ("wgcard.html", "", False),
                                         ("wgcard.html", "#p1-in", True), ("Page2.html", "#p2", True)):
                browser.shot("file://" + self.path("classes-alone", name), self.path("classes-alone.png"))
                browser.shot(self.url("classes", place), self.path("classes.png"), scripts=scripts)
                self.assertEqual(self.difference(self.path("classes-alone.png"), self.path("classes.png")), 0,
                                 (browser.name, name, place, scripts))

    def test_AFileThatOnlyLooksLikePageOneComesLast(self):
        text = self.made("stray", {"wgcard.html": "<html><body>first</body></html>",
                                   "Page1.html": "<html><body>stray</body></html>",
                                   "Page2.html": "<html><body>second</body></html>"})
        sections = text.split('<div class="page ')[1:]
        self.assertEqual([re.search("first|second|stray", section).group() for section in sections],
                         ["first", "second", "stray"])

    def test_EachPictureIsInTheFileOnce(self):
        text = self.made("once", {**PAGES, **self.pictures, "unused.gif": b"GIF89a unused"})
        for name, data in self.pictures.items():
            self.assertEqual(text.count(base64.b64encode(data).decode()), 1, name)
        self.assertNotIn(base64.b64encode(b"GIF89a unused").decode(), text)
        self.assertNotRegex(re.sub(r"data:[^\"]*", "", text), r"(?i)\.(jpg|png|gif)\b")
        large = {"p%d.png" % n: os.urandom(60000) for n in range(5)}
        page = "<html><body>%s</body></html>" % "".join('<img src="%s" />' % name for name in list(large) * 3)
        text = self.made("large", {"wgcard.html": page, "Page2.html": page, **large})
        self.assertLess(len(text), 1.40 * sum(map(len, large.values())) + 2 * len(page))

    def test_TwelvePagesFollowOneAnother(self):
        pages = {"wgcard.html": "<html><body>1</body></html>"}
        pages.update({"Page%d.html" % n: "<html><body>%d</body></html>" % n for n in range(2, 13)})
        text = self.made("twelve", pages)
        sections = text.split('<div class="page ')[1:]
        self.assertEqual([re.search(r'id="(p\d+)"', section).group(1) for section in sections],
                         ["p%d" % n for n in range(1, 13)])
        self.assertEqual([re.findall(r'href="([^"]*)"', section) for section in sections],
                         [["#p%d" % (n + 1)] for n in range(1, 12)] + [[]])

    def test_OnePageIsThePageWithItsPicturesInside(self):
        self.made("single", {"wgcard.html": PAGES["wgcard.html"], **self.pictures})
        self.project("itself", {"wgcard.html": PAGES["wgcard.html"], **self.pictures})
        for browser in self.browsers:
            for scripts in (True, False):
                browser.shot("file://" + self.path("itself", "wgcard.html"), self.path("itself.png"))
                browser.shot(self.url("single"), self.path("single.png"), scripts=scripts)
                self.assertEqual(self.difference(self.path("itself.png"), self.path("single.png")), 0, browser.name)

    def test_OnAPhoneAWidePictureIsNoWiderThanTheScreen(self):
        self.made("phone", {"wgcard.html": '<html><body>text<img src="photo.jpg" width="1200" height="800" /></body>'
                                           "</html>", **self.pictures})
        told = Engine.ask(self.url("phone"), self.path("phone.png"), 360, 640, "document.documentElement.scrollWidth",
                          "var b = document.querySelector('img').getBoundingClientRect(); b.width + ' ' + "
                          "Math.round(b.height)")
        self.assertEqual(told, ["360", "344 229"])


def main():
    missing = [tool for tool in ("firefox-esr", "convert", "compare") if not shutil.which(tool)]
    if missing:
        print("skipped, not there:", *missing)
        return 1 if os.environ.get("CI") == "true" else SKIPPED
    return 0 if unittest.main(argv=sys.argv[:1] + REST, verbosity=2, exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, REST = parser.parse_known_args()
    BUILD = os.path.abspath(options.build)
    sys.exit(main())
