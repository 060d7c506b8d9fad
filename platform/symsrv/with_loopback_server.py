#!/usr/bin/env python3
"""Runs a command beside the server of the tests.

usage: with_loopback_server.py FILES COMMAND [ARGUMENT]...

The command finds the port in SYMSRV_SERVER: for programs that cannot start a server themselves.
"""

import os
import subprocess
import sys

SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "loopback_server.py")

with subprocess.Popen([sys.executable, SERVER, sys.argv[1]], stdout=subprocess.PIPE) as server:
    try:
        port = server.stdout.readline().decode().strip()
        sys.exit(subprocess.call(sys.argv[2:], env={**os.environ, "SYMSRV_SERVER": port}))
    finally:
        server.kill()
