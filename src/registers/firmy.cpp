#include "registers/firmy.h"

#include "core/db.h"

#include <QSqlQuery>
#include <QSqlRecord>

const QStringList &FirmaColumns()
{
    static const QStringList columns{
        QStringLiteral("Firma"), QStringLiteral("Pobocka"), QStringLiteral("Adres_1"), QStringLiteral("Adres_2"),
        QStringLiteral("PSC"),   QStringLiteral("Mesto"),   QStringLiteral("Fax"),     QStringLiteral("Email"),
        QStringLiteral("HTTP"),  QStringLiteral("Tel"),     QStringLiteral("Tel2"),    QStringLiteral("ICO"),
        QStringLiteral("DIC"),   QStringLiteral("Bank"),    QStringLiteral("Ucet"),    QStringLiteral("DPH"),
        QStringLiteral("Poznam"), QStringLiteral("Jednat"),
    };
    return columns;
}

QString FormatPsc(const QString &text)
{
    QString digits = text;
    digits.remove(QLatin1Char(' '));
    if (digits.size() != 5)
        return text;
    for (const QChar c : digits)
        if (!c.isDigit())
            return text;
    return digits.left(3) + QLatin1Char(' ') + digits.mid(3);
}

QString ObjednFirmaRecord(const QSqlRecord &firma)
{
    auto text = [&](const char *column) {
        const QVariant v = firma.value(QLatin1String(column));
        QString t = v.isNull() ? QString() : v.toString().trimmed();
        return t.remove(QLatin1Char('#'));   // the separator of the record
    };
    QString address = text("Adres_1");
    const QString second = text("Adres_2");
    if (!second.isEmpty())
        address += (address.isEmpty() ? QString() : QStringLiteral(", ")) + second;
    return QStringList{text("Firma"), text("Pobocka"), address, text("PSC"), text("Mesto"), text("Tel"), text("Fax")}
        .join(QLatin1Char('#'));
}

int FindFirma(DbConnection &centre, const QString &text, const QString &orderBy)
{
    const QString pattern = QLatin1Char('%') + text + QLatin1Char('%');
    QSqlQuery q = centre.query();
    for (const char *column : {"Firma", "Pobocka"}) {
        const QString sql = QStringLiteral("SELECT nom FROM adrfirm WHERE %1 LIKE ? ORDER BY %2 LIMIT 1")
                                .arg(QLatin1String(column), orderBy);
        if (centre.exec(q, sql, {pattern}) && q.next())
            return q.value(0).toInt();
    }
    return 0;
}

int AddFirma(DbConnection &centre, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("INSERT INTO adrfirm (Firma) VALUES (' ')"))) {
        if (error)
            *error = centre.errorText();
        return 0;
    }
    return q.lastInsertId().toInt();
}

bool DeleteFirma(DbConnection &centre, int nom, QString *error)
{
    if (centre.exec(QStringLiteral("DELETE From adrfirm WHERE nom=?"), {nom}))
        return true;
    if (error)
        *error = centre.errorText();
    return false;
}

bool SaveFirmaField(DbConnection &centre, int nom, int field, const QString &value, QString *error)
{
    if (field < 0 || field >= FirmaColumns().size())
        return false;
    if (centre.exec(QStringLiteral("UPDATE adrfirm SET `%1` = ? WHERE nom=?").arg(FirmaColumns().at(field)),
                    {value, nom}))
        return true;
    if (error)
        *error = centre.errorText();
    return false;
}
