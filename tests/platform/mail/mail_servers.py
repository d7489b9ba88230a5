"""Mail servers for one run of the tests, on loopback ports of their own.

usage: mail_servers.py FOLDER

FOLDER, empty at first, gets maildir/new, where mails for the POP3 mailbox are put (user "pilot",
password "secret word"), out/, where the mails lie that were sent, and ca.pem, the certificate to trust.
Prints the ports of POP3, POP3S, SMTP and SMTPS once they answer, and ends with its standard input.
"""
import grp
import os
import pwd
import signal
import socket
import ssl
import subprocess
import sys
import time

from aiosmtpd.controller import Controller
from aiosmtpd.smtp import AuthResult

folder = sys.argv[1]
user = pwd.getpwuid(os.getuid()).pw_name
root = os.getuid() == 0


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def make_certificate():
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                    "-nodes", "-days", "2", "-subj", "/CN=localhost", "-addext",
                    "subjectAltName=DNS:localhost", "-keyout", folder + "/key.pem",
                    "-out", folder + "/ca.pem"], check=True, stderr=subprocess.DEVNULL)


def start_dovecot(pop3, pop3s):
    # Dovecot drops root for its own users, and serves mails of anybody but root.
    owner = pwd.getpwnam("dovenull") if root else pwd.getpwuid(os.getuid())
    mails = folder + "/maildir"
    for name in (mails, mails + "/new", mails + "/cur", mails + "/tmp"):
        os.mkdir(name)
        os.chown(name, owner.pw_uid, owner.pw_gid)
        os.chmod(name, 0o777)
    # Who was refused once waits for seconds at the next login.
    no_penalty = "unix_listener anvil-auth-penalty {\n mode = 0\n }"
    own = f"service anvil {{\n {no_penalty}\n}}" if root else f"""
default_internal_user = {user}
default_login_user = {user}
default_internal_group = {grp.getgrgid(owner.pw_gid).gr_name}
service anvil {{\n chroot =\n {no_penalty}\n}}
service stats {{\n chroot =\n}}
"""
    with open(folder + "/passwd", "w") as file:
        file.write("pilot:{PLAIN}secret word:" + f"{owner.pw_uid}:{owner.pw_gid}::{folder}::\n")
    with open(folder + "/dovecot.conf", "w") as file:
        file.write(f"""
protocols = pop3
base_dir = {folder}/run
state_dir = {folder}/state
log_path = {folder}/dovecot.log
listen = 127.0.0.1
ssl = yes
ssl_cert = <{folder}/ca.pem
ssl_key = <{folder}/key.pem
first_valid_uid = 1
disable_plaintext_auth = no
auth_failure_delay = 0
mail_location = maildir:{mails}
{own}
service pop3-login {{
  chroot =
  inet_listener pop3 {{\n port = {pop3}\n }}
  inet_listener pop3s {{\n port = {pop3s}\n ssl = yes\n }}
}}
passdb {{\n driver = passwd-file\n args = {folder}/passwd\n}}
userdb {{\n driver = passwd-file\n args = {folder}/passwd\n}}
""")
    return subprocess.Popen(["/usr/sbin/dovecot", "-F", "-c", folder + "/dovecot.conf"],
                            stdin=subprocess.DEVNULL)


class Keeper:
    """Keeps each mail as out/N, with the envelope in front."""
    kept = 0

    async def handle_RCPT(self, server, session, envelope, address, options):
        if address.startswith("nobody"):
            return "550 5.1.1 There is no such pilot"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        Keeper.kept += 1
        name = f"{folder}/out/{Keeper.kept}"
        head = f"{session.host_name} {envelope.mail_from} {','.join(envelope.rcpt_tos)}\r\n"
        with open(name + ".part", "wb") as file:
            file.write(head.encode() + envelope.content)
        os.rename(name + ".part", name)
        return "250 OK"


def authenticate(server, session, envelope, mechanism, data):
    well = data.login == b"pilot" and data.password == b"secret word"
    return AuthResult(success=well, handled=False)


def start_smtp(port, at_once):
    tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    tls.load_cert_chain(folder + "/ca.pem", folder + "/key.pem")
    options = {"ssl_context": tls} if at_once else {"tls_context": tls}
    smtp = Controller(Keeper(), hostname="127.0.0.1", port=port, authenticator=authenticate,
                      auth_required=True, auth_require_tls=not at_once, data_size_limit=1 << 30, server_hostname="test",
                      **options)
    smtp.start()
    return smtp


def wait_for(port):
    for _ in range(600):
        try:
            socket.create_connection(("127.0.0.1", port)).close()
            return
        except OSError:
            time.sleep(0.05)
    sys.exit("no server on port %d" % port)


signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
os.chmod(folder, 0o755)
os.mkdir(folder + "/out")
make_certificate()
ports = [free_port() for _ in range(4)]
dovecot = start_dovecot(ports[0], ports[1])
try:
    smtp = [start_smtp(ports[2], False), start_smtp(ports[3], True)]
    for port in ports:
        wait_for(port)
    print(*ports, flush=True)
    sys.stdin.read()
finally:
    dovecot.terminate()
    dovecot.wait(10)
