#pragma once
// Column positions of the accounting exports. The user says in which tab column each
// field stands, as a number or as the heading found in the export's head line; both are
// kept in the configuration file, one section per kind of export.

#include <QString>
#include <QVector>

#include <array>

// Kinds of definition: the movement export (section DEFINE POZICE TAB) and the account
// list and budget export (section DEFINE POZICE TAB2).
enum PoziceKind : int { PoziceMD_DAL = 0, PoziceUcty = 1 };

// One row of a definition screen. In DEFINE POZICE TAB the "N_" keys hold the heading,
// in DEFINE POZICE TAB2 they hold the number: the file has always been written that way.
struct PoziceRadek {
    QString caption;
    QString keyCod;    // key of the column number
    QString keyName;   // key of the heading
};
const QVector<PoziceRadek> &PoziceRadky(int kind);

QString ReadPozice(int kind, const QString &key);
bool WritePozice(int kind, const QString &key, const QString &value);

// A column number as the screens accept it: empty, or one or two digits.
bool IsColumnNumberText(const QString &text);

// Position in memory of a stored column number, counted from 0: an empty key gives 0,
// any other value its number minus 1.
short PoziceVPameti(const QString &value);

// Occurrences of the separator in the text.
short PocetOddelovacu(const QString &text, const QString &separator);

// The head line of an export: its first record as the import reads it (at most 1,000
// characters), tabs replaced by "~". Empty when the file cannot be read or the record is empty.
QString ReadHeadLine(const QString &fileName);

// Column number (from 1) of a heading in a head line: where the heading first occurs
// as a substring, the "~" before it plus one. 0 when it does not occur.
short ColumnOfHeading(const QString &headLine, const QString &heading);

// Finds the column of each row's heading in the sample file's head line and stores all
// numbers and headings of the definition. Rows whose heading is empty or not found keep
// their number. An empty head line changes nothing and gives false.
bool PoziceZeVzorku(const QString &fileName, int kind, QVector<QString> &numbers,
                   const QVector<QString> &headings);
void UlozPozice(int kind, const QVector<QString> &numbers, const QVector<QString> &headings);

// Checks the definition's headings against the file's head line before an import; on
// success the positions (from 1, at the heading's index) go to positions when given.
// An empty head line gives false without a message; a missing or unknown heading is said.
bool NactiPozice(const QString &fileName, int kind, std::array<short, 10> *positions = nullptr);

extern const char *const TextPoziceNedefinovane;
QString TextPoleNeexistuje(const QString &heading);
