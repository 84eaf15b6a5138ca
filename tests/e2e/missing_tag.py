"""A server without a tag."""

import http.server
import threading
import time


class MissingTag:
    """Answers every request with 404 and keeps when it last did."""

    def __init__(self):
        self.asked_at = None  # as time.time() has it
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self.url = f"http://127.0.0.1:{self._server.server_port}/gtag/js"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def stop(self):
        self._server.shutdown()
        self._server.server_close()

    def _handler(self):
        def answer(request):
            request.send_error(404)
            self.asked_at = time.time()

        return type("NotFound", (http.server.BaseHTTPRequestHandler,),
                    {"do_GET": answer, "log_message": lambda *_: None})
