#pragma once
// Mail messages of the order exchange: one message read from its text, and a
// keyed collection of them with the two Base64 helpers the exchange keeps.

#include <QString>

#include <stdexcept>
#include <vector>

// The error a message class raises: its number, source and description.
struct CMessageError : std::runtime_error {
    CMessageError(quint32 number, QString source, QString description);
    quint32 Number;
    QString Source;
    QString Description;
};

// One message in the form of RFC 822: headers, a blank line, the body.
class CMessage {
public:
    QString Headers, MessageBody, MessageText;
    QString Encrypted, Comments, Keywords, References, InReplyTo, BCC, CC, Sender, ReplyTo,
        Subject, From, MessageTo, MessageID, SendDate, Received, ReturnPath;

    // Fills the message from its text. Throws CMessageError 0x80040265 when the
    // text has no CR LF CR LF; the message is then left as it was. Header lines
    // are taken one by one (folded lines are not joined), later ones win.
    void CreateFromText(const QString &text);
    // Length of MessageText.
    qsizetype Size() const { return MessageText.size(); }
};

constexpr quint32 InvalidMessageFormat = 0x80040265;

// Messages by position (from 1) and, for those added with one, by key.
class CMessages {
public:
    // Adds the message under the key, or without a key when the key is empty.
    // A key already present throws CMessageError.
    CMessage &Add(const CMessage &message, const QString &key = QString());
    // By position 1..Count or by key; throws CMessageError when there is none.
    CMessage &Item(int index);
    CMessage &Item(const QString &key);
    int Count() const { return int(items_.size()); }
    void Remove(int index);
    void Remove(const QString &key);
    // Empties the collection.
    void CloseClass() { items_.clear(); }

    // Enumeration, in the order of adding.
    struct Entry {
        QString key;
        CMessage message;
    };
    std::vector<Entry>::iterator begin() { return items_.begin(); }
    std::vector<Entry>::iterator end() { return items_.end(); }

    // One character of the Base64 alphabet for a six-bit value; empty for any other.
    static QString Base64(int value);
    // The text without its first character, encoded in Base64 three characters
    // (Windows-1250 bytes) at a time, without "=" padding: callers give a text
    // of 3 n + 1 characters.
    static QString StrToMIME(const QString &text);

private:
    std::vector<Entry>::iterator find(const QString &key);
    std::vector<Entry> items_;
};
