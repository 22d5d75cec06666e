#include "orders/cmessage.h"

#include "core/codepage.h"

#include <QStringList>

#include <algorithm>

CMessageError::CMessageError(quint32 number, QString source, QString description)
    : std::runtime_error(description.toStdString()), Number(number), Source(std::move(source)),
      Description(std::move(description))
{
}

void CMessage::CreateFromText(const QString &text)
{
    const QString blankLine = QStringLiteral("\r\n\r\n");
    const qsizetype split = text.indexOf(blankLine);
    if (split < 0)
        throw CMessageError(InvalidMessageFormat, QStringLiteral("CMessage.CreateFromText"),
                            QStringLiteral("Invalid message format"));
    Headers = text.left(split);
    MessageBody = text.mid(split + blankLine.size());
    MessageText = text;

    struct Target {
        const char *name;
        QString CMessage::*property;
    };
    static const Target targets[] = {
        {"return-path", &CMessage::ReturnPath}, {"received", &CMessage::Received},
        {"from", &CMessage::From},              {"sender", &CMessage::Sender},
        {"reply-to", &CMessage::ReplyTo},       {"to", &CMessage::MessageTo},
        {"cc", &CMessage::CC},                  {"bcc", &CMessage::BCC},
        {"message-id", &CMessage::MessageID},   {"in-reply-to", &CMessage::InReplyTo},
        {"references", &CMessage::References},  {"keywords", &CMessage::Keywords},
        {"subject", &CMessage::Subject},        {"comments", &CMessage::Comments},
        {"encrypted", &CMessage::Encrypted},    {"date", &CMessage::SendDate},
    };
    for (const QString &line : Headers.split(QStringLiteral("\r\n"))) {
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (colon < 0)
            continue;   // no name: no header of the table
        const QString name = line.left(colon).toLower();
        const QString value = line.mid(colon + 1).trimmed();
        for (const Target &target : targets) {
            if (name != QLatin1String(target.name))
                continue;
            this->*target.property = value;
            if (target.property == &CMessage::Received) {
                const qsizetype at = line.indexOf(QLatin1String("; "));
                if (at >= 0)
                    SendDate = line.mid(at + 2);
            }
        }
    }
}

std::vector<CMessages::Entry>::iterator CMessages::find(const QString &key)
{
    return std::find_if(items_.begin(), items_.end(), [&key](const Entry &e) {
        return !e.key.isEmpty() && e.key.compare(key, Qt::CaseInsensitive) == 0;
    });
}

CMessage &CMessages::Add(const CMessage &message, const QString &key)
{
    if (!key.isEmpty() && find(key) != items_.end())
        throw CMessageError(457, QStringLiteral("CMessages.Add"),
                            QStringLiteral("This key is already associated with an element of this collection"));
    items_.push_back({key, message});
    return items_.back().message;
}

CMessage &CMessages::Item(int index)
{
    if (index < 1 || index > Count())
        throw CMessageError(9, QStringLiteral("CMessages.Item"), QStringLiteral("Subscript out of range"));
    return items_[size_t(index - 1)].message;
}

CMessage &CMessages::Item(const QString &key)
{
    const auto it = find(key);
    if (it == items_.end())
        throw CMessageError(5, QStringLiteral("CMessages.Item"), QStringLiteral("Invalid procedure call or argument"));
    return it->message;
}

void CMessages::Remove(int index)
{
    if (index < 1 || index > Count())
        throw CMessageError(9, QStringLiteral("CMessages.Remove"), QStringLiteral("Subscript out of range"));
    items_.erase(items_.begin() + (index - 1));
}

void CMessages::Remove(const QString &key)
{
    const auto it = find(key);
    if (it == items_.end())
        throw CMessageError(5, QStringLiteral("CMessages.Remove"), QStringLiteral("Invalid procedure call or argument"));
    items_.erase(it);
}

QString CMessages::Base64(int value)
{
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (value < 0 || value > 63)
        return QString();
    return QString(QLatin1Char(alphabet[value]));
}

QString CMessages::StrToMIME(const QString &text)
{
    const QByteArray bytes = ToCp1250(text.mid(1));
    // As many groups as the length before the first character went; a group
    // past the end gives nothing, a short one is filled with zero codes.
    const qsizetype groups = text.isEmpty() ? 1 : (text.size() - 1) / 3 + 1;
    QString out;
    for (qsizetype g = 0; g < groups && 3 * g < bytes.size(); ++g) {
        quint32 number = 0;
        for (qsizetype k = 0; k < 3; ++k) {
            const qsizetype at = 3 * g + k;
            number = number << 8 | (at < bytes.size() ? quint8(bytes[at]) : 0u);
        }
        QString group;
        for (int k = 0; k < 4; ++k, number >>= 6)
            group.prepend(Base64(int(number & 63)));
        out += group;
    }
    return out;
}
