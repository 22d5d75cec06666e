#pragma once
// What the PDF forms and the exchange files add to the order archive: "Náhled v PDF",
// the export panel (Frame6, "Seznam k odeslání:") and the import of an exchange file.

#include <QString>

#include <functional>

class QBoxLayout;
class QWidget;
class frmArchObj;

// "Náhled v PDF": the pictures laid out afresh, the form of the order's kind written to the
// scratch folder (ObjPdfPath) and shown unless NoView.
void ObjPdfPreview(frmArchObj *screen, int nom);

// Adds the commands that open the export panel and import a file to the archive's row of
// commands, and fills its Frame6 with the panel, hidden until asked for.
void AddObjExchangeCommands(frmArchObj *screen, QBoxLayout *commands);

// What the archive's PDF and import commands ask of the desktop; tests replace them.
struct ObjExchangeDesktop {
    // The exchange file to import; empty when cancelled.
    static std::function<QString(QWidget *parent, const QString &folder)> &ChooseFile();
    // False: the finished form opens in the system's PDF viewer.
    static bool &NoView();
};
