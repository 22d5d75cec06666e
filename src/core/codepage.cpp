#include "core/codepage.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>

QByteArray ToCp1250(const QString &text, QString *badChar)
{
    if (badChar)
        badChar->clear();
    QStringEncoder encoder("windows-1250");
    QByteArray out;
    out.reserve(text.size());
    // Encode one character at a time only when the whole text does not fit,
    // so that the bad character can be named.
    QByteArray whole = encoder.encode(text);
    if (!encoder.hasError())
        return whole;
    for (qsizetype i = 0; i < text.size(); ++i) {
        qsizetype len = (text.at(i).isHighSurrogate() && i + 1 < text.size()) ? 2 : 1;
        const QString ch = text.mid(i, len);
        QStringEncoder one("windows-1250");
        QByteArray b = one.encode(ch);
        if (one.hasError() || b.isEmpty()) {
            if (badChar && badChar->isEmpty())
                *badChar = ch;
            out.append('?');
        } else {
            out.append(b);
        }
        i += len - 1;
    }
    return out;
}

QString FromCp1250(const QByteArray &bytes)
{
    QStringDecoder decoder("windows-1250");
    return decoder.decode(bytes);
}

QString ReadFileCp1250(const QString &path, bool *ok)
{
    QFile f(path);
    const bool opened = f.open(QIODevice::ReadOnly);
    if (ok)
        *ok = opened;
    return opened ? FromCp1250(f.readAll()) : QString();
}

bool WriteFileCp1250(const QString &path, const QString &text)
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(ToCp1250(text));
    return f.commit();
}
