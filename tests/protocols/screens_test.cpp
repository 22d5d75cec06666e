#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "protocols/frmDocDesignForm.h"
#include "protocols/frmDocPacient.h"
#include "protocols/frmDocPanelForm.h"
#include "support/testenv.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Sys = QString::fromLatin1(SysDbName);
QString One(const QString &database, const QString &sql) { return Column(database, sql).value(0); }

void Click(QWidget *screen, const char *name) { Child<QPushButton>(screen, name)->click(); }

// The controls of one kind, by field key.
template <typename T>
T *ControlOf(frmDocDesignForm &form, int key)
{
    return qobject_cast<T *>(form.controlOf(key));
}

void Mouse(QWidget *w, QEvent::Type type, QPoint at)
{
    QMouseEvent e(type, at, w->mapToGlobal(at), Qt::LeftButton,
                  type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

void Type(QLineEdit *box, const QString &text)
{
    box->setFocus();
    box->selectAll();
    box->del();
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::KeyAction::Click, box, Qt::Key_unknown, c, Qt::NoModifier);
}

// Runs what is to be done on the modal screen a click is about to open.
void OnModal(std::function<void(QWidget *)> work)
{
    QTimer::singleShot(0, [work = std::move(work)] {
        QWidget *modal = QApplication::activeModalWidget();
        ASSERT_NE(modal, nullptr);
        work(modal);
    });
}

int SelectRow(QTableWidget *grid, int column, const QString &text)
{
    for (int r = 0; r < grid->rowCount(); ++r)
        if (grid->item(r, column)->text() == text) {
            grid->selectRow(r);
            return r;
        }
    ADD_FAILURE() << text.toStdString();
    return -1;
}
} // namespace

TEST(Studio, DesignDragArrowsPanelSaveExportAndImport)
{
    FreshDatabases(true);
    LoginAs(6);
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("STUDIO_FRM_TOP"), QStringLiteral("120"));
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("STUDIO_FRM_LEFT"), QStringLiteral("640"));
    ScriptedMessages messages;
    frmDocDesignForm form;
    form.IDForm = 1;
    form.NoView = true;
    ASSERT_TRUE(form.load());
    form.show();
    EXPECT_EQ(form.windowTitle(), "Formulař - 10500 x 9000");
    frmDocPanelForm *panel = form.panel();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->pos(), QPoint(640, 120));
    EXPECT_EQ(form.findChildren<QLabel *>("lblFormLabel1").size(), 8);
    EXPECT_EQ(form.findChildren<QLineEdit *>("txtFormText1").size(), 5);
    EXPECT_EQ(form.findChildren<QPlainTextEdit *>("txtFormTextBox1").size(), 2);
    EXPECT_EQ(ControlOf<QComboBox>(form, 12)->count(), 4);   // pick list 1
    // Form units are fifteen to a pixel: Left 1100, Top 1600 of field 2.
    QLabel *label = ControlOf<QLabel>(form, 2);
    EXPECT_EQ(label->pos(), QPoint(73, 107));
    EXPECT_EQ(label->property("Tag").toString(), "1~2~0~2~0~");

    // A label dragged by the mouse: press in it, move, release.
    Mouse(label, QEvent::MouseButtonPress, {5, 5});
    EXPECT_EQ(form.KeyActiv, 2);
    Mouse(label, QEvent::MouseMove, {45, 25});
    Mouse(label, QEvent::MouseButtonRelease, {45, 25});
    EXPECT_EQ(label->pos(), QPoint(113, 127));
    const clsField *moved = SessionDocument().Item(QStringLiteral("2"));
    EXPECT_EQ(moved->Left, 113 * 15);
    EXPECT_EQ(moved->Top, 127 * 15);
    EXPECT_EQ(Child<QLineEdit>(panel, "txtLeft")->text(), "1695");
    EXPECT_EQ(Child<QLineEdit>(panel, "txtTop")->text(), "1905");

    // A text control moved by the arrow keys.
    QLineEdit *text = ControlOf<QLineEdit>(form, 7);
    Mouse(text, QEvent::MouseButtonPress, {2, 2});
    QTest::keyClick(text, Qt::Key_Right);
    QTest::keyClick(text, Qt::Key_Down);
    QTest::keyClick(text, Qt::Key_Down);
    EXPECT_EQ(SessionDocument().Item(QStringLiteral("7"))->Left, 3300 + 15);
    EXPECT_EQ(SessionDocument().Item(QStringLiteral("7"))->Top, 2100 + 30);

    // Live edits of the panel: a full stop becomes a comma; the caption and boldness follow.
    Type(Child<QLineEdit>(panel, "txtFont"), QStringLiteral("11.5"));
    EXPECT_EQ(Child<QLineEdit>(panel, "txtFont")->text(), "11,5");
    EXPECT_EQ(SessionDocument().Item(QStringLiteral("7"))->Font, 11.5);
    EXPECT_EQ(text->font().pointSizeF(), 11.5);
    Child<QCheckBox>(panel, "chkBold")->setChecked(false);
    EXPECT_FALSE(text->font().bold());
    auto *mdb = Child<QComboBox>(panel, "cmbMDB");
    EXPECT_EQ(mdb->findText("datapacient"), -1);
    EXPECT_GE(mdb->findText("cisloprot"), 0);
    EXPECT_GE(mdb->findText("prijmcislo"), 0);
    EXPECT_EQ(text->property("Tag").toString(), "2~7~0~7~0~prijmeni");
    EXPECT_TRUE(text->toolTip().contains("prijmeni"));

    // A field added (after the question), captioned; one deleted.
    auto *typ = Child<QComboBox>(panel, "cmbTyp");
    typ->setCurrentIndex(typ->findText("3 - TEXTBOX"));
    messages.answers = {AnswerCancel, AnswerOk};
    Click(panel, "cmdAddPole");
    EXPECT_EQ(SessionDocument().Count(), 16);
    Click(panel, "cmdAddPole");
    EXPECT_TRUE(messages.saw("Opravdu si přejete přídat pole typu: TEXTBOX"));
    EXPECT_EQ(messages.shown.back().title, "Informace");
    ASSERT_EQ(SessionDocument().Count(), 17);
    EXPECT_EQ(form.KeyActiv, 17);
    ASSERT_NE(ControlOf<QPlainTextEdit>(form, 17), nullptr);
    Type(Child<QLineEdit>(panel, "txtPopis"), QStringLiteral("Poznámka lékaře"));
    EXPECT_EQ(ControlOf<QPlainTextEdit>(form, 17)->toPlainText(), "Poznámka lékaře");
    form.setActiveField(15);
    Click(panel, "cmdDelPole");
    EXPECT_TRUE(messages.saw("Opravdu si přejete smazat pole: Závěr:"));
    EXPECT_EQ(form.controlOf(15), nullptr);
    SaveScreen(&form, QStringLiteral("frmDocDesignForm_design"));
    SaveScreen(panel, QStringLiteral("frmDocPanelForm"));

    // Saved after the question.
    Click(&form, "cmdSaveForm");
    EXPECT_TRUE(messages.saw("Přejete si uložit dokument?"));
    EXPECT_EQ(One(Sys, "SELECT param_field FROM formulars WHERE document=1 AND `key`=2"),
              "240~2000~1905~1695~10~0~~0~Číslo protokolu:~0");
    EXPECT_EQ(One(Sys, "SELECT COUNT(*) FROM formulars WHERE document=1"), "16");
    EXPECT_EQ(One(Sys, "SELECT CONCAT(type_field,'|',param_field) FROM formulars WHERE document=1 AND `key`=17"),
              "3|195~3315~0~0~8~0~~0~Poznámka lékaře~0");

    // Export and import through the form file; a cancelled dialog does nothing.
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("biopsie.form"));
    QString chosen = QStringLiteral("*.form");
    SetFormFileChooser([&chosen](QWidget *, bool) { return chosen; });
    const size_t before = messages.shown.size();
    Click(panel, "cmdExport");
    EXPECT_EQ(messages.shown.size(), before);
    chosen = file;
    Click(panel, "cmdExport");
    EXPECT_EQ(messages.lastText(), "Formulář je úspěšně exportován do souboru: " + file);
    Click(panel, "cmdImport");
    EXPECT_EQ(messages.lastText(), "Formulář je úspěšně importován do MDB ze souboru: " + file);
    EXPECT_EQ(One(Sys, "SELECT COUNT(*) FROM formulars WHERE document=3"), "16");
    SetFormFileChooser({});

    // The PDF of the form in the scratch folder.
    Click(&form, "cmdPDFForm");
    EXPECT_TRUE(QFileInfo(QDir(Session().TempDir).filePath("formular.pdf")).size() > 1000);

    // Closing asks; the panel's place is kept.
    panel->move(300, 200);
    messages.answers = {AnswerCancel, AnswerOk};
    Click(&form, "cmdCloseForm");
    EXPECT_TRUE(form.isVisible());
    Click(&form, "cmdCloseForm");
    EXPECT_TRUE(messages.saw("Přejete si ukončit tvorbu dokumentu?"));
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(GetStudioFrmTop(), 200);
    EXPECT_EQ(GetStudioFrmLeft(), 300);
}

TEST(frmDocPacient, PatientsProtocolFillLockCorrectionsAndPdf)
{
    FreshDatabases(true);
    LoginAs(1);
    const QString centre = Session().MysqlDb;
    const QString out = SamplesDir(QStringLiteral("protocols-screen"));
    SaveSetting(QStringLiteral("NASTAVENI"), QStringLiteral("PROTOKOLY_SAVE"), out);
    ScriptedMessages messages;
    frmDocPacient screen;
    screen.NoView = true;
    screen.load();
    screen.show();
    auto *patients = Child<QTableWidget>(&screen, "MSFlexGrid1");
    auto *protocols = Child<QTableWidget>(&screen, "MSFlexGrid2");
    auto *tabs = Child<QTabBar>(&screen, "TabStrip1");
    ASSERT_EQ(patients->rowCount(), 20);
    EXPECT_EQ(patients->horizontalHeaderItem(1)->text(), "Příjmení a jměno");
    EXPECT_EQ(protocols->horizontalHeaderItem(1)->text(), "Vytvořeno, dne ");
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(1), "Protokol Cytologie");

    // Search by surname; an empty text lists all again; the misspelt registration search fails.
    auto *kind = Child<QComboBox>(&screen, "cmbHledat");
    kind->setCurrentIndex(0);
    Child<QLineEdit>(&screen, "txtHledat")->setText(QStringLiteral("Dvo"));
    Click(&screen, "cmdHledat");
    ASSERT_EQ(patients->rowCount(), 1);
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtRC")->text(), patients->item(0, 2)->text());
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtAdresa1")->text(), "Nemocniční 21");
    tabs->setCurrentIndex(1);
    ASSERT_EQ(protocols->rowCount(), 1);
    EXPECT_EQ(protocols->item(0, 0)->text(), "4/2026");
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdEditDoc")->isEnabled());   // locked
    EXPECT_TRUE(Child<QPlainTextEdit>(&screen, "txtKorekce")->toPlainText().startsWith("Dne: 12.11.2026"));
    // His list on the Biopsie tab printed, each protocol to its own file.
    tabs->setCurrentIndex(0);
    ASSERT_EQ(protocols->rowCount(), 2);
    for (const char *name : {"3-2026.pdf", "17-2026.pdf"})
        QFile::remove(QDir(out).filePath(QLatin1String(name)));
    Click(&screen, "cmdPDFList");
    EXPECT_EQ(messages.lastText(), "Protokoly pacienta (2) jsou uloženy do složky: " + out);
    for (const char *name : {"3-2026.pdf", "17-2026.pdf"})
        EXPECT_TRUE(QFileInfo(QDir(out).filePath(QLatin1String(name))).size() > 1000) << name;
    kind->setCurrentIndex(4);
    Child<QLineEdit>(&screen, "txtHledat")->setText(QStringLiteral("2026"));
    Click(&screen, "cmdHledat");
    EXPECT_TRUE(messages.lastText().contains("pegistraci"));
    Child<QLineEdit>(&screen, "txtHledat")->clear();
    Click(&screen, "cmdHledat");
    EXPECT_EQ(patients->rowCount(), 20);

    // A patient without further data shows empty fields.
    SelectRow(patients, 1, QStringLiteral("Veselý Tomáš"));
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtAdresa1")->text(), "");

    // A new protocol for Veselý on the Biopsie form, filled in and saved.
    tabs->setCurrentIndex(0);
    const int before = protocols->rowCount();
    messages.inputs = {QStringLiteral("90/2026")};
    OnModal([](QWidget *modal) {
        auto *form = qobject_cast<frmDocDesignForm *>(modal);
        ASSERT_NE(form, nullptr);
        EXPECT_EQ(form->windowTitle(), "Protokol Biopsie - 90/2026");
        EXPECT_EQ(form->panel(), nullptr);
        EXPECT_EQ(ControlOf<QLineEdit>(*form, 7)->text(), "Veselý");   // from the patient
        EXPECT_EQ(ControlOf<QLineEdit>(*form, 3)->text(), "90/2026");  // the number typed
        ControlOf<QPlainTextEdit>(*form, 14)->setPlainText(QStringLiteral("řádek ~ jedna\nřádek \"dvě\""));
        ControlOf<QComboBox>(*form, 12)->setCurrentIndex(2);
        SaveScreen(form, QStringLiteral("frmDocDesignForm_fill"));
        form->findChild<QPushButton *>("cmdSaveForm")->click();
        form->findChild<QPushButton *>("cmdCloseForm")->click();
    });
    Click(&screen, "cmdAddDoc");
    EXPECT_EQ(messages.prompts.value(0),
              "Zadejte číslo nového dokumentu, například: Protokol Biopsie XX/XXXX, \r\n\r\nXX/XXXX - číslo biopsie");
    ASSERT_EQ(protocols->rowCount(), before + 1);
    const QString key = One(centre, "SELECT `key` FROM archiv WHERE cislo_prot='90/2026'");
    EXPECT_EQ(One(centre, "SELECT id_pac FROM archiv WHERE `key`=" + key), "7");
    const QStringList data = One(centre, "SELECT data_fields FROM archiv WHERE `key`=" + key).split('~');
    EXPECT_EQ(data.value(11), "lymfatická uzlina");
    EXPECT_EQ(data.value(14), " jedna\r\nřádek \"dvě\"");   // the "~" typed in moved it on

    // Edited again: the saved values come back onto the form by position.
    SelectRow(protocols, 0, QStringLiteral("90/2026"));
    OnModal([](QWidget *modal) {
        auto *form = qobject_cast<frmDocDesignForm *>(modal);
        EXPECT_EQ(ControlOf<QComboBox>(*form, 12)->currentText(), "lymfatická uzlina");
        EXPECT_EQ(ControlOf<QPlainTextEdit>(*form, 14)->toPlainText(), "řádek ");
        form->close();
    });
    Click(&screen, "cmdEditDoc");

    // Locked after the question: no more editing, corrections instead, newest first.
    SelectRow(protocols, 0, QStringLiteral("90/2026"));
    Click(&screen, "cmdPristup");
    EXPECT_TRUE(messages.saw("Opravdu si přejete ukončit editaci a zamknout protokol?"));
    EXPECT_EQ(One(centre, "SELECT `lock` FROM archiv WHERE `key`=" + key), "1");
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdEditDoc")->isEnabled());
    EXPECT_TRUE(Child<QPushButton>(&screen, "cmdAddKorekce")->isEnabled());
    for (const char *text : {"první oprava", "druhá oprava"}) {
        Child<QLineEdit>(&screen, "txtNovaKorekce")->setText(QString::fromUtf8(text));
        Click(&screen, "cmdAddKorekce");
    }
    EXPECT_TRUE(messages.saw("Opravdu si přejete přídat text korekce? "));
    const QString korekce = One(centre, "SELECT korekce_fields FROM archiv WHERE `key`=" + key);
    EXPECT_TRUE(korekce.contains(" Jana Nováková\r\n- druhá oprava\r\nDne: ")) << korekce.toStdString();

    // Printed: two pages under PROTOKOLY_SAVE.
    Click(&screen, "cmdPDFForm");
    QFile pdf(QDir(out).filePath(QStringLiteral("90-2026.pdf")));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.readAll().contains("/Count 2\r"));
    SaveScreen(&screen, QStringLiteral("frmDocPacient"));

    // Patients: one with protocols stays; a new one is added and deleted.
    Click(&screen, "cmdDelPac");
    EXPECT_EQ(messages.lastText(), "Pacient má uložené protokoly, nelze jej smazat.");
    Click(&screen, "cmdNewPac");
    EXPECT_TRUE(messages.saw("Opravdu si přejete přídat nového pacienta? "));
    ASSERT_EQ(patients->rowCount(), 21);
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtRegistraci")->text(), QDate::currentDate().toString("dd.MM.yyyy"));
    Child<QLineEdit>(&screen, "txtPrijmeni")->setText(QStringLiteral("Zelený"));
    Child<QLineEdit>(&screen, "txtTelefon")->setText(QStringLiteral("777 111 222"));
    Click(&screen, "cmdSavePac");
    EXPECT_EQ(One(centre, "SELECT datapacient FROM pacients WHERE prijmeni='Zelený'"), "~~~~777 111 222~~~~");
    Click(&screen, "cmdDelPac");
    EXPECT_TRUE(messages.saw("Opravdu si přejete smazat pacienta? "));
    EXPECT_EQ(patients->rowCount(), 20);

    // A list that cannot be read is said, not shown empty.
    SelectRow(patients, 1, QStringLiteral("Veselý Tomáš"));
    Exec(centre, "DROP VIEW archiv_prot");
    SelectRow(patients, 1, QStringLiteral("Dvořák Petr"));
    EXPECT_TRUE(messages.lastText().startsWith("Protokoly pacienta nelze načíst. ")) << messages.lastText().toStdString();
    EXPECT_EQ(protocols->rowCount(), 0);
}
