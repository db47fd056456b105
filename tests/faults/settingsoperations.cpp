#include "search/searchhistory.h"
#include "settings/config.h"
#include "settings/settings.h"
#include "tests/faults/operations.h"
#include "tests/files/savedfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

enum class Before { Nothing, File, Link };

/// Of one key file, whose content is the old or the new one.
class KeyFileWrite : public Operation {
public:
    KeyFileWrite(const Sandbox &sandbox, Before before, QByteArray name)
        : Operation(sandbox)
        , m_before(before)
        , m_name(std::move(name))
    {
    }

    void prepare() override
    {
        if (m_before == Before::Nothing)
            return;
        const bool isLink = m_before == Before::Link;
        ::mkdir((m_sandbox.root() + "config").constData(), 0700);
        writeFile(isLink ? m_sandbox.root() + "config/real.conf" : fileName(), m_old);
        if (isLink)
            ::symlink("real.conf", fileName().constData());
    }
    void noteResult() override { m_new = contentOf(fileName()); }
    QString lostOnDisk(const NextStart &, bool isDone) const override
    {
        const QByteArray now = contentOf(fileName());
        const QByteArray old = m_before == Before::Nothing ? QByteArray("(unreadable)") : m_old;
        return now == *m_new || (!isDone && now == old) ? QString()
                                                        : u"the file: "_s + QString::fromUtf8(now);
    }

protected:
    QByteArray fileName() const { return m_sandbox.root() + "config/" + m_name; }
    bool hasNewContent() const { return !m_new || contentOf(fileName()) == *m_new; }

private:
    const Before m_before;
    const QByteArray m_name;
    const QByteArray m_old = "# of another program\n[main]\nTabLen = 4\n\n[history]\nSearch0 = old\n";
    std::optional<QByteArray> m_new; ///< once it is known
};

class SettingsWrite : public KeyFileWrite {
public:
    SettingsWrite(const Sandbox &sandbox, Before before)
        : KeyFileWrite(sandbox, before, "marlopad.conf")
    {
    }

    /// Of a write of settings nobody is told whether it went well.
    bool run(const FileCalls &calls, const Begin &begin) override
    {
        readSettings();
        appSettings().TabLen = 7;
        recentFiles().entries[0] = { u"/folder/"_s, u"name.txt"_s, 1, 2, 3, 4 };
        begin();
        writeSettings(calls);
        return hasNewContent();
    }
};

class HistoryWrite : public KeyFileWrite {
public:
    HistoryWrite(const Sandbox &sandbox, Before before)
        : KeyFileWrite(sandbox, before, "marlopad_fr.conf")
    {
    }

    bool run(const FileCalls &calls, const Begin &begin) override
    {
        begin();
        Config config(u"marlopad_fr"_s, Config::User, Config::Change, calls);
        config.setGroup(u"history"_s);
        SearchHistory history;
        history.takeOver(config, u"Search"_s);
        history.add(u"new"_s);
        history.write(config, u"Search"_s);
        m_isWritten = config.write();
        return m_isWritten && hasNewContent();
    }

private:
    bool m_isWritten = false;
};

template <class Write> NamedOperation write(const char *name, Before before)
{
    return { name, [=](const Sandbox &sandbox) { return std::make_unique<Write>(sandbox, before); } };
}

} // namespace

std::vector<NamedOperation> settingsOperations()
{
    return {
        write<SettingsWrite>("first write of settings", Before::Nothing),
        write<SettingsWrite>("write of settings", Before::File),
        write<SettingsWrite>("write of settings through a link", Before::Link),
        write<HistoryWrite>("first write of a history", Before::Nothing),
        write<HistoryWrite>("write of a history", Before::File),
    };
}
