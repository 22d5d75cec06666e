#pragma once
// Seeding the demo centre's orders for the order tests.

#include "core/db.h"
#include "support/testenv.h"

#include <QAbstractItemModel>
#include <QBrush>
#include <QComboBox>
#include <QFile>
#include <QMap>
#include <QLineEdit>
#include <QPushButton>
#include <QList>
#include <QPair>
#include <QString>
#include <QTableView>

namespace seed {
inline const QString Centre = QStringLiteral("fondarix_ofk");

// A centre with no orders, the demo's users and settings kept.
inline void EmptyCentre()
{
    testenv::FreshDatabases(true);
    testenv::Exec(Centre, QStringLiteral("DELETE FROM archobj"));
    testenv::Exec(Centre, QStringLiteral("DELETE FROM objedn_footer"));
}

// Inserts a row from "column=value" pairs ("NULL" for NULL); returns its nom.
inline int Insert(const QList<QPair<QString, QString>> &columns)
{
    DbConnection c(ConnStrFor(Centre));
    QStringList names, marks;
    QVariantList values;
    for (const auto &[name, value] : columns) {
        names << QLatin1Char('`') + name + QLatin1Char('`');
        marks << QStringLiteral("?");
        values << (value == QLatin1String("NULL") ? QVariant() : QVariant(value));
    }
    EXPECT_TRUE(c.exec(QStringLiteral("INSERT INTO archobj (%1) VALUES (%2)").arg(names.join(','), marks.join(',')), values))
        << c.errorText().toStdString();
    return testenv::Column(Centre, QStringLiteral("SELECT MAX(nom) FROM archobj")).value(0).toInt();
}

// Columns of the order of that number joined by "|" (NULL left out).
inline QString Row(const QString &columns, const QString &cisObj)
{
    return testenv::Column(Centre, QStringLiteral("SELECT CONCAT_WS('|', %1) FROM archobj WHERE cis_obj='%2'").arg(columns, cisObj)).value(0);
}

// A record line from the pieces given by index (0 to 40); the others empty.
inline QString RecordLine(const QMap<int, QString> &pieces)
{
    QString line;
    for (int i = 0; i <= 40; ++i)
        line += pieces.value(i) + QLatin1Char('~');
    return line;
}

// A file's bytes; empty when it cannot be read.
inline QByteArray ReadFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Controls of a screen as a user handles them.
inline QLineEdit *Box(QWidget *s, const char *name) { return testenv::Child<QLineEdit>(s, name); }
inline void Click(QWidget *s, const char *name) { testenv::Child<QPushButton>(s, name)->click(); }
inline bool Enabled(QWidget *s, const char *name) { return testenv::Child<QPushButton>(s, name)->isEnabled(); }
// Chooses an entry of a combo box as the user does.
inline void Choose(QWidget *s, const char *combo, const QString &text)
{
    auto *c = testenv::Child<QComboBox>(s, combo);
    const int index = c->findText(text);
    ASSERT_GE(index, 0) << text.toStdString();
    c->setCurrentIndex(index);
    emit c->activated(index);
}

// The archive's grid: its rows, a cell's text or colour, choosing a row as the cursor does.
inline QTableView *ArchGrid(QWidget *s) { return testenv::Child<QTableView>(s, "MSFlexGrid2"); }
inline int GridRows(QWidget *s) { return ArchGrid(s)->model()->rowCount(); }
inline QVariant GridData(QWidget *s, int r, int c, int role = Qt::DisplayRole)
{
    return ArchGrid(s)->model()->index(r, c).data(role);
}
inline QString GridText(QWidget *s, int r, int c) { return GridData(s, r, c).toString(); }
inline QColor GridColour(QWidget *s, int r, int c) { return GridData(s, r, c, Qt::BackgroundRole).value<QBrush>().color(); }
inline void SelectRow(QWidget *s, int r)
{
    ASSERT_GE(r, 0);
    ArchGrid(s)->setCurrentIndex(ArchGrid(s)->model()->index(r, 1));
}
inline void ClickCell(QWidget *s, int r, int c) { emit ArchGrid(s)->clicked(ArchGrid(s)->model()->index(r, c)); }
inline int GridRowOf(QWidget *s, const QString &cisObj)
{
    for (int r = 0; r < GridRows(s); ++r)
        if (GridText(s, r, 1) == cisObj)
            return r;
    return -1;
}
} // namespace seed
