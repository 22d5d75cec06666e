#pragma once
// Writing an order row: the entry screen's save, the archive's two saves by role, copy and
// delete. Every value is bound, so a quote is stored as typed where the entry screen keeps it
// and removed where the archive removes it on purpose.

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <array>

class DbConnection;

// What the entry screen holds for one save.
struct ObjEntry {
    QString cisObj;
    short typ = 1;                    // 1 SKLAD, 2 TEXT, 5 SLUŽBY
    QString datum;                    // dd.mm.yyyy
    QString stredisko;
    std::array<QString, 7> firm;      // Firma, Pobocka, Adres, PSC, Mesto, Tel, Fax
    QString grant, hrazeno, pozn, cena;
    // Goods rows: name, quantity, unit, price for one.
    std::array<std::array<QString, 4>, 8> rows;
    QString body;                     // kind 2: the editor's HTML; kind 5: the plain text
    QString vyrizuje, telefon, linka; // LineRec9, Poc9, LineRec10
};

// The footer a save records: the type chosen in the settings and its HTML for the user.
struct ObjFooterChoice {
    QString typ;      // SelectTypBottom
    QString html;     // FooterHtml(typ + 1) of the user, "'" replaced by '"'
};

// Result of a write on a row that may have gone meanwhile.
enum class ObjWrite { Saved, Missing, Failed };

// The two statements of the entry screen and the footer record, in one transaction.
// Missing when the row was deleted meanwhile (nothing written).
ObjWrite SaveObj(DbConnection &centre, const ObjEntry &entry, const ObjFooterChoice &footer,
                 const QDateTime &now = QDateTime::currentDateTime());
// Sum of quantity times price for one over the goods rows, through the amount formatter.
QString RecalkObj(const std::array<std::array<QString, 4>, 8> &rows);

// The letterhead letter (kinds 3 and 4).
struct ObjLetter {
    QString cisObj;
    bool english = false;
    QString datum;
    std::array<QString, 7> firm;
    std::array<QString, 5> address;
    QString vyrizuje, linka, telefon, email;
    QString body;
};
// Inserts the row if it is missing, then the two statements and the footer record.
ObjWrite SaveObjSablona(DbConnection &centre, const ObjLetter &letter, const ObjFooterChoice &footer,
                        const QDateTime &now = QDateTime::currentDateTime());

// What the archive's detail holds for a save; every text loses its quotes.
struct ObjArchiveDetail {
    short typ = 1;
    std::array<QString, 7> firm;
    std::array<QString, 8> lineRec;   // composed "<name>#<unit price>#<unit>" (kinds 3, 4: the address)
    std::array<QString, 8> poc;
    QString body;                     // written for kinds other than 1
    QString poc10, castka, prikazce, datVyriz, grant, text1, cisGlobal, objWF, objZauct;
};
ObjWrite SaveObjArchive(DbConnection &centre, int nom, const ObjArchiveDetail &detail);
// The pharmacy may save the price, the delivery date and the processing date only.
ObjWrite SaveObjLekarna(DbConnection &centre, int nom, const QString &castka, const QString &datVyriz,
                        const QString &objWF);

// The person who handles the order as the list of ordering persons (sys_nastaveniobj) has
// them: the name for LineRec9, the telephone for Poc9, the extension for LineRec10.
struct ObjVyrizuje {
    QString jmeno, telefon, linka;
};
// False when the name is not in the list (or the list cannot be read).
bool ReadVyrizuje(DbConnection &sys, const QString &jmeno, ObjVyrizuje *person);
// The archive's choice of the person: the three columns, quotes removed as in its other saves.
ObjWrite SaveObjVyrizuje(DbConnection &centre, int nom, const ObjVyrizuje &person);

// Copies the row under a new number: the dates of processing and booking a blank, not handed
// over. Returns the new row's nom, 0 when the row is gone, -1 on a server error.
int CopyObj(DbConnection &centre, int nom, const QString &newNumber);
// Deletes every row of that number; the count deleted, -1 on a server error.
int DeleteObjNumber(DbConnection &centre, const QString &cisObj);
// Deletes the chosen rows in one transaction; the count deleted, -1 on a server error.
int DeleteObjRows(DbConnection &centre, const QList<int> &noms);
// The question before a multi-delete: " položku " for 1, " položky " for 2 to 4, else " položek ".
QString MultiDeleteQuestion(int count);
