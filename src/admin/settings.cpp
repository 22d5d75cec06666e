#include "admin/settings.h"

#include "core/codepage.h"
#include "core/config.h"
#include "core/db.h"
#include "core/session.h"
#include "core/users.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QStringDecoder>

// --- the settings store and the print values ------------------------------------------------

namespace {
const QString Nastaveni = QStringLiteral("NASTAVENI");
const QString Formular = QStringLiteral("FORMULAR");

QString readPrint(QString (*getSet)(QString &))
{
    QString value;
    return getSet(value);
}

void savePrint(QString (*getSet)(QString &), const QString &text)
{
    QString value = text.trimmed();
    if (!value.isEmpty())
        getSet(value);
}
} // namespace

WorkstationSettings ReadWorkstationSettings()
{
    WorkstationSettings s;
    s.serverIp = GetServerIP();
    s.serverPort = GetServerPort();
    s.zadankySave = GetZadankySave();
    s.spravceName = GetSetting(QStringLiteral("SPRAVCE"), QStringLiteral("Name"));
    s.typFormulara = GetTypFormulara();
    s.vyrizuje = GetVyrizuje();
    s.telefon = GetTelefon();
    s.telefonEng = GetTelefonEng();
    s.email = GetEmail();
    s.linka = GetLinka();
    s.spravObj = GetSpravObj();
    s.prikObj = GetPrikObj();
    s.uctyNotControl = GetUctyNotControl();
    s.selectTypBottom = GetSelectTypBottom();
    s.printSize = readPrint(GetSetPrintSize);
    s.printRows = readPrint(GetSetPrintRows);
    s.printTop = readPrint(GetSetPrintTop);
    s.printMargin = readPrint(GetSetPrintMargin);
    s.toolBar = readPrint(GetSetToolBar);
    return s;
}

void SaveWorkstationSettings(const WorkstationSettings &s)
{
    SaveFormSetting(Nastaveni, QStringLiteral("ZADANKY_SAVE"), s.zadankySave);
    SaveSetting(QStringLiteral("SPRAVCE"), QStringLiteral("Name"), s.spravceName);
    SaveFormSetting(Formular, QStringLiteral("TypFormulara"), s.typFormulara);
    SaveFormSetting(Formular, QStringLiteral("VYRIZUJE"), s.vyrizuje);
    SaveFormSetting(Formular, QStringLiteral("TELEFON"), s.telefon);
    SaveFormSetting(Formular, QStringLiteral("TELEFON-ENG"), s.telefonEng);
    SaveFormSetting(Formular, QStringLiteral("EMAIL"), s.email);
    SaveFormSetting(Formular, QStringLiteral("LINKA"), s.linka);
    SaveFormSetting(Formular, QStringLiteral("SpravObj"), s.spravObj);
    SaveFormSetting(Formular, QStringLiteral("PrikObj"), s.prikObj);
    SaveFormSetting(Nastaveni, QStringLiteral("UctyNotControl"), s.uctyNotControl);
    SaveFormSetting(Formular, QStringLiteral("SelectTypBottom"), s.selectTypBottom);
    savePrint(GetSetPrintSize, s.printSize);
    savePrint(GetSetPrintRows, s.printRows);
    savePrint(GetSetPrintTop, s.printTop);
    savePrint(GetSetPrintMargin, s.printMargin);
    savePrint(GetSetToolBar, s.toolBar);
}

bool IsDigitsOnly(const QString &text)
{
    for (const QChar c : text)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    return true;
}

// --- the server address in the configuration file -------------------------------------------

QString ServerAddressProblem(const QString &ip, const QString &port)
{
    static const QRegularExpression address(QStringLiteral("^[A-Za-z0-9.:_-]{1,19}$"));
    if (!address.match(ip).hasMatch())
        return QStringLiteral("Adresa serveru musí mít 1 až 19 znaků a smí obsahovat jen písmena bez diakritiky, "
                              "číslice, tečky, dvojtečky, pomlčky a \"_\".");
    const int number = IsDigitsOnly(port) && port.size() <= 5 ? port.toInt() : 0;
    if (number < 1 || number > 65535)
        return QStringLiteral("Port serveru musí být číslo od 1 do 65535.");
    return QString();
}

bool ServerAnswers(const QString &ip, const QString &port, QString *error)
{
    DbConnection probe(BuildConnStr(QLatin1String(SysDbName), ComputerName(), ip, port, Session().DbUser,
                                    Session().DbPassword));
    if (!probe.isOpen())
        *error = probe.errorText();
    return probe.isOpen();
}

bool SaveServerAddress(const QString &ip, const QString &port)
{
    return WriteProfileString(Nastaveni, QStringLiteral("SERVER_IP"), ip)
        && WriteProfileString(Nastaveni, QStringLiteral("SERVER_PORT"), port);
}

// --- the institution ------------------------------------------------------------------------

bool ReadInstitutionFields(DbConnection &sys, InstitutionFields *f)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT * FROM sys_nastaveni ORDER BY id LIMIT 1")))
        return false;
    *f = InstitutionFields();
    if (!q.next())
        return true;
    f->id = q.value(QStringLiteral("id")).toInt();
    f->firma = FieldText(q, QStringLiteral("Firma"));
    f->adresa = FieldText(q, QStringLiteral("Adresa"));
    f->psc = FieldText(q, QStringLiteral("PSC"));
    f->mesto = FieldText(q, QStringLiteral("Mesto"));
    f->ico = FieldText(q, QStringLiteral("ICO"));
    f->dic = FieldText(q, QStringLiteral("DIC"));
    f->ucet = FieldText(q, QStringLiteral("Cislo uctu"));
    f->banka = FieldText(q, QStringLiteral("Nazev banky"));
    f->ucet2 = FieldText(q, QStringLiteral("Cislo uctu_2"));
    f->newdateUcet = FieldText(q, QStringLiteral("newdate_ucet"));
    return true;
}

namespace {
const QStringList &institutionColumns()
{
    static const QStringList columns{"Firma", "Adresa", "PSC", "Mesto", "ICO", "DIC", "Cislo uctu", "Nazev banky",
                                     "Cislo uctu_2", "newdate_ucet"};
    return columns;
}
} // namespace

const QStringList &InstitutionCaptions()
{
    static const QStringList captions{"Firma", "Adresa", "PSČ", "Město", "IČO", "DIČ", "Číslo účtu", "Název banky",
                                      "Číslo účtu 2", "Účet 2 platí od"};
    return captions;
}

bool SaveInstitutionFields(DbConnection &sys, const InstitutionFields &f)
{
    FieldCaptions captions;
    for (int i = 0; i < institutionColumns().size(); ++i)
        captions.insert(institutionColumns()[i], InstitutionCaptions()[i]);
    sys.setCaptions(captions);
    const QVariantList values{f.firma, f.adresa, f.psc, f.mesto, f.ico, f.dic, f.ucet, f.banka, f.ucet2, f.newdateUcet};
    const bool ok = f.id > 0
        ? sys.exec(QStringLiteral("UPDATE sys_nastaveni SET Firma=?, Adresa=?, PSC=?, Mesto=?, ICO=?, DIC=?, "
                                  "`Cislo uctu`=?, `Nazev banky`=?, `Cislo uctu_2`=?, newdate_ucet=? WHERE id=?"),
                   values + QVariantList{f.id})
        : sys.exec(QStringLiteral("INSERT INTO sys_nastaveni (Firma, Adresa, PSC, Mesto, ICO, DIC, `Cislo uctu`, "
                                  "`Nazev banky`, `Cislo uctu_2`, newdate_ucet) VALUES (?,?,?,?,?,?,?,?,?,?)"),
                   values);
    if (!ok)
        return false;
    SessionRecord &s = Session();
    s.InstFirma = f.firma;
    s.InstAdresa = f.adresa;
    s.InstPSC = f.psc;
    s.InstMesto = f.mesto;
    s.InstICO = f.ico;
    s.InstDIC = f.dic;
    s.InstUcet = f.ucet;
    s.InstBanka = f.banka;
    s.InstUcet2 = f.ucet2;
    s.InstNewdateUcet = f.newdateUcet;
    return true;
}

// --- the ordering persons and the two lists of names ---------------------------------------

bool ReadOrderingPersons(DbConnection &sys, QVector<OrderingPerson> *persons)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT Vyrizuje, Telefon, Linka, email FROM sys_nastaveniobj ORDER BY id")))
        return false;
    persons->clear();
    while (q.next())
        persons->append({FieldText(q, 0), FieldText(q, 1), FieldText(q, 2), FieldText(q, 3)});
    return true;
}

int FindOrderingPerson(const QVector<OrderingPerson> &persons, const QString &text)
{
    for (int i = 0; i < persons.size(); ++i)
        if (persons[i].vyrizuje.startsWith(text, Qt::CaseInsensitive))
            return i;
    return -1;
}

bool ReadNames(DbConnection &sys, const QString &table, QStringList *names)
{
    // Only the two tables of names: the name is part of the statement.
    if (table != QLatin1String("sys_prikazce") && table != QLatin1String("sys_spravcerozp"))
        return false;
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("SELECT Jmeno FROM %1 ORDER BY Jmeno").arg(table)))
        return false;
    names->clear();
    while (q.next())
        names->append(FieldText(q, 0));
    return true;
}

// --- the centres -----------------------------------------------------------------------------

bool ReadCentres(DbConnection &sys, const QString &database, const QString &address, QVector<CentreRow> *rows)
{
    const auto read = [&] {
        QSqlQuery q = sys.query();
        if (!sys.exec(q, QStringLiteral("SELECT * FROM sys_db_kvl ORDER BY code_stredisko ASC")))
            return false;
        rows->clear();
        while (q.next())
            rows->append({q.value(QStringLiteral("id")).toInt(), FieldText(q, QStringLiteral("code_stredisko")),
                          FieldText(q, QStringLiteral("name_stredisko")), FieldText(q, QStringLiteral("mysql_db")),
                          FieldText(q, QStringLiteral("ip_pc")), FieldText(q, QStringLiteral("ip_server")),
                          q.value(QStringLiteral("lekarna")).toInt() != 0});
        return true;
    };
    if (!read())
        return false;
    if (rows->isEmpty()) {
        // The starting row as the program has always written it: the server refuses it, and
        // that refusal is the known outcome, passed over.
        sys.exec(QStringLiteral("INSERT INTO sys_db_kvl (code_stredisko, name_stredisko, mysql_db, ip_pc) VALUES "
                                "('P000'.'FONDARIX-PC, testovací pc', ?,?);"),
                 {database, address});
        return read();
    }
    return true;
}

QString CentreProblem(const CentreRow &row)
{
    if (row.code.trimmed().isEmpty())
        return QStringLiteral("Zadejte kód střediska.");
    if (!IsSafeIdentifier(row.database.trimmed()))
        return QStringLiteral("Název databáze střediska smí obsahovat jen písmena bez diakritiky, číslice a \"_\".");
    return QString();
}

bool AddCentre(DbConnection &sys, const CentreRow &row, int *id)
{
    QSqlQuery q = sys.query();
    if (!sys.exec(q, QStringLiteral("INSERT INTO sys_db_kvl (code_stredisko, name_stredisko, mysql_db, ip_pc, ip_server, "
                                    "lekarna) VALUES (?,?,?,?,?,?)"),
                  {row.code.trimmed(), row.name.trimmed(), row.database.trimmed(), row.ipPc.trimmed(),
                   row.ipServer.trimmed(), int(row.lekarna)}))
        return false;
    *id = q.lastInsertId().toInt();
    return true;
}

bool SaveCentre(DbConnection &sys, const CentreRow &row)
{
    return sys.exec(QStringLiteral("UPDATE sys_db_kvl SET code_stredisko=?, name_stredisko=?, mysql_db=?, ip_pc=?, "
                                   "ip_server=?, lekarna=? WHERE id=?"),
                    {row.code.trimmed(), row.name.trimmed(), row.database.trimmed(), row.ipPc.trimmed(),
                     row.ipServer.trimmed(), int(row.lekarna), row.id});
}

bool DeleteCentre(DbConnection &sys, int id)
{
    return sys.exec(QStringLiteral("DELETE FROM sys_db_kvl WHERE Id = ?"), {id});
}

bool SaveOldDatabasePath(DbConnection &sys, const QString &path)
{
    return sys.exec(QStringLiteral("UPDATE sys_db_kvl SET cesta=?"), {path});
}

// --- footers and logo of the order forms ----------------------------------------------------

const QStringList &FooterFileFilters()
{
    static const QStringList filters{QStringLiteral("Documents Files (*.pdf;*.doc;*.docx;*.xls;*.xlsx)"),
                                     QStringLiteral("Graphic Files (*.jpg;)"), QStringLiteral("HTML Files (*.htm*)")};
    return filters;
}

namespace {
QString footerText(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? FromCp1250(bytes) : text;
}
} // namespace

QString StoreFooterFile(DbConnection &sys, int slot, const QString &login, const QString &path)
{
    if (slot < 1 || slot > FooterSlotCount)
        return QStringLiteral("Neznámý druh patičky %1.").arg(slot);
    const QFileInfo info(path);
    if (!info.isFile())
        return QStringLiteral("Soubor %1 nebyl nalezen, nic nebylo uloženo.").arg(path);
    const bool picture = slot >= PictureSlot;
    if (picture && info.size() > MaxPictureBytes)
        return QStringLiteral("Obrázek %1 je příliš velký (nejvýše %2 MB), nic nebylo uloženo.")
            .arg(path).arg(MaxPictureBytes / (1024 * 1024));
    if (!picture && info.size() > MaxPictureBytes)
        return QStringLiteral("Soubor %1 je na patičku příliš velký, nic nebylo uloženo.").arg(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("Soubor %1 nelze přečíst: %2").arg(path, file.errorString());
    const QByteArray bytes = file.readAll();
    if (picture && QImage::fromData(bytes).isNull())
        return QStringLiteral("Soubor %1 není obrázek, nic nebylo uloženo.").arg(path);

    Transaction transaction(sys);
    bool ok = false;
    if (slot == LogoSlot)
        ok = sys.exec(QStringLiteral("DELETE FROM sys_logo_kvl WHERE typ = 1"))
            && sys.exec(QStringLiteral("INSERT INTO sys_logo_kvl (typ, filename, oleObrazek) VALUES (1, ?, ?)"),
                        {path, bytes});
    else if (slot == PictureSlot)
        ok = sys.exec(QStringLiteral("DELETE FROM sys_paticky_obrazky WHERE typ='4' AND login=?"), {login})
            && sys.exec(QStringLiteral("INSERT INTO sys_paticky_obrazky (typ, login, filename, oleObrazek) "
                                       "VALUES ('4', ?, ?, ?)"),
                        {login, path, bytes});
    else
        ok = sys.exec(QStringLiteral("DELETE FROM sys_paticky_html WHERE typ=? AND login=?"), {QString::number(slot), login})
            && sys.exec(QStringLiteral("INSERT INTO sys_paticky_html (typ, login, html) VALUES (?, ?, ?)"),
                        {QString::number(slot), login, footerText(bytes)});
    if (!ok || !transaction.commit())
        return sys.errorText() + QStringLiteral(" Nic nebylo uloženo.");
    return QString();
}

namespace {
// The row of a picture slot: file name and BLOB.
bool storedPicture(DbConnection &sys, int slot, const QString &login, QSqlQuery &q)
{
    return slot == LogoSlot
        ? sys.exec(q, QStringLiteral("SELECT filename, oleObrazek FROM sys_logo_kvl WHERE typ = 1"))
        : sys.exec(q, QStringLiteral("SELECT filename, oleObrazek FROM sys_paticky_obrazky WHERE typ='4' AND login=?"),
                   {login});
}
} // namespace

QString StoredFooterDescription(DbConnection &sys, int slot, const QString &login)
{
    QSqlQuery q = sys.query();
    if (slot >= PictureSlot) {
        if (!storedPicture(sys, slot, login, q) || !q.next())
            return QString();
        return FieldText(q, 0);
    }
    if (!sys.exec(q, QStringLiteral("SELECT html FROM sys_paticky_html WHERE typ=? AND login=?"),
                  {QString::number(slot), login})
        || !q.next())
        return QString();
    return QStringLiteral("uloženo, %1 znaků").arg(q.value(0).toString().size());
}

bool WriteStoredPicture(DbConnection &sys, int slot, const QString &login, const QString &path)
{
    QSqlQuery q = sys.query();
    if (slot < PictureSlot || !storedPicture(sys, slot, login, q) || !q.next())
        return false;
    const QByteArray bytes = q.value(1).toByteArray();
    if (QImage::fromData(bytes).isNull())
        return false;
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// --- the grant filter of the logged-in user --------------------------------------------------

bool SaveOwnGrantFilter(DbConnection &sys, const QString &login, const QString &filter)
{
    const QString value = ReadFilterText(filter);
    if (!sys.exec(QStringLiteral("UPDATE sys_users SET filtr_grant=? WHERE login=?"), {value, login}))
        return false;
    Session().UserFiltrGrant = value;
    return true;
}
