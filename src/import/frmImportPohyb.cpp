#include "import/frmImportPohyb.h"

#include "core/buildobjlj.h"
#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/rights.h"
#include "core/session.h"
#include "core/text.h"
#include "grants/filter.h"
#include "grants/frmGranty.h"
#include "grants/grantreports.h"
#include "grants/granttables.h"
#include "grants/screenparts.h"
#include "import/DefinFieldsExport.h"
#include "import/frmErrControl.h"
#include "import/frmProgressBuildTree.h"
#include "import/importscreens.h"
#include "import/importsouboru.h"
#include "import/pozice.h"
#include "import/revize.h"

#include <QApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlQuery>
#include <QTableView>
#include <QVBoxLayout>

namespace {
const QStringList Columns{QStringLiteral("Datum"), QStringLiteral("Doklad"), QStringLiteral("Text"), QStringLiteral("Castka"),
                          QStringLiteral("Ucet"), QStringLiteral("Grant"), QStringLiteral("NazevUctu"), QStringLiteral("MD/DAL")};
constexpr int ColDatum = 0;
constexpr int ColDoklad = 1;

QLineEdit *Box(QWidget *screen, const char *name, bool readOnly = false)
{
    auto *box = new QLineEdit(screen);
    box->setObjectName(QLatin1String(name));
    box->setReadOnly(readOnly);
    return box;
}

QLabel *Label(QWidget *screen, const char *name, const QString &text = QString())
{
    auto *label = new QLabel(text, screen);
    label->setObjectName(QLatin1String(name));
    return label;
}
} // namespace

frmImportPohyb::frmImportPohyb(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImportPohyb"));
    resize(1100, 640);
    m_model = new ImportRowsModel(QStringLiteral("ImportUctyCastky"), Columns, this);
    DataGrid1 = RowsGrid(this, m_model);
    DataGrid1->horizontalHeader()->setSectionsClickable(true);

    datDatumOd = Box(this, "datDatumOd");
    datDatumDo = Box(this, "datDatumDo");
    Text1 = Box(this, "Text1", true);
    Text2 = Box(this, "Text2", true);
    lblOpenFile = Label(this, "lblOpenFile");
    lblDatOd = Label(this, "lblDatOd");
    lblDatDo = Label(this, "lblDatDo");
    fileDateTime = Label(this, "fileDateTime");
    lblHeading = Label(this, "lblHeading");
    lblHeading->setTextFormat(Qt::RichText);
    lblHeading->hide();
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setRange(0, 100);
    ProgressBar1->hide();

    cmdOpenFile = CommandButton(this, "cmdOpenFile", QStringLiteral("&Otevřít soubor"));
    cmdImportAct = CommandButton(this, "cmdImportAct", QStringLiteral("&Import"));
    cmdDefinice = CommandButton(this, "cmdDefinice", QStringLiteral("&Definice TAB"));
    cmdError = CommandButton(this, "cmdError", QStringLiteral("&Revize souboru"));
    cmdDel = CommandButton(this, "cmdDel", QStringLiteral("&Smazat vše"));
    cmdFind = CommandButton(this, "cmdFind", QStringLiteral("F7-&Najit"));
    cmdPrint = CommandButton(this, "cmdPrint", QStringLiteral("&Tisk"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("Esc-&Konec"));
    cmdFind->setShortcut(QKeySequence(Qt::Key_F7));
    cmdImportAct->setEnabled(false);

    importBox = new QWidget(this);
    auto *top = new QGridLayout(importBox);
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(new QLabel(QStringLiteral("Import čerpání v termínu :"), this), 0, 0);
    top->addWidget(datDatumOd, 0, 1);
    top->addWidget(datDatumDo, 0, 2);
    top->addWidget(new QLabel(QStringLiteral("Importní soubor :"), this), 1, 0);
    top->addWidget(lblOpenFile, 1, 1, 1, 3);
    top->addWidget(new QLabel(QStringLiteral("Aktualizace čerpání účtů za období  od"), this), 2, 0);
    top->addWidget(lblDatOd, 2, 1);
    top->addWidget(lblDatDo, 2, 2);
    top->addWidget(new QLabel(QStringLiteral("Záznam číslo:"), this), 0, 4);
    top->addWidget(Text1, 0, 5);
    top->addWidget(Text2, 1, 5);
    top->addWidget(fileDateTime, 2, 5);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdOpenFile, cmdImportAct, cmdDefinice, cmdError, cmdDel, cmdFind, cmdPrint})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblHeading);
    layout->addWidget(importBox);
    layout->addWidget(ProgressBar1);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(buttons);

    connect(cmdOpenFile, &QPushButton::clicked, this, &frmImportPohyb::cmdOpenFile_Click);
    connect(cmdImportAct, &QPushButton::clicked, this, &frmImportPohyb::cmdImportAct_Click);
    connect(cmdDefinice, &QPushButton::clicked, this, [this] { ShowDefinFieldsExport(this); });
    connect(cmdError, &QPushButton::clicked, this, &frmImportPohyb::cmdError_Click);
    connect(cmdDel, &QPushButton::clicked, this, &frmImportPohyb::cmdDel_Click);
    connect(cmdFind, &QPushButton::clicked, this, &frmImportPohyb::cmdFind_Click);
    connect(cmdPrint, &QPushButton::clicked, this, &frmImportPohyb::cmdPrint_Click);
    connect(cmdClose, &QPushButton::clicked, this, [this] {
        if (m_running)
            m_cancel = true;
        else
            reject();
    });
    connect(datDatumOd, &QLineEdit::editingFinished, this, [this] { checkDate(datDatumOd, true); });
    connect(datDatumDo, &QLineEdit::editingFinished, this, [this] { checkDate(datDatumDo, false); });
    connect(DataGrid1->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        m_model->sortByHeading(column);
        showCount();
    });
    connect(DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { showCount(); });
}

void frmImportPohyb::Load()
{
    if (listMode()) {
        // The group's movements: the rows its sum takes, with the figures it gave.
        setWindowTitle(QStringLiteral("Položký MD/DAL - GRANT ") + GrantActiv);
        importBox->hide();
        for (QPushButton *b : {cmdOpenFile, cmdImportAct, cmdDefinice, cmdError, cmdDel})
            b->hide();
        QString accounts = SkupUctu;
        const Criterion c = BuildCriterion(CriterionForm::Movements, SkupUctu, GrantActiv);
        m_model->setCondition(c.where, c.values);
        m_model->sortBy(ColDatum, false);
        lblHeading->setText(QStringLiteral("<b>GRANT %1</b> &nbsp;%2<br><b>%3</b> &nbsp;(%4) &nbsp; položek: %9<br>"
                                           "Rozpočet, Kč: <b>%5</b> &nbsp; Čerpání, Kč: <b>%6</b> &nbsp; "
                                           "Zůstatek, Kč: <b>%7</b> &nbsp; Zůstatek, %: <b>%8</b>")
                                .arg(GrantActiv.toHtmlEscaped(), NazevActivGrant.toHtmlEscaped(), NazevActiv.toHtmlEscaped(),
                                     accounts.replace(QLatin1Char(','), QLatin1String(", ")).toHtmlEscaped(), CastkaSelect,
                                     Cerpani, Zustatek, ProcentAll, QString::number(m_model->rowCount())));
        lblHeading->show();
        return;
    }
    setWindowTitle(QStringLiteral("Import částek - ") + TypImportu);
    datDatumOd->setText(GetDatumOd());
    datDatumDo->setText(GetDatumDo());
    const bool admin = CanImportMovements(Session().UserTyp);
    cmdOpenFile->setEnabled(admin);
    cmdError->setEnabled(admin);
    cmdDel->setEnabled(admin);
    m_model->sortBy(ColDatum, false);
    showPeriod();
    showCount();
}

bool frmImportPohyb::checkDate(QLineEdit *box, bool from)
{
    // A good date is remembered for the next import; a bad one keeps the focus.
    const bool ok = from ? SaveDatumOd(box->text().trimmed(), DateTarget::Store)
                         : SaveDatumDo(box->text().trimmed(), DateTarget::Store);
    if (!ok)
        box->setFocus();
    return ok;
}

void frmImportPohyb::showCount()
{
    Text2->setText(QString::number(m_model->rowCount()));
    const QModelIndex current = DataGrid1->currentIndex();
    Text1->setText(QString::number(current.isValid() ? current.row() + 1 : 0));
}

void frmImportPohyb::showPeriod()
{
    // The first and last date of the table, in the order of dates.
    QString first, last;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QDate d = ParseImportDate(m_model->text(row, ColDatum));
        if (!d.isValid())
            continue;
        if (first.isEmpty() || d < ParseImportDate(first))
            first = m_model->text(row, ColDatum);
        if (last.isEmpty() || d > ParseImportDate(last))
            last = m_model->text(row, ColDatum);
    }
    lblDatOd->setText(first);
    lblDatDo->setText(last);
}

void frmImportPohyb::cmdOpenFile_Click()
{
    const QString od = datDatumOd->text().trimmed(), dd = datDatumDo->text().trimmed();
    if (!IsDateText(od) || !IsDateText(dd)) {
        MsgBox(QStringLiteral("Špatný formát datumu."), MsgWarning);
        datDatumOd->setFocus();
        return;
    }
    const QString file = ChooseExistingImportFile(this, QLatin1String(FilterImportFiles));
    if (file.isEmpty())
        return;
    const QString name = QFileInfo(file).fileName();
    lblOpenFile->setText(file.toLower());
    if (IsRepeatedFile(file, RepeatMovements)
        && !Confirmed(MsgBox(QStringLiteral("Soubor  ") + name + QStringLiteral("  je už jedno importován. Přejete si pokračovat?"),
                             32 + 4)))
        return;
    RememberFile(file, RepeatMovements);
    if (!NactiPozice(file, PoziceMD_DAL))
        return;
    RememberImportFolder(file);
    if (!QFileInfo(file).isFile()) {
        lblOpenFile->setText(QStringLiteral("Importní soubor neexistuje..."));
        return;
    }
    m_model->sortBy(ColDatum, false);
    const bool rowsPresent = m_model->rowCount() > 0;
    const QString question = rowsPresent ? QStringLiteral("Přejete si vymazat řádky částek - ") + TypImportu
                                               + QStringLiteral(" v terminu od ") + od + QStringLiteral(" do ") + dd + QLatin1Char('?')
                                         : QStringLiteral("Přejete si zahájit import?");
    const bool yes = Confirmed(MsgBox(question, 32 + 4));
    showCount();
    m_file = file;
    m_replacePeriod = false;
    if (!yes)
        return;
    if (rowsPresent) {
        const bool go = Confirmed(MsgBox(QStringLiteral("Data v terminu od ") + od + QStringLiteral(" do ") + dd
                                             + QStringLiteral(" jsou vymazána. Pokračovát v importu částek - ") + TypImportu
                                             + QStringLiteral(" zvoleného termínů?"),
                                         MsgQuestionOkCancel));
        if (!go) {
            // The deletion was agreed to on its own: it happens, without an import.
            DbConnection conn(ConnStrGranty());
            if (!conn.isOpen() || DeletePeriod(conn, TypImportu, ParseImportDate(od), ParseImportDate(dd)) < 0)
                ShowDbError(conn);
            m_model->refresh();
            showCount();
            return;
        }
        m_replacePeriod = true;
    }
    cmdImportAct->setEnabled(true);
    cmdOpenFile->setEnabled(false);
}

bool frmImportPohyb::progress(int percent, int rowsNow, const QString &chunkTime)
{
    ProgressBar1->setValue(percent);
    Text2->setText(QString::number(rowsNow));
    fileDateTime->setText(chunkTime);
    QApplication::processEvents();
    return !m_cancel;
}

void frmImportPohyb::cmdImportAct_Click()
{
    if (m_file.isEmpty() || m_running)
        return;
    ProgressBar1->setValue(0);
    ProgressBar1->show();
    cmdImportAct->setEnabled(false);
    m_running = true;
    m_cancel = false;
    ImportRequest rq;
    rq.fileName = m_file;
    rq.mode = ImportPohyby;
    rq.dateFrom = datDatumOd->text().trimmed();
    rq.dateTo = datDatumDo->text().trimmed();
    rq.side = TypImportu;
    rq.replacePeriod = m_replacePeriod;
    rq.progress = [this](const ImportProgress &p) { return progress(p.percent, p.rows, p.chunkTime); };
    ImportResult r;
    {
        DbConnection conn(ConnStrGranty());
        if (!conn.isOpen()) {
            ShowDbError(conn);
        } else {
            r = ImportSouboru(conn, rq);
        }
    }
    m_running = false;
    m_file.clear();
    m_replacePeriod = false;
    cmdOpenFile->setEnabled(CanImportMovements(Session().UserTyp));
    ShowErrControl(this, QString::fromUtf8(TitleChybyImportu), r.errors);
    m_model->sortBy(ColDatum, false);
    showPeriod();
    if (!r.ok) {
        showCount();
        return;
    }
    ProgressBar1->hide();
    const int first = m_model->find(ColDatum, rq.dateFrom);
    if (first >= 0)
        DataGrid1->selectRow(first);
    showCount();
    MsgBox(QStringLiteral("Akce byla úspěšně ukončena."));
    ShowBuildTree(this, 2, 2, true);
}

void frmImportPohyb::cmdDel_Click()
{
    if (!Confirmed(MsgBox(QStringLiteral("Opravdu si přejete vymazat vše položky?"), MsgQuestionOkCancel,
                          QStringLiteral("Delete all rows"))))
        return;
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !VymazTabulku(conn, QStringLiteral("ImportUctyCastky")))
        ShowDbError(conn);
    m_model->refresh();
    showPeriod();
    showCount();
}

void frmImportPohyb::cmdFind_Click()
{
    const QModelIndex current = DataGrid1->currentIndex();
    const int column = current.isValid() ? current.column() : ColDatum;
    const std::optional<QString> value =
        InputBox(QStringLiteral("Zadejte parameter pole - ") + Columns.at(column), QStringLiteral("Find :"));
    if (!value)
        return;
    // The document number is stored behind two blanks.
    const QString wanted = column == ColDoklad ? QStringLiteral("  ") + *value : *value;
    const int row = m_model->find(column, wanted);
    if (row < 0) {
        MsgBox(QStringLiteral("No search found !"));
        return;
    }
    DataGrid1->setCurrentIndex(m_model->index(row, column));
    showCount();
}

void frmImportPohyb::cmdError_Click()
{
    if (!Confirmed(MsgBox(QStringLiteral("Přejéte sí provest kontrolu vstupneho souboru na přítomnost chybneho nebo "
                                         "neexistujícího účtu?"),
                          MsgQuestionOkCancel)))
        return;
    const QString od = datDatumOd->text().trimmed(), dd = datDatumDo->text().trimmed();
    if (!IsDateText(od) || !IsDateText(dd)) {
        MsgBox(QStringLiteral("Špatný formát datumu."), MsgWarning);
        return;
    }
    const QString file = ChooseExistingImportFile(this, QLatin1String(FilterImportFiles));
    if (file.isEmpty())
        return;
    if (!NactiPozice(file, PoziceMD_DAL))
        return;
    RememberImportFolder(file);
    frmProgressBuildTree check(this);
    check.setWindowTitle(QStringLiteral("Error counts control"));
    check.LineData = file + QLatin1Char('~') + od + QLatin1Char('~') + dd;
    check.UnLoadBuldTree = true;
    check.load();
    check.exec();
}

void frmImportPohyb::cmdPrint_Click()
{
    // Amount last, so that it alone is right-aligned.
    static const int order[] = {0, 1, 2, 4, 6, 5, 7, 3};
    ListSpec list;
    list.grant = GrantActiv;
    list.selection = listMode() ? NazevActiv + QStringLiteral(" (") + QString(SkupUctu).replace(QLatin1Char(','), QLatin1String(", ")) +
                                      QLatin1Char(')')
                                : QString();
    list.columns = QStringLiteral("Datum~Doklad~Text~Účet~Název účtu~GRANT~MD/DAL~Částka");
    list.firstAmount = 7;
    list.size = QStringLiteral("2");
    for (int row = 0; row < m_model->rowCount(); ++row) {
        QStringList cells;
        for (const int c : order)
            cells << m_model->text(row, c).trimmed();
        list.rows.append(cells);
    }
    QString path, error;
    if (!WriteReport([&](BuildObjLJ &html) { GeneratorListPage(html, list); }, &path, &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    ViewHTML(path);
}

void ShowMovementList(QWidget *parent, const MovementListRequest &request)
{
    frmImportPohyb screen(parent);
    screen.TypeViewForm = frmImportPohyb::ListOfGroup;
    screen.SkupUctu = request.filter;
    screen.GrantActiv = request.grant;
    screen.NazevActivGrant = request.name;
    screen.NazevActiv = request.heading;
    screen.CastkaSelect = request.plan;
    screen.Cerpani = request.cerpani;
    screen.Zustatek = request.zustatek;
    screen.ProcentAll = request.procent;
    screen.Load();
    screen.exec();
}

void ShowImportPohyb(QWidget *parent, const QString &typImportu)
{
    frmImportPohyb screen(parent);
    screen.TypImportu = typImportu;
    screen.Load();
    screen.exec();
}
