"""A mail server of Twisted's on 127.0.0.1 with AUTH PLAIN. Each message becomes a file.

Usage: plain_mail_server.py FOLDER USER PASSWORD PORT [CERTIFICATE KEY tls|starttls]
Without a certificate it talks in clear.
"""
import os
import sys

from twisted.cred.checkers import InMemoryUsernamePasswordDatabaseDontUse
from twisted.cred.portal import IRealm, Portal
from twisted.internet import defer, reactor, ssl
from twisted.mail import smtp
from twisted.mail.imap4 import PLAINCredentials
from zope.interface import implementer

FOLDER, USER, PASSWORD, PORT = sys.argv[1:5]
CERTIFICATE, KEY, KIND = sys.argv[5:] or (None, None, "clear")


@implementer(smtp.IMessage)
class Message:
    count = 0

    def __init__(self):
        self.lines = []

    def lineReceived(self, line):
        self.lines.append(line)

    def eomReceived(self):
        Message.count += 1
        path = os.path.join(FOLDER, "%04d" % Message.count)
        with open(path + ".part", "wb") as file:
            file.write(b"\r\n".join(self.lines) + b"\r\n")
        os.rename(path + ".part", path)
        return defer.succeed(None)

    def connectionLost(self):
        self.lines = None


@implementer(smtp.IMessageDelivery)
class Delivery:
    def receivedHeader(self, helo, origin, recipients):
        return b"Received: from a test"

    def validateFrom(self, helo, origin):
        return origin

    def validateTo(self, user):
        if user.dest.domain != b"example.net":
            raise smtp.SMTPBadRcpt(user)
        return Message


@implementer(IRealm)
class Realm:
    def requestAvatar(self, avatarId, mind, *interfaces):
        return smtp.IMessageDelivery, Delivery(), lambda: None


class Factory(smtp.SMTPFactory):
    protocol = smtp.ESMTP

    def buildProtocol(self, address):
        made = super().buildProtocol(address)
        made.challengers = {b"PLAIN": PLAINCredentials}
        if KIND == "starttls":
            made.ctx, made.canStartTLS = context, True
        return made


users = InMemoryUsernamePasswordDatabaseDontUse()
users.addUser(USER.encode(), PASSWORD.encode())
context = ssl.DefaultOpenSSLContextFactory(KEY, CERTIFICATE) if CERTIFICATE else None
factory = Factory(Portal(Realm(), [users]))
if KIND == "tls":
    reactor.listenSSL(int(PORT), factory, context, interface="127.0.0.1")
else:
    reactor.listenTCP(int(PORT), factory, interface="127.0.0.1")
reactor.run()
