#pragma once
// Printing of the viewer's documents with the page setup: the stored margins, and the
// header and footer drawn on every page.
//
// Codes in the header and footer: &w title, &u address, &p page, &P number of pages,
// &d date (dd.mm.yyyy), &D long date, &t and &T time, && an ampersand; &b splits the
// text into a left, a centred and a right part ("left&bright", "left&bcentre&bright").
// Any other code stays as written.

#include "admin/page_setup.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

class QPrinter;
class QTextDocument;
class QWidget;

struct PageContext {
    QString title;
    QString url;
    int page = 1;
    int pages = 1;
    QDateTime when;
};

// The codes replaced; always three parts: left, centre, right.
QStringList ExpandPageCodes(const QString &text, const PageContext &context);

// Prints onto a printer already chosen; false when the printer cannot be started.
bool PrintDocument(const QTextDocument *document, QPrinter &printer, const PageSetupValues &setup);

// The viewer's Print: the print dialog, then the document with the stored page setup.
void PrintWithPageSetup(QTextDocument *document, QWidget *parent);
