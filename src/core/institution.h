#pragma once
// The institution's own data (table sys_nastaveni, one row), printed on order forms
// and reports. Empty columns get the institution's defaults, written back to the row.

#include <QDateTime>
#include <QString>
#include <QStringList>

class DbConnection;

// Seconds from 1 January 1970 to the given local time, counted as if local time were
// universal time: the moment from which the second account number applies.
QString NewdateUcetText(const QDateTime &localNow);

// Reads the row into the session, repairing empty columns on the server first.
// A table without rows leaves the session's institution fields empty.
// False when the server refused a statement.
bool ReadInstitution(DbConnection &sys);

// The account a form prints: the second one once its date (seconds as NewdateUcetText
// counts them; 0 means never) has passed, unless it is still the placeholder
// "99999-999/0100"; else the first one, trimmed.
QString ObjBankAccount(const QString &ucet, const QString &ucet2, const QString &newdateUcet, const QDateTime &now);

// What the PDF letterheads of order forms and protocols print of the institution: the
// session's settings (sys_nastaveni) and the site's values of section "HLAVICKA" of the
// configuration file (telephone, fax, e-mail, web, the English lines).
struct ObjPdfLetterhead {
    QString Firma, Adresa, PscMesto, ICO, DIC, Banka;
    QString Ucet;   // the old or the new account, whichever applies today
    QString Telefon, Fax, Email, Web;
    QString NameEn, AddressEn, DepartmentEn;
};
ObjPdfLetterhead ReadObjPdfLetterhead();

// The three rows of the institution's data at the foot of a PDF page, drawn in Fnt1a 8 at
// X 2 and the Y of LetterheadRowY: the labels, then company number, bank, telephone, fax
// and e-mail under them, then the account and the web address.
QStringList LetterheadRows(const ObjPdfLetterhead &head);
inline constexpr float LetterheadRowY[] = {1.5f, 1.2f, 0.9f};

// The institution's logo (sys_logo_kvl, typ 1) as "logo_kvl_tmp.bmp" in the folder, where
// the PDF forms read it; written afresh each time, since the logo may have changed. Its
// path, or empty text when there is no usable logo (the old copy is gone then too).
QString LogoToTemp(DbConnection &sys, const QString &folder);
// Writes the picture to folder/name unless it is there; false when the bytes are no image
// or the name could climb out of the folder.
bool PictureToFolder(const QByteArray &blob, const QString &name, const QString &folder);
