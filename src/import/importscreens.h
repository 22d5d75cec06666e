#pragma once
// What the import screens share: the choice of an export file, and a table model over
// the rows of one import table with its sort and find.

#include <QAbstractTableModel>
#include <QStringList>
#include <QVector>
#include <QString>
#include <QVariantList>

#include <functional>

class QWidget;

// The file dialog of the imports, in the last folder (LastDir of the settings store, else
// the program's folder), which it remembers. Empty when cancelled.
QString ChooseImportFile(QWidget *parent, const QString &filter);
// The same, and when the chosen file does not exist "Importní soubor ... neexistuje, akce
// provedena nebude!" is said and the answer is empty.
QString ChooseExistingImportFile(QWidget *parent, const QString &filter);
// Replaces the dialog (the tests choose the demo files this way); empty restores it.
void SetImportFileChooser(std::function<QString(const QString &filter)> chooser);

inline constexpr const char *FilterImportFiles =
    "Import files (*.txt);;Import files (*.doc);;Import files (*.doc *.txt)";
inline constexpr const char *FilterTxt = "*.txt (*.txt)";

// Remembers the folder of a chosen file under "Last Dir" for the next session.
void RememberImportFolder(const QString &fileName);

// The rows of an import table: the columns given, an optional condition, and the order
// set by the heading clicked (the second click the other way). Dates "dd.mm.yyyy" sort
// as dates.
class ImportRowsModel : public QAbstractTableModel {
public:
    ImportRowsModel(const QString &table, const QStringList &columns, QObject *parent);
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    // Editable cells are stored at once, each by the id of its row.
    void setEditable(bool editable) { m_editable = editable; }
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QString text(int row, int column) const { return m_rows.value(row).value(column); }
    void setCondition(const QString &where, const QVariantList &values);
    // Reads the rows again in the current order; false (and the error shown) on failure.
    bool refresh();
    // A click on a heading.
    void sortByHeading(int column);
    void sortBy(int column, bool descending);
    // The first row at or after `from` whose column matches: a date on or after the
    // value for "Datum", else the text beginning with the value (without regard to case).
    int find(int column, const QString &value, int from = 0) const;

private:
    QString m_table;
    QStringList m_columns;
    QString m_where;
    QVariantList m_values;
    QVector<QStringList> m_rows;
    QVector<QVariant> m_ids;
    bool m_editable = false;
    int m_sortColumn = -1;
    bool m_descending = false;
};
