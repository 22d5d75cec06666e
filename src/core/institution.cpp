#include "core/institution.h"

#include "core/db.h"
#include "core/session.h"

#include <QStringList>

namespace {
struct Column {
    const char *name;
    const char *defaultValue;   // nullptr: no default
    QString SessionRecord::*field;
};

const Column columns[] = {
    {"Firma", nullptr, &SessionRecord::InstFirma},
    {"Adresa", nullptr, &SessionRecord::InstAdresa},
    {"PSC", "100 00", &SessionRecord::InstPSC},
    {"Mesto", "Lhotka", &SessionRecord::InstMesto},
    {"ICO", "123 456", &SessionRecord::InstICO},
    {"DIC", " ", &SessionRecord::InstDIC},
    {"Cislo uctu", "11111-222/0100", &SessionRecord::InstUcet},
    {"Nazev banky", "Banka Lhotka-město", &SessionRecord::InstBanka},
    {"Cislo uctu_2", "99999-999/0100", &SessionRecord::InstUcet2},
    {"newdate_ucet", nullptr, &SessionRecord::InstNewdateUcet},
};
} // namespace

QString NewdateUcetText(const QDateTime &localNow)
{
    const QDateTime asUtc(localNow.date(), localNow.time(), Qt::UTC);
    return QString::number(asUtc.toSecsSinceEpoch());
}

bool ReadInstitution(DbConnection &sys)
{
    SessionRecord &s = Session();
    for (const Column &c : columns)
        s.*c.field = QString();

    QSqlQuery row = sys.query();
    if (!sys.exec(row, QStringLiteral("SELECT * FROM sys_nastaveni")))
        return false;
    if (!row.next())
        return true;

    QStringList assignments;
    QVariantList values;
    for (const Column &c : columns) {
        // The raw value: a single blank is a valid DIC and must not be trimmed away.
        QString value = row.value(QLatin1String(c.name)).toString();
        QString fallback;
        if (c.defaultValue)
            fallback = QString::fromUtf8(c.defaultValue);
        else if (qstrcmp(c.name, "newdate_ucet") == 0)
            fallback = NewdateUcetText(QDateTime::currentDateTime());
        if (value.isEmpty() && !fallback.isEmpty()) {
            value = fallback;
            assignments << QStringLiteral("`%1`=?").arg(QLatin1String(c.name));
            values << value;
        }
        s.*c.field = value;
    }
    if (assignments.isEmpty())
        return true;
    values << row.value(QStringLiteral("id"));
    return sys.exec(QStringLiteral("UPDATE sys_nastaveni SET %1 WHERE id=?").arg(assignments.join(QStringLiteral(", "))),
                    values);
}
