#include "orders/objsave.h"

#include "core/db.h"
#include "core/text.h"
#include "orders/objfooter.h"
#include "orders/objrecord.h"

#include <QDate>

namespace {
// "dd.mm.yyyy" as "yyyy-mm-dd"; the text as it stands when it is no date.
QString isoDate(const QString &datum)
{
    QDate d = QDate::fromString(DateTwoDigits(datum.trimmed()), QStringLiteral("dd.MM.yyyy"));
    return d.isValid() ? d.toString(Qt::ISODate) : datum.trimmed();
}

bool rowExists(DbConnection &conn, const QString &where, const QVariant &key, bool *exists)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT COUNT(*) FROM archobj WHERE ") + where, {key}) || !q.next())
        return false;
    *exists = q.value(0).toInt() > 0;
    return true;
}

// An empty box is stored as the empty text, never as NULL: the list filter tells them apart.
QString text(const QString &value)
{
    return value.isNull() ? QStringLiteral("") : value;
}

bool run(DbConnection &conn, const QString &sql, QVariantList values)
{
    for (QVariant &v : values)
        if (v.metaType().id() == QMetaType::QString && v.toString().isNull())
            v = QStringLiteral("");
    return conn.exec(sql, values);
}

QString noQuotes(const QString &value)
{
    return text(value).remove(QLatin1Char('\''));
}

// An archive write on the row of that key: Missing when it was deleted meanwhile.
ObjWrite updateRow(DbConnection &conn, int nom, const QString &sql, const QVariantList &values)
{
    bool exists = false;
    if (!rowExists(conn, QStringLiteral("nom = ?"), nom, &exists))
        return ObjWrite::Failed;
    if (!exists)
        return ObjWrite::Missing;
    return run(conn, sql, values) ? ObjWrite::Saved : ObjWrite::Failed;
}

QString text1Piece(const QString &pozn)
{
    return pozn.left(35);
}
} // namespace

QString RecalkObj(const std::array<std::array<QString, 4>, 8> &rows)
{
    double sum = 0;
    for (const auto &row : rows) {
        if (row[1].trimmed().isEmpty())
            continue;
        sum += AmountOf(row[1]) * AmountOf(row[3]);
    }
    return FormatAmount(QString::number(sum, 'f', 2));
}

ObjWrite SaveObj(DbConnection &centre, const ObjEntry &e, const ObjFooterChoice &footer, const QDateTime &now)
{
    Transaction tx(centre);
    bool exists = false;
    if (!rowExists(centre, QStringLiteral("cis_obj = ?"), e.cisObj, &exists))
        return ObjWrite::Failed;
    if (!exists)
        return ObjWrite::Missing;
    const QString datObj = isoDate(e.datum) + QLatin1Char(' ') + now.toString(QStringLiteral("hh:mm:ss"));
    const QString blank = QStringLiteral(" ");
    if (!run(centre, QStringLiteral("UPDATE ArchObj SET `Firma` = ?, `Pobocka` =?, `Adres` = ?, `PSC`  = ?, "
                                    "`Mesto` = ?, `Tel`   = ?, `Fax`   = ?, `Dat_obj` = ?, `Autor` = ?, "
                                    "`Prikazce` = ?, `TEXT1` = ?, `Typ` = ?, `LineRec9` = ?, `Poc9` = ?, "
                                    "`LineRec10` = ?, `objWF` = ?, `coml` = 0, `zkatalog` = ?, `poc10` = ?, "
                                    "`objZauct` = ?, `paticka` = ?, `file_paticka` = ? WHERE `cis_obj` = ?"),
                     {e.firm[0], e.firm[1], e.firm[2], e.firm[3], e.firm[4], e.firm[5], e.firm[6], datObj,
                      e.stredisko, QLatin1Char('#') + e.hrazeno + QLatin1Char('#') + text1Piece(e.pozn), e.pozn,
                      QString::number(e.typ), e.vyrizuje, e.telefon, e.linka, blank, blank,
                      FormatAmount(e.cena), blank, footer.typ, footer.html, e.cisObj}))
        return ObjWrite::Failed;

    bool ok = false;
    const QString textName = QStringLiteral("F") + e.cisObj + QStringLiteral(".txt");
    if (e.typ == KindSklad) {
        QString sql = QStringLiteral("UPDATE ArchObj SET ");
        QVariantList values;
        for (int i = 0; i < 8; ++i) {
            sql += QStringLiteral("`LineRec%1` = ?, ").arg(i + 1);
            values << e.rows[i][0] + QLatin1Char('#') + e.rows[i][3] + QLatin1Char('#') + e.rows[i][2];
        }
        for (int i = 0; i < 8; ++i) {
            sql += QStringLiteral("`Poc%1` = ?, ").arg(i + 1);
            values << e.rows[i][1];
        }
        sql += QStringLiteral("`Grant` = ?, `Text` = '' WHERE cis_obj = ?");
        values << e.grant << e.cisObj;
        ok = run(centre, sql, values);
    } else {
        QString body = e.body;
        if (e.typ == KindText)
            body.replace(QLatin1Char('\''), QLatin1Char('"'));
        else
            body.replace(QLatin1Char('\r'), QStringLiteral("<br>")).remove(QLatin1Char('\n'));
        ok = run(centre, QStringLiteral("UPDATE ArchObj SET `Grant` = ?, `Text` = ?, `file_html_text` = ? "
                                        "WHERE cis_obj = ?"),
                         {e.grant, textName, body, e.cisObj});
    }
    if (!ok || !SaveObjFooter(centre, e.cisObj, footer))
        return ObjWrite::Failed;
    return tx.commit() ? ObjWrite::Saved : ObjWrite::Failed;
}

ObjWrite SaveObjSablona(DbConnection &centre, const ObjLetter &l, const ObjFooterChoice &footer, const QDateTime &now)
{
    Transaction tx(centre);
    bool exists = false;
    if (!rowExists(centre, QStringLiteral("cis_obj = ?"), l.cisObj, &exists))
        return ObjWrite::Failed;
    if (!exists && !ReserveObj(centre, l.cisObj))
        return ObjWrite::Failed;
    const QString datObj = isoDate(l.datum) + QLatin1Char(' ') + now.toString(QStringLiteral("hh:mm:ss"));
    QString body = l.body;
    body.replace(QLatin1Char('\''), QLatin1Char('"'));
    if (!run(centre, QStringLiteral("UPDATE ArchObj SET `Firma` = ?, `Pobocka` =?, `Adres` = ?, `PSC`  = ?, "
                                    "`Mesto` = ?, `Tel`   = ?, `Fax`   = ?, `Dat_obj` = ?, `LineRec1` = ?, "
                                    "`LineRec2` = ?, `LineRec3` = ?, `LineRec4` = ?, `LineRec5` = ?, "
                                    "`LineRec9` = ?, `LineRec10` = ?, `Text` = ?, `paticka` = ?, `coml` = 0, "
                                    "`file_html_text` = ? WHERE `cis_obj` = ?"),
                     {l.firm[0], l.firm[1], l.firm[2], l.firm[3], l.firm[4], l.firm[5], l.firm[6], datObj,
                      l.address[0], l.address[1], l.address[2], l.address[3], l.address[4], l.vyrizuje, l.linka,
                      QStringLiteral("F") + l.cisObj + QStringLiteral(".txt"), footer.typ, body, l.cisObj}))
        return ObjWrite::Failed;
    // The English letter keeps telephone and e-mail in one column, joined by "~".
    const QString poc9 = l.english ? l.telefon + QLatin1Char('~') + l.email : l.telefon;
    if (!run(centre, QStringLiteral("UPDATE ArchObj SET `Typ` = ?, `Poc9` = ? WHERE `cis_obj` = ?"),
                     {l.english ? QStringLiteral("4") : QStringLiteral("3"), poc9, l.cisObj}))
        return ObjWrite::Failed;
    if (footer.typ != QLatin1String("0")
        && !run(centre, QStringLiteral("UPDATE ArchObj SET `file_paticka` = ? WHERE `cis_obj` = ?"),
                        {footer.html, l.cisObj}))
        return ObjWrite::Failed;
    if (!SaveObjFooter(centre, l.cisObj, footer))
        return ObjWrite::Failed;
    return tx.commit() ? ObjWrite::Saved : ObjWrite::Failed;
}

ObjWrite SaveObjArchive(DbConnection &centre, int nom, const ObjArchiveDetail &d)
{
    QString sql = QStringLiteral("UPDATE ArchObj SET `firma` = ?, `Pobocka` = ?, `Adres` = ?, `PSC` = ?, "
                                 "`Mesto` = ?, `tel` = ?, `fax` = ?, ");
    QVariantList values;
    for (const QString &f : d.firm)
        values << noQuotes(f);
    const bool letter = d.typ == KindFormCZ || d.typ == KindFormAN;
    for (int i = 0; i < 8; ++i) {
        sql += QStringLiteral("`LineRec%1` = ?, ").arg(i + 1);
        values << noQuotes(d.lineRec[i]);
        if (!letter) {
            sql += QStringLiteral("`Poc%1` = ?, ").arg(i + 1);
            values << noQuotes(d.poc[i]);
        }
    }
    if (d.typ != KindSklad) {
        sql += QStringLiteral("`file_html_text` = ?, ");
        values << noQuotes(d.body);
    }
    sql += QStringLiteral("`Poc10` = ?, `Castka` = ?, `Poc10` = ?, `Prikazce` = ?, `Dat_vyriz` = ?, `GRANT` = ?, "
                          "`Text1` = ?, `Cis_global` = ?, `objWF` = ?, `objZauct` = ? WHERE nom=?");
    values << noQuotes(d.poc10) << noQuotes(d.castka) << noQuotes(d.poc10) << noQuotes(d.prikazce)
           << noQuotes(d.datVyriz) << noQuotes(d.grant) << noQuotes(d.text1) << noQuotes(d.cisGlobal)
           << noQuotes(d.objWF) << noQuotes(d.objZauct) << nom;
    return updateRow(centre, nom, sql, values);
}

ObjWrite SaveObjLekarna(DbConnection &centre, int nom, const QString &castka, const QString &datVyriz,
                        const QString &objWF)
{
    return updateRow(centre, nom, QStringLiteral("UPDATE ArchObj SET `Castka` = ?, `Dat_vyriz` = ?, `objWF` = ? WHERE nom=?"),
                     {castka.trimmed(), DateTwoDigits(datVyriz.trimmed()), noQuotes(objWF), nom});
}

bool ReadVyrizuje(DbConnection &sys, const QString &jmeno, ObjVyrizuje *person)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT Vyrizuje, Telefon, Linka FROM sys_nastaveniobj WHERE Vyrizuje = ?"), {jmeno})
        || !q.next())
        return false;
    *person = {q.value(0).toString(), q.value(1).toString(), q.value(2).toString()};
    return true;
}

ObjWrite SaveObjVyrizuje(DbConnection &centre, int nom, const ObjVyrizuje &person)
{
    return updateRow(centre, nom, QStringLiteral("UPDATE ArchObj SET `LineRec9` = ?, `Poc9` = ?, `LineRec10` = ? WHERE nom=?"),
                     {noQuotes(person.jmeno), noQuotes(person.telefon), noQuotes(person.linka), nom});
}

int CopyObj(DbConnection &centre, int nom, const QString &newNumber)
{
    static const QString copied = QStringLiteral(
        "DAT_OBJ, `GRANT`, LineRec1, Poc1, LineRec2, Poc2, LineRec3, Poc3, LineRec4, Poc4, LineRec5, Poc5, "
        "LineRec6, Poc6, LineRec7, Poc7, LineRec8, Poc8, LineRec9, Poc9, LineRec10, Firma, Pobocka, Adres, PSC, "
        "Mesto, Tel, Fax, Autor, Dat_vyriz, Cis_global, Castka, Typ, `Text`, Text1, poc10, Prikazce, SpravceRozp, "
        "file_html_text");
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("INSERT INTO archobj (cis_obj, %1, objZauct, objWF, coml) "
                                       "SELECT ?, %1, ' ', ' ', 0 FROM archobj WHERE nom = ?").arg(copied),
                     {text(newNumber), nom}))
        return -1;
    return q.numRowsAffected() < 1 ? 0 : q.lastInsertId().toInt();
}

int DeleteObjNumber(DbConnection &centre, const QString &cisObj)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("DELETE FROM archobj WHERE CIS_OBJ = ?"), {cisObj}))
        return -1;
    return q.numRowsAffected();
}

int DeleteObjRows(DbConnection &centre, const QList<int> &noms)
{
    Transaction tx(centre);
    int count = 0;
    for (int nom : noms) {
        QSqlQuery q = centre.query();
        if (!centre.exec(q, QStringLiteral("DELETE FROM archobj WHERE nom = ?"), {nom}))
            return -1;
        count += std::max(0, q.numRowsAffected());
    }
    return tx.commit() ? count : -1;
}

QString MultiDeleteQuestion(int count)
{
    const QString word = count == 1 ? QStringLiteral(" položku ") : count <= 4 ? QStringLiteral(" položky ")
                                                                               : QStringLiteral(" položek ");
    return QStringLiteral("Chcete opravdu smazat ") + QString::number(count) + word
           + QStringLiteral(" objednavky? \r\n\r\n");
}
