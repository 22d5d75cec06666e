#include "admin/version_check.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
// A web server on 127.0.0.1 answering each GET with the one body, noting the paths asked for.
class OneFileServer {
public:
    explicit OneFileServer(const QByteArray &body)
    {
        server.listen(QHostAddress::LocalHost, 0);
        QObject::connect(&server, &QTcpServer::newConnection, [this, body] {
            QTcpSocket *socket = server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, [this, socket, body] {
                const QByteArray request = socket->readAll();
                paths << QString::fromLatin1(request.split(' ').value(1));
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nConnection: close\r\nContent-Length: " +
                              QByteArray::number(body.size()) + "\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
        });
    }
    QString host() const { return QStringLiteral("127.0.0.1:%1").arg(server.serverPort()); }

    QTcpServer server;
    QStringList paths;
};

void useHost(const QString &host)
{
    WriteIni(QStringLiteral("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\nWEB_SERVER=%2\r\n")
                 .arg(ServerPort())
                 .arg(host));
}

// A version above our own by one in the last part: "2.4.2" when we are 2.4.1.
QString nextVersion()
{
    QStringList parts = ProgramVersion().split('.');
    parts.last() = QString::number(parts.last().toInt() + 1);
    return parts.join('.');
}
} // namespace

TEST(VersionCheck, VersionTextRules)
{
    // Read by the program's one number rule once the points are gone: blanks are skipped,
    // the first character that cannot continue the number ends it.
    const std::pair<const char *, double> numbers[] = {
        {"2.1.20", 2120}, {" 2.4.1\r\n", 241}, {"", 0}, {"<html>", 0}, {"2 5 0", 250},
        {"2.4.2 (oprava tisku)\n", 242}, {"2,4,1", 2}, {"-1.0", -10}, {"99999999999999999999", 1e20}};
    for (const auto &[text, number] : numbers)
        EXPECT_EQ(VersionNumber(text), number) << text;
    EXPECT_TRUE(IsNewerVersion("2 5 0", "2.4.1"));
    EXPECT_TRUE(IsNewerVersion("9.9.9\n<!-- web -->", "2.1.9"));
    // Not compared by parts: 2.0.100 counts as newer than 2.1.9.
    EXPECT_TRUE(IsNewerVersion("2.0.100", "2.1.9"));
    EXPECT_FALSE(IsNewerVersion("2.1.9", "2.1.9"));
    EXPECT_FALSE(IsNewerVersion("2.1.8", "2.1.9"));
    EXPECT_FALSE(IsNewerVersion("", "2.1.9"));
    for (const char *page : {"ERROR", "Error 404", "9.9.9 error", "<h1>eRRoR</h1>"})
        EXPECT_FALSE(IsNewerVersion(page, "0.0.1")) << page;
}

TEST(VersionCheck, OpensTheDownloadPageOnlyForANewerVersionAndGivesUpQuietly)
{
    qputenv("FONDARIX_NO_BROWSER", "1");
    FreshDatabases(false);
    ScriptedMessages messages;
    {
        OneFileServer newer(nextVersion().toLatin1());
        useHost(newer.host());
        EXPECT_EQ(CheckNewVersion(), QUrl("http://" + newer.host() + "/downfondarix.php"));
        EXPECT_EQ(newer.paths, QStringList{"/zip/verze.txt"});
    }
    for (const QByteArray &body : {ProgramVersion().toLatin1(), QByteArray("99.9.9 ERROR"), QByteArray("error"),
                                   QByteArray("")}) {
        OneFileServer server(body);
        useHost(server.host());
        EXPECT_TRUE(CheckNewVersion().isEmpty()) << body.constData();
        EXPECT_EQ(server.paths.size(), 1);
    }

    // Nobody at the port, or a server that accepts and never answers: nothing, and soon.
    QString freePort;
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        freePort = QString::number(probe.serverPort());
    }
    QTcpServer silent;
    silent.listen(QHostAddress::LocalHost, 0);
    for (const QString &host : {"127.0.0.1:" + freePort, QStringLiteral("127.0.0.1:%1").arg(silent.serverPort())}) {
        useHost(host);
        QElapsedTimer clock;
        clock.start();
        EXPECT_TRUE(CheckNewVersion().isEmpty());
        EXPECT_LT(clock.elapsed(), 5000) << host.toStdString();
    }
    EXPECT_TRUE(messages.shown.empty());
}
