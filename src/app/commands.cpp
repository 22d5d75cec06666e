#include "app/commands.h"

const std::vector<MenuEntry> &MainMenu()
{
    static const std::vector<MenuEntry> menu{
        {"mnuGrantTree", "Čerpání &nákladů GRANTu", 0, false},
        {"mnuGranty", "S&práva GRANTu", 0, true},
        {"mnuExportSezn", "S&práva stromu ÚČTŮ", 1, true},
        {"mnuImport", "&Import seznamu  všech účtů", 2, false},
        {"mnuBuildTree", "&Tvorbá  \"stromů\" účtů", 2, false},
        {"mnuExportMDDal", "Sp&ráva analytických účtů MD/D", 1, true},
        {"mnuImportMDDal", "Import souboru  \"&MD\"", 2, false},
        {"mnuImportDal", "Import souboru  \"&Dal\"", 2, false},
        {"mnuAktuaImport", "&Aktualizáce částek za GRANT", 2, false},
        {"mnuActualSkup", "A&tualizáce částek za skupinu", 2, false},
        {"mnuRevize", "&Revize účtů", 2, false},
        {"Sep1", "", 1, false},
        {"mnuDefineFields", "&Definování pozice sloupce pro import", 1, false},
        {"Sep2", "", 1, false},
        {"mnuPocatCastky", "&Počáteční částky", 1, true},
        {"mnuStredisko", "P&očateční částky za středisko", 2, false},
        {"mnuBuildSkup", "Počateční část&ky skupin účtů, tvorba skupin", 2, false},
        {"mnuRozpocet", "Tvorbá rozpočtu", 2, false},
        {"mnuImportRozpocet", "Import souboru poskytnutých rozpočt. částek", 2, false},
        {"Sep3", "", 1, false},
        {"mnuSkupiny", "&Skupiny účtů", 1, false},
        {"mnuTiskItem", "&Objednávky", 0, true},
        {"mnuObjednSklad", "SKLAD   - objednávka", 1, false},
        {"mnuObjednText", "TEXT     - objednávka", 1, false},
        {"mnuObjednSluzby", "SLUŽBY - objednávka", 1, false},
        {"Sep4", "", 1, false},
        {"mnuHlavFormCZ", "Hlavičkový formulář CZ", 1, false},
        {"mnuHlavFormAN", "Hlavičkový formulář AN", 1, false},
        {"Sep5", "", 1, false},
        {"mnuObjednVyd", "A&rchiv OBJEDNÁVEK", 1, false},
        {"mnuVydeji", "&Archiv VÝDEJU", 1, false},
        {"mnuSpravaDat", "Skladové &hospodářství", 0, true},
        {"mnuPrijVydItem", "&S k l a d", 1, false},
        {"mnuFirmyItem", "&Kartotéka  firem", 1, false},
        {"mnuArchivy", "Archivy", 1, false},
        {"mnuSpravaItem", "&Správa programu", 0, true},
        {"mnupravaItem", "&Přístupová práva", 1, false},
        {"mnuSysItem", "&SYS nastaveni PC", 1, false},
        {"Sep6", "", 1, false},
        {"mnuZalohaItem", "&Záloha  DATABÁZE", 1, true},
        {"ImpMDB", "Import DATABAZE  (lokální disk -> síť)", 2, false},
        {"ExpMDB", "Export DATABÁZE  (síť -> lokální disk)", 2, false},
        {"Sep7", "", 2, false},
        {"IMPArchiv", "Import archivu       (lokální disk -> síť)", 2, false},
        {"EXPArchiv", "Export ARCHIVU    (síť -> lokální disk)", 2, false},
        {"Sep8", "", 1, false},
        {"mnuGraf", "G &R A F", 1, false},
        {"mnuKalendar", "Kalendář", 1, false},
        {"mnuHelp", "&HELP", 0, false},
        {"mnuKonecItem", "&Konec", 0, false},
        {"mnuArchivProt", "Protokoly", 0, true},
        {"mnu131", "Tvorba protokolu", 1, false},
    };
    return menu;
}

const std::vector<ToolbarEntry> &ToolbarPositions()
{
    static const std::vector<ToolbarEntry> bar{
        {"GRANT", "Čerpání nákladů GRANTu", "mnuGrantTree"},
        {"UPGRADE", "Export DATABÁZE (síť --> lokální disk)", ""},
        {"GRAPH", "Zobrazit Graf", "mnuGraf"},
        // The button itself starts the MD import; its drop-down has the other items.
        {"SPRAVA GR", "Správa GRANTu", "mnuImportMDDal"},
        {"", "", ""},
        {"", "", ""},
        {"SKLAD", "Skladové hospodářství", "mnuPrijVydItem"},
        {"FIRMY", "Kartotéka firem", "mnuFirmyItem"},
        {"", "", ""},
        {"TISKY", "Archiv objednávek/žádanek", "mnuObjednVyd"},
        {"OBJEDN", "", "mnuObjednVyd"},
        {"", "", ""},
        // The area of POST is reached from the order archive, that of PROTOKOL from the protocol screens.
        {"POST", "Post SERVER", ""},
        {"PROTOKOLS", "Archiv protokolů", "mnuArchivProt"},
        {"PROTOKOL", "Tvorba protokolů", ""},
        {"STUDIO", "Studio formuláře", "mnu131"},
        {"", "", ""},
        {"ARCHIV", "Archiv čerpaní GRANTu za minule roky", ""},
        {"SPRAVA PR", "Správa programu", "mnuSysItem"},
        {"HELP", "Nápověda", "mnuHelp"},
        {"", "", ""},
        {"AUTOR", "O autoře", CommandAbout},
        {"", "", ""},
        {"END", "Konec", CommandExit},
    };
    return bar;
}

const std::vector<DropDownEntry> &DropDownItems()
{
    static const std::vector<DropDownEntry> items{
        {"mnu31", "Import souboru účetní osnovy", "mnuImport", "SPRAVA GR"},
        {"mnu32", "Tvorbá účetní osnovy", "mnuBuildTree", "SPRAVA GR"},
        {"mnu34", "Import souboru  čerpání, částky \"MD\"", "mnuImportMDDal", "SPRAVA GR"},
        {"mnu341", "Import souboru  čerpání, částky \"Dal\"", "mnuImportDal", "SPRAVA GR"},
        {"mnu35", "Aktualizáce částek všech GRANTu", "mnuAktuaImport", "SPRAVA GR"},
        {"mnu36", "Atualizáce čerpání všech Skupin účtů", "mnuActualSkup", "SPRAVA GR"},
        {"mnu37", "Revize importu na účetní chyby", "mnuRevize", "SPRAVA GR"},
        {"mnu39", "Definování pozice sloupce pro import", "mnuDefineFields", "SPRAVA GR"},
        {"mnu311", "Počateční částky za středisko", "mnuStredisko", "SPRAVA GR"},
        {"mnu312", "Počateční část&ky skupin účtů, tvorba skupin", "mnuBuildSkup", "SPRAVA GR"},
        {"mnu314", "Skupiny účtů", "mnuSkupiny", "SPRAVA GR"},
        {"mnu315", "Tvorbá rozpočtu", "mnuRozpocet", "SPRAVA GR"},
        {"mnu316", "Import souboru rozpočtových částek poskytnutých", "mnuImportRozpocet", "SPRAVA GR"},
        {"mnu81", "SKLAD - objednávka", "mnuObjednSklad", "OBJEDN"},
        {"mnu82", "TEXT - objednávka", "mnuObjednText", "OBJEDN"},
        {"mnu821", "SLUŽBY - objednávka", "mnuObjednSluzby", "OBJEDN"},
        {"mnu83", "Hlavičkový formulář CZ", "mnuHlavFormCZ", "OBJEDN"},
        {"mnu831", "Hlavičkový formulář AN", "mnuHlavFormAN", "OBJEDN"},
        {"mnu84", "Archiv tiskových  sestav", "mnuObjednVyd", "OBJEDN"},
        {"mnu85", "Archiv VÝDEJU", "mnuVydeji", "OBJEDN"},
        {"mnu111", "Přístupová práva", "mnupravaItem", "SPRAVA PR"},
        {"mnu112", "Nastaveni programu", "mnuSysItem", "SPRAVA PR"},
        {"mnu114", "Záloha DATABÁZE", "", "SPRAVA PR"},
        {"mnu115", "Export DATABÁZE (lokální disk --> síť)", "", "SPRAVA PR"},
        {"mnu116", "Import DATABÁZE (lokální disk --> síť)", "", "SPRAVA PR"},
        {"mnu117", "Export ARCHIVU    (lokální disk --> síť)", "", "SPRAVA PR"},
        {"mnu118", "Import ARCHIVU    (lokální disk --> síť)", "", "SPRAVA PR"},
        {"mnu119", "Kalendář", "mnuKalendar", "SPRAVA PR"},
        // Kept for the protocol area; from the toolbar it does nothing.
        {"mnu131", "Tvorba protokolu", "", "PROTOKOL"},
    };
    return items;
}

std::optional<QString> DropDownCommand(const QString &key)
{
    for (const DropDownEntry &item : DropDownItems())
        if (key == QLatin1String(item.key))
            return QString::fromUtf8(item.command);
    return std::nullopt;
}

QString ToolbarCommand(const QString &key)
{
    if (key.isEmpty())
        return QString();
    for (const ToolbarEntry &entry : ToolbarPositions())
        if (key == QLatin1String(entry.key))
            return QString::fromUtf8(entry.command);
    return QString();
}
