#include "orders/objeditor.h"

#include <QAction>
#include <QColorDialog>
#include <QComboBox>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>
#include <QTextList>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

ObjTextEditor::ObjTextEditor(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ObjTextEditor"));
    Toolbar1 = new QToolBar(this);
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    const struct {
        const char *key, *caption;
    } buttons[] = {{"Bold", "B"},           {"Italic", "I"},          {"Underline", "U"}, {"Numbers", "1."},
                   {"Bullets", "•"},        {"Outdent", "«"},         {"Indent", "»"},    {"LeftJustify", "≡←"},
                   {"Center", "≡"},         {"RightJustify", "→≡"},  {"Color", "A"}};
    for (const auto &b : buttons) {
        QAction *a = Toolbar1->addAction(QString::fromUtf8(b.caption));
        a->setObjectName(QLatin1String(b.key));
        const QString key = QLatin1String(b.key);
        connect(a, &QAction::triggered, this, [this, key] { command(key); });
    }
    FontCombo = new QComboBox(this);
    FontCombo->setObjectName(QStringLiteral("FontCombo"));
    FontCombo->addItems({"Arial", "Arial CE", "Times New Roman", "Times New Roman CE", "Tahoma", "Courier", "Verdana",
                         "Wingdings"});
    FontSizeCombo = new QComboBox(this);
    FontSizeCombo->setObjectName(QStringLiteral("FontSizeCombo"));
    for (int i = 1; i <= 7; ++i)
        FontSizeCombo->addItem(QString::number(i));
    FontSizeCombo->setCurrentIndex(2);
    cmdInpAppl = new QPushButton(QStringLiteral("Image insert"), this);
    cmdInpAppl->setObjectName(QStringLiteral("cmdInpAppl"));
    DHTMLEdit1 = new QTextEdit(this);
    DHTMLEdit1->setObjectName(QStringLiteral("DHTMLEdit1"));
    DHTMLEdit1->setAcceptRichText(true);
    DHTMLEdit1->installEventFilter(this);

    ChooseColour = [this] {
        const QColor c = QColorDialog::getColor(Qt::black, this);
        return c.isValid() ? c.name().toUpper() : QString();
    };
    ChooseImage = [this] {
        return QFileDialog::getOpenFileName(this, QString(), QString(), QStringLiteral("Obrázky (*.bmp *.gif *.jpg *.png)"));
    };

    connect(FontCombo, &QComboBox::textActivated, this, [this](const QString &font) {
        QTextCharFormat f;
        f.setFontFamilies({font});
        DHTMLEdit1->mergeCurrentCharFormat(f);
    });
    // HTML sizes 1..7 as points.
    connect(FontSizeCombo, &QComboBox::activated, this, [this](int index) {
        static const int points[] = {8, 10, 12, 14, 18, 24, 36};
        QTextCharFormat f;
        f.setFontPointSize(points[std::clamp(index, 0, 6)]);
        DHTMLEdit1->mergeCurrentCharFormat(f);
    });
    connect(cmdInpAppl, &QPushButton::clicked, this, [this] {
        const QString path = ChooseImage();
        if (path.isEmpty() || QImage(path).isNull())
            return;
        DHTMLEdit1->textCursor().insertImage(QUrl::fromLocalFile(path).toString());
    });

    auto *tools = new QHBoxLayout;
    tools->addWidget(Toolbar1);
    tools->addWidget(FontCombo);
    tools->addWidget(FontSizeCombo);
    tools->addWidget(cmdInpAppl);
    tools->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(tools);
    layout->addWidget(DHTMLEdit1);
}

QString ObjTextEditor::html() const
{
    // The body only: the head Qt writes around it belongs to no order.
    const QString all = DHTMLEdit1->toHtml();
    const qsizetype open = all.indexOf(QLatin1String("<body"));
    const qsizetype start = open < 0 ? -1 : all.indexOf(QLatin1Char('>'), open);
    const qsizetype end = all.lastIndexOf(QLatin1String("</body>"));
    if (start < 0 || end < start)
        return all;
    return all.mid(start + 1, end - start - 1).trimmed();
}

void ObjTextEditor::setHtml(const QString &html) { DHTMLEdit1->setHtml(html); }

void ObjTextEditor::setLocked(bool locked)
{
    DHTMLEdit1->setReadOnly(locked);
    Toolbar1->setEnabled(!locked);
    FontCombo->setEnabled(!locked);
    FontSizeCombo->setEnabled(!locked);
    cmdInpAppl->setEnabled(!locked);
}

void ObjTextEditor::command(const QString &key)
{
    QTextCursor cursor = DHTMLEdit1->textCursor();
    QTextCharFormat f;
    const QTextCharFormat now = cursor.charFormat();
    if (key == QLatin1String("Bold")) {
        f.setFontWeight(now.fontWeight() > QFont::Normal ? QFont::Normal : QFont::Bold);
    } else if (key == QLatin1String("Italic")) {
        f.setFontItalic(!now.fontItalic());
    } else if (key == QLatin1String("Underline")) {
        f.setFontUnderline(!now.fontUnderline());
    } else if (key == QLatin1String("Color")) {
        const QString colour = ChooseColour();
        if (colour.isEmpty())
            return;
        f.setForeground(QColor(colour));
    } else if (key == QLatin1String("Numbers") || key == QLatin1String("Bullets")) {
        cursor.createList(key == QLatin1String("Numbers") ? QTextListFormat::ListDecimal : QTextListFormat::ListDisc);
        return;
    } else if (key == QLatin1String("Indent") || key == QLatin1String("Outdent")) {
        QTextBlockFormat b = cursor.blockFormat();
        b.setIndent(std::max(0, b.indent() + (key == QLatin1String("Indent") ? 1 : -1)));
        cursor.setBlockFormat(b);
        return;
    } else {
        const Qt::Alignment a = key == QLatin1String("Center")         ? Qt::AlignHCenter
                                : key == QLatin1String("RightJustify") ? Qt::AlignRight
                                                                         : Qt::AlignLeft;
        DHTMLEdit1->setAlignment(a);
        return;
    }
    DHTMLEdit1->mergeCurrentCharFormat(f);
}

bool ObjTextEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == DHTMLEdit1 && event->type() == QEvent::FocusOut)
        emit left();
    return QWidget::eventFilter(watched, event);
}
