#include "registers/kontakty.h"

#include "core/db.h"
#include "core/text.h"

#include <QSqlQuery>

QVector<Kontakt> LoadKontakty(DbConnection &sys, const QString &login)
{
    QVector<Kontakt> list;
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT id, Email, Heslo, Param1, Param2 FROM sys_kontakty WHERE `User` = ? ORDER BY id"),
                  {login}))
        return list;
    while (q.next()) {
        QString heslo = q.value(2).toString();
        if (heslo.contains(QLatin1Char('~')))
            heslo = UnscrambleText(heslo);
        list.push_back({q.value(0).toInt(), q.value(1).toString(), heslo, q.value(3).toString(), q.value(4).toString()});
    }
    return list;
}

bool SaveKontakty(DbConnection &sys, const QVector<Kontakt> &kontakty, QString *error)
{
    Transaction transaction(sys);
    for (const Kontakt &k : kontakty) {
        const QString heslo = k.heslo.trimmed().isEmpty() ? QStringLiteral(" ") : ScrambleText(k.heslo);
        if (!sys.exec(QStringLiteral("UPDATE sys_kontakty SET Email = ?, Heslo = ?, Param1 = ?, Param2 = ? WHERE id = ?"),
                      {k.email, heslo, k.param1, k.param2, k.id})) {
            if (error)
                *error = sys.errorText();
            return false;
        }
    }
    return transaction.commit();
}

int AddKontakt(DbConnection &sys, const QString &login, const QString &email, QString *error)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("INSERT INTO sys_kontakty (Email, Heslo, Param1, Param2, `User`) VALUES (?, ' ', ' ', ' ', ?)"),
                  {email, login})) {
        if (error)
            *error = sys.errorText();
        return 0;
    }
    return q.lastInsertId().toInt();
}

bool DeleteKontakt(DbConnection &sys, int id, QString *error)
{
    if (sys.exec(QStringLiteral("DELETE FROM sys_kontakty WHERE id = ?"), {id}))
        return true;
    if (error)
        *error = sys.errorText();
    return false;
}
