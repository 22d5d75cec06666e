#pragma once
// What the settings screen frmSYS reads and writes, apart from the screen: the workstation's
// keys in the settings store, the print values of the user, the institution's row of
// sys_nastaveni, the centres of sys_db_kvl, and the footers and logo of the order forms.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

class DbConnection;

// --- the settings store and the print values ------------------------------------------

struct WorkstationSettings {
    QString serverIp, serverPort;   // from the configuration file, saved apart (SaveServerAddress)
    QString zadankySave, spravceName, typFormulara, vyrizuje, telefon, telefonEng, email, linka, spravObj, prikObj,
        uctyNotControl, selectTypBottom;
    // The five print values of the user (sys_users_print); an empty one is left as it is.
    QString printSize, printRows, printTop, printMargin, toolBar;
};

WorkstationSettings ReadWorkstationSettings();
// Saves in the fixed order: the store keys, then the print values.
void SaveWorkstationSettings(const WorkstationSettings &settings);

// True when the text is empty or digits only (the number boxes).
bool IsDigitsOnly(const QString &text);

// --- the server address in the configuration file ----------------------------------------

// The problem of an address and port in Czech, empty when they can be written: the address
// becomes part of the connection text, and the file gives back at most 19 characters of it.
QString ServerAddressProblem(const QString &ip, const QString &port);
// Whether the system database answers at that address; the server's error text otherwise.
bool ServerAnswers(const QString &ip, const QString &port, QString *error);
// SERVER_IP and SERVER_PORT of section NASTAVENI; false when the file cannot be written.
bool SaveServerAddress(const QString &ip, const QString &port);

// --- the institution ------------------------------------------------------------------

struct InstitutionFields {
    int id = 0;   // 0: no row yet
    QString firma, adresa, psc, mesto, ico, dic, ucet, banka, ucet2, newdateUcet;
};
bool ReadInstitutionFields(DbConnection &sys, InstitutionFields *fields);
// Updates the first row, or adds it when the table has none; the session takes the values.
// A refused value is named by its caption.
bool SaveInstitutionFields(DbConnection &sys, const InstitutionFields &fields);
// The captions of the institution's fields, in the order of InstitutionFields.
const QStringList &InstitutionCaptions();

// --- the ordering persons and the two lists of names -----------------------------------

struct OrderingPerson {
    QString vyrizuje, telefon, linka, email;
};
bool ReadOrderingPersons(DbConnection &sys, QVector<OrderingPerson> *persons);
// The first person whose name begins with the text, as the filter "Vyrizuje LIKE 'text*'"
// finds it (letter case aside); -1 when none does.
int FindOrderingPerson(const QVector<OrderingPerson> &persons, const QString &text);
// Column Jmeno of sys_prikazce or sys_spravcerozp.
bool ReadNames(DbConnection &sys, const QString &table, QStringList *names);

// --- the centres ---------------------------------------------------------------------------

struct CentreRow {
    int id = 0;
    QString code, name, database, ipPc, ipServer;
    bool lekarna = false;   // the pharmacy's row: kept here, not offered as a centre of the orders
};
// Every row of the table by code, the pharmacy's included: this is where the rows are kept,
// while the order screens pass over the pharmacy. An empty table first gets the one starting row, whose statement
// the server refuses (a point stands for a comma between its first two values): the refusal
// is passed over and the table stays empty.
bool ReadCentres(DbConnection &sys, const QString &database, const QString &address, QVector<CentreRow> *rows);
// The problem of a centre's values in Czech, empty when they can be saved: the database name
// becomes part of statements and must be letters, digits and "_".
QString CentreProblem(const CentreRow &row);
bool AddCentre(DbConnection &sys, const CentreRow &row, int *id);
bool SaveCentre(DbConnection &sys, const CentreRow &row);
bool DeleteCentre(DbConnection &sys, int id);
// Column cesta of every centre: the path of the old database file.
bool SaveOldDatabasePath(DbConnection &sys, const QString &path);

// --- footers and logo of the order forms ------------------------------------------------

// The file commands are numbered as the footer types: 1 to 4 footer texts (sys_paticky_html,
// per login), 5 the picture footer (sys_paticky_obrazky, typ "4", per login), 6 the
// institution's logo (sys_logo_kvl, typ 1).
inline constexpr int FooterSlotCount = 6;
inline constexpr int PictureSlot = 5;
inline constexpr int LogoSlot = 6;
// The filters of their file dialog.
const QStringList &FooterFileFilters();
// The largest picture taken into the database.
inline constexpr qint64 MaxPictureBytes = 16 * 1024 * 1024;

// Reads the file and stores it in the slot's table, replacing what was there, in one
// transaction. A footer text is read as UTF-8 when it is valid UTF-8, else as Windows-1250;
// a picture must be an image the program can show. Empty text when stored, else the Czech
// message.
QString StoreFooterFile(DbConnection &sys, int slot, const QString &login, const QString &path);
// What the slot holds, for the screen: the picture's file name, or the length of the text.
QString StoredFooterDescription(DbConnection &sys, int slot, const QString &login);
// The stored picture of the picture footer or the logo written to `file`; false when none
// is stored, it is no image, or it cannot be written.
bool WriteStoredPicture(DbConnection &sys, int slot, const QString &login, const QString &file);

// --- the grant filter of the logged-in user ----------------------------------------------

// Writes the filter (read as the field reads it) to the user's row and the session.
bool SaveOwnGrantFilter(DbConnection &sys, const QString &login, const QString &filter);
