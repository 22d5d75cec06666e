#include "orders/exchange.h"

#include "core/codepage.h"
#include "core/db.h"
#include "core/session.h"
#include "core/text.h"
#include "orders/objrecord.h"

#include <QDir>
#include <QFile>
#include <QSqlField>
#include <QSqlRecord>

namespace {

constexpr qint64 ImportChars = 20000;   // the import takes this much of a file, the rest is left

QString Native(const QString &path) { return QDir::toNativeSeparators(path); }

// Lines of a file as a line reader counts them: each line end, and a last
// line without one. Read in pieces, so any size of file is counted.
qint64 CountLines(QFile &file)
{
    qint64 lines = 0;
    char last = '\n';
    while (!file.atEnd()) {
        const QByteArray chunk = file.read(1 << 16);
        if (chunk.isEmpty())
            break;
        lines += chunk.count('\n');
        last = chunk.back();
    }
    return lines + (last != '\n' ? 1 : 0);
}

int Failed(QString *error, const QString &message)
{
    if (error)
        *error = message;
    return -1;
}

} // namespace

const QStringList &ExchangeColumns()
{
    static const QStringList columns = [] {
        QStringList c{QStringLiteral("Cis_obj"), QStringLiteral("Autor"), QStringLiteral("Dat_obj"),
                      QStringLiteral("Grant"),   QStringLiteral("Firma"), QStringLiteral("Pobocka"),
                      QStringLiteral("Adres"),   QStringLiteral("PSC"),   QStringLiteral("Mesto")};
        for (int i = 1; i <= 8; ++i)
            c << QStringLiteral("LineRec%1").arg(i);
        for (int i = 1; i <= 8; ++i)
            c << QStringLiteral("Poc%1").arg(i);
        c << QStringLiteral("Tel") << QStringLiteral("Fax") << QStringLiteral("Text") << QStringLiteral("Text1")
          << QStringLiteral("Typ") << QStringLiteral("LineRec9") << QStringLiteral("Poc9")
          << QStringLiteral("LineRec10") << QStringLiteral("poc10") << QStringLiteral("Prikazce")
          << QStringLiteral("SpravceRozp");
        return c;
    }();
    return columns;
}

QString SmtpFolder() { return Session().TempDir + QStringLiteral("/SMTP_Email"); }
QString Pop3Folder() { return Session().TempDir + QStringLiteral("/POP3_Email"); }

bool MakeExchangeFolders(QString *error)
{
    for (const QString &folder : {SmtpFolder(), Pop3Folder()}) {
        if (!QDir().mkpath(folder)) {
            if (error)
                *error = QStringLiteral("Nelze vytvořit složku ") + Native(folder) + QStringLiteral(".");
            return false;
        }
    }
    return true;
}

QString ExchangeFileName(const QString &firma)
{
    return SmtpFolder() + QLatin1Char('/') + SafeFileName(firma) + QStringLiteral(".txt");
}

bool ExportObjFirm(const QString &path, const QSqlRecord &row, QString *error)
{
    QSqlRecord order = row;
    if (!order.value(QStringLiteral("Text")).toString().isEmpty())
        order.setValue(QStringLiteral("Text"), order.value(QStringLiteral("file_html_text")).toString().remove(QLatin1Char('"')));
    QString line = ObjRecordLine(order);
    // One record is one line.
    line.replace(QStringLiteral("\r\n"), QStringLiteral("^"));
    line.replace(QLatin1Char('\n'), QLatin1Char('^'));
    line.replace(QLatin1Char('\r'), QLatin1Char('^'));
    QFile file(path);
    const QByteArray bytes = ToCp1250(line) + "\r\n";
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()) {
        if (error)
            *error = QStringLiteral("Soubor ") + Native(path) + QStringLiteral(" nelze zapsat.");
        return false;
    }
    return true;
}

int ExportFirm(DbConnection &centre, const QString &firma, QString *path, QString *error)
{
    if (!MakeExchangeFolders(error))
        return -1;
    const QString folded = SafeFileName(firma);
    const QString piece = folded.section(QLatin1Char('_'), 0, 0);
    if (path)
        *path = ExchangeFileName(firma);
    if (piece.isEmpty())
        return 0;
    QString pattern = piece;
    pattern.replace(QLatin1Char('\\'), QStringLiteral("\\\\")).replace(QLatin1Char('%'), QStringLiteral("\\%"));
    QSqlQuery rows = centre.query();
    if (!centre.exec(rows, QStringLiteral("SELECT * FROM archobj WHERE Firma LIKE ? ORDER BY cis_obj"),
                     {pattern + QLatin1Char('%')}))
        return Failed(error, DbErrorMessage(rows.lastError()));
    int written = 0;
    while (rows.next()) {
        if (!ExportObjFirm(ExchangeFileName(firma), rows.record(), error))
            return -1;
        ++written;
    }
    return written;
}

int ImportObjFile(DbConnection &centre, const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Failed(error, QStringLiteral("Soubor ") + Native(path) + QStringLiteral(" nelze otevřít."));
    const qint64 count = CountLines(file);
    if (count == 0)
        return 0;
    file.seek(0);
    QString text = FromCp1250(file.read(ImportChars));
    text.replace(QLatin1Char(','), QLatin1Char('#'));

    // The text passes through the scratch file, as a record reader reads it.
    const QString tmp = Session().TempDir + QStringLiteral("/tmp.txt");
    QDir().mkpath(Session().TempDir);
    if (!WriteFileCp1250(tmp, text))
        return Failed(error, QStringLiteral("Soubor ") + Native(tmp) + QStringLiteral(" nelze zapsat."));
    text = ReadFileCp1250(tmp);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const QStringList records = text.split(QLatin1Char('\n'));

    const QStringList &columns = ExchangeColumns();
    QStringList marks;
    for (const QString &column : columns)
        marks << QStringLiteral("?");
    const QString sql = QStringLiteral("INSERT INTO archobj (`%1`) VALUES (%2)")
                            .arg(columns.join(QStringLiteral("`, `")), marks.join(QStringLiteral(", ")));

    Transaction transaction(centre);
    int stored = 0;
    for (qint64 i = 0; i < count && i < records.size() && !records[i].isEmpty(); ++i) {
        QString record = records[i];
        record.replace(QLatin1Char('#'), QLatin1Char(','));
        record.replace(QLatin1Char('^'), QStringLiteral("\r\n"));
        QVariantList values;
        for (qsizetype c = 0; c < columns.size(); ++c)
            values << GetField(record, short(c), '~');
        QVariant &name = values[columns.indexOf(QStringLiteral("Text"))];
        if (!name.toString().isEmpty())
            name = QStringLiteral("F") + values[0].toString() + QLatin1Char('.') + name.toString();
        QSqlQuery insert = centre.query();
        if (!centre.exec(insert, sql, values))
            return Failed(error, QStringLiteral("Objednávku %1 ze souboru nelze uložit: ").arg(i + 1) +
                                     DbErrorMessage(insert.lastError()) +
                                     QStringLiteral(" Ze souboru nebylo uloženo nic."));
        ++stored;
    }
    if (!transaction.commit())
        return Failed(error, QStringLiteral("Objednávky ze souboru nelze uložit: ") +
                                 DbErrorMessage(centre.db().lastError()));
    return stored;
}
