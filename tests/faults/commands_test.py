"""What corvane-probe answers to each of its commands."""

import contextlib
import hashlib
import http.server
import json
import threading
import urllib.request

from probe import ProbeTest, catalogue, settings

OBJECT = "An object with the strings \"body\" and \"url\" is expected."
LINES = {  # the command, then pairs of a line and its answer
    "colour": [('"#ff0000"', [1, 0, 0, 1]), ('" rgba(0, 0, 255, 0.5)\\t"', [0, 0, 1, 0.5]),
               ('"transparent"', [0, 0, 0, 0]), ('"red"', None), ("7", {"error": "A JSON string is expected."}),
               ("{", {"error": "The line is no JSON."}), ("", {"error": "The line is no JSON."}),
               ('"#0000FF"', [0, 0, 1, 1])],
    "newer": [('["1.10", "1.9"]', True), ('["1.9", "1.10"]', False), ('["1.2.3-beta", "1.2"]', False),
              ('["1"]', {"error": "An array of two JSON strings is expected."})],
    "address": [('"HTTPS://Chat.Example:443/a%20b?c#d"',
                 {"scheme": "https", "host": "chat.example", "text": "HTTPS://Chat.Example:443/a%20b?c#d"}),
                ('"https://a b/"', None), ('"chat.example"', None), ('"https://a@b@c/"', None),
                ("null", {"error": "A JSON string is expected."})],
    "body": [('{"body":"a < b\\r\\nc","url":" https://a.example/?b&c "}',
              {"looksLikeHTML": False, "content": "<p>a &lt; b<br>c</p>",
               "footer": '<p class="footer-link">Link: <a href="https://a.example/?b&amp;c" target="_blank" '
                         'rel="noopener noreferrer">https://a.example/?b&amp;c</a></p>'}),
             ('{"body":"<P>x</P>","url":"https://a.example/"}',
              {"looksLikeHTML": True, "content": "<P>x</P>", "footer": ""}),
             ('{"body":"x"}', {"error": OBJECT})],
    "message": [('"Success"', {"action": "success", "token": None}),
                ('{"type":"bindDevice","bindingToken":" t "}', {"action": "binddevice", "token": "t"}),
                (json.dumps('{"message":"deleted"}'), {"action": "deleteProfile", "token": None}),
                ('["success"]', None), (json.dumps({"action": "success", "more": "x" * 65536}), None),
                ("success", {"error": "The line is no JSON."})],
    "preview": [('"a<br>b \\t <b>c</b>"', "a b c"), (json.dumps("é" * 91), "é" * 90 + "…"), ('""', "")],
}
FILES = [  # the command, the bytes of a file, and some members of the answer
    ("catalogue", catalogue("A"), {"readable": True, "sites": json.loads(catalogue("A"))}),
    ("catalogue", b'[{"service":"A","url":"b"}]', {"readable": False}),
    ("pending", b'{"notifications":[{"recipient_id":"2","title":5},{"recipientId":3.9,"body":"b"},{}]}',
     {"notifications": [{"recipientId": 3, "campaignId": 0, "title": "", "body": "b", "url": ""},
                        {"recipientId": 2, "campaignId": 0, "title": "", "body": "", "url": ""}]}),
    ("pending", b"{", {"notifications": None}),
    ("settings", settings("Light", 3), {"readable": True, "settings": json.loads(settings("Light", 3))}),
    ("settings", b'{"AppTheme":"Light"}',
     {"readable": False, "settings": {"AllowSiteListUpdates": "On", "AnalyticsEnabled": "On", "AppTheme": "System",
                                      "DialogTheme": "default", "SitesSourceUrl": None}}),
    ("theme", b'{"spacing":{"gap":7.5}}', {"readable": False}),
    ("version-file", b'{"version":"1.2","downloadURL":"https://a.example/b.dmg","sha256":7}',
     {"version": "1.2", "downloadURL": "https://a.example/b.dmg", "sha256": ""}),
    ("version-file", b'{"downloadURL":"https://a.example/"}', {"version": None}),
    ("archive", b'{"archives":[{"file":"a.html","title":"A"},{"file":"","title":"B"},{"file":"a b","title":"C"}]}',
     {"archives": [{"url": "http://127.0.0.1:9/Corvane/sites/archive/a.html", "title": "A"}]}),
    ("redirect", b'{"source_url":"elsewhere"}', {"address": "elsewhere"}),
    ("redirect", b'[]', {"address": None}),
]
WRONG = [(), ("nothing",), ("catalogue",), ("colour", "x"), ("save",), ("fetch", "xml", "http://127.0.0.1:9/"),
         ("fetch", "json"), ("defaults-set", "key"), ("apply", "a", "b")]


class Pages(http.server.BaseHTTPRequestHandler):
    """Answers with the length that the path names, "/missing" with 404."""

    def do_GET(self):
        body = b"gone" if self.path == "/missing" else b"x" * int(self.path.strip("/").partition(".")[0])
        self.send_response(404 if self.path == "/missing" else 200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        with contextlib.suppress(ConnectionError):  # past the limit nobody listens any more
            self.wfile.write(body)

    def log_message(self, *_):
        pass


class CommandsTest(ProbeTest):
    def serve(self):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pages)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        return f"http://127.0.0.1:{server.server_port}/"

    def test_answers_every_line_and_goes_on_after_one_that_it_cannot_read(self):
        for command, pairs in LINES.items():
            status, answers = self.probe.run(command, input="\n".join(line for line, _ in pairs).encode())
            self.assertEqual((status, answers), (0, [answer for _, answer in pairs]), command)

    def test_shows_what_the_program_makes_of_files(self):
        publishing = ("env", "CORVANE_PUBLISHING_URL=http://127.0.0.1:9/")
        for number, (command, document, expected) in enumerate(FILES):
            file = self.folder / f"{number}"
            file.write_bytes(document)
            answer = self.ask(command, file, before=publishing)
            self.assertEqual({key: answer[key] for key in expected}, expected, f"{command}, {document}")
            self.assertEqual(answer["file"], str(file))

    def test_shows_the_colours_that_a_theme_comes_to(self):
        file = self.folder / "theme"
        file.write_text('{"colors":{"text":"#ff0000","link":"broken","buttonSecondary":"#00ff00"}}')
        colors = self.ask("theme", file)["colors"]
        self.assertEqual(colors["headingText"], [1, 0, 0, 1], "the text's colour stands in")
        self.assertEqual(colors["buttonDonate"], [0, 1, 0, 1], "the secondary button's colour stands in")
        self.assertEqual([round(part * 255) for part in colors["link"]], [0xD0, 0xEC, 0xFF, 255], "the default")

    def test_refuses_other_command_lines_with_a_sentence(self):
        for arguments in WRONG:
            with self.probe.start(*arguments, text=True) as process:
                said, complaint = process.communicate("")
            self.assertEqual((process.returncode, said), (2, ""), arguments)
            self.assertRegex(complaint, r"^corvane-probe: .+\. See corvane-probe --help\.\n$")

    def test_fetches_and_downloads_within_the_limits_of_the_client(self):
        base = self.serve()
        for kind, path, expected in [("json", "3", {"status": 200, "bytes": 3, "body": "xxx"}),
                                     ("json", "missing", {"status": 404, "bytes": 4, "body": "gone"})]:
            self.assertEqual(self.ask("fetch", kind, base + path), expected)
        self.assertEqual(self.ask("fetch", "page", f"{base}{5 << 20}")["bytes"], 5 << 20)
        image = self.folder / "100000.dmg"
        sha256 = hashlib.sha256(b"x" * 100_000).hexdigest()
        for extra in ((), (sha256,)):
            self.assertEqual(self.ask("download", f"{base}100000.dmg", self.folder, *extra), {"file": str(image)})
            self.assertEqual(image.stat().st_size, 100_000)
        for arguments in [("fetch", "json", f"{base}{5 << 20}"), ("fetch", "page", "ftp://127.0.0.1/"),
                          ("fetch", "page", "nothing"), ("download", f"{base}missing", self.folder),
                          ("download", f"{base}7.dmg", self.folder, sha256)]:
            status, answers = self.probe.run(*arguments)
            self.assertEqual((status, list(answers[0])), (1, ["error"]), arguments)
        self.assertEqual([entry.name for entry in self.folder.iterdir()], [image.name])

    def test_shows_a_page_until_its_input_ends(self):
        page = self.folder / "page"
        page.write_text("<p>é</p>")
        with self.probe.start("serve-page", page) as process:
            url = json.loads(process.stdout.readline())["url"]
            with urllib.request.urlopen(url, timeout=30) as answer:
                self.assertEqual(answer.read(), page.read_bytes())
            process.stdin.close()
        self.assertEqual(process.returncode, 0)

    def test_writes_what_it_is_told_and_reads_it_again(self):
        home = self.home()
        for number in (1, 2):
            self.ask("apply", home.folder, input=catalogue(f"{number}"))
        self.assertEqual((home.backup.read_bytes(), home.catalogue.read_bytes()), (catalogue("1"), catalogue("2")))
        self.ask("defaults-set", "key", "väl\nue", home=home)
        self.assertEqual(self.ask("defaults-get", "key", home=home)["value"], "väl\nue")
        self.assertIsNone(self.ask("defaults-get", "other", home=home)["value"])
        self.ask("save", home.settings, input=settings("Dark"))
        self.assertEqual(self.ask("settings", home.settings)["settings"]["AppTheme"], "Dark")
