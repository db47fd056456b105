#include "app/settings.h"

#include "platform/config.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int smallestFontSize = 10;

bool vgaFlag = false;

/// Calls `visit(key, field)` for each key of group "main", in the file's order.
template <typename Visitor> void forEachSetting(AppSettings &settings, const Visitor &visit)
{
    visit(u"Lang"_s, settings.Lang);
    visit(u"ShowKAI"_s, settings.ShowKAI);
    visit(u"ShowTAB"_s, settings.ShowTAB);
    visit(u"ShowZEN"_s, settings.ShowZEN);
    visit(u"ShowEOF"_s, settings.ShowEOF);
    visit(u"FontSize"_s, settings.FontSize);
    visit(u"FontName"_s, settings.FontName);
    visit(u"AutoIndent"_s, settings.AutoIndent);
    visit(u"WrapMode"_s, settings.WrapMode);
    visit(u"WrapLen"_s, settings.WrapLen);
    visit(u"TabLen"_s, settings.TabLen);
    visit(u"RestoreScroll"_s, settings.RestoreScroll);
    visit(u"RowNo"_s, settings.RowNo);
    visit(u"ActiveHLine"_s, settings.ActiveHLine);
    visit(u"DefCodec"_s, settings.DefCodec);
    visit(u"DefCRLF"_s, settings.DefCRLF);
    visit(u"BackColor"_s, settings.BackColor);
    visit(u"ForeColor"_s, settings.ForeColor);
    visit(u"RowNoColor"_s, settings.RowNoColor);
}

/// Calls `visit(key, field)` for each key of group "recent", in the file's order.
template <typename Visitor> void forEachSetting(RecentFiles &recent, const Visitor &visit)
{
    visit(u"RecentViewCnt"_s, recent.RecentViewCnt);
    for (int i = 0; i < recentEntryCount; ++i) {
        RecentEntry &entry = recent.entries[static_cast<size_t>(i)];
        const QString row = QString::number(i);
        visit(u"Path"_s + row, entry.path);
        visit(u"Name"_s + row, entry.name);
        visit(u"CurX"_s + row, entry.cursorRow);
        visit(u"CurY"_s + row, entry.cursorColumn);
        visit(u"ScrX"_s + row, entry.scrollX);
        visit(u"ScrY"_s + row, entry.scrollY);
    }
}

/// Reads each field, whose present value is the default.
class Reader {
public:
    explicit Reader(const Config &config)
        : m_config(config)
    {
    }
    void operator()(const QString &key, int &field) const { field = m_config.readNumEntry(key, field); }
    void operator()(const QString &key, QString &field) const { field = m_config.readEntry(key, field); }
    void operator()(const QString &key, qint64 &field) const
    {
        bool isNumber = false;
        const qint64 value = m_config.readEntry(key).toLongLong(&isNumber);
        if (isNumber)
            field = value;
    }

private:
    const Config &m_config;
};

class Writer {
public:
    explicit Writer(Config &config)
        : m_config(config)
    {
    }
    void operator()(const QString &key, int field) const { m_config.writeEntry(key, field); }
    void operator()(const QString &key, const QString &field) const { m_config.writeEntry(key, field); }
    void operator()(const QString &key, qint64 field) const
    {
        m_config.writeEntry(key, QString::number(field));
    }

private:
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
    forEachSetting(appSettings(), Reader(config));
    if (appSettings().FontSize < smallestFontSize)
        appSettings().FontSize = defaults.FontSize;
    config.setGroup(u"recent"_s);
    forEachSetting(recentFiles(), Reader(config));
}

void writeSettings()
{
    Config config(u"marlopad"_s, Config::User);
    config.setGroup(u"main"_s);
    forEachSetting(appSettings(), Writer(config));
    config.setGroup(u"recent"_s);
    forEachSetting(recentFiles(), Writer(config));
}

bool isVga()
{
    return vgaFlag;
}

void setVga(bool vga)
{
    vgaFlag = vga;
}
