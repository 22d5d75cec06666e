#pragma once
// The program's window for generated HTML (reports, order forms): the file decoded from
// Windows-1250, with printing and a way out to the system's browser.

#include <QWidget>

#include <functional>

class QLineEdit;
class QLabel;
class QTextBrowser;
class QTextDocument;

class HtmlViewer : public QWidget {
    Q_OBJECT
public:
    // withMenu: the window gets its menu bar (the user's "ToolBar" print setting).
    HtmlViewer(const QString &path, bool withMenu, QWidget *parent = nullptr);

    QString path() const { return m_path; }
    QTextBrowser *browser() const { return m_browser; }

    // How "Tisk" prints; an empty handler restores the print dialog.
    using PrintHandler = std::function<void(QTextDocument *, QWidget *)>;
    static void setPrintHandler(PrintHandler handler);

    void print();
    // Not under tests: FONDARIX_NO_BROWSER set means no browser is started.
    void openInBrowser();

private:
    void load(const QString &path);

    QString m_path;
    QTextBrowser *m_browser = nullptr;
    QLineEdit *m_address = nullptr;
    QLabel *m_status = nullptr;
};
