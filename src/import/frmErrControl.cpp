#include "import/frmErrControl.h"

#include "core/buildobjlj.h"
#include "core/htmlviewer.h"
#include "core/msg.h"
#include "core/session.h"
#include "grants/amount.h"
#include "grants/screenparts.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmErrControl::frmErrControl(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmErrControl"));
    setWindowTitle(QStringLiteral("Error info"));
    resize(900, 480);
    Label1 = HeadingLabel(this, QString());
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    QFont mono(QStringLiteral("Courier New"));
    mono.setStyleHint(QFont::Monospace);
    List1->setFont(mono);
    auto *celkem = new QLabel(QStringLiteral("Celkem, Kč"), this);
    lblMD = new QLabel(QStringLiteral("MD:"), this);
    lblMD->setObjectName(QStringLiteral("lblMD"));
    lblDal = new QLabel(QStringLiteral("DAL:"), this);
    lblDal->setObjectName(QStringLiteral("lblDal"));
    cmdPrint = CommandButton(this, "cmdPrint", QStringLiteral("&Tisk"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("&Konec"));

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(celkem);
    bottom->addWidget(lblMD);
    bottom->addWidget(lblDal);
    bottom->addStretch();
    bottom->addWidget(cmdPrint);
    bottom->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Label1);
    layout->addWidget(List1, 1);
    layout->addLayout(bottom);

    connect(cmdPrint, &QPushButton::clicked, this, &frmErrControl::cmdPrint_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

void frmErrControl::setTitulek(const QString &title)
{
    m_title = title;
    Label1->setText(title);
}

void frmErrControl::addLines(const QStringList &lines) { List1->addItems(lines); }

void frmErrControl::setTotals(double md, double dal)
{
    lblMD->setText(QStringLiteral("MD: ") + FormatAmount(md));
    lblDal->setText(QStringLiteral("DAL: ") + FormatAmount(dal));
}

QStringList frmErrControl::lines() const
{
    QStringList texts;
    for (int i = 0; i < List1->count(); ++i)
        texts << List1->item(i)->text();
    return texts;
}

QString frmErrControl::writePrintFile() const
{
    auto escape = [](const QString &t) { return t.toHtmlEscaped(); };
    BuildObjLJ out;
    const QString path = QDir(Session().TempDir).filePath(QStringLiteral("ErrInfo.htm"));
    QDir().mkpath(Session().TempDir);
    if (!out.Open(path)) {
        MsgBox(out.Error(), MsgCritical);
        return QString();
    }
    out.Line(QStringLiteral("<HTML><HEAD><META http-equiv=Content-Type content='text/html; charset=windows-1250'>"
                            "<TITLE>Error info</TITLE></HEAD><BODY>"));
    out.Line(QStringLiteral("<PRE style=\"font-family:'Courier New',monospace\">"));
    out.Line(QString());
    out.Line(escape(m_title));
    out.Line(QString());
    for (const QString &line : lines())
        out.Line(escape(line));
    out.Line(QStringLiteral("</PRE></BODY></HTML>"));
    if (!out.Close()) {
        MsgBox(out.Error(), MsgCritical);
        return QString();
    }
    return path;
}

void frmErrControl::cmdPrint_Click()
{
    const QString path = writePrintFile();
    if (path.isEmpty())
        return;
    HtmlViewer viewer(path, false);
    viewer.print();
    MsgBox(QStringLiteral("Printer file complete "));
}

void ShowErrControl(QWidget *parent, const QString &title, const QStringList &lines, bool totals, double md, double dal)
{
    if (lines.isEmpty())
        return;
    auto *screen = new frmErrControl(parent);
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->setTitulek(title);
    screen->addLines(lines);
    if (totals)
        screen->setTotals(md, dal);
    screen->show();
}
