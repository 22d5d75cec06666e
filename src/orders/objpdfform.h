#pragma once
// Order forms as one-page PDF documents, written from an order's record line
// (pieces separated by "~", see ObjRecordLine). Three generators, chosen by the
// order's kind: ObjPdfCZ for the Czech letter (kind 3), ObjPdfEN for the English
// one (kind 4), ObjPdfTyp for every other kind. None of them breaks pages: a long
// body runs below the frame, and the file still has exactly one page.

#include <QString>

class DbConnection;
class QSqlRecord;

// The editor's HTML reduced to the body text of the Czech letter: line ends and
// "&nbsp;" to blanks, "<o:p>" to the paragraph break "~", everything up to
// "</head>" dropped, every other tag removed.
QString HtmlToPlain(const QString &Html);

// The generators. The pictures are read from the session's scratch folder
// ("logo_kvl_tmp.bmp", "typ4_tmp.bmp", laid there by ObjPdfPicturesToTemp);
// a missing or broken picture is left out. With NoView false the finished file
// is opened in the system's PDF viewer. False when the file could not be
// written (the form then ends without a message).
bool ObjPdfCZ(const QString &FileName, const QString &RecordLine, const QString &Body, bool NoView);
// Body: one line per material, cells material, quantity and catalogue number
// separated by tabs.
bool ObjPdfEN(const QString &FileName, const QString &RecordLine, const QString &Body, bool NoView);
// Text1: kind 1 the items "name#quantity" joined by "~", other kinds the free
// text; Text2: the signature lines joined by "~".
bool ObjPdfTyp(const QString &FileName, const QString &RecordLine, const QString &Text1,
               const QString &Text2, bool NoView);
// The generator of the order's kind, with its texts made from the body
// (file_html_text) and from the record line.
bool ObjPdfForm(const QString &FileName, const QString &RecordLine, const QString &BodyHtml, bool NoView);

// The form of an archive row (all columns of archobj): its record line and body.
bool ObjPdfOfRow(const QSqlRecord &row, const QString &FileName, bool NoView);
// Where the archive writes an order's form: the number with "/" as "-", ".pdf",
// in the scratch folder.
QString ObjPdfPath(const QString &cisObj);

// Lays the institution's logo (LogoToTemp) and the user's picture footer
// (sys_paticky_obrazky, typ '4') into the scratch folder under the names the
// generators read; a missing row removes the old copy. False with a Czech
// message in *error when the server or the folder refused.
bool ObjPdfPicturesToTemp(DbConnection &sys, const QString &login, QString *error);
