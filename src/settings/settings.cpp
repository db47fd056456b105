#include "settings/settings.h"

#include "settings/config.h"
#include "settings/moresettings.h"
#include "settings/recency.h"

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto fileName = "marlopad"_L1;
constexpr auto mainGroup = "main"_L1;
constexpr auto recentGroup = "recent"_L1;
constexpr auto moreGroup = "more"_L1;

/// Calls `visit(key, field…)` for each key of group "main", in the file's order, with that field of each
/// record, be there any.
template <typename Visitor, typename... Records>
void forEachMainSetting(const Visitor &visit, Records &...settings)
{
    visit(u"Lang"_s, settings.Lang...);
    visit(u"ShowKAI"_s, settings.ShowKAI...);
    visit(u"ShowTAB"_s, settings.ShowTAB...);
    visit(u"ShowZEN"_s, settings.ShowZEN...);
    visit(u"ShowEOF"_s, settings.ShowEOF...);
    visit(u"FontSize"_s, settings.FontSize...);
    visit(u"FontName"_s, settings.FontName...);
    visit(u"AutoIndent"_s, settings.AutoIndent...);
    visit(u"WrapMode"_s, settings.WrapMode...);
    visit(u"WrapLen"_s, settings.WrapLen...);
    visit(u"TabLen"_s, settings.TabLen...);
    visit(u"RestoreScroll"_s, settings.RestoreScroll...);
    visit(u"RowNo"_s, settings.RowNo...);
    visit(u"ActiveHLine"_s, settings.ActiveHLine...);
    visit(u"DefCodec"_s, settings.DefCodec...);
    visit(u"DefCRLF"_s, settings.DefCRLF...);
    visit(u"BackColor"_s, settings.BackColor...);
    visit(u"ForeColor"_s, settings.ForeColor...);
    visit(u"RowNoColor"_s, settings.RowNoColor...);
    visit(u"LangOffered"_s, settings.LangOffered...);
    visit(u"CodecOffered"_s, settings.CodecOffered...);
}

/// Calls `visit(key, field…)` for each key of group "recent", in the file's order.
template <typename Visitor, typename... Records>
void forEachRecentSetting(const Visitor &visit, Records &...recent)
{
    visit(u"RecentViewCnt"_s, recent.RecentViewCnt...);
    for (std::size_t i = 0; i < recentEntryCount; ++i) {
        const QString row = QString::number(i);
        visit(u"Path"_s + row, recent.entries[i].path...);
        visit(u"Name"_s + row, recent.entries[i].name...);
        visit(u"CurX"_s + row, recent.entries[i].cursorRow...);
        visit(u"CurY"_s + row, recent.entries[i].cursorColumn...);
        visit(u"ScrX"_s + row, recent.entries[i].scrollX...);
        visit(u"ScrY"_s + row, recent.entries[i].scrollY...);
    }
}

/// Calls `visit(key, field…)` for each key of group "more", in the file's order.
template <typename Visitor, typename... Records>
void forEachMoreSetting(const Visitor &visit, Records &...more)
{
    for (const MoreSwitch &each : moreSwitches())
        visit(QString::fromLatin1(each.key), more.*each.setting...);
    visit(u"WindowWidth"_s, more.WindowWidth...);
    visit(u"WindowHeight"_s, more.WindowHeight...);
}

/// What a group of the file holds: the values of its keys, as text.
using Values = QHash<QString, QString>;

QString stored(const Values &values, const QString &key, const QString &preset)
{
    return values.value(key, preset);
}

template <typename Number> Number stored(const Values &values, const QString &key, Number preset)
{
    bool isNumber = false;
    const qint64 value = values.value(key).toLongLong(&isNumber);
    return isNumber && std::in_range<Number>(value) ? Number(value) : preset;
}

QString textOf(const QString &text)
{
    return text;
}

QString textOf(qint64 number)
{
    return QString::number(number);
}

/// Reads each field, whose present value is the default.
auto reader(const Values &values)
{
    return [&values](const QString &key, auto &field) { field = stored(values, key, field); };
}

/// Collects the entries that the file does not give already: one that was read as the default because it is
/// no number, or none that fits, stays as it is until the setting is changed.
auto writer(const Values &values, QList<KeyFile::Entry> &entries)
{
    return [&](const QString &key, const auto &field, const auto &preset) {
        if (!values.contains(key) || stored(values, key, preset) != field)
            entries.append({ key, textOf(field) });
    };
}

/// The settings as they stand, or stood, in the file.
struct Records {
    AppSettings main;
    RecentFiles recent;
    MoreSettings more;
};

/// As this process has last read or written them.
Records &known()
{
    static Records records;
    return records;
}

/// The groups of the file.
struct Groups {
    Values main;
    Values recent;
    Values more;
};

Groups valuesOf(Config &config)
{
    QStringList mainKeys, recentKeys, moreKeys;
    forEachMainSetting([&](const QString &key) { mainKeys << key; });
    forEachRecentSetting([&](const QString &key) { recentKeys << key; });
    forEachMoreSetting([&](const QString &key) { moreKeys << key; });
    Groups groups;
    config.setGroup(mainGroup);
    groups.main = config.readEntries(mainKeys);
    config.setGroup(recentGroup);
    groups.recent = config.readEntries(recentKeys);
    config.setGroup(moreGroup);
    groups.more = config.readEntries(moreKeys);
    return groups;
}

/// The records of the file; what it does not have, or not as a number, is as in `preset`.
Records recordsOf(const Groups &groups, const Records &preset)
{
    Records records = preset;
    forEachMainSetting(reader(groups.main), records.main);
    const int fontSize = records.main.FontSize;
    if (fontSize < AppSettings::smallestFontSize && fontSize != preset.main.FontSize)
        records.main.FontSize = AppSettings().FontSize;
    forEachRecentSetting(reader(groups.recent), records.recent);
    forEachMoreSetting(reader(groups.more), records.more);
    return records;
}

QList<RecentEntry> usedEntries(const RecentFiles &recent)
{
    QList<RecentEntry> used;
    std::copy_if(recent.entries.begin(), recent.entries.end(), std::back_inserter(used),
        [](const RecentEntry &entry) { return entry.isUsed(); });
    return used;
}

bool isSameFile(const RecentEntry &a, const RecentEntry &b)
{
    return a.path == b.path && a.name == b.name;
}

/// True when there was something to take over.
bool takeOverRecent(const RecentFiles &theirs)
{
    RecentFiles &mine = recentFiles();
    if (theirs.entries == known().recent.entries)
        return false;
    const QList<RecentEntry> merged = mergedRecency(
        usedEntries(known().recent), usedEntries(mine), usedEntries(theirs), recentEntryCount, isSameFile);
    mine.entries = {};
    std::copy(merged.begin(), merged.end(), mine.entries.begin());
    return true;
}

/// Brings into the records what the file has now and this process has not changed.
bool takeOver(const Records &theirs)
{
    bool isTakenOver = takeOverRecent(theirs.recent);
    const auto take = [&](const QString &, auto &mine, const auto &last, const auto &now) {
        if (mine != last || mine == now)
            return;
        mine = now;
        isTakenOver = true;
    };
    forEachMainSetting(take, appSettings(), std::as_const(known().main), theirs.main);
    take({}, recentFiles().RecentViewCnt, known().recent.RecentViewCnt, theirs.recent.RecentViewCnt);
    forEachMoreSetting(take, moreSettings(), std::as_const(known().more), theirs.more);
    known() = theirs;
    return isTakenOver;
}

} // namespace

AppSettings &appSettings()
{
    static AppSettings settings;
    return settings;
}

RecentFiles &recentFiles()
{
    static RecentFiles recent;
    return recent;
}

/// Whoever has a file from before there were offers knows the program.
Records presetOf(const Groups &groups)
{
    Records preset;
    const int isKnown = groups.main.contains(u"Lang"_s);
    preset.main.LangOffered = isKnown;
    preset.main.CodecOffered = isKnown;
    return preset;
}

void readSettings()
{
    Config config(fileName, Config::User);
    const Groups groups = valuesOf(config);
    known() = recordsOf(groups, presetOf(groups));
    appSettings() = known().main;
    recentFiles() = known().recent;
    moreSettings() = known().more;
}

bool writeSettings()
{
    return writeSettings(FileCalls::system());
}

bool writeSettings(const FileCalls &calls)
{
    Config config(fileName, Config::User, Config::Change, calls);
    const Groups values = valuesOf(config);
    const bool isTakenOver = takeOver(recordsOf(values, known()));
    const Records defaults;
    QList<KeyFile::Entry> main, recent, more;
    forEachMainSetting(writer(values.main, main), std::as_const(appSettings()), defaults.main);
    forEachRecentSetting(writer(values.recent, recent), std::as_const(recentFiles()), defaults.recent);
    forEachMoreSetting(writer(values.more, more), std::as_const(moreSettings()), defaults.more);
    config.setGroup(mainGroup);
    config.writeEntries(main);
    config.setGroup(recentGroup);
    config.writeEntries(recent);
    config.setGroup(moreGroup);
    config.writeEntries(more);
    if (config.write())
        known() = { appSettings(), recentFiles(), moreSettings() };
    return isTakenOver;
}
