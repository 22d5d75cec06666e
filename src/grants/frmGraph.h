#pragma once
// "Graf čerpání GRANTů": bars of the chosen grants (budget, money provided, drawdown,
// remainder), or one grant's groups with their plan against the drawdown, overspent groups
// marked. The chart is saved as PNG or printed.

#include "grants/graphdata.h"

#include <QDialog>
#include <QString>
#include <QVector>

#include <functional>

class QChart;
class QChartView;
class QLabel;
class QListWidget;
class QPrinter;
class QPushButton;
class QRadioButton;

class frmGraph : public QDialog {
    Q_OBJECT
public:
    explicit frmGraph(QWidget *parent = nullptr);

    // Reads the user's grants and draws the first chart.
    void load();

    // The file the PNG goes to (a dialog by default; empty cancels) and the printer
    // (the print dialog by default; false cancels). Tests replace them.
    std::function<QString(QWidget *parent)> ChooseFile;
    std::function<bool(QPrinter &printer, QWidget *parent)> ChoosePrinter;

    // Writes the chart as a PNG at twice the screen's resolution.
    bool savePng(const QString &path) const;

private:
    void redraw();
    void drawGrants();
    void drawGroups();
    QString currentGrant() const;
    void showChart(QChart *chart);
    void showTip(bool hovering, const QString &text);
    void cmdUlozit_Click();
    void cmdTisk_Click();

    QVector<GrantHead> m_grants;
    QString m_period;   // "01.01.2025 – 28.02.2025" of the movements
    QListWidget *lstGranty;
    QRadioButton *optGranty, *optSkupiny;
    QChartView *chtGraf;
    QLabel *lblHodnota;
    QPushButton *cmdVse, *cmdNic, *cmdUlozit, *cmdTisk, *cmdClose;
};

// The main window's mnuGraf and toolbar GRAPH.
void ShowGraph(QWidget *parent);
