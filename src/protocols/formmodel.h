#pragma once
// The protocol forms as the users design them: a form is a row of `documents` and its
// field rows in `formulars`; in memory one clsDocument holding clsField items.
// Numbers inside the packed texts are in the workstation's form (decimal comma).

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class DbConnection;
class clsDocument;

// Field types with a control of their own in the designer.
enum FieldTyp : int { TypLabel = 1, TypText = 2, TypTextBox = 3, TypCombo = 4 };

class clsField {
public:
    clsDocument *Parent_Document = nullptr;
    int Typ = 0;
    int ID = 0;
    int Key = 0;
    double Top = 0;
    double Left = 0;
    double Width = 0;
    double Height = 0;
    short TabIndex = 0;
    QString Caption;
    double Font = 0;
    bool Bold = false;
    bool Access = false;
    QString MDB;
    bool Kursiv = false;
    int color = 0;
    QString Data;
    short EditList = 0;
    int LenghtChars = 0;
};

// A keyed collection of fields in the order they were added. Positions count from 1.
class clsDocument {
public:
    void Clear();
    // With an empty Key the field is added without a key. A key already present
    // refuses the field (nullptr).
    clsField *Add(std::unique_ptr<clsField> Field, const QString &Key);
    clsField *Item(int Position) const;
    clsField *Item(const QString &Key) const;
    bool ItemExists(int Position) const { return Item(Position) != nullptr; }
    bool ItemExists(const QString &Key) const { return Item(Key) != nullptr; }
    int Count() const { return int(items.size()); }
    void RemovItem(int Position);
    void RemovItem(const QString &Key);

    // Walking the fields in order (the collection's enumerator).
    auto begin() const { return items.begin(); }
    auto end() const { return items.end(); }

private:
    struct Entry {
        std::unique_ptr<clsField> field;
        QString key;
    };
    std::vector<Entry> items;
};

// The one form being designed or filled, and its parameters split from form_param.
clsDocument &SessionDocument();
QStringList &SessionFormParams();

// --- numbers and packed texts --------------------------------------------------------

// A number as the workstation writes it: shortest form, decimal comma.
QString LocaleNumber(double value);
// Reads a number written with "," or "." as decimal separator; anything else is 0.
double ParseLocaleNumber(const QString &text);

// "Height~Width~Top~Left~Font~Bold~~EditList~Caption", with "~Access" as index 9 when
// withAccess (the rows the designer saves carry it, the form file does not).
QString ParamFieldText(const clsField &field, bool withAccess);
// Sets the look of the field from a param_field text. Access is set only when the text
// has an index 9 ("1" is true); a caption holding "~" is cut there, as nothing is escaped.
void ApplyParamField(clsField &field, const QString &paramField);

// The tag a control of the form carries: Typ~Key~EditList~TabIndex~LenghtChars~MDB.
QString ControlTag(const clsField &field);
struct ControlTagParts {
    int typ = 0;
    int key = 0;
    int editList = 0;
    int tabIndex = 0;
    QString mdb;
};
// A tag without "~" is no field: nullopt.
std::optional<ControlTagParts> ParseControlTag(const QString &tag);

// --- the database ----------------------------------------------------------------------

// What a filled form takes its initial values from: the patient and the protocol.
struct FillSource {
    DbConnection *centre = nullptr;
    int idPac = 0;     // pacients.key; 0 when no patient is selected
    int idProt = 0;    // archiv.key; 0 for a protocol not yet saved
    QString nazDoc;    // the number typed for a protocol not yet saved
    QString created;   // its time of creation, "DD.MM.YYYY HH:MM"
};

// The value of a patient-filled field: CISLOPROT and DATUMTVOR from the protocol's row
// (for a protocol not yet saved, the number typed for it and the time now), any other
// name a column of the patient. Unknown columns and missing rows give "".
QString FieldInitialValue(DbConnection &centre, const QString &column, const FillSource &source);

// Loads the fields of form formId (only those of one key when key is not empty) into doc,
// in their order. With fill, fields naming a patient column take its value as caption.
bool LoadFormDefinition(DbConnection &sys, clsDocument &doc, int formId, const QString &key,
                        const FillSource *fill, QString *error);

// The form's row of `documents`.
struct FormHeader {
    int key = 0;
    int id = 0;
    QString name;
    QString formParam;
};
std::optional<FormHeader> ReadFormHeader(DbConnection &sys, int formId);
// "Formulař - " width " x " height, from the parameters' indices 2 and 3.
QString FormTitle(const QStringList &params);

// Writes the fields to `formulars` in one transaction: rows of present keys updated,
// new keys inserted, rows of keys no longer in the form removed.
bool SaveForm(DbConnection &sys, const clsDocument &doc, int formId, QString *error);

// A new field of the form: next free key, TabIndex one above the highest, default look.
clsField *AddNewField(clsDocument &doc, int typ);

// The form file: section FORMULAR of a private-profile file.
bool ExportForm(const clsDocument &doc, const QStringList &params, const QString &name, int formId,
                const QString &fileName);
// Adds the file's form as a new form. Returns its id; 0 when the file holds no form
// (DOKUMENT empty: nothing happens); -1 with a message in error when it is refused.
int ImportForm(DbConnection &sys, const QString &fileName, QString *error);

// Largest number of fields a form file may declare.
inline constexpr int MaxFormFields = 1000;
