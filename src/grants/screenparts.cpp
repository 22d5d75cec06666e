#include "grants/screenparts.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

QLabel *HeadingLabel(QWidget *screen, const QString &text)
{
    auto *heading = new QLabel(text, screen);
    heading->setObjectName(QStringLiteral("Label1"));
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSize(bold.pointSize() + 2);
    heading->setFont(bold);
    return heading;
}

QTableView *RowsGrid(QWidget *screen, QAbstractItemModel *model)
{
    auto *grid = new QTableView(screen);
    grid->setObjectName(QStringLiteral("DataGrid1"));
    grid->setModel(model);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->verticalHeader()->setDefaultSectionSize(22);
    grid->horizontalHeader()->setStretchLastSection(true);
    return grid;
}

QPushButton *CommandButton(QWidget *screen, const char *name, const QString &caption)
{
    auto *button = new QPushButton(caption, screen);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}
