"""A server that stops wherever it is told to."""

import http.server
import threading

HEAD = "HTTP/1.0 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nCache-Control: no-store\r\n"


class StallingServer:
    """Answers for "/page" with a page whose title bears the number of the request, as `mode` says:

    "whole"      and it is complete
    "silent"     says nothing
    "headers"    stops in the middle of the headers
    "streaming"  stops in the middle of the page
    "dialog"     a complete page that opens an alert
    "leaving"    a complete page that goes to another host, which says nothing

    What has stopped stays so until the client goes."""

    def __init__(self):
        self.mode = "whole"
        self.asked = 0  # requests for the page
        self.stopped = 0  # answers that go on no more
        self._count = threading.Lock()
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self._server.daemon_threads = True
        self.url = f"http://127.0.0.1:{self._server.server_port}/page"
        self.elsewhere = f"http://localhost:{self._server.server_port}/elsewhere"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def stop(self):
        self._server.shutdown()
        self._server.server_close()

    def _answer(self, path):
        """The text to send, and whether the answer stops there."""
        if path != "/page":
            return "", True
        with self._count:
            self.asked += 1
            page = f"\r\n<!doctype html><title>Page {self.asked}</title><p>Text."
        answers = {"whole": (HEAD + page, False), "silent": ("", True), "headers": (HEAD + "X-More: ", True),
                   "streaming": (HEAD + page + "<p>More text." * 100, True),
                   "dialog": (HEAD + page + "<script>onload = () => alert('Stay')</script>", False),
                   "leaving": (HEAD + page + f"<script>onload = () => location = '{self.elsewhere}'</script>", False)}
        return answers[self.mode]

    def _handler(self):
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                text, stops = server._answer(self.path)
                try:
                    self.wfile.write(text.encode())
                    if stops:
                        with server._count:
                            server.stopped += 1
                        self.connection.recv(1)  # nothing comes but the end
                except ConnectionError:
                    pass  # the client was killed

            def log_message(self, *_):
                pass

        return Handler
