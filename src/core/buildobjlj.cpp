#include "core/buildobjlj.h"

#include "core/codepage.h"

#include <QDir>

bool BuildObjLJ::Open(const QString &path)
{
    if (m_file.isOpen())
        m_file.close();
    m_writeFailed = false;
    m_error.clear();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        m_error = QStringLiteral("Soubor %1 nelze zapsat: %2").arg(QDir::toNativeSeparators(path), m_file.errorString());
        return false;
    }
    return true;
}

void BuildObjLJ::Line(const QString &text)
{
    if (!m_file.isOpen())
        return;
    QByteArray bytes = ToCp1250(text);
    bytes.append("\r\n", 2);
    if (m_file.write(bytes) != bytes.size())
        m_writeFailed = true;
}

bool BuildObjLJ::Close()
{
    if (!m_file.isOpen())
        return !m_writeFailed;
    if (!m_file.flush())
        m_writeFailed = true;
    m_file.close();
    if (m_writeFailed && m_error.isEmpty())
        m_error = QStringLiteral("Soubor %1 se nepodařilo celý zapsat.").arg(QDir::toNativeSeparators(m_file.fileName()));
    return !m_writeFailed;
}
