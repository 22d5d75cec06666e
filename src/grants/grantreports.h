#pragma once
// The HTML reports of the grant accounting, written through BuildObjLJ into List.htm of the
// data folder (Windows-1250, overwritten by each report) and shown in the viewer.
//
// The reports of a grant's orders (TiskGrantTabl, BuildCerpani) belong to the orders library;
// they write through the same pieces: WriteReport, ReportFontSize, ReportMetaLine and
// ProductCellLine.

#include "grants/drawdown.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class BuildObjLJ;

// Data folder + "\List.htm", with the platform's separator and doubled separators repaired.
QString ReportPath();
// The font size a report is given: "0" or empty becomes "1".
QString ReportFontSize(const QString &size);
// "<META content="text/html; charset=windows-1250" http-equiv=Content-Type>"
QString ReportMetaLine();
// The right-aligned product mark of the first table row.
QString ProductCellLine();
// Data as cell text: "&", "<" and ">" written as entities, so that a name cannot break the page.
QString CellText(const QString &text);

// Opens List.htm, lets body write the lines and closes it. False with a Czech *error when the
// file cannot be written; *path is the file's path.
bool WriteReport(const std::function<void(BuildObjLJ &)> &body, QString *path, QString *error);

// "Tisk všech skupin účtů": the groups of a grant, with a total row.
void CreateSestavuUctu(BuildObjLJ &html, const GrantHead &grant, const QVector<GroupRow> &groups, const QString &size);

// "Tisk seznamu GRANTu": every grant in view with budget, rest, money provided and drawdown,
// the period of the movements in a heading row, and a sum. Writes nothing for no grants.
void GrantListReport(BuildObjLJ &html, const QVector<GrantHead> &grants, const QString &from, const QString &to,
                     const QString &size);

// A list of a selection: columns named by a "~"-separated text; columns from firstAmount on
// are right-aligned. The table is left open, for the rows a caller adds after it.
struct ListSpec {
    QString grant;
    QString selection;           // the filter or accounts selected
    QString columns;             // "Účet~Název~Částka"
    QVector<QStringList> rows;
    int firstAmount = 0;
    QString size;
};
void GeneratorList(BuildObjLJ &html, const ListSpec &list);
// The list as a page of its own: head, "GRANT : " and the selection, the list, the end.
void GeneratorListPage(BuildObjLJ &html, const ListSpec &list);

// The selection of the drawdown screen: its head, the list, and the block of the selection's
// sums ("Rozpočet za výběr, Kč : " ...). size is the screen's size; two less is used.
// Writes nothing for no rows.
struct SelectionSums {
    QString grant, name;
    double plan = 0, cerpani = 0, zustatek = 0;
};
void SelectionReport(BuildObjLJ &html, ListSpec list, const SelectionSums &sums);

// The budgets per grant and group (frmStredisko): per grant a head, its groups, its sums.
// Grants in the order of the group rows (grant, name); heads found by number.
void PrintSkupUctu(BuildObjLJ &html, const QVector<GroupRow> &groups, const QVector<GrantHead> &grants,
                   const QString &size);
