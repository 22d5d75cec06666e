#pragma once
// The patient register and the saved protocols of a centre. A protocol is one row of
// `archiv` whose columns are parallel "~"-lists: the nth item of each belongs to the
// nth field in the order of the form's controls.

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

class DbConnection;
class clsDocument;

// --- patients ---------------------------------------------------------------------------

struct Pacient {
    int key = 0;
    int id = 0;
    QString prijmeni, jmeno, rc, prijmcislo;
    QString registraci;   // dd.mm.yyyy
    QString poznamka;
    QString datapacient;  // title, three address items, telephone, remark, "~"-joined
};

// A new patient's further data: every item empty.
inline constexpr const char *EmptyDataPacient = "~~~~~~~~~~";
// Items of datapacient shown on the screen: title, address 1..3, telephone, remark.
inline constexpr int DataPacientItems = 6;

// The columns a search may name: id, the name pair, jmeno, rc, prijmcislo, pegistraci.
const QStringList &PacientSearchColumns();
// All patients (empty text: newest registration first) or those whose column starts with
// text. An unknown column or a failing statement gives nullopt and the message in error.
std::optional<std::vector<Pacient>> SearchPacients(DbConnection &centre, const QString &column,
                                                   const QString &text, QString *error);
// The patients of that registration number ("Reg. číslo"); nullopt with the message in
// error when the statement fails.
std::optional<std::vector<Pacient>> PacientsByRegistration(DbConnection &centre, int id, QString *error);
// Registers a new patient with the next registration number and today's date; its key.
int NewPacient(DbConnection &centre, const QDate &today, QString *error);
bool SavePacient(DbConnection &centre, const Pacient &pacient, QString *error);
// A patient with protocols stays: they would be left without an owner.
bool DeletePacient(DbConnection &centre, int key, QString *error);

// --- protocols --------------------------------------------------------------------------

struct ProtocolRow {
    int key = 0;
    int id = 0;       // the form's id
    int idPac = 0;
    QString cislo_prot, date_create;
    bool lock = false;
    QString data_fields, key_fields, pozice_fields, type_fields, font_fields, bold_fields, kursiv_fields,
        color_fields, korekce_fields;
};

// The protocols of a patient on one form (formId 0: on every form), oldest first; nullopt
// with the message in error when they cannot be read.
std::optional<std::vector<ProtocolRow>> ListProtocols(DbConnection &centre, int idPac, int formId, QString *error);
// The protocol of that key; nullopt with the message in error when it is missing or cannot be read.
std::optional<ProtocolRow> ReadProtocol(DbConnection &centre, int key, QString *error);

// The lists a saved protocol is made of.
struct ProtocolLists {
    QString data, keys, pozice, types, fonts, bolds, kursivs, colors;
};
// One control of a form being filled: its tag and its value, in the walk's order.
using ControlValue = std::pair<QString, QString>;
// Walks the controls: a control is a field when its tag holds "~"; its field is the first
// of doc with the tag's key. Sets the field's Data and adds an item to every list.
ProtocolLists CollectProtocolLists(clsDocument &doc, const std::vector<ControlValue> &controls);

struct ProtocolTarget {
    int idProt = 0;   // 0: a new protocol
    int idForm = 0;
    int idPac = 0;
    QString nazDoc;   // the number of a new protocol
};
// Saves the filled form as a protocol; the row's key, or 0 with a message in error.
// A locked protocol is refused.
int AkceFieldDocument(DbConnection &centre, clsDocument &doc, const std::vector<ControlValue> &controls,
                      const ProtocolTarget &target, const QDateTime &now, QString *error);

// The value of each control from a saved row, by position.
QStringList ProtocolValues(const ProtocolRow &row);

// Closes the protocol for editing; there is no way back.
bool LockProtocol(DbConnection &centre, int key, QString *error);
// A locked protocol is refused.
bool DeleteProtocol(DbConnection &centre, int key, QString *error);

// The corrections with a new entry put first.
QString KorekceEntry(const QString &previous, const QString &text, const QDateTime &now, const QString &userName);
// Writes the corrections of a protocol.
bool SavePacientData(DbConnection &centre, int key, const QString &korekce, QString *error);

inline constexpr const char *TextProtocolLocked = "Protokol je uzamčen, změny nelze uložit.";
