#pragma once
// The printed forms of an order as HTML, written through BuildObjLJ line by line in
// Windows-1250 from the record line: the order form of kinds 1, 2 and 5, the letterhead
// letters in Czech and English, and the file name and folder they go to.

#include "core/buildobjlj.h"

#include <QDateTime>
#include <QString>

#include <array>

class DbConnection;

// What a form takes besides the order: the user's page values, the institution, the clock.
// Read once, so that many forms in a row cost no further queries.
struct ObjFormContext {
    QString font = QStringLiteral("4");   // param_1
    QString rows = QStringLiteral("24");  // param_2
    QString top = QStringLiteral("0");    // param_3
    bool formPoz = false;                 // TypFormulara "FALSE": a request instead of an order
    int role = 1;
    QString firma, adresa, psc, mesto, ico, dic, banka, ucet, ucet2, newdateUcet;
    QString department;                   // the user's centre, third line of a letter's head
    QDateTime now = QDateTime::currentDateTime();
    bool systemXP = false;
    QString pictureFooter;                // "<img ...>" of the user's picture footer
};
// Reads the context for the logged-in user; the picture footer goes to tempDir.
ObjFormContext LoadObjFormContext(DbConnection &sys, const QString &tempDir);

// The folder of the generated forms (ZADANKY_SAVE) and the form's file name in it:
// the number with "/" replaced by "-", ".html".
QString ObjFormPath(const QString &folder, const QString &cisObj);

// Order form of kinds 1, 2 and 5. body: the body HTML of kinds 2 and 5.
bool BuildFormObj2(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                   const QString &body);
// The goods table: rows of name, quantity, unit (element 3 unused).
void BuildObjednano(BuildObjLJ &out, const QString &font, const std::array<std::array<QString, 4>, 8> &rows);
// Letterhead letters of kinds 3 and 4; subject: the HTML printed after the heading.
bool GeneratorFormularCZ(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                         const QString &subject);
bool GeneratorFormularAN(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                         const QString &subject);
// The empty English material table that ends the English letter; closes the file.
bool BuildObjAnHtm(BuildObjLJ &out, const QString &font);

// The generator the order's kind calls for (3 CZ, 4 AN, otherwise the order form).
bool WriteObjForm(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                  const QString &body);

// Writes the form of the order of that number into the folder; its path, or empty text with
// a Czech message in *error (no such order, the folder cannot be written).
QString WriteObjFormFile(DbConnection &centre, const ObjFormContext &ctx, const QString &folder,
                         const QString &cisObj, QString *error);

// What the screens' "Zobrazit" does: writes the form of the order into the folder of
// ZADANKY_SAVE and shows it in the viewer; a Czech message when it cannot.
void ViewObjForm(const QString &centreDb, const QString &cisObj);
