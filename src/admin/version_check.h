#pragma once
// At each start the program compares its version with the one published on the
// maker's web server and, when a newer one exists, opens the download page.

#include <QString>
#include <QUrl>

// The web server's host (and port, if any), from the configuration file.
QString GetWebServer();
QUrl VersionFileUrl(const QString &host);
QUrl DownloadPageUrl(const QString &host);

// A version text with all "." removed, read by the number scanner: "2.1.20" is 2120,
// "2 5 0" is 250 (blanks do not count), a text without digits is 0.
double VersionNumber(const QString &text);
// Does the fetched text announce a newer version than our own? An error page
// (any text holding "ERROR", in any case) never does.
bool IsNewerVersion(const QString &fetched, const QString &own);

// The body of a GET, or empty text when the server does not answer in time.
QString FetchText(const QUrl &url, int timeoutMs);

// Runs the whole check; returns the page it opened, or an empty URL. Never shows
// a message. With FONDARIX_NO_BROWSER set the page is only returned, not opened.
QUrl CheckNewVersion();
