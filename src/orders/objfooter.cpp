#include "orders/objfooter.h"

#include "core/config.h"
#include "core/db.h"
#include "orders/objsave.h"

#include <QDir>
#include <QFile>
#include <QImage>

QString FooterHtml(DbConnection &sys, const QString &typ, const QString &login)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT html FROM sys_paticky_html WHERE typ=? AND login=?"), {typ, login})
        || !q.next())
        return QString();
    return q.value(0).toString();
}

ObjFooterChoice CurrentFooterChoice(DbConnection &sys, const QString &login)
{
    ObjFooterChoice c;
    c.typ = GetSelectTypBottom().trimmed();
    if (c.typ.isEmpty())
        c.typ = QStringLiteral("0");
    if (c.typ != QLatin1String("0"))
        c.html = FooterHtml(sys, QString::number(c.typ.toInt() + 1), login).replace(QLatin1Char('\''), QLatin1Char('"'));
    return c;
}

bool SaveObjFooter(DbConnection &centre, const QString &cisObj, const ObjFooterChoice &footer)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT COUNT(*) FROM objedn_footer WHERE cis_obj=?"), {cisObj}) || !q.next())
        return false;
    if (q.value(0).toInt() == 0
        && !centre.exec(QStringLiteral("INSERT INTO objedn_footer (cis_obj) VALUES (?)"), {cisObj}))
        return false;
    const QString text = footer.typ == QLatin1String("0") || footer.html.isEmpty() ? QStringLiteral("&nbsp;") : footer.html;
    return centre.exec(QStringLiteral("UPDATE objedn_footer SET id_typ=?, `text`=? WHERE cis_obj=?"),
                       {footer.typ, text, cisObj});
}

namespace {
QString footerColumn(DbConnection &centre, const char *column, const QString &cisObj)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT %1 FROM objedn_footer WHERE cis_obj = ?").arg(QLatin1String(column)),
                     {cisObj})
        || !q.next())
        return QString();
    return q.value(0).toString();
}

// Writes the picture to folder/name unless it is there; false when the bytes are no image
// or the name could climb out of the folder.
bool pictureToFolder(const QByteArray &blob, const QString &name, const QString &folder)
{
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") || QImage::fromData(blob).isNull())
        return false;
    const QString path = QDir(folder).filePath(name);
    if (QFile::exists(path))
        return true;
    QDir().mkpath(folder);
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(blob) == blob.size();
}

QString lastPathPiece(const QString &stored)
{
    return QString(stored).replace(QLatin1Char('\\'), QLatin1Char('/')).section(QLatin1Char('/'), -1);
}
} // namespace

QString ObjFooterText(DbConnection &centre, const QString &cisObj) { return footerColumn(centre, "`text`", cisObj); }
QString ObjFooterType(DbConnection &centre, const QString &cisObj) { return footerColumn(centre, "id_typ", cisObj); }

QString FooterPictureHtml(DbConnection &sys, const QString &fileName, const QString &login, const QString &folder)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT filename, oleObrazek FROM sys_paticky_obrazky WHERE filename=? AND login=?"),
                  {fileName, login}))
        return QString();
    if (!q.next()) {
        if (!sys.exec(q, QStringLiteral("SELECT filename, oleObrazek FROM sys_paticky_obrazky WHERE typ='4' AND login=?"),
                      {login})
            || !q.next())
            return QString();
    }
    const QString name = lastPathPiece(q.value(0).toString());
    if (!pictureToFolder(q.value(1).toByteArray(), name, folder))
        return QString();
    return QStringLiteral("<img src='file:") + QDir(folder).filePath(name) + QStringLiteral("'>");
}

QString LogoToTemp(DbConnection &sys, const QString &folder)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT oleObrazek FROM sys_logo_kvl WHERE typ = 1")) || !q.next())
        return QString();
    const QString name = QStringLiteral("logo_kvl_tmp.bmp");
    // A fresh copy each time: the logo may have changed since the last form.
    QFile::remove(QDir(folder).filePath(name));
    return pictureToFolder(q.value(0).toByteArray(), name, folder) ? QDir(folder).filePath(name) : QString();
}
