#pragma once
// Pieces the grant screens build alike: the bold heading, a grid of whole rows, a command.

#include <QString>

#include <functional>

class QAbstractItemModel;
class QLabel;
class QPushButton;
class QTableView;
class QWidget;

QLabel *HeadingLabel(QWidget *screen, const QString &text);
// A grid named DataGrid1 that selects one whole row at a time.
QTableView *RowsGrid(QWidget *screen, QAbstractItemModel *model);
QPushButton *CommandButton(QWidget *screen, const char *name, const QString &caption);

// "Najít": asks "Zadejte číslo GRANTu:" and selects the first row of the grid whose grant
// begins with the answer; says "GRANT ... není najden..." when none does.
void FindGrantRow(QTableView *grid, const std::function<QString(int row)> &grantOf);
