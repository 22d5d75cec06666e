#include "grants/screenparts.h"

#include "core/msg.h"

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

void FindGrantRow(QTableView *grid, const std::function<QString(int row)> &grantOf)
{
    const std::optional<QString> answer = InputBox(QStringLiteral("Zadejte číslo GRANTu:"), QStringLiteral("Find"));
    if (!answer || answer->trimmed().isEmpty())
        return;
    const QString number = answer->trimmed();
    const int rows = grid->model()->rowCount();
    for (int i = 0; i < rows; ++i) {
        if (grantOf(i).startsWith(number, Qt::CaseInsensitive)) {
            grid->selectRow(i);
            grid->scrollTo(grid->model()->index(i, 0));
            return;
        }
    }
    MsgBox(QStringLiteral("GRANT ") + number + QStringLiteral(" není najden..."));
}
