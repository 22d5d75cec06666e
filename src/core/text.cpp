#include "core/text.h"

#include "core/codepage.h"
#include "core/config.h"
#include "core/htmlviewer.h"
#include "core/login.h"
#include "core/msg.h"
#include "core/number.h"
#include "core/session.h"

#include <QApplication>
#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QSqlQueryModel>
#include <QSqlRecord>
#include <QStandardPaths>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>
#include <thread>

// --- amounts ----------------------------------------------------------------------

namespace {

// The pieces of an amount as its text forms give them.
struct AmountParts {
    std::string intDigits;   // integer part of |amount| rounded to hundredths
    int cents = 0;           // and its hundredths
    std::string decimals;    // digits after the comma in the text of the amount rounded to hundredths
    std::string tenthsText;  // text of |amount| rounded to tenths, decimal comma
};

void appendDigits(std::string &out, unsigned long long v)
{
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr);
}

// A number as the program writes it: at most 15 significant digits, decimal comma,
// an exponent from 1e15 up.
std::string numberText(double v)
{
    char buf[40];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::general, 15);
    std::string s(buf, r.ptr);
    std::replace(s.begin(), s.end(), '.', ',');
    return s;
}

AmountParts splitAmount(double value)
{
    AmountParts p;
    const double absRounded = std::fabs(RoundHalfEven(value, 2));
    const double tenths = RoundHalfEven(std::fabs(value), 1);
    if (std::fabs(value) < 1e13) {
        // Below 1e13 every text form has at most 15 digits: plain integer work gives the
        // same digits as the text conversion, much faster.
        const long long c = std::llround(absRounded * 100);
        appendDigits(p.intDigits, c / 100);
        p.cents = int(c % 100);
        if (p.cents != 0) {
            p.decimals += char('0' + p.cents / 10);
            if (p.cents % 10 != 0)
                p.decimals += char('0' + p.cents % 10);
        }
        const long long t = std::llround(tenths * 10);
        appendDigits(p.tenthsText, t / 10);
        if (t % 10 != 0) {
            p.tenthsText += ',';
            p.tenthsText += char('0' + t % 10);
        }
        return p;
    }
    // Larger amounts are read off their text, as only fifteen digits of it are known.
    const std::string text = numberText(absRounded);
    const auto comma = text.find(',');
    const auto exponent = text.find('e');
    if (comma != std::string::npos)
        p.decimals = text.substr(comma + 1);
    if (exponent == std::string::npos) {
        p.intDigits = text.substr(0, comma);
        if (!p.decimals.empty())
            p.cents = (p.decimals[0] - '0') * 10 + (p.decimals.size() > 1 ? p.decimals[1] - '0' : 0);
    } else {
        // "1,5e+15": the mantissa's digits, then zeros up to the exponent.
        std::string digits = text.substr(0, std::min(comma, exponent));
        if (comma != std::string::npos)
            digits += text.substr(comma + 1, exponent - comma - 1);
        const int power = std::atoi(text.c_str() + exponent + 1);
        digits.append(std::size_t(std::max(0, power + 1 - int(digits.size()))), '0');
        p.intDigits = digits;
    }
    p.tenthsText = numberText(tenths);
    return p;
}

double decimalsValue(const std::string &decimals)
{
    if (decimals.size() <= 2 && std::all_of(decimals.begin(), decimals.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        double v = 0;
        for (const char c : decimals)
            v = v * 10 + (c - '0');
        return v;
    }
    return ScanNumber(QString::fromLatin1(decimals.data(), qsizetype(decimals.size())));
}

// Width taken off by the length of the amount's text.
int widthCut(int length)
{
    switch (length) {
    case 2: return 1;
    case 3: return 2;
    case 4:
    case 5:
    case 6: return length;
    case 7: return 8;
    case 8: return 9;
    case 9: return 10;
    default: return 0;
    }
}

// Digits into "### ### ### ###": a blank between groups of three from the right, four
// groups at most (digits beyond the mask stay in the first group), nothing for zero.
void appendGrouped(std::string &out, const std::string &digits)
{
    if (digits == "0")
        return;
    const std::size_t n = digits.size();
    const std::size_t firstLen = n > 12 ? n - 9 : (n % 3 == 0 ? 3 : n % 3);
    out.append(digits, 0, firstLen);
    for (std::size_t i = firstLen; i < n; i += 3) {
        out += ' ';
        out.append(digits, i, 3);
    }
}

} // namespace

QString FormatCastka(QString &value, short &width)
{
    // The decimal comma of the text is read as a point.
    double number;
    constexpr qsizetype StackLen = 64;
    if (value.size() <= StackLen) {
        char16_t buf[StackLen];
        const char16_t *src = reinterpret_cast<const char16_t *>(value.constData());
        for (qsizetype i = 0; i < value.size(); ++i)
            buf[i] = src[i] == u',' ? u'.' : src[i];
        number = ScanNumber(QStringView(buf, value.size()));
    } else {
        number = ScanNumber(QString(value).replace(QLatin1Char(','), QLatin1Char('.')));
    }
    const bool negative = number < 0;
    AmountParts p = splitAmount(number);

    // A single decimal digit means tens of hellers: "5" is fifty.
    double decimals = decimalsValue(p.decimals);
    if (decimals > 0 && decimals <= 9 && p.decimals[0] != '0') {
        p.decimals += '0';
        decimals = decimalsValue(p.decimals);
    }

    int w = width - widthCut(int(p.tenthsText.size()));

    // What the mask shows after the comma.
    char shown[3] = {char('0' + p.cents / 10), char('0' + p.cents % 10), 0};
    if (decimals != 0) {
        const bool zeroEnd = (decimals <= 9 && p.decimals[0] != '0')
                             || (p.decimals.size() > 1 && p.decimals[1] == '0' && decimals > 0);
        if (!zeroEnd) {   // "##": trailing zeros are not shown
            if (shown[1] == '0')
                shown[1] = 0;
            if (shown[0] == '0' && shown[1] == 0)
                shown[0] = 0;
        }
    }

    std::string result;
    result.reserve(p.intDigits.size() * 4 / 3 + 4);
    appendGrouped(result, p.intDigits);
    result += ',';
    result += shown;
    if (result.front() == ',')   // ",00" included
        result.insert(0, 1, '0');

    // The plain text of the amount ("1234,5,50"): never narrower than that.
    const int plainLength = int(p.tenthsText.size() + 1 + p.decimals.size());
    w = std::clamp(std::max(w, plainLength), int(SHRT_MIN), int(SHRT_MAX));
    width = short(w);

    const qsizetype pad = std::max<qsizetype>(0, w - qsizetype(result.size()));
    const qsizetype sign = negative ? 1 : 0;
    QString out(sign + pad + qsizetype(result.size()), Qt::Uninitialized);
    QChar *at = out.data();
    if (negative)
        *at++ = QLatin1Char('-');
    at = std::fill_n(at, pad, QLatin1Char(' '));
    for (const char c : result)
        *at++ = QLatin1Char(c);
    return out;
}

QString FormatAmount(const QString &value)
{
    // Width 0 still pads to the amount's plain length, and that padding stands after the sign.
    QString copy = value;
    short width = 0;
    const QString text = FormatCastka(copy, width);
    return text.startsWith(QLatin1Char('-')) ? QLatin1Char('-') + text.mid(1).trimmed() : text.trimmed();
}

QString FormatAmount(double value)
{
    // Fifteen significant digits: the formatter reads a plain number.
    return FormatAmount(QString::number(value, 'g', 15));
}

// --- packed fields ---------------------------------------------------------------

QString GetField(const QString &text, short index, short separatorCode)
{
    if (index < 0)
        return QString();
    const QChar sep = separatorCode == 0 ? QLatin1Char('#') : QChar(char16_t(ushort(separatorCode)));
    qsizetype start = 0;
    for (short i = 0; i < index; ++i) {
        const qsizetype at = text.indexOf(sep, start);
        if (at < 0)
            return QString();
        start = at + 1;
    }
    const qsizetype end = text.indexOf(sep, start);
    return text.mid(start, end < 0 ? -1 : end - start);
}

short CountSep(const QString &text, const QString &separator)
{
    // Each found separator becomes "$" in a working copy; "$" itself would be found forever.
    if (separator.isEmpty() || separator == QLatin1String("$"))
        return 0;
    int count = 0;
    if (!separator.contains(QLatin1Char('$'))) {
        // No "$" in the separator: a replacement cannot make a new match, so a plain
        // left-to-right count gives the same.
        for (qsizetype at = text.indexOf(separator); at >= 0; at = text.indexOf(separator, at + separator.size()))
            ++count;
    } else {
        // The "$" left behind may end a new match that begins before it: the next search
        // starts as far back as such a match can.
        QString work = text;
        for (qsizetype at = work.indexOf(separator); at >= 0;
             at = work.indexOf(separator, std::max<qsizetype>(0, at - separator.size() + 1))) {
            work.replace(at, separator.size(), QLatin1Char('$'));
            ++count;
        }
    }
    return short(std::min(count, int(SHRT_MAX)));
}

namespace {
// Blank means nothing but blanks: a lone character 160 or a tab is not blank.
bool AllBlanks(QStringView text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c == QLatin1Char(' '); });
}
} // namespace

bool IsNumberText(QString &text)
{
    if (AllBlanks(text))
        return false;
    const bool number = IsNumberView(text);
    text.replace(QLatin1Char(' '), QChar(0xA0));
    text.remove(QLatin1Char('-'));
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    return number;
}

bool IsNumberView(QStringView text)
{
    if (AllBlanks(text))
        return false;
    // As the text reads with "-" removed and "," as ".": digits and blanks around one point.
    bool point = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('-'))
            continue;
        if (c == QLatin1Char('.') || c == QLatin1Char(',')) {
            if (point)
                return false;
            point = true;
        } else if (!(c >= QLatin1Char('0') && c <= QLatin1Char('9')) && c != QLatin1Char(' ') && c != QChar(0xA0)) {
            return false;
        }
    }
    return true;
}

QString DateTwoDigits(const QString &text)
{
    if (text.isEmpty())
        return text;
    QStringList parts = text.split(QLatin1Char('.'));
    for (int i = 0; i < 2 && i < parts.size(); ++i) {
        if (parts[i].size() == 1)
            parts[i].prepend(QLatin1Char('0'));
    }
    return parts.join(QLatin1Char('.'));
}

// --- grant filters -----------------------------------------------------------------

namespace {
// A grant number inside an SQL literal: a quote or backslash typed into a filter stays text.
QString sqlText(const QString &value)
{
    QString v = value;
    v.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    v.replace(QLatin1Char('\''), QLatin1String("''"));
    return v;
}

// One term for each of the separators' count plus one fields, as GetField gives them; the
// text is cut once, so that a list of any length (even beyond a 16-bit count) takes one pass.
template <typename Term>
QString joinGrantTerms(const QString &filter, Term term)
{
    const QStringList fields = filter.split(QLatin1Char(','));
    QString sql;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0)
            sql += QLatin1String(" or ");
        sql += term(sqlText(fields[i]));
    }
    return sql;
}
} // namespace

QString BuildGrantLike(const QString &filter)
{
    // A trailing comma leaves an empty last grant, whose term matches every grant.
    return joinGrantTerms(filter, [](const QString &grant) {
        return QLatin1String("_GRANT like '") + grant + QLatin1String("%'");
    });
}

QString BuildGrantArchiv(const QString &filter)
{
    if (!filter.contains(QLatin1Char(',')))
        return QString();
    return joinGrantTerms(filter, [](const QString &grant) {
        return QLatin1String("(_GRANT = '") + grant + QLatin1String("' AND archiv<>'1')");
    });
}

// --- lists -------------------------------------------------------------------------

bool ListHasValue(const QString &value, const QStringList &list, bool silent)
{
    if (!list.contains(value))
        return false;
    if (!silent)
        MsgBox(QStringLiteral("Zadána hodnota  ") + value
                   + QStringLiteral("  v seznamu již existuje, opakujte prosím volbu."),
               0);
    return true;
}

void FillCollection(const QSqlQueryModel &model, QStringList &list, const QString &field)
{
    const int column = model.record().indexOf(field);
    if (column < 0)
        return;
    for (int row = 0; row < model.rowCount(); ++row)
        list.append(model.data(model.index(row, column)).toString());
}

// --- record-set filters ----------------------------------------------------------------

namespace {
struct FilterToken {
    enum Kind { Open, Close, Name, Op, And, Or, Text, Number, Null, Bad } kind;
    QString text;
};

bool isAsciiDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }
bool isNameChar(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('.'); }

QVector<FilterToken> filterTokens(const QString &text)
{
    QVector<FilterToken> tokens;
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = text.at(i);
        if (c.isSpace()) {
            ++i;
        } else if (c == QLatin1Char('(') || c == QLatin1Char(')')) {
            tokens.append({c == QLatin1Char('(') ? FilterToken::Open : FilterToken::Close, QString(c)});
            ++i;
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('#')) {
            // Text up to the closing mark; a doubled quote inside is one quote.
            QString value;
            qsizetype j = i + 1;
            bool closed = false;
            while (j < n) {
                if (text.at(j) == c) {
                    if (c == QLatin1Char('\'') && j + 1 < n && text.at(j + 1) == c) {
                        value += c;
                        j += 2;
                        continue;
                    }
                    closed = true;
                    ++j;
                    break;
                }
                value += text.at(j++);
            }
            tokens.append({closed ? FilterToken::Text : FilterToken::Bad, value});
            i = j;
        } else if (c == QLatin1Char('[') || c == QLatin1Char('`')) {
            const QChar end = c == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('`');
            const qsizetype j = text.indexOf(end, i + 1);
            if (j < 0) {
                tokens.append({FilterToken::Bad, QString()});
                break;
            }
            tokens.append({FilterToken::Name, text.mid(i + 1, j - i - 1)});
            i = j + 1;
        } else if (c == QLatin1Char('=') || c == QLatin1Char('<') || c == QLatin1Char('>')) {
            QString op(c);
            if (i + 1 < n && c != QLatin1Char('=') &&
                (text.at(i + 1) == QLatin1Char('=') || (c == QLatin1Char('<') && text.at(i + 1) == QLatin1Char('>'))))
                op += text.at(++i);
            tokens.append({FilterToken::Op, op});
            ++i;
        } else if (isAsciiDigit(c) || ((c == QLatin1Char('-') || c == QLatin1Char('.')) && i + 1 < n && isAsciiDigit(text.at(i + 1)))) {
            qsizetype j = i + 1;
            while (j < n && (isAsciiDigit(text.at(j)) || text.at(j) == QLatin1Char('.')))
                ++j;
            tokens.append({FilterToken::Number, text.mid(i, j - i)});
            i = j;
        } else if (isNameChar(c)) {
            qsizetype j = i;
            while (j < n && isNameChar(text.at(j)))
                ++j;
            const QString word = text.mid(i, j - i);
            if (word.compare(QLatin1String("AND"), Qt::CaseInsensitive) == 0)
                tokens.append({FilterToken::And, word});
            else if (word.compare(QLatin1String("OR"), Qt::CaseInsensitive) == 0)
                tokens.append({FilterToken::Or, word});
            else if (word.compare(QLatin1String("LIKE"), Qt::CaseInsensitive) == 0)
                tokens.append({FilterToken::Op, QStringLiteral("LIKE")});
            else if (word.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0)
                tokens.append({FilterToken::Null, word});
            else
                tokens.append({FilterToken::Name, word});
            i = j;
        } else {
            tokens.append({FilterToken::Bad, QString(c)});
            ++i;
        }
    }
    return tokens;
}

// "*" and "%" stand for any text; the rest compares without regard to case.
bool likeMatch(QStringView text, QStringView pattern)
{
    qsizetype t = 0, p = 0, starP = -1, starT = 0;
    while (t < text.size()) {
        if (p < pattern.size() && (pattern[p] == u'*' || pattern[p] == u'%')) {
            starP = p++;
            starT = t;
        } else if (p < pattern.size() && QStringView(pattern).mid(p, 1).compare(text.mid(t, 1), Qt::CaseInsensitive) == 0) {
            ++p;
            ++t;
        } else if (starP >= 0) {
            p = starP + 1;
            t = ++starT;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && (pattern[p] == u'*' || pattern[p] == u'%'))
        ++p;
    return p == pattern.size();
}

int filterColumn(const QAbstractItemModel &model, const QString &name)
{
    if (const auto *query = qobject_cast<const QSqlQueryModel *>(&model)) {
        const int at = query->record().indexOf(name);
        if (at >= 0)
            return at;
    }
    for (int c = 0; c < model.columnCount(); ++c)
        if (model.headerData(c, Qt::Horizontal).toString().trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return c;
    return -1;
}
} // namespace

RecordFilter::RecordFilter(const QString &text)
{
    const QVector<FilterToken> tokens = filterTokens(text);
    if (tokens.isEmpty())
        return;
    // item := "(" group ")" | column op value; group := item { (AND | OR) item }
    struct Parser {
        const QVector<FilterToken> &tokens;
        QVector<Node> &nodes;
        qsizetype at = 0;
        bool ok = true;

        FilterToken::Kind peek() const { return at < tokens.size() ? tokens[at].kind : FilterToken::Bad; }
        int item(int depth)
        {
            if (depth > 100) {   // nesting beyond any real filter
                ok = false;
                return -1;
            }
            if (peek() == FilterToken::Open) {
                ++at;
                const int inner = group(depth + 1);
                if (!ok || peek() != FilterToken::Close) {
                    ok = false;
                    return -1;
                }
                ++at;
                return inner;
            }
            if (at + 3 > tokens.size()) {
                ok = false;
                return -1;
            }
            const FilterToken &name = tokens[at];
            const FilterToken &op = tokens[at + 1];
            const FilterToken &value = tokens[at + 2];
            if (name.kind != FilterToken::Name || op.kind != FilterToken::Op ||
                !(value.kind == FilterToken::Text || value.kind == FilterToken::Number || value.kind == FilterToken::Null) ||
                (value.kind == FilterToken::Null && op.text != QLatin1String("=") && op.text != QLatin1String("<>"))) {
                ok = false;
                return -1;
            }
            at += 3;
            Node clause;
            clause.column = name.text;
            clause.op = op.text;
            if (value.kind == FilterToken::Number)
                clause.value = value.text.toDouble();
            else if (value.kind == FilterToken::Text)
                clause.value = value.text;
            nodes.append(clause);
            return int(nodes.size() - 1);
        }
        int group(int depth)
        {
            Node g;
            g.group = true;
            g.items.append(item(depth));
            g.orBefore.append(false);
            while (ok && (peek() == FilterToken::And || peek() == FilterToken::Or)) {
                const bool isOr = peek() == FilterToken::Or;
                ++at;
                g.items.append(item(depth));
                g.orBefore.append(isOr);
            }
            nodes.append(g);
            return int(nodes.size() - 1);
        }
    };
    Parser parser{tokens, m_nodes};
    parser.group(0);
    m_valid = parser.ok && parser.at == tokens.size();
}

bool RecordFilter::evaluate(int node, const QAbstractItemModel &model, int row) const
{
    const Node &n = m_nodes[node];
    if (n.group) {
        // Left to right: neither AND nor OR comes first.
        bool result = evaluate(n.items[0], model, row);
        for (qsizetype i = 1; i < n.items.size(); ++i) {
            const bool next = evaluate(n.items[i], model, row);
            result = n.orBefore[i] ? (result || next) : (result && next);
        }
        return result;
    }
    const int column = filterColumn(model, n.column);
    if (column < 0)
        return false;
    const QVariant cell = model.data(model.index(row, column));
    if (n.value.isNull() || cell.isNull()) {
        const bool bothNull = n.value.isNull() && cell.isNull();
        if (!n.value.isNull())
            return false;   // NULL compares with nothing but NULL
        return n.op == QLatin1String("=") ? bothNull : !bothNull;
    }
    const QString text = cell.toString();
    if (n.op == QLatin1String("LIKE"))
        return likeMatch(text, n.value.toString());
    int order = 0;
    bool numeric = false;
    if (n.value.typeId() == QMetaType::Double) {
        const double left = text.trimmed().toDouble(&numeric);
        const double right = n.value.toDouble();
        order = left < right ? -1 : (left > right ? 1 : 0);
    }
    if (!numeric)
        order = text.compare(n.value.toString(), Qt::CaseInsensitive);
    if (n.op == QLatin1String("="))
        return order == 0;
    if (n.op == QLatin1String("<>"))
        return order != 0;
    if (n.op == QLatin1String("<"))
        return order < 0;
    if (n.op == QLatin1String(">"))
        return order > 0;
    if (n.op == QLatin1String("<="))
        return order <= 0;
    return order >= 0;
}

bool RecordFilter::matches(const QAbstractItemModel &model, int row) const
{
    if (!m_valid)
        return false;
    if (m_nodes.isEmpty())
        return true;
    return evaluate(int(m_nodes.size() - 1), model, row);
}

void RecordSet::setRecordFilter(const QString &filter)
{
    m_text = filter;
    m_filter = RecordFilter(filter);
    invalidateFilter();
    m_current = rowCount() > 0 ? 0 : -1;
}

bool RecordSet::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    return !sourceParent.isValid() && sourceModel() && m_filter.matches(*sourceModel(), sourceRow);
}

bool RecordFind(RecordSet &control, const QString &filter)
{
    if (!control.sourceModel() || control.rowCount() == 0)
        return false;
    control.setCurrentRow(0);
    control.setRecordFilter(filter);
    if (control.rowCount() > 0) {
        control.setCurrentRow(0);
        return true;
    }
    control.setCurrentRow(-1);   // past the end
    return false;
}

bool KeyInCollection(const QMap<QString, QString> &collection, const QString &key)
{
    // Keys of a collection do not depend on case.
    const auto exact = collection.constFind(key);
    if (exact != collection.constEnd())
        return !exact.value().isEmpty();
    for (auto it = collection.constBegin(); it != collection.constEnd(); ++it) {
        if (it.key().compare(key, Qt::CaseInsensitive) == 0)
            return !it.value().isEmpty();
    }
    return false;
}

void BubbleSortNumbers(QVector<double> &numbers)
{
    for (qsizetype limit = numbers.size() - 1; limit > 0; --limit) {
        bool swapped = false;
        for (qsizetype i = 0; i < limit; ++i) {
            if (numbers[i] > numbers[i + 1]) {
                std::swap(numbers[i], numbers[i + 1]);
                swapped = true;
            }
        }
        if (!swapped)
            break;
    }
}

// --- files -------------------------------------------------------------------------

QString NormalizePath(const QString &path)
{
    // A network path keeps its two leading separators; elsewhere a doubled one is one.
    QString p = path;
    for (const QChar sep : {QLatin1Char('\\'), QLatin1Char('/')}) {
        const QString twice(2, sep);
        if (!p.startsWith(twice)) {
            p.replace(twice, QString(sep));
        } else {
            p.replace(twice, QString(sep));
            p.prepend(sep);
        }
    }
    return p;
}

QString SafeFileName(const QString &text)
{
    static const char16_t table[][2] = {
        {u'Ř', u'R'}, {u'Á', u'A'}, {u'Č', u'C'}, {u'Ý', u'Y'}, {u'Š', u'S'}, {u'Í', u'I'},
        {u'Ě', u'E'}, {u'É', u'E'}, {u'Ž', u'Z'}, {u'Ů', u'U'}, {u'Ú', u'U'},
        {u' ', u'_'}, {u'/', u'_'}, {u'\\', u'_'},
    };
    QString name = text.toUpper().trimmed();
    for (const auto &pair : table)
        name.replace(QChar(pair[0]), QChar(pair[1]));
    return name;
}

QString ReadWholeFile(const QString &path, bool lineMode)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QString text = FromCp1250(file.readAll());
    if (!lineMode)
        return text;
    // A line ends at CR or CR LF; a lone LF belongs to the line.
    constexpr qsizetype MaxLine = 1000000;
    QString joined;
    joined.reserve(text.size());
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = text.indexOf(QLatin1Char('\r'), start);
        if (end < 0)
            end = text.size();
        joined += QStringView(text).mid(start, std::min(end - start, MaxLine));
        start = end + 1;
        if (start < text.size() && end < text.size() && text[start] == QLatin1Char('\n'))
            ++start;
    }
    return joined;
}

// --- hiding ------------------------------------------------------------------------

namespace {
// Characters count by their Windows-1250 codes, others by their own.
int charCode(QChar c)
{
    QString bad;
    const QByteArray b = ToCp1250(QString(c), &bad);
    return bad.isEmpty() && b.size() == 1 ? int(uchar(b[0])) : int(c.unicode());
}
} // namespace

QString ScrambleText(const QString &text)
{
    QStringList numbers;
    for (qsizetype i = 0; i < text.size(); ++i)
        numbers << QString::number(charCode(text[i]) + 22 - (i + 1));
    return numbers.join(QLatin1Char('~'));
}

QString UnscrambleText(const QString &text)
{
    if (text.isEmpty())
        return QString();
    const QStringList numbers = text.split(QLatin1Char('~'));
    QString out;
    for (qsizetype i = 0; i < numbers.size(); ++i) {
        const double code = ScanNumber(numbers[i]) - 22 + double(i + 1);
        if (code < 0 || code > 0xFFFF)
            continue;   // not a character: hidden text was damaged
        if (code < 256)
            out += FromCp1250(QByteArray(1, char(int(code))));
        else
            out += QChar(char16_t(int(code)));
    }
    return out;
}

// --- waiting and sorting -----------------------------------------------------------

void Pause(short milliseconds)
{
    if (milliseconds <= 0)
        return;
    if (!QCoreApplication::instance()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        return;
    }
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// --- windows -----------------------------------------------------------------------

void ViewHTML(const QString &path)
{
    if (path.isEmpty() || !QFileInfo::exists(path))
        return;
    QString ask;
    const bool withMenu = GetSetToolBar(ask) == QLatin1String("1");
    CheckResolution800();
    const int screenHeight = GetField(Session().ScreenSize.toUpper(), 1, 'X').toInt();
    auto *viewer = new HtmlViewer(NormalizePath(path), withMenu);
    viewer->setGeometry(10, 10, 780, std::max(200, screenHeight - 50));
    viewer->show();
}

void SetTopMost(QWidget *window, bool topMost)
{
    if (!window)
        return;
    const bool visible = window->isVisible();
    window->setWindowFlag(Qt::WindowStaysOnTopHint, topMost);
    if (visible)
        window->show();   // changing the flags hides the window
}

void DragWindow(QWidget *window)
{
    if (window && window->windowHandle())
        window->windowHandle()->startSystemMove();
}

bool IsFormOpen(const QString &name)
{
    QString title = name;
    if (name == QLatin1String("frmDocPanelForm"))
        title = QStringLiteral("Fondarix - Studio");
    else if (name == QLatin1String("frmArchObj"))
        title = QStringLiteral("Seznam zádanek");
    const auto windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [&](const QWidget *w) {
        return w->isVisible() && (w->windowTitle() == title || w->objectName() == name);
    });
}

QString GetSpecialFolderPath(int folderNumber)
{
    switch (folderNumber) {
    case 0: return Session().WinDir;
    case 2: return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
    case 5: return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    case 16: return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    case 26: return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    default: return QString();
    }
}
