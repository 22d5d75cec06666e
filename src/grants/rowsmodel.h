#pragma once
// A grid's model over rows a screen keeps itself: the screen says how many rows there are,
// what each cell shows, which columns are edited, and takes each edit (refusing it by
// returning false). Columns from firstAmountColumn on are right-aligned amounts.

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>

class RowsModel : public QAbstractTableModel {
public:
    struct Hooks {
        std::function<int()> count;
        std::function<QString(int row, int column)> text;
        std::function<bool(int column)> editable;
        std::function<bool(int row, int column, const QString &value)> edit;
    };
    RowsModel(const QStringList &headers, int firstAmountColumn, Hooks hooks, QObject *parent);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    // The screen changes its rows inside these calls, so that the grid follows.
    void reset(const std::function<void()> &change);
    void appendRow(const std::function<void()> &change);
    void removeRow(int row, const std::function<void()> &change);
    // A row's cells changed outside an edit of the grid.
    void rowChanged(int row);

private:
    QStringList m_headers;
    int m_firstAmountColumn;
    Hooks m_hooks;
};
