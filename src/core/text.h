#pragma once
// Shared text helpers: amounts, packed fields, grant filters, dates, file names,
// lists, and small window helpers.

#include <QMap>
#include <QSortFilterProxyModel>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class QSqlQueryModel;
class QWidget;

// Money to right-aligned text: blanks between thousands, a decimal comma and two
// decimals, the sign at the far left, padded to width. The width is changed for the
// caller, as callers that reuse the variable rely on; the value is left as it was.
QString FormatCastka(QString &value, short &width);
// An amount as the tables store it and labels show it: FormatCastka's text with no
// padding, the sign by the digits ("-28 505,50", "0,00").
QString FormatAmount(const QString &value);
QString FormatAmount(double value);

// The index-th piece (from 0) of a text cut at the separator; code 0 means "#".
QString GetField(const QString &text, short index, short separatorCode = 0);
// How many separators stand in the text ("$" cannot be counted and gives 0).
short CountSep(const QString &text, const QString &separator);

// A plain number? Rewrites the argument: blanks to character 160, "-" removed, "," to ".".
bool IsNumberText(QString &text);
// The same test without the rewriting (for readers of many rows).
bool IsNumberView(QStringView text);

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

// A record-set filter as the grids' searches write it: clauses "column op value" with the
// operators =, <>, <, >, <=, >= and LIKE, joined by AND and OR from left to right (neither
// comes first) and grouped in parentheses. Values are text in '' (a doubled quote is one),
// #...#, numbers, or NULL: "archiv = null" keeps the rows whose column is NULL. Text compares
// without regard to case; "*" and "%" in a LIKE value stand for any text. Columns are named
// as in the query (or by the grid's heading), in [] or `` when they hold blanks.
// An empty filter keeps every row; a filter that cannot be read keeps none.
class RecordFilter {
public:
    explicit RecordFilter(const QString &text = QString());
    bool isValid() const { return m_valid; }
    bool isEmpty() const { return m_nodes.isEmpty(); }
    bool matches(const QAbstractItemModel &model, int row) const;

private:
    // A clause, or a group of items each joined to the one before it by OR or AND.
    struct Node {
        bool group = false;
        QString column;
        QString op;
        QVariant value;            // null for NULL; a double for a number
        QVector<int> items;
        QVector<bool> orBefore;
    };
    bool evaluate(int node, const QAbstractItemModel &model, int row) const;

    QVector<Node> m_nodes;         // the last one is the whole filter
    bool m_valid = true;
};

// The rows of a data control as its grid shows them: those of the source model that the
// record-set filter keeps, and a current row (-1: past the end).
class RecordSet : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void setRecordFilter(const QString &filter);
    QString recordFilter() const { return m_text; }
    int currentRow() const { return m_current; }
    void setCurrentRow(int row) { m_current = row; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    QString m_text;
    RecordFilter m_filter;
    int m_current = -1;
};

// Local search: false at once when the record set shows no rows (a filter that kept none
// included). Otherwise the filter is set and left on; with rows kept the first becomes
// current and the answer is true, else the current row stands past the end.
bool RecordFind(RecordSet &control, const QString &filter);

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
