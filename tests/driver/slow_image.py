"""A server that never finishes."""

import http.server
import threading


class SlowImage:
    """Announces an image, sends its beginning, and then waits until the client has gone."""

    SIZE = 100_000_000
    SENT = 5_000_000

    def __init__(self):
        self.left = threading.Event()  # the client has gone
        image = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                self.send_response(200)
                self.send_header("Content-Length", str(image.SIZE))
                self.end_headers()
                self.wfile.write(bytes(image.SENT))
                self.connection.recv(1)  # nothing comes but the end
                image.left.set()

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        self.url = f"http://127.0.0.1:{self._server.server_address[1]}/Corvane-9.0.dmg"

    def stop(self):
        self._server.shutdown()
        self._server.server_close()
