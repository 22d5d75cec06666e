#include "admin/frmSYS.h"
#include "admin/settings.h"
#include "core/codepage.h"
#include "core/config.h"
#include "core/db.h"
#include "core/frmSeznamUs.h"
#include "core/frmSeznamUz.h"
#include "core/msg.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Sys = QString::fromLatin1(SysDbName);

QLineEdit *Box(QWidget *screen, const QString &name) { return Child<QLineEdit>(screen, name.toLatin1().constData()); }
QLineEdit *Field(QWidget *screen, int i) { return Box(screen, QStringLiteral("txtFields%1").arg(i)); }
void Click(QWidget *screen, const QString &name)
{
    QTest::mouseClick(Child<QPushButton>(screen, name.toLatin1().constData()), Qt::LeftButton);
}

// The settings screen of a freshly logged-in user, loaded and shown.
struct Screen {
    explicit Screen(int role, const std::function<void()> &beforeLoad = {})
    {
        LoginAs(role);
        if (beforeLoad)
            beforeLoad();
        sys = std::make_unique<frmSYS>();
        sys->OpenScreen = [this](QDialog *d) {
            opened << QString::fromLatin1(d->metaObject()->className());
            if (afterOpen)
                afterOpen(d);
        };
        EXPECT_TRUE(sys->Load());
        sys->show();
        QTest::qWait(10);   // Timer1 shows the picture footer
    }
    std::unique_ptr<frmSYS> sys;
    QStringList opened;
    std::function<void(QDialog *)> afterOpen;
};

QString Stored(const char *section, const char *key)
{
    return QSettings(QStringLiteral("Fondarix"), QStringLiteral("Fondarix"))
        .value(QStringLiteral("%1/%2").arg(QLatin1String(section), QLatin1String(key)), QStringLiteral("<none>"))
        .toString();
}

QString PngFile(const QString &path, Qt::GlobalColor colour)
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(colour);
    image.save(path, "PNG");
    return path;
}

QString Written(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << path.toStdString();
    return path;
}
} // namespace

TEST(Settings, ValuesThatWouldBreakAStatementOrTheConnectionAreRefused)
{
    // Each value with whether it passes: digit boxes, centres, server address and port.
    const struct {
        const char *what, *value;
        bool ok;
    } cases[] = {
        {"digits", "0123", true}, {"digits", "", true}, {"digits", "1 2", false}, {"digits", "١٢", false},
        {"centre", "fondarix_ofk", true}, {"centre", "fondarix-ofk; DROP", false}, {"centre", "databáze", false},
        {"centre", "", false},
        {"server", "10.0.0.17", true}, {"server", "db-server.ukv.cz", true}, {"server", "::1", true},
        {"server", "", false}, {"server", "12345678901234567890", false},
        {"port", "65535", true}, {"port", "0", false}, {"port", "65536", false}, {"port", "", false},
        {"port", "0000000003306", false},
    };
    for (const auto &c : cases) {
        const QString value = QString::fromUtf8(c.value);
        const std::string what = std::string(c.what) + " " + c.value;
        if (c.what == std::string("digits"))
            EXPECT_EQ(IsDigitsOnly(value), c.ok) << what;
        else if (c.what == std::string("centre"))
            EXPECT_EQ(CentreProblem({0, "510", "OFK", value, "", ""}).isEmpty(), c.ok) << what;
        else if (c.what == std::string("server"))
            EXPECT_EQ(ServerAddressProblem(value, "3306").isEmpty(), c.ok) << what;
        else
            EXPECT_EQ(ServerAddressProblem("127.0.0.1", value).isEmpty(), c.ok) << what;
    }
    EXPECT_EQ(CentreProblem({0, " ", "OFK", "fondarix_ofk", "", ""}), "Zadejte kód střediska.");
}

TEST(frmSYS, BadValuesAreRefusedThenOkSavesEverySettingTheInstitutionAndTheFilter)
{
    FreshDatabases();
    const auto server = [] { return GetServerIP() + QLatin1Char(':') + GetServerPort(); };
    const QString ini = server();
    Screen s(2);
    frmSYS *sys = s.sys.get();
    ScriptedMessages messages;
    EXPECT_EQ(Box(sys, "txtFirma")->text(), QStringLiteral("Ústav klinického výzkumu Lhotka"));
    EXPECT_EQ(ini, "127.0.0.1:" + Box(sys, "txtServerPort")->text());

    // The ordering person's details follow the name typed.
    auto *vyrizuje = Child<QComboBox>(sys, "cmbVyrizuje");
    vyrizuje->lineEdit()->clear();
    QTest::keyClicks(vyrizuje->lineEdit(), QStringLiteral("Lenka"));
    EXPECT_EQ((QStringList{Field(sys, 3)->text(), Field(sys, 4)->text(), Field(sys, 6)->text()}),
              (QStringList{"267 161 112", "2346", "prochazkova@ukv-lhotka.cz"}));

    // The grant filter: a pick replaces "0", Backspace cuts the last item.
    auto *filtr = Box(sys, "txtFiltr");
    auto *combo = Child<QComboBox>(sys, "Combo2");
    for (const char *grant : {"1201", "1203"})
        emit combo->activated(combo->findText(QLatin1String(grant)));
    EXPECT_EQ(filtr->text(), QStringLiteral("1201,1203,"));
    QTest::keyClick(filtr, Qt::Key_Backspace);
    EXPECT_EQ(filtr->text(), QStringLiteral("1201,"));

    // Letters typed into a number box are refused with a message; digits and Backspace pass.
    auto *size = Box(sys, "txtPrint0");
    size->clear();
    QTest::keyClicks(size, QStringLiteral("1x3"));
    QTest::keyClick(size, Qt::Key_Backspace);
    QTest::keyClicks(size, QStringLiteral("3"));
    EXPECT_EQ(size->text(), QStringLiteral("13"));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Do tohoto pole lze zadat pouze číslice."));

    // Quotes in every text, blanks in the accounts, digits in the number boxes.
    const QString quoted = QStringLiteral("O'Neill \"a\" `b`");
    for (int i : {0, 1, 2, 7})
        Field(sys, i)->setText(quoted + QString::number(i));
    Field(sys, 5)->setText(QStringLiteral(" 501, 502 *"));
    Field(sys, 8)->setText(QStringLiteral("2"));
    for (int i = 1; i < 4; ++i)
        Box(sys, QStringLiteral("txtPrint%1").arg(i))->setText(QString::number(i + 3));
    Child<QCheckBox>(sys, "Check1")->setChecked(false);
    Box(sys, "txtFirma")->setText(QStringLiteral("Ústav \"Lhotka\" O'Brien"));
    Child<QComboBox>(sys, "cmbPrikObj")->setEditText(QStringLiteral("doc. MUDr. Eva Horáková, Ph.D."));
    SaveScreen(sys, QStringLiteral("frmSYS"));

    // Each bad value in turn, then put right: its message, and nothing saved anywhere.
    const struct {
        const char *box;
        QString value;
        const char *message;
    } bad[] = {
        {"txtNewdate", "12ab", "Do tohoto pole lze zadat pouze číslice."},   // put there around the key check
        {"txtNewdate", "1700000000", nullptr},
        {"txtServerIP", "db;UID=root", "Adresa serveru musí mít 1 až 19 znaků"},
        {"txtServerIP", "127.0.0.1", nullptr},
        {"txtServerPort", "99999", "Port serveru musí být číslo od 1 do 65535."},
        {"txtServerPort", QString::number(ServerPort()), nullptr},
        {"txtAdresa", "Ulice 文", "Pole „Adresa“ obsahuje znak, který nelze uložit ve znakové sadě Windows-1250; text "
                                  "nebyl uložen."},
        {"txtAdresa", QString(200, QLatin1Char('a')),
         "Text v poli „Adresa“ je příliš dlouhý; nebyl uložen ani zkrácen. Zkraťte jej prosím."},
        {"txtAdresa", "Lipová 1", nullptr},
    };
    for (const auto &b : bad) {
        Box(sys, QLatin1String(b.box))->setText(b.value);
        if (!b.message)
            continue;
        Click(sys, "cmdOk");
        EXPECT_TRUE(messages.lastText().startsWith(QString::fromUtf8(b.message))) << messages.lastText().toStdString();
        EXPECT_EQ(Stored("NASTAVENI", "ZADANKY_SAVE"), QStringLiteral("<none>"));
        EXPECT_EQ(Column(Sys, QStringLiteral("SELECT Firma FROM sys_nastaveni")),
                  QStringList{"Ústav klinického výzkumu Lhotka"});
        EXPECT_EQ(server(), ini);
        EXPECT_TRUE(sys->isVisible());
    }
    messages.shown.clear();
    Click(sys, "cmdOk");
    EXPECT_TRUE(messages.shown.empty()) << messages.lastText().toStdString();
    EXPECT_EQ(sys->result(), int(QDialog::Accepted));

    const struct {
        const char *section, *key;
        QString value;
    } store[] = {
        {"NASTAVENI", "ZADANKY_SAVE", quoted + "0"},
        {"SPRAVCE", "Name", quoted + "1"},
        {"FORMULAR", "TypFormulara", quoted + "2"},
        {"FORMULAR", "VYRIZUJE", "Lenka"},
        {"FORMULAR", "TELEFON", "267 161 112"},
        {"FORMULAR", "TELEFON-ENG", quoted + "7"},
        {"FORMULAR", "EMAIL", "prochazkova@ukv-lhotka.cz"},
        {"FORMULAR", "LINKA", "2346"},
        {"FORMULAR", "SpravObj", ""},
        {"FORMULAR", "PrikObj", "doc. MUDr. Eva Horáková, Ph.D."},
        {"NASTAVENI", "UctyNotControl", "501,502*"},
        {"FORMULAR", "SelectTypBottom", "2"},
    };
    for (const auto &k : store)
        EXPECT_EQ(Stored(k.section, k.key), k.value) << k.key;
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT CONCAT_WS('|', param_1, param_2, param_3, param_4, param_5) "
                                          "FROM sys_users_print WHERE login='svoboda'")),
              QStringList{"13|4|5|6|0"});
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT CONCAT_WS('|', Firma, Adresa, newdate_ucet) FROM sys_nastaveni")),
              QStringList{"Ústav \"Lhotka\" O'Brien|Lipová 1|1700000000"});
    EXPECT_EQ(Session().InstFirma, QStringLiteral("Ústav \"Lhotka\" O'Brien"));
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT filtr_grant FROM sys_users WHERE login='svoboda'")), QStringList{"1201,"});
    EXPECT_EQ(server(), ini);

    // Opened again, the screen shows what was saved; an emptied account list is stored empty.
    Screen again(2);
    EXPECT_EQ(Field(again.sys.get(), 0)->text(), quoted + "0");
    EXPECT_FALSE(Child<QCheckBox>(again.sys.get(), "Check1")->isChecked());
    Field(again.sys.get(), 5)->clear();
    Click(again.sys.get(), "cmdOk");
    EXPECT_EQ(Stored("NASTAVENI", "UctyNotControl"), QString());
}

TEST(frmSYS, CentresFirstInsertFailsAsItAlwaysHasThenAddSaveDelete)
{
    FreshDatabases();
    ScriptedMessages messages;
    Screen s(2, [] { Exec(Sys, QStringLiteral("DELETE FROM sys_db_kvl")); });
    frmSYS *sys = s.sys.get();
    auto *grid = Child<QTableWidget>(sys, "MSFlexGrid2");
    // The starting row's statement is refused by the server: passed over, the table stays empty.
    EXPECT_EQ(grid->rowCount(), 0);
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT COUNT(*) FROM sys_db_kvl")), QStringList{"0"});
    EXPECT_TRUE(messages.shown.empty());
    QStringList headers;
    for (int c = 0; c < 4; ++c)
        headers << grid->horizontalHeaderItem(c)->text();
    EXPECT_EQ(headers, (QStringList{"    Kód ", "   Název střediska", " MySQL DB", " IP PC"}));

    const auto type = [&](const QStringList &values) {
        const char *names[] = {"txtKodStred", "txtStredisko", "txtDBStred", "txtIPstred", "txtIPDB"};
        for (int i = 0; i < 5; ++i)
            Box(sys, names[i])->setText(values[i]);
    };
    const QString centres = QStringLiteral("SELECT CONCAT_WS('|', code_stredisko, name_stredisko, mysql_db, ip_pc, ip_server) "
                                           "FROM sys_db_kvl ORDER BY code_stredisko");
    type({"510", "Oddělení 'OFK'", "fondarix_ofk", "10.0.0.5", "10.0.0.1"});
    messages.answers = {AnswerCancel};
    Click(sys, "cmdAdd");
    EXPECT_EQ(messages.shown.back().text, QStringLiteral("Opravdu si přejete přídat záznam? "));
    EXPECT_EQ(messages.shown.back().title, QStringLiteral("Informace"));
    EXPECT_EQ(Column(Sys, centres), QStringList());
    Click(sys, "cmdAdd");
    type({"520", "Kardiologie", "fondarix_kar", "10.0.0.6", "10.0.0.1"});
    Click(sys, "cmdAdd");
    EXPECT_EQ(Column(Sys, centres), (QStringList{"510|Oddělení 'OFK'|fondarix_ofk|10.0.0.5|10.0.0.1",
                                                 "520|Kardiologie|fondarix_kar|10.0.0.6|10.0.0.1"}));
    ASSERT_EQ(grid->rowCount(), 2);
    EXPECT_EQ(grid->item(grid->currentRow(), 0)->text(), QStringLiteral("520"));
    // The pharmacy's row is kept here like the others, marked; the orders pass over it.
    auto *lekarna = Child<QCheckBox>(sys, "chkLekarna");
    lekarna->setChecked(true);
    Click(sys, "cmdSaveStred");
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT code_stredisko FROM sys_db_kvl WHERE lekarna=1")), QStringList{"520"});
    ASSERT_EQ(grid->rowCount(), 2);
    EXPECT_TRUE(lekarna->isChecked());
    sys->findChild<QTabWidget *>()->setCurrentIndex(3);
    SaveScreen(sys, QStringLiteral("frmSYS-strediska"));

    // A database name that would break statements is refused.
    grid->setCurrentCell(0, 0);
    EXPECT_EQ(Box(sys, "txtStredisko")->text(), QStringLiteral("Oddělení 'OFK'"));
    EXPECT_FALSE(lekarna->isChecked());
    Box(sys, "txtDBStred")->setText(QStringLiteral("ofk`; DROP DATABASE x"));
    Click(sys, "cmdSaveStred");
    EXPECT_TRUE(messages.lastText().contains(QStringLiteral("písmena bez diakritiky")));
    Box(sys, "txtDBStred")->setText(QStringLiteral("fondarix_ofk2"));
    Click(sys, "cmdSaveStred");
    EXPECT_EQ(Column(Sys, centres).value(0), QStringLiteral("510|Oddělení 'OFK'|fondarix_ofk2|10.0.0.5|10.0.0.1"));

    // The old database path goes to every centre.
    QStringList filters;
    QString defaultName;
    sys->ChooseFile = [&](QWidget *, const QStringList &f, const QString &d) {
        filters = f;
        defaultName = d;
        return QStringLiteral("/data/stara/db1.mdb");
    };
    Click(sys, "Command1");
    EXPECT_EQ(filters, QStringList{"*.mdb (*.mdb)"});
    EXPECT_EQ(defaultName, QStringLiteral("db1.mdb"));
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT DISTINCT cesta FROM sys_db_kvl")), QStringList{"/data/stara/db1.mdb"});

    messages.answers = {AnswerCancel};
    Click(sys, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, QStringLiteral("Opravdu si přejete smazat záznam? "));
    EXPECT_EQ(Column(Sys, centres).size(), 2);
    Click(sys, "cmdDelete");
    EXPECT_EQ(Column(Sys, centres), QStringList{"520|Kardiologie|fondarix_kar|10.0.0.6|10.0.0.1"});
    EXPECT_EQ(grid->rowCount(), 1);
}

TEST(frmSYS, FootersAndLogoAreStoredAndShown)
{
    FreshDatabases();
    Screen s(4);
    frmSYS *sys = s.sys.get();
    ScriptedMessages messages;
    QTemporaryDir dir;
    QString chosen;
    QStringList filters;
    sys->ChooseFile = [&](QWidget *, const QStringList &f, const QString &) {
        filters = f;
        return chosen;
    };

    // A footer text in Windows-1250, another in UTF-8: both read as the user wrote them.
    const QString footer = QStringLiteral("<p>S pozdravem, Tomáš Černý, 'OFK' \"Lhotka\"</p>");
    chosen = dir.filePath(QStringLiteral("paticka1.htm"));
    WriteFileCp1250(chosen, footer);
    Click(sys, "cmdFile1");
    EXPECT_EQ(filters, (QStringList{"Documents Files (*.pdf;*.doc;*.docx;*.xls;*.xlsx)", "Graphic Files (*.jpg;)",
                                    "HTML Files (*.htm*)"}));
    chosen = Written(dir.filePath(QStringLiteral("paticka3.htm")), footer.toUtf8());
    Click(sys, "cmdFile3");
    Click(sys, "cmdFile3");   // a second time replaces the text
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT CONCAT(typ, ':', html) FROM sys_paticky_html "
                                          "WHERE login='cerny' AND typ IN ('1', '3') ORDER BY typ")),
              (QStringList{"1:" + footer, "3:" + footer}));
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT COUNT(*) FROM sys_paticky_html WHERE login='cerny'")), QStringList{"4"})
        << "the demo's four footers, two of them replaced";
    EXPECT_EQ(Stored("Ver 2.4.1", "OpenDir"), dir.path());

    // The picture footer and the logo: stored whole, written to the scratch folder and shown.
    chosen = PngFile(dir.filePath(QStringLiteral("paticka.png")), Qt::darkGreen);
    Click(sys, "cmdFile5");
    chosen = PngFile(dir.filePath(QStringLiteral("logo.png")), Qt::darkBlue);
    Click(sys, "cmdFile6");
    EXPECT_TRUE(messages.shown.empty()) << messages.lastText().toStdString();
    QFile logo(chosen);
    ASSERT_TRUE(logo.open(QIODevice::ReadOnly));
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT HEX(oleObrazek) FROM sys_logo_kvl WHERE typ=1")),
              QStringList{QString::fromLatin1(logo.readAll().toHex().toUpper())});
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT filename FROM sys_paticky_obrazky WHERE typ='4' AND login='cerny'")),
              QStringList{dir.filePath(QStringLiteral("paticka.png"))});
    EXPECT_EQ(QImage(Session().TempDir + QStringLiteral("/logo_kvl_tmp.bmp"), "PNG").pixelColor(5, 5), QColor(Qt::darkBlue));
    EXPECT_FALSE(Child<QLabel>(sys, "Image1")->pixmap().isNull());
    EXPECT_FALSE(Child<QLabel>(sys, "Image2")->pixmap().isNull());
    EXPECT_EQ(Child<QLabel>(sys, "lblFile6")->text(), chosen);
    sys->findChild<QTabWidget *>()->setCurrentIndex(4);
    SaveScreen(sys, QStringLiteral("frmSYS-paticky"));

    // A logo that is no image, or a file that is gone: a message, the old logo stays.
    chosen = Written(dir.filePath(QStringLiteral("logo.jpg")), "toto není obrázek");
    Click(sys, "cmdFile6");
    EXPECT_EQ(messages.lastText(), QStringLiteral("Soubor %1 není obrázek, nic nebylo uloženo.").arg(chosen));
    chosen = dir.filePath(QStringLiteral("zmizel.png"));
    Click(sys, "cmdFile5");
    EXPECT_TRUE(messages.lastText().contains(QStringLiteral("nebyl nalezen")));
    EXPECT_EQ(Column(Sys, QStringLiteral("SELECT filename FROM sys_logo_kvl")), QStringList{dir.filePath("logo.png")});

    // A new screen shows the stored pictures at once.
    Screen again(4);
    EXPECT_FALSE(Child<QLabel>(again.sys.get(), "Image1")->pixmap().isNull());
    EXPECT_FALSE(Child<QLabel>(again.sys.get(), "Image2")->pixmap().isNull());
}

TEST(frmSYS, RolesSeeTheirFieldsAndTheCommandsOpenTheUsersTheListsAndThePageSetup)
{
    FreshDatabases();
    const struct {
        int role;
        QList<int> shown;
        bool filter, server;
    } roles[] = {
        {1, {0, 1, 2, 3, 4, 6, 7, 8}, false, true},
        {4, {3, 4, 6}, false, false},
        {2, {0, 1, 2, 3, 4, 5, 6, 7, 8}, true, true},
    };
    for (const auto &r : roles) {
        Screen s(r.role);
        QList<int> shown;
        for (int i = 0; i < frmSYS::FieldCount; ++i)
            if (!Field(s.sys.get(), i)->isHidden())
                shown << i;
        EXPECT_EQ(shown, r.shown) << r.role;
        EXPECT_EQ(Child<QComboBox>(s.sys.get(), "Combo2")->isEnabled(), r.filter) << r.role;
        EXPECT_EQ(Box(s.sys.get(), "txtServerPort")->isVisibleTo(s.sys.get()), r.server) << r.role;
    }

    Screen s(2);
    frmSYS *sys = s.sys.get();
    QStringList lists;
    s.afterOpen = [&](QDialog *d) {
        if (auto *us = qobject_cast<frmSeznamUs *>(d)) {
            lists << QStringList{us->Tabulka, us->Titulek, us->Klic}.join(QLatin1Char('|'));
            // What the user adds in the list is offered by the combo afterwards.
            Exec(Sys, QStringLiteral("INSERT INTO sys_prikazce (Jmeno) VALUES ('Nový příkazce')"));
        }
        if (qobject_cast<frmSeznamUz *>(d)) {
            d->show();
            SaveScreen(d, QStringLiteral("frmSeznamUz"));
            Exec(Sys, QStringLiteral("INSERT INTO sys_nastaveniobj (Vyrizuje, Telefon) VALUES ('Nová osoba', '1')"));
        }
    };
    for (const char *name : {"cmdUsers", "cmdGrant", "cmdPrik", "cmdSprav", "cmdSeznam", "cmdPageSetup"})
        Click(sys, QLatin1String(name));
    EXPECT_EQ(s.opened, (QStringList{"frmLoginUser", "frmSeznamUs", "frmSeznamUs", "frmSeznamUs", "frmSeznamUz",
                                     "frmSysPageSetup"}));
    EXPECT_EQ(lists, (QStringList{"SYS_PRAVA|Seznam řešitelé GRANTu|", "sys_prikazce|Seznam přikazce objednávek|Jmeno",
                                  "sys_spravcerozp|Seznam správce objednávek|Jmeno"}));
    EXPECT_GE(Child<QComboBox>(sys, "cmbPrikObj")->findText(QStringLiteral("Nový příkazce")), 0);
    EXPECT_GE(Child<QComboBox>(sys, "cmbVyrizuje")->findText(QStringLiteral("Nová osoba")), 0);
}
