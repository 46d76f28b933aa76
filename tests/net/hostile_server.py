#!/usr/bin/env python3
"""Hostile and broken web servers for the tests, on 127.0.0.1 only. Prints "port N" when it listens.

    /silent            accepts and never answers
    /trickle           four bytes a second
    /huge              a gigabyte of answer
    /loop              a redirect to itself
    /to-file?PATH      a redirect to file://PATH
    /to-ftp            a redirect to an ftp address
    /bomb.gz           a gzip bomb: 240 KB that unpack to 240 MB
    /status-10k.txt    a status file of 10,000 url0 lines, all to /whazzup.txt
    /whazzup.txt       a small valid IVAO feed
    /versioned         an empty JSON list with the ETag "v1", and "not modified" to a request naming it

With --tls CERT KEY it speaks https with that certificate.
"""
import http.server
import ssl
import sys
import time
import zlib

FEED = (
    "!GENERAL\r\nRELOAD = 1\r\nUPDATE = 20261121142300\r\nCONNECTED CLIENTS = 1\r\n!CLIENTS\r\n"
    + ":".join(["DLH1", "200001", "Anna Berg", "PILOT", "", "50", "8", "35000", "450"] + [""] * 37)
    + "\r\n"
).encode()


def bomb():
    packer = zlib.compressobj(9, zlib.DEFLATED, 31)  # gzip framing
    zeros = bytes(1 << 20)
    return b"".join(packer.compress(zeros) for _ in range(240)) + packer.flush()


BOMB = bomb()


class Hostile(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *args):
        pass

    def answer(self, body, status=200, headers=()):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def redirect(self, target):
        self.answer(b"", 302, [("Location", target)])

    def do_GET(self):
        path, _, query = self.path.partition("?")
        try:
            if path == "/silent":
                time.sleep(3600)
            elif path == "/trickle":
                self.send_response(200)
                self.send_header("Content-Length", "100000")
                self.end_headers()
                for _ in range(100000):
                    self.wfile.write(b"x")
                    self.wfile.flush()
                    time.sleep(0.25)
            elif path == "/huge":
                self.send_response(200)
                self.send_header("Content-Length", str(1 << 30))
                self.end_headers()
                piece = bytes(1 << 20)
                for _ in range(1 << 10):
                    self.wfile.write(piece)
            elif path == "/loop":
                self.redirect("/loop")
            elif path == "/to-file":
                self.redirect("file://" + query)
            elif path == "/to-ftp":
                self.redirect("ftp://127.0.0.1/whazzup.txt")
            elif path == "/bomb.gz":
                self.answer(BOMB)
            elif path == "/status-10k.txt":
                port = self.server.server_address[1]
                line = "url0=http://127.0.0.1:%d/whazzup.txt\n" % port
                self.answer((line * 10000).encode())
            elif path == "/whazzup.txt":
                self.answer(FEED)
            elif path == "/versioned":
                if self.headers.get("If-None-Match") == '"v1"':
                    self.answer(b"", 304)
                else:
                    self.answer(b"[]", 200, [("ETag", '"v1"')])
            else:
                self.answer(b"not here", 404)
        except (BrokenPipeError, ConnectionResetError):
            pass


def main():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Hostile)
    server.daemon_threads = True
    if len(sys.argv) == 4 and sys.argv[1] == "--tls":
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(sys.argv[2], sys.argv[3])
        server.socket = context.wrap_socket(server.socket, server_side=True)
    print("port %d" % server.server_address[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    main()
