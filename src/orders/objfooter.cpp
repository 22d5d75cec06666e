#include "orders/objfooter.h"

#include "core/config.h"
#include "core/db.h"
#include "core/institution.h"
#include "orders/objsave.h"

#include <QDir>

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
    if (!PictureToFolder(q.value(1).toByteArray(), name, folder))
        return QString();
    return QStringLiteral("<img src='file:") + QDir(folder).filePath(name) + QStringLiteral("'>");
}
