#include "app/settings.h"

#include "platform/config.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int smallestFontSize = 10;

bool vgaFlag = false;

/// Calls `visit(key, field…)` for each key of group "main", in the file's order, with that field of each
/// record.
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

QString stored(const Config &config, const QString &key, const QString &preset)
{
    return config.readEntry(key, preset);
}

int stored(const Config &config, const QString &key, int preset)
{
    return config.readNumEntry(key, preset);
}

qint64 stored(const Config &config, const QString &key, qint64 preset)
{
    bool isNumber = false;
    const qint64 value = config.readEntry(key).toLongLong(&isNumber);
    return isNumber ? value : preset;
}

/// Reads each field, whose present value is the default.
class Reader {
public:
    explicit Reader(const Config &config)
        : m_config(config)
    {
    }
    template <typename Field> void operator()(const QString &key, Field &field) const
    {
        field = stored(m_config, key, field);
    }

private:
    const Config &m_config;
};

/// Writes each field that the file does not give already: an entry that was read as the default because it is
/// no number, or none that fits, stays as it is until the setting is changed.
class Writer {
public:
    explicit Writer(Config &config)
        : m_config(config)
    {
    }
    template <typename Field>
    void operator()(const QString &key, const Field &field, const Field &preset) const
    {
        if (!m_config.hasKey(key) || stored(m_config, key, preset) != field)
            m_config.writeEntry(key, textOf(field));
    }

private:
    static QString textOf(const QString &text) { return text; }
    static QString textOf(qint64 number) { return QString::number(number); }

    Config &m_config;
};

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

void readSettings()
{
    const AppSettings defaults;
    appSettings() = defaults;
    recentFiles() = {};

    Config config(u"marlopad"_s, Config::User);
    config.setGroup(u"main"_s);
    forEachMainSetting(Reader(config), appSettings());
    if (appSettings().FontSize < smallestFontSize)
        appSettings().FontSize = defaults.FontSize;
    config.setGroup(u"recent"_s);
    forEachRecentSetting(Reader(config), recentFiles());
}

void writeSettings()
{
    const AppSettings defaults;
    const RecentFiles noRecentFiles;
    Config config(u"marlopad"_s, Config::User);
    config.setGroup(u"main"_s);
    forEachMainSetting(Writer(config), std::as_const(appSettings()), defaults);
    config.setGroup(u"recent"_s);
    forEachRecentSetting(Writer(config), std::as_const(recentFiles()), noRecentFiles);
}

bool isVga()
{
    return vgaFlag;
}

void setVga(bool vga)
{
    vgaFlag = vga;
}
