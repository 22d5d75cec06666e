#include "import/importscreens.h"

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "grants/granttables.h"
#include "import/importsouboru.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSqlQuery>

namespace {
std::function<QString(const QString &)> &Chooser()
{
    static std::function<QString(const QString &)> chooser;
    return chooser;
}
} // namespace

void SetImportFileChooser(std::function<QString(const QString &filter)> chooser) { Chooser() = std::move(chooser); }

QString ChooseImportFile(QWidget *parent, const QString &filter)
{
    if (Chooser())
        return Chooser()(filter);
    const QString section = QStringLiteral("Ver 2.4.1");
    QString dir = GetSetting(section, QStringLiteral("LastDir"));
    if (dir.isEmpty())
        dir = GetDirExe();
    const QString file = QFileDialog::getOpenFileName(parent, QString(), dir, filter);
    if (!file.isEmpty())
        SaveSetting(section, QStringLiteral("LastDir"), QDir::toNativeSeparators(QFileInfo(file).absolutePath()));
    return file;
}

QString ChooseExistingImportFile(QWidget *parent, const QString &filter)
{
    const QString file = ChooseImportFile(parent, filter);
    if (file.isEmpty() || QFileInfo(file).isFile())
        return file;
    MsgBox(QStringLiteral("Importní soubor ") + QFileInfo(file).fileName() + QStringLiteral(" neexistuje, akce provedena nebude!"),
           MsgWarning);
    return QString();
}

void RememberImportFolder(const QString &fileName)
{
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("Last Dir"), QDir::toNativeSeparators(QFileInfo(fileName).absolutePath()));
}

ImportRowsModel::ImportRowsModel(const QString &table, const QStringList &columns, QObject *parent)
    : QAbstractTableModel(parent), m_table(table), m_columns(columns)
{
}

int ImportRowsModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_rows.size()); }

int ImportRowsModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_columns.size()); }

QVariant ImportRowsModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return text(index.row(), index.column());
    if (role == Qt::TextAlignmentRole && m_columns.value(index.column()).compare(QLatin1String("Castka"), Qt::CaseInsensitive) == 0)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant ImportRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::DisplayRole && orientation == Qt::Horizontal)
        return m_columns.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags ImportRowsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return m_editable ? flags | Qt::ItemIsEditable : flags;
}

bool ImportRowsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!m_editable || role != Qt::EditRole || !index.isValid() || index.row() >= m_rows.size())
        return false;
    const QString text = value.toString();
    if (text == m_rows[index.row()].value(index.column()))
        return true;
    DbConnection conn(ConnStrGranty());
    if (!conn.exec(QStringLiteral("UPDATE ") + m_table + QStringLiteral(" SET `") + m_columns.at(index.column())
                       + QStringLiteral("` = ? WHERE id = ?"),
                   {text, m_ids.at(index.row())}))
        return ShowDbError(conn);
    m_rows[index.row()][index.column()] = text;
    emit dataChanged(index, index);
    return true;
}

void ImportRowsModel::setCondition(const QString &where, const QVariantList &values)
{
    m_where = where;
    m_values = values;
}

bool ImportRowsModel::refresh()
{
    QStringList quoted;
    for (const QString &c : m_columns)
        quoted << QLatin1Char('`') + c + QLatin1Char('`');
    QString sql = QStringLiteral("SELECT ") + quoted.join(QStringLiteral(", ")) + QStringLiteral(", id FROM ") + m_table;
    if (!m_where.isEmpty())
        sql += QStringLiteral(" WHERE ") + m_where;
    if (m_sortColumn >= 0) {
        const QString column = quoted.at(m_sortColumn);
        const QString key = m_columns.at(m_sortColumn) == QLatin1String("Datum")
                                ? QStringLiteral("CONCAT(SUBSTRING(Datum, 7, 4), SUBSTRING(Datum, 4, 2), SUBSTRING(Datum, 1, 2))")
                                : column;
        sql += QStringLiteral(" ORDER BY ") + key + (m_descending ? QStringLiteral(" DESC") : QStringLiteral(" ASC"))
               + QStringLiteral(", id");
    } else {
        sql += QStringLiteral(" ORDER BY id");
    }
    DbConnection conn(ConnStrGranty());
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    QVector<QStringList> rows;
    QVector<QVariant> ids;
    const bool ok = conn.exec(q, sql, m_values);
    while (ok && q.next()) {
        QStringList row;
        for (int i = 0; i < m_columns.size(); ++i)
            row << q.value(i).toString();
        rows << row;
        ids << q.value(int(m_columns.size()));
    }
    beginResetModel();
    m_rows.swap(rows);
    m_ids.swap(ids);
    endResetModel();
    return ok || ShowDbError(conn);
}

void ImportRowsModel::sortByHeading(int column)
{
    sortBy(column, column == m_sortColumn ? !m_descending : false);
}

void ImportRowsModel::sortBy(int column, bool descending)
{
    m_sortColumn = column;
    m_descending = descending;
    refresh();
}

int ImportRowsModel::find(int column, const QString &value, int from) const
{
    const bool date = m_columns.value(column) == QLatin1String("Datum");
    const QDate wanted = ParseImportDate(value);
    for (int row = std::max(0, from); row < rowCount(); ++row) {
        const QString cell = text(row, column);
        if (date ? (wanted.isValid() && ParseImportDate(cell) >= wanted)
                 : cell.startsWith(value, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}
