"""Reads a mailbox as the program does, command by command over one connection, and prints the seconds.

usage: mailbox_by_hand.py PORT CA
"""
import poplib
import ssl
import sys
import time

begin = time.monotonic()
server = poplib.POP3("localhost", int(sys.argv[1]))
server.stls(ssl.create_default_context(cafile=sys.argv[2]))
server.user("pilot")
server.pass_("secret word")
count = server.stat()[0]
server.uidl()
ours = []
for number in range(1, count + 1):
    lines = server.top(number, 10)[1]
    if any(line.startswith(b"Subject: /FSSkyvaultPack/AC/") for line in lines):
        ours.append(number)
for number in ours:
    server.retr(number)
    server.dele(number)
server.quit()
print("%.6f" % (time.monotonic() - begin))
