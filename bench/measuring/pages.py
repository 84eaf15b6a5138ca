"""A server on this machine that notes, to the moment, when each request arrives."""

import http.server
import threading
import time
from pathlib import Path

FOLDER = Path(__file__).resolve().parent.parent / "pages"

# The colour that the block of every measured page has, and nothing else on a screen.
BLOCK = (18, 214, 94)


def article(kilobytes):
    """A page of about this size: a block of the colour on top, then an article; it reports its load event."""
    words = ("answer", "catalogue", "window", "service", "question", "draft", "margin", "reply", "evening", "letter")
    rows, size, count = [], 0, 0
    while size < kilobytes * 1024:
        text = " ".join(words[(count * 7 + i * 3 + i // 5) % len(words)] for i in range(60))
        row = f'<section><h2>Part {count}</h2><p class="lead">{text}.</p><p><em>{text}</em>, {text[::-1]}.</p></section>'
        rows.append(row)
        size += len(row) + 1
        count += 1
    template = (FOLDER / "article.html").read_text()
    return template.replace("BLOCK", "rgb(%d, %d, %d)" % BLOCK).replace("ARTICLE", "\n".join(rows)).encode()


class Server:
    """Serves `pages`, a dictionary from path to bytes; everything else is answered with 404. The query is ignored."""

    def __init__(self, pages):
        self.pages = pages
        self._arrivals = []
        self._changed = threading.Condition()
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_GET(self):
                outer._note(self.path)
                body = outer.pages.get(self.path.split("?")[0])
                self.send_response(200 if body is not None else 404)
                self.send_header("Content-Type", "text/html; charset=utf-8")
                self.send_header("Content-Length", str(len(body or b"")))
                self.send_header("Cache-Control", "no-store")
                self.end_headers()
                if self.command != "HEAD":
                    self.wfile.write(body or b"")

            def do_POST(self):
                self.rfile.read(int(self.headers.get("Content-Length") or 0))
                self.do_GET()

            do_HEAD = do_GET

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        self.base = f"http://127.0.0.1:{self._server.server_address[1]}/"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def _note(self, path):
        with self._changed:
            self._arrivals.append((time.monotonic(), path))
            self._changed.notify_all()

    def forget(self):
        """Drops what has arrived so far."""
        with self._changed:
            self._arrivals.clear()

    def wait(self, path, timeout):
        """The moment (time.monotonic) of the first request for the path, and its whole address; None when none came."""
        end = time.monotonic() + timeout
        with self._changed:
            while True:
                for moment, address in self._arrivals:
                    if address.split("?")[0] == path:
                        return moment, address
                left = end - time.monotonic()
                if left <= 0 or not self._changed.wait(left):
                    return None

    def all(self, path):
        """Every request for the path so far."""
        with self._changed:
            return [(moment, address) for moment, address in self._arrivals if address.split("?")[0] == path]

    def close(self):
        self._server.shutdown()
        self._server.server_close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
