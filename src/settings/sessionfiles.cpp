#include "settings/sessionfiles.h"

#include "settings/config.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto sessionFile = "marlopad_session"_L1;
constexpr auto sessionGroup = "session"_L1;

/// Calls `visit(key, field)` for each field of an entry.
template <typename Visitor, typename Entry> void forEachField(int index, Entry &entry, const Visitor &visit)
{
    const QString number = QString::number(index);
    visit(u"Path"_s + number, entry.place.path);
    visit(u"Name"_s + number, entry.place.name);
    visit(u"CurX"_s + number, entry.place.cursorRow);
    visit(u"CurY"_s + number, entry.place.cursorColumn);
    visit(u"ScrX"_s + number, entry.place.scrollX);
    visit(u"ScrY"_s + number, entry.place.scrollY);
    visit(u"Code"_s + number, entry.charCode);
    visit(u"Utf16"_s + number, entry.utf16);
    visit(u"KeepUtf16"_s + number, entry.keepsUtf16);
}

void assign(const QString &value, QString &field)
{
    field = value;
}

/// What is no number gives 0.
void assign(const QString &value, qint64 &field)
{
    field = value.toLongLong();
}

void assign(const QString &value, std::optional<CharCode> &field)
{
    const auto code = requestedCharCode(value.toInt());
    field = code && !infoOf(*code).label.isEmpty() ? code : std::nullopt;
}

void assign(const QString &value, SessionFile::Utf16 &field)
{
    using Utf16 = SessionFile::Utf16;
    field = value == u"LE" ? Utf16::LittleEndian : value == u"BE" ? Utf16::BigEndian : Utf16::No;
}

void assign(const QString &value, bool &field)
{
    field = value == u"1";
}

QString writtenAs(const QString &field)
{
    return field;
}

QString writtenAs(qint64 field)
{
    return QString::number(field);
}

QString writtenAs(const std::optional<CharCode> &field)
{
    return field ? QString::number(int(*field)) : QString();
}

QString writtenAs(SessionFile::Utf16 field)
{
    using Utf16 = SessionFile::Utf16;
    return field == Utf16::LittleEndian ? u"LE"_s : field == Utf16::BigEndian ? u"BE"_s : QString();
}

QString writtenAs(bool field)
{
    return field ? u"1"_s : QString();
}

bool namesFile(const RecentEntry &entry)
{
    return entry.isUsed() && entry.path.startsWith(u'/') && entry.path.endsWith(u'/');
}

int countIn(const Config &config)
{
    return qBound(0, config.readNumEntry(u"Count"_s), SessionFiles::most);
}

} // namespace

SessionFiles readSessionFiles()
{
    Config config(sessionFile, Config::User);
    config.setGroup(sessionGroup);
    const int count = countIn(config);
    const int current = config.readNumEntry(u"Current"_s, -1);
    QStringList keys;
    SessionFile any;
    for (int i = 0; i < count; ++i)
        forEachField(i, any, [&](const QString &key, const auto &) { keys << key; });
    const QHash<QString, QString> values = config.readEntries(keys);
    SessionFiles session;
    for (int i = 0; i < count; ++i) {
        SessionFile entry;
        forEachField(i, entry, [&](const QString &key, auto &field) { assign(values.value(key), field); });
        if (i == current)
            session.current = int(session.files.size());
        if (namesFile(entry.place))
            session.files << entry;
    }
    return session;
}

void writeSessionFiles(const SessionFiles &session)
{
    const int count = int(qMin<qsizetype>(session.files.size(), SessionFiles::most));
    QList<KeyFile::Entry> entries{ { u"Count"_s, QString::number(count) },
        { u"Current"_s, QString::number(session.current) } };
    for (int i = 0; i < count; ++i)
        forEachField(i, session.files[i], [&](const QString &key, const auto &field) {
            entries.append({ key, writtenAs(field) });
        });
    Config config(sessionFile, Config::User, Config::Change);
    config.setGroup(sessionGroup);
    const SessionFile none;
    for (int i = count; i < countIn(config); ++i) // names of files that were closed are nobody's business
        forEachField(i, none, [&](const QString &key, const auto &field) {
            entries.append({ key, writtenAs(field) });
        });
    config.writeEntries(entries);
}
