#pragma once
// Footers and pictures of the order forms: the footer texts of a user by type, the footer
// each order was printed with (objedn_footer), and the pictures kept as BLOBs, written to a
// folder when a form shows them.

#include <QString>

class DbConnection;
struct ObjFooterChoice;

// sys_paticky_html of the user and type; empty text when there is none.
QString FooterHtml(DbConnection &sys, const QString &typ, const QString &login);
// The footer the settings choose (SelectTypBottom) with its HTML for the user: type + 1,
// "'" replaced by '"'; for type 0 no text.
ObjFooterChoice CurrentFooterChoice(DbConnection &sys, const QString &login);

// Records the order's footer: its row in objedn_footer is added when missing; the text is
// "&nbsp;" when the order has no footer.
bool SaveObjFooter(DbConnection &centre, const QString &cisObj, const ObjFooterChoice &footer);
QString ObjFooterText(DbConnection &centre, const QString &cisObj);
QString ObjFooterType(DbConnection &centre, const QString &cisObj);

// The picture footer of the user: the row of that file name, else the row of type "4". The
// BLOB is written to the folder under the file name it was stored with (the last piece of
// the stored path) unless the file is there already. "<img src='file:...'>", or empty text
// when there is no picture or the BLOB is not an image.
QString FooterPictureHtml(DbConnection &sys, const QString &fileName, const QString &login, const QString &folder);
