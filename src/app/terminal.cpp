#include "app/terminal.h"

#include "app/commandline.h"
#include "app/translation.h"
#include "platform/launcherchannel.h"
#include "platform/toolkitplatform.h"

#include <QCoreApplication>
#include <QLocale>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int wrongUse = 2;

/// False where it could not be written.
bool write(const QString &text, std::FILE *to)
{
    return std::fputs(text.toUtf8().constData(), to) >= 0 && std::fflush(to) == 0;
}

/// The application object of a start that shows no window, in the language of its terminal.
class TerminalApplication {
public:
    TerminalApplication(int &argc, char **argv)
        : m_application(argc, argv)
    {
        const Language language = languageAmong(QLocale::system().uiLanguages()).value_or(English);
        if (Translation::isNeeded(language))
            m_translation = Translation::load(language);
        if (m_translation)
            m_translation->install();
    }

private:
    QCoreApplication m_application;
    std::unique_ptr<Translation> m_translation;
};

QString textOfNoAnswer(uint process)
{
    return CommandLine::tr("marlopad: the window that is open does not answer, and none can be shown here "
                           "(try again, or end process %1)")
        .arg(process);
}

QString textOfNoDisplay()
{
    if (!isWantedPlatformInstalled())
        return CommandLine::tr("marlopad: the platform '%1' is not installed (see QT_QPA_PLATFORM)")
            .arg(QString::fromLocal8Bit(wantedPlatforms().join(';')));
    return CommandLine::tr(
        "marlopad: there is no display to show a window on (see DISPLAY and WAYLAND_DISPLAY)");
}

} // namespace

int answerOnTerminal(const CommandLine &line, int argc, char **argv)
{
    const TerminalApplication application(argc, argv);
    switch (line.action()) {
    case CommandLine::Action::ShowHelp:
        return write(CommandLine::helpText(), stdout) ? EXIT_SUCCESS : EXIT_FAILURE;
    case CommandLine::Action::ShowVersion:
        return write(QStringLiteral("Marlo!Pad QT %1\n").arg(QCoreApplication::applicationVersion()), stdout)
            ? EXIT_SUCCESS
            : EXIT_FAILURE;
    case CommandLine::Action::Refuse:
    case CommandLine::Action::Open:
        break;
    }
    write(CommandLine::tr("marlopad: %1 (see marlopad --help)").arg(line.error()) + u'\n', stderr);
    return wrongUse;
}

int openWithoutDisplay(int argc, char **argv, const FileRequests &requests)
{
    const TerminalApplication application(argc, argv);
    using HandOver = LauncherChannel::HandOver;
    HandOver result = HandOver::Ended;
    while (result == HandOver::Ended)
        result = LauncherChannel::handOver(requests);
    if (result == HandOver::Done)
        return EXIT_SUCCESS;
    const uint silent = result == HandOver::NoAnswer ? LauncherChannel::instance() : 0;
    write((silent ? textOfNoAnswer(silent) : textOfNoDisplay()) + u'\n', stderr);
    return EXIT_FAILURE;
}
