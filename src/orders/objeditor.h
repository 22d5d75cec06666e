#pragma once
// The rich-text body of an order, shared by the entry, the letter and the archive screens:
// the editor DHTMLEdit1 with its toolbar Toolbar1 (bold, italic, underline, lists, indent,
// alignment, colour), the font and size lists and the image insert.

#include <QWidget>

#include <functional>

class QComboBox;
class QPushButton;
class QTextEdit;
class QToolBar;

class ObjTextEditor : public QWidget {
    Q_OBJECT
public:
    explicit ObjTextEditor(QWidget *parent = nullptr);

    QString html() const;
    void setHtml(const QString &html);
    void setLocked(bool locked);
    QTextEdit *edit() const { return DHTMLEdit1; }

    // The dialogs behind Color and cmdInpAppl; tests replace them.
    std::function<QString()> ChooseColour;     // "#RRGGBB", empty when cancelled
    std::function<QString()> ChooseImage;      // a file path, empty when cancelled

signals:
    // The editor lost the focus: the screens save then.
    void left();

private:
    void command(const QString &key);
    bool eventFilter(QObject *watched, QEvent *event) override;

    QToolBar *Toolbar1;
    QComboBox *FontCombo;
    QComboBox *FontSizeCombo;
    QPushButton *cmdInpAppl;
    QTextEdit *DHTMLEdit1;
};
