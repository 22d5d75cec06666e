#include "admin/version_check.h"

#include "core/config.h"
#include "core/number.h"
#include "core/session.h"

#include <QDesktopServices>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace {
constexpr int FetchTimeoutMs = 3000;   // the check must not hold up the start
constexpr int HostWidth = 255;
} // namespace

QString GetWebServer()
{
    const QString host = ClipIniValue(ReadProfileString(QStringLiteral("NASTAVENI"), QStringLiteral("WEB_SERVER"),
                                                        QStringLiteral("www.fondarix.cz"), HostWidth))
                             .trimmed();
    return host.isEmpty() ? QStringLiteral("www.fondarix.cz") : host;
}

QUrl VersionFileUrl(const QString &host) { return QUrl(QStringLiteral("http://") + host + QStringLiteral("/zip/verze.txt")); }

QUrl DownloadPageUrl(const QString &host)
{
    return QUrl(QStringLiteral("http://") + host + QStringLiteral("/downfondarix.php"));
}

double VersionNumber(const QString &text)
{
    return ScanNumber(QString(text).remove(QLatin1Char('.')));
}

bool IsNewerVersion(const QString &fetched, const QString &own)
{
    if (fetched.toUpper().contains(QLatin1String("ERROR")))
        return false;
    return VersionNumber(own) < VersionNumber(fetched);
}

QString FetchText(const QUrl &url, int timeoutMs)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMs);
    QNetworkReply *reply = manager.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    // A host that never answers the name look-up is not covered by the transfer timeout.
    QTimer::singleShot(timeoutMs, &loop, [reply] { reply->abort(); });
    if (!reply->isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    QString text;
    if (reply->error() == QNetworkReply::NoError)
        text = QString::fromUtf8(reply->readAll());
    return text;
}

QUrl CheckNewVersion()
{
    const QString host = GetWebServer();
    const QString fetched = FetchText(VersionFileUrl(host), FetchTimeoutMs);
    if (!IsNewerVersion(fetched, ProgramVersion().trimmed()))
        return QUrl();
    const QUrl page = DownloadPageUrl(host);
    if (qEnvironmentVariableIsEmpty("FONDARIX_NO_BROWSER"))
        QDesktopServices::openUrl(page);
    return page;
}
