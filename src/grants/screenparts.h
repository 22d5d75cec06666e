#pragma once
// Pieces the grant screens build alike: the bold heading, a grid of whole rows, a command.

#include <QString>

class QAbstractItemModel;
class QLabel;
class QPushButton;
class QTableView;
class QWidget;

QLabel *HeadingLabel(QWidget *screen, const QString &text);
// A grid named DataGrid1 that selects one whole row at a time.
QTableView *RowsGrid(QWidget *screen, QAbstractItemModel *model);
QPushButton *CommandButton(QWidget *screen, const char *name, const QString &caption);
