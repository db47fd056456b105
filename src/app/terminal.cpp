#include "app/terminal.h"

#include "app/commandline.h"
#include "app/translation.h"

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

} // namespace

int answerOnTerminal(const CommandLine &line, int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Language language = languageAmong(QLocale::system().uiLanguages()).value_or(English);
    const auto translation = Translation::isNeeded(language) ? Translation::load(language) : nullptr;
    if (translation)
        translation->install();
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
