// Messages of the order exchange: reading a message's text, the collection,
// and the two Base64 helpers.

#include "orders/cmessage.h"

#include "support/testenv.h"

#include <gtest/gtest.h>

TEST(CMessage, HeadersGoToTheirProperties)
{
    const struct {
        const char *text;
        QString CMessage::*property;
        const char *value;
    } cases[] = {
        {"subject: a\r\n\r\nb", &CMessage::Subject, "a"},
        {"Subject:   padded  \r\n\r\n", &CMessage::Subject, "padded"},
        {"SUBJECT: first\r\nsubject: second\r\n\r\n", &CMessage::Subject, "second"},
        {"From: jana@lhotka.example\r\n\r\n", &CMessage::From, "jana@lhotka.example"},
        {"To: a@b.example\r\n\r\n", &CMessage::MessageTo, "a@b.example"},
        {"Return-Path: <x@y>\r\n\r\n", &CMessage::ReturnPath, "<x@y>"},
        {"Reply-To: r\r\nSender: s\r\n\r\n", &CMessage::ReplyTo, "r"},
        {"Reply-To: r\r\nSender: s\r\n\r\n", &CMessage::Sender, "s"},
        {"Cc: c\r\nBcc: d\r\n\r\n", &CMessage::CC, "c"},
        {"Cc: c\r\nBcc: d\r\n\r\n", &CMessage::BCC, "d"},
        {"Message-ID: <1@x>\r\nIn-Reply-To: <0@x>\r\n\r\n", &CMessage::InReplyTo, "<0@x>"},
        {"References: <0@x>\r\nKeywords: k\r\nComments: c\r\nEncrypted: e\r\n\r\n", &CMessage::Keywords, "k"},
        {"Received: from a by b; Sun, 22 Nov 2026 10:00:00 +0100\r\n\r\n", &CMessage::SendDate,
         "Sun, 22 Nov 2026 10:00:00 +0100"},
        {"Received: from a by b; Sun, 22 Nov 2026\r\n\r\n", &CMessage::Received, "from a by b; Sun, 22 Nov 2026"},
        {"Date: Mon, 23 Nov 2026\r\nReceived: x; later\r\n\r\n", &CMessage::SendDate, "later"},
        {"Received: x; earlier\r\nDate: Mon\r\n\r\n", &CMessage::SendDate, "Mon"},
        {"Subject: a\r\n  folded: not joined\r\n\r\n", &CMessage::Subject, "a"},
        {"no colon here\r\nSubject: s\r\n\r\n", &CMessage::Subject, "s"},
        {"X-Other: ignored\r\n\r\n", &CMessage::Subject, ""},
        {"Subject: one\r\n\r\nbody\r\n\r\nSubject: not a header", &CMessage::Subject, "one"},
    };
    for (const auto &c : cases) {
        CMessage m;
        m.CreateFromText(QString::fromUtf8(c.text));
        EXPECT_EQ(m.*c.property, QString::fromUtf8(c.value)) << c.text;
    }
}

TEST(CMessage, PartsSizeAndTheErrorOfATextWithoutBlankLine)
{
    CMessage m;
    m.CreateFromText(QStringLiteral("Subject: a\r\nFrom: f\r\n\r\nbody\r\n\r\nmore"));
    EXPECT_EQ(m.Headers, QStringLiteral("Subject: a\r\nFrom: f"));
    EXPECT_EQ(m.MessageBody, QStringLiteral("body\r\n\r\nmore"));
    EXPECT_EQ(m.Size(), 35);

    // Each bad text raises the error and leaves the message as it was.
    const QString bad[] = {
        QStringLiteral("Subject: b\r\nbody"),
        QStringLiteral("Subject: b\r\rbody"),
        QStringLiteral("Subject: b\n\nbody"),
        QString(),
        QStringLiteral("Subject: ") + QString(100000, QLatin1Char('x')),
        QString::fromLatin1(QByteArray("\x00\x01\xff\r\n\r", 6)),
    };
    for (const QString &text : bad) {
        try {
            m.CreateFromText(text);
            ADD_FAILURE() << "no error for " << text.left(40).toStdString();
        } catch (const CMessageError &e) {
            EXPECT_EQ(e.Number, 0x80040265u);
            EXPECT_EQ(e.Source, QStringLiteral("CMessage.CreateFromText"));
            EXPECT_EQ(e.Description, QStringLiteral("Invalid message format"));
        }
        EXPECT_EQ(m.Subject, QStringLiteral("a"));
        EXPECT_EQ(m.Size(), 35);
    }

    // Long and binary headers are read without harm.
    CMessage big;
    big.CreateFromText(QStringLiteral("Subject: ") + QString(100000, QLatin1Char('s')) + QStringLiteral("\r\n\r\nb"));
    EXPECT_EQ(big.Subject.size(), 100000);
    CMessage binary;
    binary.CreateFromText(QString::fromLatin1(QByteArray("\x00:\x01\xfe\r\nto:\x7f\r\n\r\n\x00", 14)));
    EXPECT_EQ(binary.MessageTo, QString(QChar(0x7f)));
    EXPECT_EQ(binary.Size(), 14);
}

TEST(CMessages, KeysPositionsRemovalAndEnumeration)
{
    CMessages list;
    CMessage a, b, c;
    a.Subject = QStringLiteral("a");
    b.Subject = QStringLiteral("b");
    c.Subject = QStringLiteral("c");
    list.Add(a, QStringLiteral("first"));
    list.Add(b);
    list.Add(c, QStringLiteral("third"));
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Item(2).Subject, QStringLiteral("b"));
    EXPECT_EQ(list.Item(QStringLiteral("THIRD")).Subject, QStringLiteral("c"));
    EXPECT_THROW(list.Add(b, QStringLiteral("First")), CMessageError);
    EXPECT_THROW(list.Item(0), CMessageError);
    EXPECT_THROW(list.Item(4), CMessageError);
    EXPECT_THROW(list.Item(QStringLiteral("none")), CMessageError);

    list.Remove(QStringLiteral("first"));
    list.Remove(1);
    QStringList subjects;
    for (auto &entry : list)
        subjects << entry.message.Subject;
    EXPECT_EQ(subjects, QStringList{QStringLiteral("c")});
    EXPECT_THROW(list.Remove(2), CMessageError);
    list.CloseClass();
    EXPECT_EQ(list.Count(), 0);
}

TEST(CMessages, Base64AndStrToMIME)
{
    const std::pair<int, const char *> alphabet[] = {{0, "A"},  {25, "Z"}, {26, "a"}, {51, "z"}, {52, "0"},
                                                     {61, "9"}, {62, "+"}, {63, "/"}, {64, ""},  {-1, ""}};
    for (const auto &[value, character] : alphabet)
        EXPECT_EQ(CMessages::Base64(value), QLatin1String(character)) << value;

    const std::pair<const char *, const char *> mime[] = {
        {"XMan", "TWFu"},              // four characters: the encoding of characters 2 to 4
        {"-abc", "YWJj"},
        {"Xčáp", "6OFw"},              // Windows-1250 bytes
        {"XManMan", "TWFuTWFu"},
        {"Xab", "YWIA"},               // a short group is filled with zeros, no "="
        {"X", ""},
        {"", ""},
    };
    for (const auto &[text, encoded] : mime)
        EXPECT_EQ(CMessages::StrToMIME(QString::fromUtf8(text)), QLatin1String(encoded)) << text;
}
