#pragma once
// Shared text helpers: amounts, packed fields, grant filters, dates, file names,
// lists, and small window helpers.

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

class QWidget;

// Money to right-aligned text: blanks between thousands, a decimal comma and two
// decimals, the sign at the far left, padded to width. The width is changed for the
// caller, as callers that reuse the variable rely on.
QString FormatCastka(QString &value, short &width);

// The index-th piece (from 0) of a text cut at the separator; code 0 means "#".
QString GetField(const QString &text, short index, short separatorCode = 0);
// How many separators stand in the text.
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
void ViewHTML(QString &path);

// Window helpers.
void SetTopMost(QWidget *window, bool topMost);
bool IsFormOpen(QString &name);   // by the screen's window title
QString GetSpecialFolderPath(int folderNumber);
