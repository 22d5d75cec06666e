#pragma once
// "Build/calculate GRANT": runs the account tree builder (with or without summing the
// movements first) and, with LineData set, the revision of a movement file; after a build
// with sums it offers that revision too.

#include <QDialog>
#include <QString>

class QLabel;
class QProgressBar;
class QPushButton;

class frmProgressBuildTree : public QDialog {
    Q_OBJECT
public:
    explicit frmProgressBuildTree(QWidget *parent = nullptr);

    // Set before the screen is shown.
    int TypPicture = 0;       // which step's picture: 0 to 3
    int TypAkce = 1;          // 1 build, 2 add missing accounts, sum and build
    QString LineData;         // file~from~to: the revision instead of the build
    bool UnLoadBuldTree = false;   // close when done
    void load();

    void CmdOk_Click();
    bool running() const { return m_running; }

private:
    void CmdExit_Click();
    bool showProgress(const QString &step, int accounts, int movements);
    void runRevize();
    void runBuild();
    void reviseAfterBuild();

    bool m_running = false;
    bool m_cancel = false;
    QLabel *Label2, *Label3;
    QLabel *Picture1, *Picture2, *Picture3;
    QProgressBar *ProgressBar1, *ProgressBar2;
    QPushButton *CmdOk, *CmdExit;
};

// Opens the builder modally (menu commands and the ends of the imports).
void ShowBuildTree(QWidget *parent, int typAkce, int typPicture, bool unload);
