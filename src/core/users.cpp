#include "core/users.h"

#include "core/db.h"
#include "core/rights.h"
#include "core/session.h"
#include "core/text.h"

#include <QSqlQuery>

// --- roles -------------------------------------------------------------------------

QString TypName(int typ)
{
    switch (typ) {
    case 1: return QStringLiteral("Uživatel");
    case 2: return QStringLiteral("Administrátor");
    case 3: return QStringLiteral("Lékárna");
    case 4: return QStringLiteral("Tvůrce objednávek");
    case 5: return QStringLiteral("Správce objednávek");
    default: return QStringLiteral("Super uživatel");
    }
}

QStringList TypListNames()
{
    // The lists spell the last role without the "n"; rows are mapped by the grid's text.
    return {QStringLiteral("Administrátor"), QStringLiteral("Uživatel"), QStringLiteral("Super uživatel"),
            QStringLiteral("Lékárna"),       QStringLiteral("Tvůrce objednávek"),
            QStringLiteral("Správce objedávek")};
}

QStringList TypFilterNames() { return QStringList{QStringLiteral(" - Vše - ")} + TypListNames(); }

short TypFromList(int position)
{
    static const short table[] = {2, 1, 6, 3, 4, 5};
    return position >= 0 && position < 6 ? table[position] : 0;
}

short TypFromListOld(int position)
{
    static const short table[] = {3, 4, 6, 2, 5};
    return position >= 0 && position < 5 ? table[position] : 1;
}

short TypFromFilterList(int position) { return position > 0 ? TypFromList(position - 1) : 0; }

int ListPositionFromTypText(const QString &text)
{
    static const QStringList grid{QStringLiteral("Administrátor"), QStringLiteral("Uživatel"),
                                  QStringLiteral("Super uživatel"), QStringLiteral("Lékárna"),
                                  QStringLiteral("Tvůrce objednávek"), QStringLiteral("Správce objednávek")};
    const qsizetype at = grid.indexOf(text);
    return at >= 0 ? int(at) : 1;
}

// --- the rows ---------------------------------------------------------------------

namespace {
bool openFailed(const DbConnection &conn, QString *error)
{
    if (conn.isOpen())
        return false;
    if (error)
        *error = QStringLiteral("Nelze se připojit k databázi: %1").arg(conn.errorText());
    return true;
}

bool failed(const DbConnection &conn, QString *error)
{
    if (error)
        *error = conn.errorText();
    return false;
}
} // namespace

bool FillUsers(const SessionRecord &session, int filterTyp, QVector<UserRow> &rows, QString *error)
{
    rows.clear();
    DbConnection sys(ConnStrSys());
    if (openFailed(sys, error))
        return false;
    QString sql;
    QVariantList values;
    if (CanEditAllUsers(session.UserTyp)) {
        sql = QStringLiteral("SELECT * FROM  sys_users ");
        if (filterTyp > 0) {
            sql += QStringLiteral(" WHERE typ = ?");
            values << filterTyp;
        }
        sql += QStringLiteral(" ORDER BY typ, jmeno");
    } else {
        sql = QStringLiteral("SELECT * FROM sys_users WHERE jmeno=? AND prijmeni=? ");
        values << session.UserJmeno << session.UserPrijmeni;
    }
    QSqlQuery q = sys.query();
    if (!sys.exec(q, sql, values))
        return failed(sys, error);
    while (q.next()) {
        UserRow row;
        row.key = q.value(QStringLiteral("_key")).toInt();
        row.prijmeni = FieldText(q, QStringLiteral("prijmeni"));
        row.jmeno = FieldText(q, QStringLiteral("jmeno"));
        row.titul = FieldText(q, QStringLiteral("titul"));
        row.login = FieldText(q, QStringLiteral("login"));
        row.password = FieldText(q, QStringLiteral("password"));
        row.typ = q.value(QStringLiteral("typ")).toInt();
        row.filtrGrant = FieldText(q, QStringLiteral("filtr_grant"));
        rows << row;
    }
    return true;
}

bool AddUser(int *newKey, QString *error)
{
    DbConnection sys(ConnStrSys());
    if (openFailed(sys, error))
        return false;
    QSqlQuery q = sys.query();
    // A blank first name is enough for the row to exist; Save fills in the rest.
    if (!sys.exec(q, QStringLiteral("INSERT INTO sys_users (jmeno) VALUES (?)"), {QStringLiteral("")}))
        return failed(sys, error);
    if (newKey)
        *newKey = q.lastInsertId().toInt();
    return true;
}

bool SaveUser(const UserRow &row, QString *error, const FieldCaptions &captions)
{
    DbConnection sys(ConnStrSys());
    if (openFailed(sys, error))
        return false;
    sys.setCaptions(captions);
    const bool ok = sys.exec(QStringLiteral("UPDATE sys_users SET `jmeno` = ?, `prijmeni` = ?, `login` = ?, "
                                            "`password` = ?, `typ` = ?, `titul` = ?, `filtr_grant` = ? "
                                            "WHERE _KEY = ?"),
                             {row.jmeno.trimmed(), row.prijmeni.trimmed(), row.login.trimmed(),
                              row.password.trimmed(), row.typ, row.titul.trimmed(), row.filtrGrant.trimmed(),
                              row.key});
    return ok || failed(sys, error);
}

bool DeleteUser(int key, QString *error)
{
    DbConnection sys(ConnStrSys());
    if (openFailed(sys, error))
        return false;
    return sys.exec(QStringLiteral("DELETE FROM sys_users WHERE _key = ?"), {key}) || failed(sys, error);
}

QStringList GrantNumbers()
{
    QStringList grants;
    DbConnection granty(ConnStrGranty());
    QSqlQuery q = granty.query();
    if (!granty.exec(q, QStringLiteral("SELECT _GRANT FROM GrantyPlan")))
        return grants;
    while (q.next())
        grants << FieldText(q, 0);
    return grants;
}

// --- the grant-filter field -------------------------------------------------------

QString ReadFilterText(const QString &text)
{
    return QString(text).replace(QLatin1String(",,"), QString()).trimmed();
}

QString FilterAfterPick(const QString &text, const QString &grant)
{
    QString filter = ReadFilterText(text);
    if (filter.isEmpty() || filter == QLatin1String("0") || filter == QLatin1String("0,"))
        filter.clear();
    if (ListHasValue(grant, filter.split(QLatin1Char(','), Qt::SkipEmptyParts)))
        return filter;
    return filter + grant + QLatin1Char(',');
}

QString FilterAfterBackspace(const QString &text)
{
    QString filter = text;
    // The trailing comma belongs to the last item, which goes as a whole.
    if (filter.endsWith(QLatin1Char(',')))
        filter.chop(1);
    const qsizetype comma = filter.lastIndexOf(QLatin1Char(','));
    filter = comma >= 0 ? filter.left(comma + 1) : QString();
    return filter.isEmpty() ? QStringLiteral("0") : filter;
}
