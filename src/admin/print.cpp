#include "admin/print.h"

#include "core/msg.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QFontMetricsF>
#include <QLocale>
#include <QMarginsF>
#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>

#include <memory>

QStringList ExpandPageCodes(const QString &text, const PageContext &context)
{
    QStringList parts{QString()};
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('&') || i + 1 == text.size()) {
            parts.last() += c;
            continue;
        }
        const QChar code = text.at(++i);
        switch (code.unicode()) {
        case 'w': parts.last() += context.title; break;
        case 'u': parts.last() += context.url; break;
        case 'p': parts.last() += QString::number(context.page); break;
        case 'P': parts.last() += QString::number(context.pages); break;
        case 'd': parts.last() += context.when.date().toString(QStringLiteral("dd.MM.yyyy")); break;
        case 'D': parts.last() += QLocale(QLocale::Czech).toString(context.when.date(), QLocale::LongFormat); break;
        case 't':
        case 'T': parts.last() += context.when.time().toString(QStringLiteral("HH:mm")); break;
        case '&': parts.last() += QLatin1Char('&'); break;
        case 'b':
            if (parts.size() < 3)
                parts << QString();
            break;
        default: parts.last() += c; parts.last() += code; break;
        }
    }
    // One split: the second part goes to the right.
    if (parts.size() == 2)
        parts.insert(1, QString());
    while (parts.size() < 3)
        parts << QString();
    return parts;
}

namespace {
void drawBand(QPainter &painter, const QRectF &band, const QString &text, const PageContext &context)
{
    if (text.isEmpty())
        return;
    const QStringList parts = ExpandPageCodes(text, context);
    const int align[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    for (int i = 0; i < 3; ++i)
        painter.drawText(band, align[i] | Qt::AlignVCenter, parts[i]);
}
} // namespace

bool PrintDocument(const QTextDocument *document, QPrinter &printer, const PageSetupValues &setup)
{
    printer.setPageMargins(QMarginsF(setup.left, setup.top, setup.right, setup.bottom), QPageLayout::Inch);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;

    QFont font(QStringLiteral("Sans Serif"), 8);
    painter.setFont(font);
    const double lineHeight = QFontMetricsF(font, &printer).height();
    const double headerBand = setup.header.isEmpty() ? 0 : lineHeight * 1.5;
    const double footerBand = setup.footer.isEmpty() ? 0 : lineHeight * 1.5;
    const double width = printer.width();
    const double height = printer.height();
    const double bodyHeight = height - headerBand - footerBand;

    // Laid out for the printer's resolution, in pages of the body's height.
    std::unique_ptr<QTextDocument> body(document->clone());
    body->documentLayout()->setPaintDevice(&printer);
    body->setPageSize(QSizeF(width, bodyHeight));

    PageContext context;
    context.title = document->metaInformation(QTextDocument::DocumentTitle);
    context.url = document->metaInformation(QTextDocument::DocumentUrl);
    context.pages = body->pageCount();
    context.when = QDateTime::currentDateTime();
    for (int page = 1; page <= context.pages; ++page) {
        if (page > 1)
            printer.newPage();
        context.page = page;
        drawBand(painter, QRectF(0, 0, width, headerBand), setup.header, context);
        painter.save();
        const QRectF shown(0, (page - 1) * bodyHeight, width, bodyHeight);
        painter.translate(0, headerBand - shown.top());
        body->drawContents(&painter, shown);
        painter.restore();
        drawBand(painter, QRectF(0, height - footerBand, width, footerBand), setup.footer, context);
    }
    return painter.end();
}

void PrintWithPageSetup(QTextDocument *document, QWidget *parent)
{
    if (!document)
        return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, parent);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (!PrintDocument(document, printer, ReadPageSetup()))
        MsgBox(QStringLiteral("Tiskárnu se nepodařilo spustit, dokument nebyl vytištěn."), MsgWarning);
}
