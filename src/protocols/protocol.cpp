#include "protocols/protocol.h"

#include "core/db.h"
#include "protocols/formmodel.h"

#include <QSqlQuery>

namespace {
const QChar Tilde = QLatin1Char('~');
const QString CrLf = QStringLiteral("\r\n");

QString dateText(const QVariant &v)
{
    return v.isNull() ? QString() : v.toDate().toString(QStringLiteral("dd.MM.yyyy"));
}

Pacient pacientOf(const QSqlQuery &q)
{
    return Pacient{q.value(QStringLiteral("key")).toInt(),
                   q.value(QStringLiteral("id")).toInt(),
                   FieldText(q, QStringLiteral("prijmeni")),
                   FieldText(q, QStringLiteral("jmeno")),
                   FieldText(q, QStringLiteral("rc")),
                   FieldText(q, QStringLiteral("prijmcislo")),
                   dateText(q.value(QStringLiteral("registraci"))),
                   FieldText(q, QStringLiteral("poznamka")),
                   q.value(QStringLiteral("datapacient")).toString()};
}

std::vector<Pacient> pacientsOf(QSqlQuery &q)
{
    std::vector<Pacient> rows;
    while (q.next())
        rows.push_back(pacientOf(q));
    return rows;
}

// The lists are read as stored: a trim would cut the CR LF that ends each position.
ProtocolRow protocolOf(const QSqlQuery &q)
{
    auto raw = [&q](const char *column) { return q.value(QLatin1String(column)).toString(); };
    return ProtocolRow{q.value(QStringLiteral("key")).toInt(),
                       q.value(QStringLiteral("id")).toInt(),
                       q.value(QStringLiteral("id_pac")).toInt(),
                       FieldText(q, QStringLiteral("cislo_prot")),
                       FieldText(q, QStringLiteral("date_create")),
                       q.value(QStringLiteral("lock")).toInt() != 0,
                       raw("data_fields"),
                       raw("key_fields"),
                       raw("pozice_fields"),
                       raw("type_fields"),
                       raw("font_fields"),
                       raw("bold_fields"),
                       raw("kursiv_fields"),
                       raw("color_fields"),
                       raw("korekce_fields")};
}

bool setError(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

// Whether the protocol is locked; nullopt when it cannot be read.
std::optional<bool> isLocked(DbConnection &centre, int key, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT `lock` FROM archiv WHERE `key`=?"), {key})) {
        setError(error, centre.errorText());
        return std::nullopt;
    }
    if (!q.next()) {
        setError(error, QStringLiteral("Protokol nebyl nalezen."));
        return std::nullopt;
    }
    return q.value(0).toInt() != 0;
}
} // namespace

// --- patients ---------------------------------------------------------------------------

const QStringList &PacientSearchColumns()
{
    // The registration date is searched as "pegistraci", which the table does not have:
    // that search ends in the server's message, as it always has.
    static const QStringList columns{QStringLiteral("id"), QStringLiteral("prijmeni,jmeno"), QStringLiteral("jmeno"),
                                     QStringLiteral("rc"), QStringLiteral("prijmcislo"), QStringLiteral("pegistraci")};
    return columns;
}

std::optional<std::vector<Pacient>> SearchPacients(DbConnection &centre, const QString &column, const QString &text,
                                                   QString *error)
{
    QSqlQuery q = centre.query();
    bool ok = false;
    if (text.isEmpty()) {
        ok = centre.exec(q, QStringLiteral("SELECT * FROM pacients_prot ORDER BY registraci DESC, prijmeni ASC"));
    } else {
        if (!PacientSearchColumns().contains(column)) {
            setError(error, QStringLiteral("Neznámý sloupec hledání: %1").arg(column));
            return std::nullopt;
        }
        // The name pair is searched as one text, surname first.
        const QString where = column == QLatin1String("prijmeni,jmeno") ? QStringLiteral("CONCAT_WS(' ',prijmeni,jmeno)")
                                                                         : column;
        ok = centre.exec(q, QStringLiteral("SELECT * FROM pacients WHERE %1 like ? ORDER BY %2 ASC").arg(where, column),
                         {text + QLatin1Char('%')});
    }
    if (!ok) {
        setError(error, centre.errorText());
        return std::nullopt;
    }
    return pacientsOf(q);
}

std::optional<std::vector<Pacient>> PacientsByRegistration(DbConnection &centre, int id, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM pacients WHERE id=? ORDER BY `key` ASC"), {id})) {
        setError(error, centre.errorText());
        return std::nullopt;
    }
    return pacientsOf(q);
}

int NewPacient(DbConnection &centre, const QDate &today, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("INSERT INTO pacients (id, registraci, datapacient) "
                                       "SELECT COALESCE(MAX(id), 0) + 1, ?, ? FROM pacients"),
                     {today, QString::fromLatin1(EmptyDataPacient)})) {
        setError(error, centre.errorText());
        return 0;
    }
    return q.lastInsertId().toInt();
}

bool SavePacient(DbConnection &centre, const Pacient &p, QString *error)
{
    const QDate registered = QDate::fromString(p.registraci, QStringLiteral("dd.MM.yyyy"));
    if (!p.registraci.isEmpty() && !registered.isValid())
        return setError(error, QStringLiteral("Špatný formát datumu."));
    if (!centre.exec(QStringLiteral("UPDATE pacients SET id=?, prijmeni=?, jmeno=?, rc=?, prijmcislo=?, registraci=?, "
                                    "poznamka=?, datapacient=? WHERE `key`=?"),
                     {p.id, p.prijmeni, p.jmeno, p.rc, p.prijmcislo, registered.isValid() ? QVariant(registered) : QVariant(),
                      p.poznamka, p.datapacient, p.key}))
        return setError(error, centre.errorText());
    return true;
}

bool DeletePacient(DbConnection &centre, int key, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT COUNT(*) FROM archiv WHERE id_pac=?"), {key}) || !q.next())
        return setError(error, centre.errorText());
    if (q.value(0).toInt() > 0)
        return setError(error, QStringLiteral("Pacient má uložené protokoly, nelze jej smazat."));
    if (!centre.exec(QStringLiteral("DELETE FROM pacients WHERE `key`=?"), {key}))
        return setError(error, centre.errorText());
    return true;
}

// --- protocols --------------------------------------------------------------------------

std::optional<std::vector<ProtocolRow>> ListProtocols(DbConnection &centre, int idPac, int formId, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM archiv_prot WHERE id_pac=? AND (id=? OR ?=0) ORDER BY `key` ASC"),
                     {idPac, formId, formId})) {
        setError(error, QStringLiteral("Protokoly pacienta nelze načíst. ") + centre.errorText());
        return std::nullopt;
    }
    std::vector<ProtocolRow> rows;
    while (q.next())
        rows.push_back(protocolOf(q));
    return rows;
}

std::optional<ProtocolRow> ReadProtocol(DbConnection &centre, int key, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM archiv_prot WHERE `key`=?"), {key})) {
        setError(error, QStringLiteral("Protokol %1 nelze načíst. ").arg(key) + centre.errorText());
        return std::nullopt;
    }
    if (!q.next()) {
        setError(error, QStringLiteral("Protokol %1 nebyl nalezen.").arg(key));
        return std::nullopt;
    }
    return protocolOf(q);
}

ProtocolLists CollectProtocolLists(clsDocument &doc, const std::vector<ControlValue> &controls)
{
    ProtocolLists lists;
    auto item = [](QString &list, const QString &value) { list += value + Tilde; };
    for (const auto &[tag, value] : controls) {
        const std::optional<ControlTagParts> parts = ParseControlTag(tag);
        if (!parts)
            continue;
        clsField *field = nullptr;
        for (const auto &entry : doc)
            if (entry.field->Key == parts->key) {
                field = entry.field.get();
                break;
            }
        if (!field)
            continue;
        field->Data = value;
        item(lists.data, value);
        item(lists.keys, QString::number(field->Key));
        lists.pozice += QStringList{LocaleNumber(field->Top), LocaleNumber(field->Left), LocaleNumber(field->Height),
                                    LocaleNumber(field->Width)}
                            .join(Tilde) +
                        CrLf;
        item(lists.types, QString::number(field->Typ));
        item(lists.fonts, LocaleNumber(field->Font));
        item(lists.bolds, field->Bold ? QStringLiteral("1") : QStringLiteral("0"));
        item(lists.kursivs, field->Kursiv ? QStringLiteral("1") : QStringLiteral("0"));
        item(lists.colors, QString::number(field->color));
    }
    return lists;
}

int AkceFieldDocument(DbConnection &centre, clsDocument &doc, const std::vector<ControlValue> &controls,
                      const ProtocolTarget &target, const QDateTime &now, QString *error)
{
    if (target.idProt != 0) {
        const std::optional<bool> locked = isLocked(centre, target.idProt, error);
        if (!locked)
            return 0;
        if (*locked) {
            setError(error, QString::fromUtf8(TextProtocolLocked));
            return 0;
        }
    }
    const ProtocolLists l = CollectProtocolLists(doc, controls);
    const QString created = now.toString(QStringLiteral("dd.MM.yyyy HH:mm"));
    const QVariantList values{target.idForm, l.data,   l.keys,   l.pozice,    l.types, l.fonts,
                              l.bolds,       l.kursivs, l.colors, target.idPac, created};
    const QString columns = QStringLiteral("id=?, data_fields=?, key_fields=?, pozice_fields=?, type_fields=?, "
                                           "font_fields=?, bold_fields=?, kursiv_fields=?, color_fields=?, id_pac=?, "
                                           "date_create=?");
    QSqlQuery q = centre.query();
    if (target.idProt != 0) {
        // The lock is tested once more in the statement itself.
        if (!centre.exec(q, QStringLiteral("UPDATE archiv SET %1 WHERE `key`=? AND `lock`=0").arg(columns),
                         values + QVariantList{target.idProt})) {
            setError(error, centre.errorText());
            return 0;
        }
        return target.idProt;
    }
    if (!centre.exec(q, QStringLiteral("INSERT INTO archiv SET cislo_prot=?, %1").arg(columns),
                     QVariantList{target.nazDoc} + values)) {
        setError(error, centre.errorText());
        return 0;
    }
    return q.lastInsertId().toInt();
}

QStringList ProtocolValues(const ProtocolRow &row) { return row.data_fields.split(Tilde); }

bool LockProtocol(DbConnection &centre, int key, QString *error)
{
    if (!centre.exec(QStringLiteral("UPDATE archiv SET `lock`=1 WHERE `key`=?"), {key}))
        return setError(error, centre.errorText());
    return true;
}

bool DeleteProtocol(DbConnection &centre, int key, QString *error)
{
    const std::optional<bool> locked = isLocked(centre, key, error);
    if (!locked)
        return false;
    if (*locked)
        return setError(error, QString::fromUtf8(TextProtocolLocked));
    if (!centre.exec(QStringLiteral("DELETE FROM archiv WHERE `key`=? AND `lock`=0"), {key}))
        return setError(error, centre.errorText());
    return true;
}

QString KorekceEntry(const QString &previous, const QString &text, const QDateTime &now, const QString &userName)
{
    return QStringLiteral("Dne: ") + now.toString(QStringLiteral("dd.MM.yyyy")) + QStringLiteral(", ") +
           now.toString(QStringLiteral("H:mm")) + QLatin1Char(' ') + userName + CrLf + QStringLiteral("- ") + text + CrLf +
           previous;
}

bool SavePacientData(DbConnection &centre, int key, const QString &korekce, QString *error)
{
    if (!centre.exec(QStringLiteral("UPDATE archiv SET korekce_fields=? WHERE `key`=?"), {korekce, key}))
        return setError(error, centre.errorText());
    return true;
}
