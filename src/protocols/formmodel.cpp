#include "protocols/formmodel.h"

#include "core/config.h"
#include "core/db.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

#include <algorithm>

namespace {
const QChar Tilde = QLatin1Char('~');
const QString FormSection = QStringLiteral("FORMULAR");
} // namespace

// --- clsDocument -----------------------------------------------------------------------

void clsDocument::Clear()
{
    while (!items.empty())
        items.pop_back();
}

clsField *clsDocument::Add(std::unique_ptr<clsField> Field, const QString &Key)
{
    if (!Field || (!Key.isEmpty() && Item(Key)))
        return nullptr;
    items.push_back({std::move(Field), Key});
    return items.back().field.get();
}

clsField *clsDocument::Item(int Position) const
{
    return Position >= 1 && Position <= Count() ? items[size_t(Position - 1)].field.get() : nullptr;
}

clsField *clsDocument::Item(const QString &Key) const
{
    if (Key.isEmpty())
        return nullptr;
    for (const Entry &e : items)
        if (e.key == Key)
            return e.field.get();
    return nullptr;
}

void clsDocument::RemovItem(int Position)
{
    if (Position >= 1 && Position <= Count())
        items.erase(items.begin() + (Position - 1));
}

void clsDocument::RemovItem(const QString &Key)
{
    std::erase_if(items, [&Key](const Entry &e) { return !Key.isEmpty() && e.key == Key; });
}

clsDocument &SessionDocument()
{
    static clsDocument document;
    return document;
}

QStringList &SessionFormParams()
{
    static QStringList params;
    return params;
}

// --- numbers and packed texts ------------------------------------------------------------

QString LocaleNumber(double value)
{
    return QString::number(value, 'g', 15).replace(QLatin1Char('.'), QLatin1Char(','));
}

double ParseLocaleNumber(const QString &text)
{
    QString t = text.trimmed();
    t.replace(QLatin1Char(','), QLatin1Char('.'));
    bool ok = false;
    const double v = t.toDouble(&ok);
    return ok ? v : 0;
}

QString ParamFieldText(const clsField &field, bool withAccess)
{
    QStringList parts{LocaleNumber(field.Height), LocaleNumber(field.Width), LocaleNumber(field.Top),
                      LocaleNumber(field.Left),   LocaleNumber(field.Font),  field.Bold ? QStringLiteral("1") : QStringLiteral("0"),
                      QString(),                  QString::number(field.EditList), field.Caption};
    if (withAccess)
        parts << (field.Access ? QStringLiteral("1") : QStringLiteral("0"));
    return parts.join(Tilde);
}

void ApplyParamField(clsField &field, const QString &paramField)
{
    const QStringList p = paramField.split(Tilde);
    field.Height = ParseLocaleNumber(p.value(0));
    field.Width = ParseLocaleNumber(p.value(1));
    field.Top = ParseLocaleNumber(p.value(2));
    field.Left = ParseLocaleNumber(p.value(3));
    field.Font = ParseLocaleNumber(p.value(4));
    field.Bold = p.value(5).trimmed() == QLatin1String("1");
    field.EditList = short(p.value(7).trimmed().toInt());
    field.Caption = p.value(8);
    if (p.size() - 1 >= 9)
        field.Access = p.value(9).trimmed() == QLatin1String("1");
}

QString ControlTag(const clsField &field)
{
    return QStringList{QString::number(field.Typ), QString::number(field.Key), QString::number(field.EditList),
                       QString::number(field.TabIndex), QString::number(field.LenghtChars), field.MDB}
        .join(Tilde);
}

std::optional<ControlTagParts> ParseControlTag(const QString &tag)
{
    if (!tag.contains(Tilde))
        return std::nullopt;
    const QStringList p = tag.split(Tilde);
    return ControlTagParts{p.value(0).toInt(), p.value(1).toInt(), p.value(2).toInt(), p.value(3).toInt(),
                           p.value(5)};
}

// --- the database -------------------------------------------------------------------------

QString FieldInitialValue(DbConnection &centre, const QString &column, const FillSource &source)
{
    const QString name = column.trimmed();
    QSqlQuery q = centre.query();
    if (name.compare(QLatin1String("CISLOPROT"), Qt::CaseInsensitive) == 0 ||
        name.compare(QLatin1String("DATUMTVOR"), Qt::CaseInsensitive) == 0) {
        const bool number = name.compare(QLatin1String("CISLOPROT"), Qt::CaseInsensitive) == 0;
        if (source.idProt == 0)
            return number ? source.nazDoc : source.created;
        if (!centre.exec(q, QStringLiteral("SELECT cislo_prot, date_create FROM archiv WHERE `key`=?"), {source.idProt}) ||
            !q.next())
            return QString();
        return FieldText(q, number ? 0 : 1);
    }
    if (!IsSafeIdentifier(name))
        return QString();
    if (!centre.exec(q, QStringLiteral("SELECT `%1` FROM pacients WHERE `key`=?").arg(name), {source.idPac}) || !q.next())
        return QString();
    const QVariant v = q.value(0);
    if (v.typeId() == QMetaType::QDate)
        return v.toDate().toString(QStringLiteral("dd.MM.yyyy"));
    return FieldText(q, 0);
}

bool LoadFormDefinition(DbConnection &sys, clsDocument &doc, int formId, const QString &key,
                        const FillSource *fill, QString *error)
{
    doc.Clear();
    QSqlQuery q = sys.query();
    QString sql = QStringLiteral("SELECT * FROM formulars WHERE document=?");
    QVariantList values{formId};
    if (!key.isEmpty()) {
        sql += QStringLiteral(" AND `key`=?");
        values << key.toInt();
    }
    sql += QStringLiteral(" ORDER BY razeni ASC");
    if (!sys.exec(q, sql, values)) {
        if (error)
            *error = sys.errorText();
        return false;
    }
    while (q.next()) {
        auto field = std::make_unique<clsField>();
        field->Parent_Document = &doc;
        field->Typ = FieldText(q, QStringLiteral("type_field")).toInt();
        field->Key = q.value(QStringLiteral("key")).toInt();
        field->ID = q.value(QStringLiteral("id")).toInt();
        field->TabIndex = short(q.value(QStringLiteral("razeni")).toInt());
        field->MDB = FieldText(q, QStringLiteral("pac_field"));
        ApplyParamField(*field, q.value(QStringLiteral("param_field")).toString());
        if (fill && fill->centre && !field->MDB.isEmpty() && fill->idPac != 0)
            field->Caption = FieldInitialValue(*fill->centre, field->MDB, *fill);
        const QString itemKey = QString::number(field->Key);
        doc.Add(std::move(field), itemKey);
    }
    return true;
}

std::optional<FormHeader> ReadFormHeader(DbConnection &sys, int formId)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT * FROM documents WHERE id=?"), {formId}) || !q.next())
        return std::nullopt;
    return FormHeader{q.value(QStringLiteral("key")).toInt(), q.value(QStringLiteral("id")).toInt(),
                      FieldText(q, QStringLiteral("name")), q.value(QStringLiteral("form_param")).toString()};
}

QString FormTitle(const QStringList &params)
{
    return QStringLiteral("Formulař - ") + params.value(2) + QStringLiteral(" x ") + params.value(3);
}

bool SaveForm(DbConnection &sys, const clsDocument &doc, int formId, QString *error)
{
    auto fail = [&] {
        if (error)
            *error = sys.errorText();
        return false;
    };
    Transaction transaction(sys);
    QStringList keys;
    for (const auto &entry : doc) {
        const clsField &f = *entry.field;
        keys << QString::number(f.Key);
        QSqlQuery q = sys.query();
        if (!sys.exec(q, QStringLiteral("SELECT COUNT(*) FROM formulars WHERE document=? AND `key`=?"), {formId, f.Key}) ||
            !q.next())
            return fail();
        const QVariantList values{QString::number(f.Typ), f.TabIndex, ParamFieldText(f, true), f.MDB, f.ID, formId, f.Key};
        const QString sql =
            q.value(0).toInt() > 0
                ? QStringLiteral("UPDATE formulars SET type_field=?, razeni=?, param_field=?, pac_field=?, id=? "
                                 "WHERE document=? AND `key`=?")
                : QStringLiteral("INSERT INTO formulars (type_field, razeni, param_field, pac_field, id, document, `key`) "
                                 "VALUES (?, ?, ?, ?, ?, ?, ?)");
        if (!sys.exec(sql, values))
            return fail();
    }
    // The keys are numbers made here, so they can stand in the statement.
    QString gone = QStringLiteral("DELETE FROM formulars WHERE document=?");
    if (!keys.isEmpty())
        gone += QStringLiteral(" AND `key` NOT IN (") + keys.join(QLatin1Char(',')) + QLatin1Char(')');
    if (!sys.exec(gone, {formId}))
        return fail();
    if (!transaction.commit()) {
        if (error)
            *error = QStringLiteral("Formulář se nepodařilo uložit.");
        return false;
    }
    return true;
}

clsField *AddNewField(clsDocument &doc, int typ)
{
    int key = 0, tab = 0;
    for (const auto &entry : doc) {
        key = std::max(key, entry.field->Key);
        tab = std::max(tab, int(entry.field->TabIndex));
    }
    auto field = std::make_unique<clsField>();
    field->Parent_Document = &doc;
    field->Typ = typ;
    field->Key = key + 1;
    field->ID = key + 1;
    field->TabIndex = short(tab + 1);
    field->Height = 195;
    field->Width = 3315;
    field->Font = 8;
    return doc.Add(std::move(field), QString::number(key + 1));
}

bool ExportForm(const clsDocument &doc, const QStringList &params, const QString &name, int formId,
                const QString &fileName)
{
    // A fresh file: keys left from an older form would be read with the new one.
    if (QFileInfo::exists(fileName) && !QFile::remove(fileName))
        return false;
    // Each parameter but the last is followed by "~".
    const QString joined = params.join(Tilde);
    bool ok = WriteProfileString(FormSection, QStringLiteral("DOKUMENT"),
                                 name + QLatin1Char('#') + QString::number(formId) + QLatin1Char('#') + joined, fileName);
    ok = ok && WriteProfileString(FormSection, QStringLiteral("POLE_MAX"), QString::number(doc.Count()), fileName);
    for (int i = 1; ok && i <= doc.Count(); ++i) {
        const clsField &f = *doc.Item(i);
        const QString pole = QStringLiteral("POLE_%1_").arg(i);
        ok = WriteProfileString(FormSection, pole + QStringLiteral("TYPE"), QString::number(f.Typ), fileName) &&
             WriteProfileString(FormSection, pole + QStringLiteral("ID"), QString::number(f.ID), fileName) &&
             WriteProfileString(FormSection, pole + QStringLiteral("RAZENI"), QString::number(f.TabIndex), fileName) &&
             WriteProfileString(FormSection, pole + QStringLiteral("PARAM_FIELDS"), ParamFieldText(f, false), fileName);
    }
    return ok;
}

int ImportForm(DbConnection &sys, const QString &fileName, QString *error)
{
    auto refuse = [&](const QString &text) {
        if (error)
            *error = text;
        return -1;
    };
    if (!QFileInfo(fileName).isFile())
        return refuse(QStringLiteral("Soubor formuláře %1 nelze číst.").arg(fileName));
    auto read = [&](const QString &key, int width) {
        return ClipIniValue(ReadProfileString(FormSection, key, QString(), width, fileName));
    };
    const QString dokument = read(QStringLiteral("DOKUMENT"), 150);
    if (dokument.isEmpty())
        return 0;
    const QStringList head = dokument.split(QLatin1Char('#'));
    const QString maxText = read(QStringLiteral("POLE_MAX"), 32);
    bool numeric = false;
    const int count = maxText.toInt(&numeric);
    if (!numeric || count < 0 || count > MaxFormFields)
        return refuse(QStringLiteral("Soubor formuláře uvádí neplatný počet polí (POLE_MAX=%1); nejvýše %2 polí.")
                          .arg(maxText)
                          .arg(MaxFormFields));

    Transaction transaction(sys);
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("INSERT INTO documents (name, form_param) VALUES (?, ?)"),
                  {head.value(0), head.value(2)}))
        return refuse(sys.errorText());
    const int newKey = q.lastInsertId().toInt();
    // The form comes in as a new form: its id is its new key.
    if (!sys.exec(QStringLiteral("UPDATE documents SET id=? WHERE `key`=?"), {newKey, newKey}))
        return refuse(sys.errorText());
    for (int i = 1; i <= count; ++i) {
        const QString pole = QStringLiteral("POLE_%1_").arg(i);
        // The file names no field keys: a field's key in the new form is its place in the file.
        if (!sys.exec(QStringLiteral("INSERT INTO formulars (type_field, id, razeni, param_field, pac_field, document, `key`) "
                                     "VALUES (?, ?, ?, ?, ?, ?, ?)"),
                      {read(pole + QStringLiteral("TYPE"), 32), read(pole + QStringLiteral("ID"), 32).toInt(),
                       read(pole + QStringLiteral("RAZENI"), 32).toInt(), read(pole + QStringLiteral("PARAM_FIELDS"), 1024),
                       read(pole + QStringLiteral("PAC_FIELDS"), 64), newKey, i}))
            return refuse(sys.errorText());
    }
    if (!transaction.commit())
        return refuse(QStringLiteral("Formulář se nepodařilo importovat."));
    return newKey;
}
