#include "app/commandline.h"
#include "app/frmmain.h"
#include "app/largestdialog.h"
#include "app/qpeapplicationesc.h"
#include "app/standardinput.h"
#include "app/terminal.h"
#include "files/filename.h"
#include "platform/desktopchannel.h"
#include "platform/toolkitplatform.h"
#include "platform/toolkitstart.h"
#include "platform/waitingstart.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

#include <unistd.h>

namespace {

bool isThere(const QByteArray &name)
{
    return FileName::exists(FileName::fromBytes(name));
}

/// Standard input and other files that are open in this process alone, which may not be the one that has the
/// window.
bool reads(const CommandLine &line, FileRequests &requests)
{
    for (qsizetype i = 0; i < requests.size(); ++i) {
        const auto number =
            line.inputAt() == i ? std::optional(STDIN_FILENO) : ownFileNamed(requests[i].fileName);
        if (!number)
            continue;
        requests[i].fileName.clear();
        requests[i].input = inputFrom(*number);
        if (!requests[i].input)
            return false;
    }
    return true;
}

bool waits(const CommandLine &line, FileRequests &requests)
{
    const SharedFd waiting = line.waits() ? WaitingStart::begin(line.awaited()) : SharedFd();
    for (FileRequest &request : requests)
        request.waiting = waiting;
    return waiting || !line.waits();
}

/// A limit to the size of files, and an end of standard error that nobody reads, let writes fail and do not
/// end the program. By a handler: what is started from here does not inherit one.
void outliveFailedWrites()
{
    struct sigaction action = {};
    action.sa_handler = [](int /*number*/) {};
    action.sa_flags = SA_RESTART;
    for (const int number : { SIGXFSZ, SIGPIPE })
        ::sigaction(number, &action, nullptr);
}

int runWindow(int count, char **arguments, const FileRequests &requests, std::optional<DisplayProbe> probe)
{
    outliveFailedWrites();
    prepareScale(largestDialog());
    prepareEventLoop();
    QPEApplicationEsc application(count, arguments);
    probe.reset();
    QApplication::setApplicationName(QStringLiteral("marlopad"));
    QApplication::setDesktopFileName(DesktopChannel::id());
    if (application.handOver(requests))
        return EXIT_SUCCESS;
    startPaintingThreads();
    frmMain window;
    application.showMainWidget(&window, false);
    return QApplication::exec();
}

int runToolkit(QList<QByteArray> words, const FileRequests &requests)
{
    takePlatformWords(words);
    std::vector<char *> arguments;
    for (QByteArray &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const int count = int(words.size());
    auto probe = std::make_optional<DisplayProbe>();
    return probe->isThere() ? runWindow(count, arguments.data(), requests, std::move(probe))
                            : openWithoutDisplay(count, arguments.data(), requests);
}

} // namespace

int main(int argc, char *argv[])
{
    occupyStandardFiles();
    QCoreApplication::setApplicationVersion(QStringLiteral(MARLOPAD_VERSION));
    const CommandLine line(QList<QByteArray>(argv + qMin(argc, 1), argv + argc), isThere);
    if (line.action() != CommandLine::Action::Open)
        return answerOnTerminal(line, argc, argv);
    FileRequests requests = line.requests();
    if (!reads(line, requests) || !waits(line, requests)) {
        std::perror("marlopad");
        return EXIT_FAILURE;
    }
    return runToolkit(QList<QByteArray>{ argv[0] } + line.toolkitWords(), requests);
}
