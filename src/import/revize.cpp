#include "import/revize.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/text.h"
#include "grants/amount.h"
#include "import/importsouboru.h"
#include "import/pozice.h"
#include "import/rozdelsoubor.h"

#include <QDate>
#include <QFileInfo>
#include <QSet>
#include <QSqlQuery>

#include <array>

bool UcetNotControl(const QString &account, const QString &notControl)
{
    for (QString item : notControl.split(QLatin1Char(','))) {
        item.remove(QLatin1Char('*'));
        if (!item.isEmpty() && account.left(item.size()) == item)
            return true;
    }
    return false;
}

RevizeResult KontrolaSouboru(DbConnection &conn, const QString &fileName, const QString &dateFrom,
                             const QString &dateTo, const std::function<bool(int percent)> &progress)
{
    RevizeResult r;
    auto refuse = [&](const QString &text, const QString &title) {
        r.failure = text;
        MsgBox(text, MsgWarning, title);
        return r;
    };
    std::array<short, 10> pos{};
    const QVector<PoziceRadek> &rows = PoziceRadky(PoziceMD_DAL);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        pos[size_t(i)] = PoziceVPameti(ReadPozice(PoziceMD_DAL, rows[i].keyCod));
        if (pos[size_t(i)] < 0)
            return refuse(QStringLiteral("Definování pozice TAB pro import MD/Dal není nastavená ! Nelze pokračovat v importu."),
                          QStringLiteral("Export"));
    }
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q, QStringLiteral("SELECT UCET FROM memImport")))
        return refuse(conn.errorText(), QStringLiteral("Info"));
    QSet<QString> known;
    while (q.next())
        known.insert(q.value(0).toString().toUpper());
    if (known.isEmpty())
        return refuse(QStringLiteral("Importujte soubor seznamu účtu ! Nelze pokračovat v kontrole souboru !"), QStringLiteral("Info"));
    QDate from, to;
    if (!dateFrom.trimmed().isEmpty()) {
        from = ParseImportDate(dateFrom);
        to = ParseImportDate(dateTo);
        if (!from.isValid() || !to.isValid())
            return refuse(QStringLiteral("Špatný formát datumu."), QStringLiteral("Info"));
    }
    if (!QFileInfo(fileName).isFile())
        return refuse(QStringLiteral("Importní soubor neexistuje..."), QStringLiteral("Info"));

    const QString notControl = GetUctyNotControl();
    const int lines = RozdelSoubor(fileName);
    auto record = [&](const QString &line) {
        if (!IsDataRecord(line))
            return true;
        const QStringList f = line.split(QLatin1Char('\t'));
        auto field = [&](int i) { return f.value(pos[size_t(i)]); };
        QString datum = field(0).left(10);
        const QDate date = ParseImportDate(datum);
        if (date.isValid())
            datum = date.toString(QStringLiteral("dd.MM.yyyy"));
        if (from.isValid() && (!date.isValid() || date < from || date > to))
            return true;
        for (const auto &[ucetAt, nazevAt, side] : {std::tuple{4, 8, "MD "}, std::tuple{5, 9, "DAL "}}) {
            QString ucet = field(ucetAt);
            if (!IsNumberText(ucet))
                ucet = QStringLiteral("  Error !");
            if (known.contains(ucet.toUpper()) || UcetNotControl(ucet, notControl))
                continue;
            const QString castka = FormatCastky(field(3));
            r.lines << QString::number(r.lines.size() + 1).leftJustified(6) + QStringLiteral("   ") + ucet
                           + QStringLiteral("   ") + field(1).leftJustified(6) + QLatin1Char('\t') + field(2).leftJustified(15)
                           + QLatin1Char('\t') + datum + QStringLiteral("    ") + field(nazevAt).leftJustified(40)
                           + QLatin1Char('\t') + castka + QLatin1String(side);
            if (castka.trimmed() != QLatin1String("Find error !"))
                (side[0] == 'M' ? r.totalMD : r.totalDal) += AmountValue(castka);
        }
        return true;
    };
    r.ok = WalkChunks(lines, 15, record, [&](double percent, const QString &) { return !progress || progress(int(percent)); });
    if (!r.ok && r.failure.isEmpty())
        r.failure = QStringLiteral("Revize byla přerušena.");
    return r;
}
