#!/usr/bin/env python3
"""A server on the loopback that behaves as well or as badly as it is asked to.

usage: loopback_server.py FILES [CERTIFICATE KEY]

Serves FILES/NAME for any address that ends in NAME; what follows a word of the test's own says how:

    /~word/good/...   as it should be          /~word/redirect-N/...  the same behind N redirects

and so on: the methods of Answer. Prints its port. Remembers what was asked, a line per request;
/log/~word tells.
"""

import os
import socketserver
import ssl
import sys
import threading
import time

FILES = sys.argv[1]
LOG = {}  # lines by word
BUSY_ONCE = set()


def content(name):
    try:
        with open(os.path.join(FILES, name), "rb") as file:
            return file.read()
    except OSError:
        return None


class Stop(Exception):
    pass


class Answer:
    def __init__(self, request, word, path, port, scheme):
        self.request, self.word, self.path, self.port, self.scheme = request, word, path, port, scheme
        self.name = path.rsplit("/", 1)[1]

    def send(self, data):
        self.request.sendall(data)

    def head(self, status, *headers):
        lines = [f"HTTP/1.1 {status} x", *headers, "Connection: close", "", ""]
        self.send("\r\n".join(lines).encode())

    def whole(self, data, *headers, status=200):
        self.head(status, f"Content-Length: {len(data)}", *headers)
        self.send(data)

    def body(self):
        data = content(self.name)
        if data is None:
            self.whole(b"<html>not found</html>", "Content-Type: text/html", status=404)
            raise Stop
        return data

    def rest(self):
        return self.path.split("/", 2)[2]

    def redirect(self, where, status=302):
        if where.startswith("/"):
            where = "/" + self.word + where
        self.whole(b"", f"Location: {where}", status=status)

    def good(self):
        self.whole(self.body(), "Content-Type: chemical/x-pdb")

    def chunked(self):
        data = self.body()
        self.head(200, "Transfer-Encoding: chunked")
        for at in range(0, len(data), 10000):
            part = data[at:at + 10000]
            self.send(b"%x\r\n%s\r\n" % (len(part), part))
        self.send(b"0\r\n\r\n")

    def steady(self, pause=0.004):
        data = self.body()
        self.head(200, f"Content-Length: {len(data)}")
        for at in range(0, len(data), 4096):
            self.send(data[at:at + 4096])
            time.sleep(pause)

    def brisk(self):
        self.steady(0.001)

    def cut_length(self):
        data = self.body()
        self.head(200, f"Content-Length: {len(data)}")
        self.send(data[:len(data) // 2])

    def cut_chunked(self):
        data = self.body()
        self.head(200, "Transfer-Encoding: chunked")
        self.send(b"%x\r\n%s" % (len(data), data[:len(data) // 2]))

    def cut_without_length(self):
        data = self.body()
        self.send(b"HTTP/1.0 200 x\r\n\r\n" + data[:len(data) // 2])

    def without_length(self):
        self.send(b"HTTP/1.0 200 x\r\n\r\n" + self.body())

    def endless(self):
        self.body()
        self.head(200, "Transfer-Encoding: chunked")
        while True:
            self.send(b"10000\r\n" + b"x" * 65536 + b"\r\n")

    def huge_length(self):
        self.body()
        self.head(200, "Content-Length: 100000000000000")
        self.send(b"x")
        time.sleep(5)

    def drip(self):
        data = self.body()
        self.head(200, f"Content-Length: {len(data)}")
        for byte in data:
            self.send(bytes([byte]))
            time.sleep(0.02)

    def drip_headers(self):
        self.send(b"HTTP/1.1 200 x\r\n")
        while True:
            self.send(b"X-More: x\r\n")
            time.sleep(0.02)

    def flood_headers(self):
        self.send(b"HTTP/1.1 200 x\r\n")
        while True:
            self.send(b"X-More: %s\r\n" % (b"x" * 8000))

    def hang(self):
        time.sleep(30)

    def hang_in_body(self):
        data = self.body()
        self.head(200, f"Content-Length: {len(data)}")
        self.send(data[:1000])
        time.sleep(30)

    def refuse(self):
        pass  # closes without a word

    def nonsense(self):
        self.send(b"\x00\x01\x02 this is no HTTP\r\n\r\n")

    def missing(self):
        self.whole(b"", status=404)

    def compressed(self):
        self.good() if self.name.endswith("_") else self.missing()

    def bomb(self):
        self.replaced("bomb.cab")

    def lying_bomb(self):
        """The bomb says that it is small."""
        self.replaced("bomb.cab", lambda data: data[:44] + b"\x00\x10\x00\x00" + data[48:])

    def cut_cabinet(self):
        self.replaced("tiny64.pd_", lambda data: data[:-100])

    def damaged_cabinet(self):
        self.replaced("tiny64.pd_", lambda data: data[:200] + b"\xff" * 50 + data[250:])

    def wrong_cabinet(self):
        self.replaced("two.cab")

    def replaced(self, name, change=lambda data: data):
        if not self.name.endswith("_"):
            return self.missing()
        self.name = name
        return self.whole(change(self.body()))

    def wrong(self):
        self.name = "other/" + self.name
        self.good()

    def html(self):
        self.body()
        self.whole(b"<html>log in, please</html>", "Content-Type: text/html; charset=utf-8")

    def html_as_file(self):
        self.body()
        self.whole(b"<!DOCTYPE html>log in, please", "Content-Type: application/octet-stream")

    def html_everywhere(self):
        """For what it has and for what it has not."""
        self.whole(b"<html>log in, please</html>", "Content-Type: text/html")

    def endless_tiers(self):
        """Says without end that it has two tiers."""
        if not self.path.endswith("/index2.txt"):
            return self.good()
        self.head(200, "Transfer-Encoding: chunked")
        while True:
            self.send(b"10000\r\n" + b"x" * 65536 + b"\r\n")

    def empty(self):
        self.body()
        self.whole(b"")

    def gzip(self):
        import gzip
        self.whole(gzip.compress(self.body()), "Content-Encoding: gzip")

    def loop(self):
        self.redirect(self.path)

    def to_slash(self):
        self.redirect(f"/slash/{self.rest()}/")

    def slash(self):
        """Serves what is asked for with a slash at the end, as if it were a folder."""
        self.name = self.path.split("/")[-2]
        self.good() if self.path.endswith("/") else self.missing()

    def to_relative(self):
        self.redirect(f"../../../good/./{self.rest()}")

    def to_raw(self):
        """Redirects with a blank and a letter beyond ASCII that nobody escaped."""
        self.redirect(f"/raw/x y/\u00e4/{self.rest()}")

    def raw(self):
        self.good() if self.path.startswith("/raw/x%20y/%C3%A4/") else self.missing()

    def to_file(self):
        self.redirect("file:///etc/hostname")

    def to_ftp(self):
        self.redirect("ftp://127.0.0.1/x")

    def to_http(self):
        self.redirect(f"http://127.0.0.1:{self.port}/{self.word}/good/{self.rest()}")

    def to_other_host(self):
        self.redirect(f"{self.scheme}://127.0.0.2:{self.port}/{self.word}/good/{self.rest()}")

    def to_injected(self):
        self.redirect(f"{self.scheme}://user:secret@127.0.0.2:{self.port}/{self.word}/good/{self.rest()}")

    def e500(self):
        self.whole(b"", status=500)

    def e503_later(self):
        self.whole(b"", "Retry-After: 100", status=503)

    def e503_once(self):
        if (self.word, self.path) not in BUSY_ONCE:
            BUSY_ONCE.add((self.word, self.path))
            self.whole(b"", status=503)
        else:
            self.good()

    def e403(self):
        self.whole(b"", status=403)

    def e401(self):
        self.whole(b"", "WWW-Authenticate: Basic", status=401)

    def debug_server(self):
        """Answers one kind of question, as servers of debug files do; to others: unavailable."""
        if "/buildid/" not in self.path:
            self.whole(b"", status=503)
        elif self.path.split("/")[-2:] == [content("hello.id").decode().strip(), "debuginfo"]:
            self.name = "hello.debug"
            self.good()
        else:
            self.whole(b"", status=404)


class Handler(socketserver.BaseRequestHandler):
    def handle(self):
        self.request.settimeout(30)
        try:
            text = b""
            while b"\r\n\r\n" not in text:
                more = self.request.recv(65536)
                if not more:
                    return
                text += more
            lines = text.decode("latin-1").split("\r\n")
            path = lines[0].split(" ")[1]
            credentials = [line for line in lines if line.lower().startswith("authorization:")]
            host = [line.split(" ")[1] for line in lines if line.lower().startswith("host:")]
            if path.startswith("/log/"):
                lines = LOG.get(path[5:], [])
                Answer(self.request, "", path, 0, "").whole("".join(lines).encode())
                return
            _, word, rest = path.split("/", 2)
            LOG.setdefault(word, []).append(" ".join(["/" + rest, *host, *credentials]) + "\n")
            self.answer(word, "/" + rest.split("?")[0])
        except (Stop, OSError):
            pass

    def answer(self, word, path):
        way = path.split("/")[1]
        answer = Answer(self.request, word, path, self.server.server_address[1], self.server.scheme)
        if path.endswith("/index2.txt"):
            # Stores have one tier here; but trouble is trouble for any question.
            if way in ("hang", "refuse", "nonsense", "e500", "e401", "e503-later", "loop", "to-file",
                       "to-ftp", "to-http", "drip-headers", "flood-headers", "debug-server",
                       "html-everywhere", "endless-tiers"):
                getattr(answer, way.replace("-", "_"))()
            else:
                answer.whole(b"", status=404)
        elif way.startswith("redirect-"):
            count = int(way[9:])
            target = "good" if count == 1 else f"redirect-{count - 1}"
            answer.redirect(f"/{target}/{answer.rest()}", status=(301, 302, 303, 307, 308)[count % 5])
        else:
            getattr(answer, way.replace("-", "_"))()


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True
    request_queue_size = 64


def main():
    server = Server(("127.0.0.1", 0), Handler)
    server.scheme = "http"
    if sys.argv[2:]:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(sys.argv[2], sys.argv[3])
        server.socket = context.wrap_socket(server.socket, server_side=True)
        server.scheme = "https"
    if server.scheme == "http":
        other = Server(("127.0.0.2", server.server_address[1]), Handler)  # a host of its own
        other.scheme = "http"
        threading.Thread(target=other.serve_forever, daemon=True).start()
    print(server.server_address[1], flush=True)
    server.serve_forever()


main()
