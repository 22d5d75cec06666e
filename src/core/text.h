#pragma once
// Shared text helpers: amounts, packed fields, grant filters, dates, file names,
// lists, and small window helpers.

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

class QSqlQueryModel;
class QWidget;

// Money to right-aligned text: blanks between thousands, a decimal comma and two
// decimals, the sign at the far left, padded to width. The width is changed for the
// caller, as callers that reuse the variable rely on; the value is left as it was.
QString FormatCastka(QString &value, short &width);

// The index-th piece (from 0) of a text cut at the separator; code 0 means "#".
QString GetField(const QString &text, short index, short separatorCode = 0);
// How many separators stand in the text ("$" cannot be counted and gives 0).
short CountSep(const QString &text, const QString &separator);

// A plain number? Rewrites the argument: blanks to character 160, "-" removed, "," to ".".
bool IsNumberText(QString &text);

// "1.2.2024" -> "01.02.2024"; empty stays empty.
QString DateTwoDigits(const QString &text);

// A grant filter as SQL terms: "_GRANT like '12%' or ..." and
// "(_GRANT = '12' AND archiv<>'1') or ..." (empty without a comma).
QString BuildGrantLike(const QString &filter);
QString BuildGrantArchiv(const QString &filter);

// Is the value in the list? Unless silent, says so in a message.
bool ListHasValue(const QString &value, const QStringList &list, bool silent = false);
// Appends a column's values, as text, from every row of the model.
void FillCollection(const QSqlQueryModel &model, QStringList &list, const QString &field);

// Doubled backslashes cleaned, a network path's prefix kept.
QString NormalizePath(const QString &path);
// Upper-cased, accents of the table replaced, blanks and slashes to "_".
QString SafeFileName(const QString &text);
// The whole file as one text: lines joined without their ends (lineMode), or bytes.
QString ReadWholeFile(const QString &path, bool lineMode);

// Reversible hiding of a text (not protection).
QString ScrambleText(const QString &text);
QString UnscrambleText(const QString &text);

// Waits with the event pump running.
void Pause(short milliseconds);
// Ascending sort in place.
void BubbleSortNumbers(QVector<double> &numbers);
// Does the key exist with a non-empty value?
bool KeyInCollection(const QMap<QString, QString> &collection, const QString &key);

// Shows an HTML file in the program's viewer; nothing when the file is missing.
void ViewHTML(const QString &path);

// Window helpers.
void SetTopMost(QWidget *window, bool topMost);
// Starts moving a window without a frame, as a drag on its caption would.
void DragWindow(QWidget *window);
// Is a screen of that name shown? Found by its window title ("frmArchObj" is titled
// "Seznam zádanek", "frmDocPanelForm" "Fondarix - Studio") or by its object name.
bool IsFormOpen(const QString &name);
// Folders by their shell numbers: 0 the folder of the configuration file, 2 programs,
// 5 documents, 16 desktop, 26 application data; empty for any other.
QString GetSpecialFolderPath(int folderNumber);
