#!/usr/bin/env python3
"""The web host of the update tests, on 127.0.0.1 only.

    update_server.py PORT ROOT PID_FILE

Writes its process id to PID_FILE once it listens, so that the test can end it. Serves the files below ROOT by their paths, the query ignored; a missing file is a 404. While a file
named "slow" lies in ROOT, bodies go out in 256 KiB pieces with a pause of 0.1 s between them, so that a
download lasts long enough to be seen and cancelled. While a file named "stall" lies there, requests wait.
"""
import http.server
import os
import sys
import time
import urllib.parse

ROOT = os.path.abspath(sys.argv[2])


class handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        while os.path.exists(os.path.join(ROOT, "stall")):
            time.sleep(0.1)
        path = urllib.parse.unquote(urllib.parse.urlsplit(self.path).path)
        file = os.path.normpath(os.path.join(ROOT, path.lstrip("/")))
        if not file.startswith(ROOT + os.sep) or not os.path.isfile(file):
            self.send_error(404)
            return
        with open(file, "rb") as f:
            body = f.read()
        self.send_response(200)
        self.send_header("Content-Type", "application/octet-stream")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        slow = os.path.exists(os.path.join(ROOT, "slow"))
        step = 262144 if slow else len(body) or 1
        try:
            for start in range(0, len(body), step):
                self.wfile.write(body[start:start + step])
                if slow:
                    self.wfile.flush()
                    time.sleep(0.1)
        except (BrokenPipeError, ConnectionResetError):
            pass  # the client cancelled

    def log_message(self, format, *args):
        sys.stderr.write("%s\n" % (format % args))


server = http.server.ThreadingHTTPServer(("127.0.0.1", int(sys.argv[1])), handler)
with open(sys.argv[3] + ".part", "w") as f:
    f.write(str(os.getpid()))
os.replace(sys.argv[3] + ".part", sys.argv[3])
server.serve_forever()
