#pragma once
// Export files of the import tests, written into the scratch folder.

#include "core/session.h"

#include <QByteArray>
#include <QFile>
#include <QString>

inline QString WriteSample(const QString &name, const QByteArray &content)
{
    const QString path = Session().TempDir + QStringLiteral("/") + name;
    QFile f(path);
    f.open(QIODevice::WriteOnly | QIODevice::Truncate);
    f.write(content);
    return path;
}

// Bytes of every value, line ends and zeros among them, as a file that is no text.
inline QByteArray BinaryBytes(int size)
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes += char(i * 131 % 256);
    return bytes;
}
