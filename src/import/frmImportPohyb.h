#pragma once
// "Import částek - MD" / "- Dal": reads the MD/DAL export of a period into
// ImportUctyCastky, one side at a time, after the repeat test and the question whether
// the side's rows of the period are to be replaced; shows and searches the rows.
// With TypeViewForm ListOfGroup the same screen is the list of one group's movements
// (from the drawdown screen): no import, a heading with the group's figures, and its print.

#include <QDialog>
#include <QString>

struct MovementListRequest;

class ImportRowsModel;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;

class frmImportPohyb : public QDialog {
    Q_OBJECT
public:
    explicit frmImportPohyb(QWidget *parent = nullptr);

    // Set by the caller before Load().
    QString TypImportu;        // "MD" or "Dal"; empty keeps both sides
    bool JenomLoadMDB = false; // load data only, never shown
    QString SkupUctu;          // code filter of the group shown
    QString GrantActiv;        // grant shown
    QString NazevActiv, NazevActivGrant;
    QString CastkaSelect, RozpPoskytn, ProcentAll, Zustatek, Cerpani, ImportActiv;
    static constexpr int ListOfGroup = 1;
    int TypeViewForm = 0;       // 0 the import, ListOfGroup the list of a group's movements
    int SelIndex = 0;
    QString NameArchiv;

    void Load();

    // The import file without the dialog (the batch program and the tests choose it so).
    void cmdOpenFile_Click();
    void cmdImportAct_Click();

protected:
    ImportRowsModel *rows() const { return m_model; }
    QTableView *grid() const { return DataGrid1; }

    // Writes the rows in view to List.htm through GeneratorList and shows it.
    void cmdPrint_Click();

private:
    bool listMode() const { return TypeViewForm == ListOfGroup; }
    bool checkDate(QLineEdit *box, bool from);
    void showCount();
    void showPeriod();
    void cmdDel_Click();
    void cmdFind_Click();
    void cmdError_Click();
    bool progress(int percent, int rows, const QString &chunkTime);

    QString m_file;
    bool m_replacePeriod = false;
    bool m_running = false;
    bool m_cancel = false;
    ImportRowsModel *m_model;
    QTableView *DataGrid1;
    QLineEdit *datDatumOd, *datDatumDo, *Text1, *Text2;
    QWidget *importBox;
    QLabel *lblOpenFile, *lblDatOd, *lblDatDo, *fileDateTime, *lblHeading;
    QProgressBar *ProgressBar1;
    QPushButton *cmdOpenFile, *cmdImportAct, *cmdDefinice, *cmdError, *cmdDel, *cmdFind, *cmdPrint, *cmdClose;
};

// The main window's commands mnuImportMDDal and mnuImportDal.
void ShowImportPohyb(QWidget *parent, const QString &typImportu);
// The movement list of the drawdown screen's cmdPictTablList.
void ShowMovementList(QWidget *parent, const MovementListRequest &request);
