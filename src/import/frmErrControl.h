#pragma once
// "Error info": the list of faulty lines that an import or the revision found, with the
// totals of both sides, and its printing.

#include <QDialog>
#include <QStringList>

class QLabel;
class QListWidget;
class QPushButton;

class frmErrControl : public QDialog {
    Q_OBJECT
public:
    explicit frmErrControl(QWidget *parent = nullptr);

    // Set by the caller before the lines are added.
    void setTitulek(const QString &title);
    void addLines(const QStringList &lines);
    // The totals under "Celkem, Kč" (the revision; the import shows none).
    void setTotals(double md, double dal);

    QStringList lines() const;
    // The list as the printer gets it: an empty line, the title, an empty line, the lines.
    // Written as HTML in "Courier New" into the scratch folder; gives its path.
    QString writePrintFile() const;

private:
    void cmdPrint_Click();

    QString m_title;
    QLabel *Label1;
    QListWidget *List1;
    QLabel *lblMD, *lblDal;
    QPushButton *cmdPrint, *cmdClose;
};

// Shows the list (not modal, closed by the user), when it has any line.
void ShowErrControl(QWidget *parent, const QString &title, const QStringList &lines, bool totals = false,
                    double md = 0, double dal = 0);
