#include "core/htmlviewer.h"

#include "core/codepage.h"

#include <QAction>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QStatusBar>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace {
HtmlViewer::PrintHandler &printHandler()
{
    static HtmlViewer::PrintHandler handler;
    return handler;
}

void printWithDialog(QTextDocument *document, QWidget *parent)
{
    QPrinter printer;
    QPrintDialog dialog(&printer, parent);
    if (dialog.exec() == QDialog::Accepted)
        document->print(&printer);
}
} // namespace

HtmlViewer::HtmlViewer(const QString &path, bool withMenu, QWidget *parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("HtmlViewer"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto *printAction = new QAction(QStringLiteral("Tisk"), this);
    printAction->setObjectName(QStringLiteral("actPrint"));
    printAction->setShortcut(QKeySequence::Print);
    connect(printAction, &QAction::triggered, this, &HtmlViewer::print);
    auto *browserAction = new QAction(QStringLiteral("Otevřít v prohlížeči"), this);
    browserAction->setObjectName(QStringLiteral("actOpenBrowser"));
    connect(browserAction, &QAction::triggered, this, &HtmlViewer::openInBrowser);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (withMenu) {
        auto *menuBar = new QMenuBar(this);
        menuBar->setObjectName(QStringLiteral("menuBar"));
        QMenu *file = menuBar->addMenu(QStringLiteral("Soubor"));
        file->addAction(printAction);
        file->addAction(browserAction);
        file->addSeparator();
        file->addAction(QStringLiteral("Zavřít"), this, &QWidget::close);
        layout->setMenuBar(menuBar);
    }
    auto *toolBar = new QToolBar(this);
    toolBar->addAction(printAction);
    toolBar->addAction(browserAction);
    m_address = new QLineEdit(this);
    m_address->setObjectName(QStringLiteral("txtAddress"));
    m_address->setReadOnly(true);
    toolBar->addWidget(m_address);
    layout->addWidget(toolBar);

    m_browser = new QTextBrowser(this);
    m_browser->setObjectName(QStringLiteral("browser"));
    m_browser->setOpenLinks(false);
    connect(m_browser, &QTextBrowser::anchorClicked, this, [this](const QUrl &url) {
        const QUrl target = QUrl::fromLocalFile(m_path).resolved(url);
        if (target.isLocalFile() && QFileInfo(target.toLocalFile()).suffix().startsWith(QLatin1String("htm"), Qt::CaseInsensitive))
            load(target.toLocalFile());
        else if (!qEnvironmentVariableIsSet("FONDARIX_NO_BROWSER"))
            QDesktopServices::openUrl(target);
    });
    layout->addWidget(m_browser, 1);

    auto *status = new QStatusBar(this);
    m_status = new QLabel(status);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    status->addWidget(m_status, 1);
    layout->addWidget(status);

    load(path);
}

void HtmlViewer::load(const QString &path)
{
    m_path = path;
    bool ok = false;
    const QString html = ReadFileCp1250(path, &ok);
    if (!ok)
        qWarning("ViewHTML: %s", qPrintable(path));
    // Pictures and links of the page are found beside the file.
    m_browser->setSearchPaths({QFileInfo(path).absolutePath()});
    m_browser->document()->setBaseUrl(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    m_browser->setHtml(html);
    const QString title = m_browser->documentTitle();
    setWindowTitle(title.isEmpty() ? QFileInfo(path).fileName() : title);
    m_address->setText(path);
    m_status->setText(path);
}

void HtmlViewer::setPrintHandler(PrintHandler handler) { printHandler() = std::move(handler); }

void HtmlViewer::print()
{
    if (printHandler())
        printHandler()(m_browser->document(), this);
    else
        printWithDialog(m_browser->document(), this);
}

void HtmlViewer::openInBrowser()
{
    if (!qEnvironmentVariableIsSet("FONDARIX_NO_BROWSER"))
        QDesktopServices::openUrl(QUrl::fromLocalFile(m_path));
}
