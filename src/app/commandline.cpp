#include "app/commandline.h"

#include "files/fileaddress.h"
#include "files/filename.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The toolkit's, which come with one dash or two.
struct ToolkitOption {
    QByteArrayView name;
    bool hasValue; ///< as the next word, or behind "="
};
constexpr ToolkitOption toolkitOptions[] = {
    { "display", true },
    { "geometry", true },
    { "icon", true },
    { "name", true },
    { "platform", true },
    { "platformpluginpath", true },
    { "platformtheme", true },
    { "plugin", true },
    { "qwindowgeometry", true },
    { "qwindowicon", true },
    { "qwindowtitle", true },
    { "reverse", false },
    { "session", true },
    { "style", true },
    { "stylesheet", true },
    { "title", true },
    { "widgetcount", false },
};

struct Charset {
    QByteArrayView name; ///< in small letters, without "-" and "_"
    CharCode code;
};
constexpr Charset charsets[] = {
    { "utf8", CharCode::Utf8 },
    { "shiftjis", CharCode::ShiftJis },
    { "sjis", CharCode::ShiftJis },
    { "eucjp", CharCode::Euc },
    { "euc", CharCode::Euc },
    { "iso2022jp", CharCode::Jis },
    { "jis", CharCode::Jis },
};

std::optional<CharCode> charsetNamed(const QByteArray &name)
{
    const QByteArray plain = name.toLower().replace("-", "").replace("_", "");
    const auto *const found = std::ranges::find(charsets, QByteArrayView(plain), &Charset::name);
    return found == std::end(charsets) ? std::nullopt : std::optional(found->code);
}

/// A number from 1 on in digits alone.
std::optional<qint64> numberIn(QByteArrayView text)
{
    const bool isDigits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    bool isNumber = false;
    const qint64 number = isDigits ? text.toLongLong(&isNumber) : 0;
    return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

/// "LINE" or "LINE:COLUMN".
std::optional<LineColumn> placeIn(QByteArrayView text)
{
    const qsizetype colon = text.indexOf(':');
    const auto line = numberIn(colon < 0 ? text : text.first(colon));
    const auto column = colon < 0 ? std::optional<qint64>(1) : numberIn(text.sliced(colon + 1));
    return line && column ? std::optional(LineColumn{ *line, *column }) : std::nullopt;
}

struct NameAndPlace {
    QByteArray name;
    std::optional<LineColumn> place;
};

/// "FILE:LINE" and "FILE:LINE:COLUMN", with a colon behind them where a compiler has printed them; of the
/// names that it may mean the longest that exists, or else the shortest.
NameAndPlace nameAndPlace(const QByteArray &word, const CommandLine::Exists &exists)
{
    NameAndPlace found{ word, {} };
    if (exists(word))
        return found;
    const QByteArrayView text = QByteArrayView(word).chopped(word.endsWith(':') ? 1 : 0);
    const qsizetype last = text.lastIndexOf(':');
    const qsizetype before = last > 0 ? text.lastIndexOf(':', last - 1) : -1;
    for (const qsizetype colon : { last, before }) {
        const auto place = colon > 0 ? placeIn(text.sliced(colon + 1)) : std::nullopt;
        if (!place)
            continue;
        found = { word.first(colon), place };
        if (exists(found.name))
            break;
    }
    return found;
}

} // namespace

CommandLine::CommandLine(const QList<QByteArray> &words, Exists exists)
    : m_exists(std::move(exists))
{
    bool areNames = false;
    for (const QByteArray &word : words) {
        if (m_action != Action::Open)
            return;
        if (areNames)
            addFile(nameIn(word), std::exchange(m_place, {}));
        else if (std::exchange(m_isValueNext, false))
            m_toolkitWords << word;
        else if (word == "--")
            areNames = true;
        else if (word.startsWith('-') && word != "-")
            takeOption(word);
        else
            takeOperand(word);
    }
    finish();
}

/// What only the end of the line tells.
void CommandLine::finish()
{
    if (m_action != Action::Open)
        return;
    if (m_place)
        refuse(QT_TR_NOOP("'%1' needs a file behind it"), m_placeWord);
    else if (m_waits && awaited() == 0)
        refuse(QT_TR_NOOP("'%1' needs a file"), "--wait");
    for (FileRequest &request : m_requests)
        request.charCode = m_charCode;
}

/// What the user will choose of the recent files is nothing to wait for.
qsizetype CommandLine::awaited() const
{
    return std::ranges::count(m_requests, false, &FileRequest::isRecent);
}

void CommandLine::takeOption(const QByteArray &word)
{
    constexpr QByteArrayView charset("--charset=");
    if (word == "--help")
        decide(Action::ShowHelp);
    else if (word == "--version")
        decide(Action::ShowVersion);
    else if (word == "--new-document")
        m_requests << FileRequest{ {}, FileRequest::From::Shell };
    else if (word == "--recent-files")
        addRecent();
    else if (word == "--wait")
        m_waits = true;
    else if (word.startsWith(charset))
        takeCharset(word.sliced(charset.size()));
    else if (word == charset.chopped(1))
        refuse(QT_TR_NOOP("'%1' needs a name, as in '--charset=UTF-8'"), word);
    else if (!takeToolkitOption(word))
        refuse(QT_TR_NOOP("there is no option '%1'"), word);
}

bool CommandLine::takeToolkitOption(const QByteArray &word)
{
    const QByteArray plain = word.sliced(word.startsWith("--") ? 2 : 1);
    const qsizetype equals = plain.indexOf('=');
    const QByteArrayView name = QByteArrayView(plain).first(equals < 0 ? plain.size() : equals);
    const auto *const option = std::ranges::find(toolkitOptions, name, &ToolkitOption::name);
    if (option == std::end(toolkitOptions))
        return false;
    m_toolkitWords << word;
    m_isValueNext = option->hasValue && equals < 0;
    return true;
}

void CommandLine::takeCharset(const QByteArray &name)
{
    m_charCode = charsetNamed(name);
    if (!m_charCode)
        refuse(QT_TR_NOOP("there is no character code '%1'"), name);
}

void CommandLine::takeOperand(const QByteArray &word)
{
    if (word == "-")
        addInput();
    else if (word.startsWith('+') && word.size() > 1 && word[1] >= '0' && word[1] <= '9')
        takePlace(word);
    else if (m_place)
        addFile(nameIn(word), std::exchange(m_place, {}));
    else {
        const auto [name, place] = nameAndPlace(nameIn(word), m_exists);
        addFile(name, place);
    }
}

/// Terminals, where files were dropped or copied, have addresses of them.
QByteArray CommandLine::nameIn(const QByteArray &word) const
{
    const auto addressed = FileAddress::fileName(word);
    return addressed && !m_exists(word) ? FileName::toBytes(*addressed) : word;
}

void CommandLine::takePlace(const QByteArray &word)
{
    m_placeWord = word;
    m_place = placeIn(QByteArrayView(word).sliced(1));
    if (!m_place)
        refuse(QT_TR_NOOP("there is no line '%1'"), word.sliced(1));
}

void CommandLine::addInput()
{
    if (m_inputAt)
        refuse(QT_TR_NOOP("'%1' can be named only once"), "-");
    m_inputAt = m_requests.size();
    m_requests << FileRequest{ {}, FileRequest::From::Shell, std::exchange(m_place, {}) };
}

void CommandLine::addRecent()
{
    FileRequest request{ {}, FileRequest::From::Shell };
    request.isRecent = true;
    m_requests << request;
}

void CommandLine::addFile(const QByteArray &name, std::optional<LineColumn> place)
{
    if (name.isEmpty())
        refuse(QT_TR_NOOP("a file has a name"));
    m_requests << FileRequest{ FileName::absolute(name), FileRequest::From::Shell, place };
}

void CommandLine::decide(Action action)
{
    m_action = action;
}

void CommandLine::refuse(const char *reason, const QByteArray &word)
{
    m_reason = reason;
    m_wrongWord = word;
    decide(Action::Refuse);
}

QString CommandLine::error() const
{
    if (!m_reason)
        return {};
    const QString reason = tr(m_reason);
    return reason.contains(u"%1") ? reason.arg(FileName::forDisplay(FileName::fromBytes(m_wrongWord)))
                                  : reason;
}

QString CommandLine::helpText()
{
    const auto line = [](const char *words, const QString &meaning) {
        return u"  %1%2\n"_s.arg(QLatin1StringView(words), -22).arg(meaning);
    };
    return tr("Usage: marlopad [OPTION]... [FILE]...") + u"\n\n"_s
        + line("FILE", tr("open the file, or begin a new one of that name"))
        + line("+LINE[:COLUMN] FILE", tr("open it with the cursor there"))
        + line("FILE:LINE[:COLUMN]", tr("the same, unless there is a file named so"))
        + line("-", tr("a new document with what standard input brings"))
        + line("--", tr("all that follow are names of files")) + u'\n'
        + line("--charset=NAME", tr("read them as UTF-8, Shift_JIS, EUC-JP or ISO-2022-JP"))
        + line("--new-document", tr("begin a new document"))
        + line("--recent-files", tr("show the files that were closed last"))
        + line("--wait", tr("return when the documents have been closed"))
        + line("--help", tr("show this text")) + line("--version", tr("show the version")) + u'\n'
        + tr("A window that is there already takes the files.") + u'\n';
}
