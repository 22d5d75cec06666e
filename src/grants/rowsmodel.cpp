#include "grants/rowsmodel.h"

RowsModel::RowsModel(const QStringList &headers, int firstAmountColumn, Hooks hooks, QObject *parent)
    : QAbstractTableModel(parent), m_headers(headers), m_firstAmountColumn(firstAmountColumn), m_hooks(std::move(hooks))
{
}

int RowsModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : m_hooks.count(); }

int RowsModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_headers.size()); }

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_headers.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

QVariant RowsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::TextAlignmentRole && index.column() >= m_firstAmountColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return m_hooks.text(index.row(), index.column());
    return {};
}

Qt::ItemFlags RowsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags f = QAbstractTableModel::flags(index);
    return index.isValid() && m_hooks.editable(index.column()) ? f | Qt::ItemIsEditable : f;
}

bool RowsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable) ||
        !m_hooks.edit(index.row(), index.column(), value.toString()))
        return false;
    rowChanged(index.row());
    return true;
}

void RowsModel::reset(const std::function<void()> &change)
{
    beginResetModel();
    change();
    endResetModel();
}

void RowsModel::appendRow(const std::function<void()> &change)
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    change();
    endInsertRows();
}

void RowsModel::removeRow(int row, const std::function<void()> &change)
{
    beginRemoveRows({}, row, row);
    change();
    endRemoveRows();
}

void RowsModel::rowChanged(int row) { emit dataChanged(index(row, 0), index(row, columnCount() - 1)); }
