#pragma once
// A saved protocol printed as PDF: one page rebuilt from the parallel lists of its row,
// and a second page with the corrections when there are any. Form units become
// centimetres by the form's width, which spans the 21 cm of the page.

#include <QString>
#include <QStringList>

#include "protocols/protocol.h"

class DbConnection;
class clsDocument;

// What the page is drawn from: the lists of a row (or of the Studio's form).
struct ProtocolPage {
    QString data, keys, pozice, types, fonts, bolds, kursivs;
    QString korekce;     // corrections; empty: one page only
    double formWidth = 0;
    QStringList letterhead;   // the three rows at the page's foot (LetterheadRows)
    QString logoFile;         // the letterhead picture (BMP); empty or a missing file is left out
};

// Where a protocol's PDF goes: the folder (empty: PROTOKOLY_SAVE of the settings, else the
// program's folder), and the number with "/" and "\" turned into "-".
QString ProtocolPdfPath(const QString &cisloProt, const QString &folder = QString());

// Writes the page(s) to fileName. False when the file cannot be made.
bool WriteProtocolPdf(const ProtocolPage &page, const QString &fileName);

// Prints the archiv row of that key to outFile (empty: its file under PROTOKOLY_SAVE) and,
// unless noView, opens it. Nothing happens for an empty key; false with a message in
// error when the protocol is missing or cannot be read or the file cannot be written. The file in fileOut.
bool ProtokolPdf(DbConnection &centre, DbConnection &sys, const QString &key, bool noView, const QString &outFile,
                 QString *fileOut, QString *error);

// Prints the list of a patient: every protocol of the patient's key on that form (0: on
// every form), each to its own file as ProtokolPdf names it in the folder (empty:
// PROTOKOLY_SAVE), none opened. The files written go to files, in the list's order; false
// with a message in error when the list cannot be read or at the first file that cannot be written.
bool ProtokolListPdf(DbConnection &centre, DbConnection &sys, int idPac, int formId, const QString &folder,
                     QStringList *files, QString *error);

// The Studio's print: the same page from the form in memory and the values its controls
// show, into "formular.pdf" of the scratch folder; the written file in fileOut. The logo
// comes from sys.
bool FormPdf(DbConnection &sys, clsDocument &doc, const std::vector<ControlValue> &controls, const QStringList &params, bool noView,
             QString *fileOut);
