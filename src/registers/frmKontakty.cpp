#include "registers/frmKontakty.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

frmKontakty::frmKontakty(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Kontakty"));
    DataGrid1 = new QTableWidget(0, 4, this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setHorizontalHeaderLabels({QStringLiteral("Email"), QStringLiteral("Heslo"), QStringLiteral("Param1"),
                                          QStringLiteral("Param2")});
    DataGrid1->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    DataGrid1->verticalHeader()->hide();
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Seznam e-mailovych adres"), this));
    layout->addWidget(DataGrid1, 1);
    m_commands = AddListCommands(this, layout, QStringLiteral("F5-&Přidat"), [this] { cmdAdd_Click(); },
                                 QStringLiteral("F8-&Smazat"), [this] { cmdDelete_Click(); }, QStringLiteral("&Ok"),
                                 [this] { cmdClose_Click(); });
    resize(640, 320);
}

bool frmKontakty::Load()
{
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return false;
    m_rows = LoadKontakty(sys, Session().UserLogin);
    fill();
    return true;
}

void frmKontakty::fill()
{
    DataGrid1->setRowCount(m_rows.size());
    for (int r = 0; r < m_rows.size(); ++r) {
        const Kontakt &k = m_rows.at(r);
        const QStringList cells{k.email, k.heslo, k.param1, k.param2};
        for (int c = 0; c < 4; ++c)
            DataGrid1->setItem(r, c, new QTableWidgetItem(cells.at(c)));
    }
    if (!m_rows.isEmpty())
        DataGrid1->setCurrentCell(m_rows.size() - 1, 0);
}

QVector<Kontakt> frmKontakty::fromGrid() const
{
    QVector<Kontakt> rows = m_rows;
    for (int r = 0; r < rows.size(); ++r) {
        rows[r].email = DataGrid1->item(r, 0)->text();
        rows[r].heslo = DataGrid1->item(r, 1)->text();
        rows[r].param1 = DataGrid1->item(r, 2)->text();
        rows[r].param2 = DataGrid1->item(r, 3)->text();
    }
    return rows;
}

void frmKontakty::cmdAdd_Click()
{
    const std::optional<QString> email = InputBox(QStringLiteral("Zadejte novy E-mail:"), QStringLiteral("Přidat položku"));
    if (!email || email->trimmed().isEmpty())
        return;
    DbConnection sys(ConnStrSys());
    QString error;
    m_rows = fromGrid();
    const int id = sys.isOpen() ? AddKontakt(sys, Session().UserLogin, *email, &error) : 0;
    if (!id) {
        MsgBox(error.isEmpty() ? sys.errorText() : error, MsgCritical);
        return;
    }
    m_rows.push_back({id, *email, QStringLiteral(" "), QStringLiteral(" "), QStringLiteral(" ")});
    fill();
}

void frmKontakty::cmdDelete_Click()
{
    const int row = DataGrid1->currentRow();
    if (row < 0 || row >= m_rows.size())
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Chcete opravdu zrušit položku ?"), MsgQuestionOkCancel,
                          QStringLiteral("Zrušit záznam ?"))))
        return;
    DbConnection sys(ConnStrSys());
    QString error;
    m_rows = fromGrid();
    if (!DeleteKontakt(sys, m_rows.at(row).id, &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    m_rows.removeAt(row);
    fill();
}

void frmKontakty::cmdClose_Click()
{
    DbConnection sys(ConnStrSys());
    QString error;
    if (!SaveKontakty(sys, fromGrid(), &error)) {
        MsgBox(error.isEmpty() ? QStringLiteral("Kontakty se nepodařilo uložit.") : error, MsgCritical);
        return;
    }
    accept();
}

void frmKontakty::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F5)
        return m_commands.cmdAdd->click();
    if (event->key() == Qt::Key_F8)
        return m_commands.cmdDelete->click();
    QDialog::keyPressEvent(event);
}
