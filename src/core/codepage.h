#pragma once
// Windows-1250, the code page of every file the program exchanges and of the server's text.

#include <QByteArray>
#include <QString>

// Encodes to Windows-1250. Characters outside the code page become '?' and, when
// badChar is given, the first of them is written there (empty when all fit).
QByteArray ToCp1250(const QString &text, QString *badChar = nullptr);
QString FromCp1250(const QByteArray &bytes);

// Whole files in Windows-1250. Reading a missing file gives empty text and ok false.
QString ReadFileCp1250(const QString &path, bool *ok = nullptr);
bool WriteFileCp1250(const QString &path, const QString &text);
