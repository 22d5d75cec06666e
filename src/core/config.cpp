#include "core/config.h"

#include "core/codepage.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/number.h"
#include "core/session.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

// --- folders --------------------------------------------------------------------------

void InitSpecialDirs()
{
    SessionRecord &s = Session();
    QString win = qEnvironmentVariable("FONDARIX_WINDIR");
    if (win.isEmpty())
        win = QDir::homePath() + QStringLiteral("/.config/fondarix");
    QString temp = qEnvironmentVariable("FONDARIX_TEMP");
    if (temp.isEmpty())
        temp = QDir::tempPath() + QStringLiteral("/fondarix-") + qEnvironmentVariable("USER", QStringLiteral("user"));
    QDir().mkpath(win);
    QDir().mkpath(temp);
    s.WinDir = QDir::cleanPath(win);
    s.TempDir = QDir::cleanPath(temp);
    s.IniPath = s.WinDir + QStringLiteral("/Fondarix MySQL.ini");
}

QString IniFilePath()
{
    if (!Session().IniPath.isEmpty())
        return Session().IniPath;
    InitSpecialDirs();
    return Session().IniPath;
}

namespace {
// Blanks only, as the platform's trim: a tab or a line break stays for the clip to find.
QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == QLatin1Char(' '))
        ++first;
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

// What every getter returns: the clipped value, trimmed once more ("3307 <tab>x" is "3307").
QString clipped(const QString &value) { return trimBlanks(ClipIniValue(value)); }
} // namespace

QString ClipIniValue(const QString &value)
{
    const QString t = trimBlanks(value);
    qsizetype end = 0;
    while (end < t.size() && t.at(end).unicode() >= 31)
        ++end;
    return t.left(end);
}

// --- private-profile file -------------------------------------------------------------

namespace {
QString sectionName(const QString &line)
{
    const QString t = line.trimmed();
    if (t.startsWith(QLatin1Char('[')) && t.contains(QLatin1Char(']')))
        return t.mid(1, t.indexOf(QLatin1Char(']')) - 1).trimmed();
    return QString();
}

bool isSectionLine(const QString &line)
{
    const QString t = line.trimmed();
    return t.startsWith(QLatin1Char('[')) && t.contains(QLatin1Char(']'));
}

QString keyOf(const QString &line)
{
    const qsizetype eq = line.indexOf(QLatin1Char('='));
    return eq < 0 ? QString() : line.left(eq).trimmed();
}

QStringList readLines(const QString &file)
{
    bool ok = false;
    QString text = ReadFileCp1250(file, &ok);
    if (!ok)
        return {};
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QString resolve(const QString &file) { return file.isEmpty() ? IniFilePath() : file; }
} // namespace

QString ReadProfileString(const QString &section, const QString &key, const QString &defaultValue, int width,
                          const QString &file)
{
    QString value = defaultValue;
    bool inSection = false;
    const QStringList lines = readLines(resolve(file));
    for (const QString &line : lines) {
        if (isSectionLine(line)) {
            inSection = sectionName(line).compare(section, Qt::CaseInsensitive) == 0;
            continue;
        }
        if (!inSection || keyOf(line).compare(key, Qt::CaseInsensitive) != 0 || keyOf(line).isEmpty())
            continue;
        value = line.mid(line.indexOf(QLatin1Char('=')) + 1).trimmed();
        // A value in matching quotes is taken without them.
        if (value.size() >= 2 && (value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\'')) &&
            value.back() == value.front())
            value = value.mid(1, value.size() - 2);
        break;
    }
    // The buffer holds width characters, the last of them the terminating zero.
    return width > 0 ? value.left(width - 1) : QString();
}

bool WriteProfileString(const QString &section, const QString &key, const QString &value, const QString &file)
{
    const QString path = resolve(file);
    QStringList lines = readLines(path);
    const QString entry = key + QLatin1Char('=') + value;
    qsizetype sectionAt = -1;
    qsizetype insertAt = -1;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (isSectionLine(lines[i])) {
            if (sectionAt >= 0)
                break;   // past the end of our section
            if (sectionName(lines[i]).compare(section, Qt::CaseInsensitive) == 0) {
                sectionAt = i;
                insertAt = i + 1;
            }
            continue;
        }
        if (sectionAt < 0)
            continue;
        if (!keyOf(lines[i]).isEmpty() && keyOf(lines[i]).compare(key, Qt::CaseInsensitive) == 0) {
            lines[i] = entry;
            insertAt = -2;
            break;
        }
        if (!lines[i].trimmed().isEmpty())
            insertAt = i + 1;
    }
    if (sectionAt < 0) {
        lines << QLatin1Char('[') + section + QLatin1Char(']') << entry;
    } else if (insertAt >= 0) {
        lines.insert(insertAt, entry);
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    return WriteFileCp1250(path, lines.join(QLatin1String("\r\n")) + QLatin1String("\r\n"));
}

// --- settings store ---------------------------------------------------------------------

namespace {
QString storeKey(const QString &section, const QString &key) { return section + QLatin1Char('/') + key; }
} // namespace

QString GetSetting(const QString &section, const QString &key)
{
    QSettings store(QStringLiteral("Fondarix"), QStringLiteral("Fondarix"));
    return store.value(storeKey(section, key)).toString();
}

void SaveSetting(const QString &section, const QString &key, const QString &value)
{
    QSettings store(QStringLiteral("Fondarix"), QStringLiteral("Fondarix"));
    store.setValue(storeKey(section, key), value);
}

void DeleteSetting(const QString &section, const QString &key)
{
    QSettings store(QStringLiteral("Fondarix"), QStringLiteral("Fondarix"));
    store.remove(storeKey(section, key));
}

// --- getters --------------------------------------------------------------------------

namespace {
QString fileOnly(const char *section, const char *key, int width, const QString &def)
{
    return clipped(ReadProfileString(QLatin1String(section), QLatin1String(key), def, width));
}

// The store hides the file for ever once it holds a value.
QString storeFirst(const char *section, const char *key, int width, const QString &def)
{
    const QString stored = GetSetting(QLatin1String(section), QLatin1String(key));
    if (!stored.isEmpty())
        return clipped(stored);
    return fileOnly(section, key, width, def);
}

QString today() { return QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")); }

double storeFirstNumber(const char *section, const char *key)
{
    const double stored = ScanNumber(GetSetting(QLatin1String(section), QLatin1String(key)));
    if (stored != 0.0)
        return stored;
    return ScanNumber(fileOnly(section, key, 8, QStringLiteral("0")));
}
} // namespace

QString GetServerIP() { return fileOnly("NASTAVENI", "SERVER_IP", 20, QLatin1String(DefaultServerIP)); }
QString GetServerPort() { return fileOnly("NASTAVENI", "SERVER_PORT", 10, QStringLiteral("3306")); }

QString GetDirExe()
{
    QString dir = clipped(GetSetting(QStringLiteral("NASTAVENI"), QStringLiteral("Dir k EXE")));
    if (dir.isEmpty())
        dir = clipped(QCoreApplication::applicationDirPath());
    if (dir.endsWith(QLatin1Char('/')) || dir.endsWith(QLatin1Char('\\')))
        dir.chop(1);
    return dir;
}

QString GetLastDir()
{
    const QString stored = GetSetting(QStringLiteral("NASTAVENI"), QStringLiteral("Last Dir"));
    if (!stored.isEmpty())
        return clipped(stored);
    QString v = fileOnly("NASTAVENI", "Last Dir", 50, QStringLiteral("Hodnota nenalezena"));
    if (v.endsWith(QLatin1Char('\\')) || v.endsWith(QLatin1Char('/')))
        v.chop(1);
    return v;
}

QString GetSelectTypBottom() { return storeFirst("FORMULAR", "SelectTypBottom", 5, QStringLiteral("0")); }
QString GetTypFormulara() { return storeFirst("FORMULAR", "TypFormulara", 6, QStringLiteral("1")); }

QString GetZadankySave()
{
    // The default folder is made at each call, before the stored value is looked at.
    QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    if (desktop.isEmpty())
        desktop = QDir::homePath() + QStringLiteral("/Desktop");
    const QString computed = desktop + QStringLiteral("/Objednavky Fondarix/");
    QDir().mkpath(computed);
    const QString stored = GetSetting(QStringLiteral("NASTAVENI"), QStringLiteral("ZADANKY_SAVE"));
    if (!stored.isEmpty())
        return clipped(stored);
    // The file is asked in section "Fondarix" under key "NASTAVENI": a hand-written
    // "ZADANKY_SAVE" key in the file is not found, and that stays so.
    return fileOnly("Fondarix", "NASTAVENI", 80, computed);
}

QString GetDNS() { return storeFirst("FORMULAR", "DNS", 50, QString()); }
QString GetDatumOd() { return storeFirst("FORMULAR", "Datum od", 50, today()); }
QString GetDatumDo() { return storeFirst("FORMULAR", "Datum do", 50, today()); }
QString GetFiltrUctyRozp() { return storeFirst("ROZPOCET", "Filtr pro UctyRozp", 50, QString()); }
QString GetVyrizuje() { return storeFirst("FORMULAR", "VYRIZUJE", 50, QString()); }
QString GetTelefon() { return storeFirst("FORMULAR", "TELEFON", 50, QString()); }
QString GetTelefonEng() { return storeFirst("FORMULAR", "TELEFON-ENG", 50, QString()); }
QString GetEmail() { return storeFirst("FORMULAR", "EMAIL", 50, QString()); }
QString GetUctyNotControl() { return storeFirst("NASTAVENI", "UctyNotControl", 50, QString()); }
QString GetLinka() { return storeFirst("FORMULAR", "LINKA", 50, QString()); }
QString GetSpravObj() { return storeFirst("FORMULAR", "SpravObj", 50, QString()); }
QString GetPrikObj() { return storeFirst("FORMULAR", "PrikObj", 50, QString()); }
double GetStudioFrmTop() { return storeFirstNumber("NASTAVENI", "STUDIO_FRM_TOP"); }
double GetStudioFrmLeft() { return storeFirstNumber("NASTAVENI", "STUDIO_FRM_LEFT"); }

const QStringList &PoziceTabKeys()
{
    static const QStringList keys{
        QStringLiteral("Datum"),      QStringLiteral("Doklad"),      QStringLiteral("Text"),
        QStringLiteral("Castka"),     QStringLiteral("Ucet MD"),     QStringLiteral("Ucet DAL"),
        QStringLiteral("Grant MD"),   QStringLiteral("Grant DAL"),   QStringLiteral("Nazev MD"),
        QStringLiteral("Nazev DAL"),  QStringLiteral("N_Datum"),     QStringLiteral("N_Doklad"),
        QStringLiteral("N_Text"),     QStringLiteral("N_Castka"),    QStringLiteral("N_Ucet MD"),
        QStringLiteral("N_Ucet DAL"), QStringLiteral("N_Grant MD"),  QStringLiteral("N_Grant DAL"),
        QStringLiteral("N_Nazev MD"), QStringLiteral("N_Nazev DAL")};
    return keys;
}

const QStringList &PoziceTab2Keys()
{
    static const QStringList keys{QStringLiteral("Ucet"),     QStringLiteral("Nazev"),   QStringLiteral("Stredisko"),
                                  QStringLiteral("Stav"),     QStringLiteral("Mena"),    QStringLiteral("N_Ucet"),
                                  QStringLiteral("N_Nazev"),  QStringLiteral("N_Stredisko"), QStringLiteral("N_Stav"),
                                  QStringLiteral("N_Mena")};
    return keys;
}

QString GetPoziceTab(const QString &key)
{
    return clipped(ReadProfileString(QLatin1String(SectionPoziceTab), key, QString(), 50));
}

QString GetPoziceTab2(const QString &key)
{
    return clipped(ReadProfileString(QLatin1String(SectionPoziceTab2), key, QString(), 50));
}

bool SetPoziceTab(const QString &key, const QString &value)
{
    return WriteProfileString(QLatin1String(SectionPoziceTab), key, value);
}

bool SetPoziceTab2(const QString &key, const QString &value)
{
    return WriteProfileString(QLatin1String(SectionPoziceTab2), key, value);
}

// --- setters ------------------------------------------------------------------------------

void SaveFormSetting(const QString &section, const QString &key, const QString &value)
{
    QString v = value;
    if (key == QLatin1String("UctyNotControl"))
        v.remove(QLatin1Char(' '));
    SaveSetting(section, key, v);
}

bool IsDateText(const QString &text)
{
    const QStringList parts = text.trimmed().split(QLatin1Char('.'));
    if (parts.size() != 3)
        return false;
    // Digits only: a sign or a blank inside is not a date.
    for (const QString &part : parts)
        if (part.isEmpty() || !std::all_of(part.cbegin(), part.cend(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }))
            return false;
    bool okD = false, okM = false, okY = false;
    const int d = parts[0].toInt(&okD);
    const int m = parts[1].toInt(&okM);
    int y = parts[2].toInt(&okY);
    if (!okD || !okM || !okY || parts[2].isEmpty() || parts[2].size() > 4)
        return false;
    if (parts[2].size() <= 2)
        y += y < 30 ? 2000 : 1900;
    return QDate(y, m, d).isValid();
}

namespace {
bool saveDate(const char *key, const QString &text, DateTarget target)
{
    if (!IsDateText(text)) {
        MsgBox(QStringLiteral("Špatný formát datumu."), MsgWarning);
        return false;
    }
    if (target == DateTarget::Store)
        SaveSetting(QStringLiteral("FORMULAR"), QLatin1String(key), text.trimmed());
    else
        WriteProfileString(QStringLiteral("FORMULAR"), QLatin1String(key), text.trimmed());
    return true;
}
} // namespace

bool SaveDatumOd(const QString &text, DateTarget target) { return saveDate("Datum od", text, target); }
bool SaveDatumDo(const QString &text, DateTarget target) { return saveDate("Datum do", text, target); }

void SetFiltrUctyRozp(const QString &value)
{
    WriteProfileString(QStringLiteral("ROZPOCET"), QStringLiteral("Filtr pro UctyRozp"), value);
}

void SetStudioFrmTop(float value)
{
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("STUDIO_FRM_TOP"), QString::number(value));
}

void SetStudioFrmLeft(float value)
{
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("STUDIO_FRM_LEFT"), QString::number(value));
}

// --- per-user print values -------------------------------------------------------------------

namespace {
struct PrintParam {
    int column;              // param_N
    const char *key;         // fallback key in "FORMULAR"
    const char *def;
    const char *insertKey;   // fallback used when the user's row is first inserted
    const char *insertDef;
};

QString printFallback(const char *key, const char *def)
{
    return fileOnly("FORMULAR", key, 5, QLatin1String(def));
}

// The value stands in the insert as a number: numeric text is stored as the number reads.
QVariant asNumber(const QString &value)
{
    bool ok = false;
    const qlonglong n = value.trimmed().toLongLong(&ok);
    if (ok)
        return n;
    const double d = value.trimmed().toDouble(&ok);
    return ok ? QVariant(d) : QVariant(value);
}

QString getSetPrint(const PrintParam &p, QString &value)
{
    const QString column = QStringLiteral("param_%1").arg(p.column);
    const QString login = Session().UserLogin;
    DbConnection conn(ConnStrSys());
    if (!conn.isOpen())
        return value.trimmed().isEmpty() ? printFallback(p.key, p.def) : value;
    if (!value.trimmed().isEmpty()) {
        conn.exec(QStringLiteral("UPDATE sys_users_print SET `%1` = ? WHERE login = ?").arg(column), {value, login});
        return value;
    }
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT %1 FROM sys_users_print WHERE login = ?").arg(column), {login}))
        return printFallback(p.key, p.def);
    if (!q.next()) {
        const QString fallback = printFallback(p.insertKey, p.insertDef);
        conn.exec(QStringLiteral("INSERT INTO sys_users_print (login, %1) VALUES (?, ?)").arg(column),
                  {login, asNumber(fallback)});
        return fallback;
    }
    if (q.value(0).isNull()) {
        const QString fallback = printFallback(p.key, p.def);
        conn.exec(QStringLiteral("UPDATE sys_users_print SET `%1` = ? WHERE login = ?").arg(column), {fallback, login});
        return fallback;
    }
    return q.value(0).toString();
}

constexpr PrintParam PrintSize{1, "Size", "4", "Size", "4"};
constexpr PrintParam PrintRows{2, "Pocet radku v textu", "24", "Pocet radku v textu", "24"};
constexpr PrintParam PrintTop{3, "Otstup nad oknem", "0", "Otstup nad oknem", "0"};
// The first insert of a margin takes the font size's key and default: kept so.
constexpr PrintParam PrintMargin{4, "Okraje", "0", "Size", "4"};
constexpr PrintParam PrintToolBar{5, "ToolBar", "1", "ToolBar", "1"};
} // namespace

QString GetSetPrintSize(QString &value) { return getSetPrint(PrintSize, value); }
QString GetSetPrintRows(QString &value) { return getSetPrint(PrintRows, value); }
QString GetSetPrintTop(QString &value) { return getSetPrint(PrintTop, value); }
QString GetSetPrintMargin(QString &value) { return getSetPrint(PrintMargin, value); }
QString GetSetToolBar(QString &value) { return getSetPrint(PrintToolBar, value); }
