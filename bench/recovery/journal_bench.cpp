// What recovery costs the one who types: keys in documents of any length, with the writes that they bring.

#include "recovery/recoveryjournals.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr int keysOfAWrite = 10; // in a second and a half a quick hand types as many

QCoreApplication &application()
{
    static int argc = 1;
    static char name[] = "journal_bench";
    static char *argv[] = { name, nullptr };
    static QCoreApplication only(argc, argv);
    return only;
}

/// A document of so many units, from a file.
class Typed {
public:
    explicit Typed(qint64 length)
    {
        QFile file(m_folder.filePath(QStringLiteral("file")));
        const QByteArray line = QByteArray(99, 'a') + '\n';
        if (file.open(QIODevice::WriteOnly))
            file.write(line.repeated(length / 100));
        file.close();
        document.load(m_folder.path() + u'/', QStringLiteral("file"), {}, {});
    }
    QByteArray journals() const { return QFile::encodeName(m_folder.path()) + "/journals/"; }
    TextDocument document;

private:
    QTemporaryDir m_folder;
};

void type(TextDocument &document, Offset &at)
{
    document.replace(at, 0, u"x", TextDocument::Joining::Typing);
    ++at;
}

void keysWithoutJournal(benchmark::State &state)
{
    Typed typed(state.range(0));
    Offset at(state.range(0) / 2);
    for (auto _ : state)
        type(typed.document, at);
}
BENCHMARK(keysWithoutJournal)->Range(1000, 100000000);

/// A write after every ten keys; what it takes of the window's thread is counted, the disk's time is not.
void keysWithJournal(benchmark::State &state)
{
    application();
    Typed typed(state.range(0));
    qint64 now = 0;
    RecoveryJournals journals(typed.journals(), FileCalls::system(), [&now] { return now; });
    journals.attach(typed.document);
    Offset at(state.range(0) / 2);
    int keys = 0;
    for (auto _ : state) {
        type(typed.document, at);
        if (++keys % keysOfAWrite != 0)
            continue;
        now += WriteSchedule::longestWait;
        journals.writeDue();
        if (keys % (100 * keysOfAWrite) != 0)
            continue;
        state.PauseTiming();
        journals.flush(std::chrono::minutes(1));
        state.ResumeTiming();
    }
    journals.end(typed.document);
}
BENCHMARK(keysWithJournal)->Range(1000, 100000000);

void pasteOfManyMegabytes(benchmark::State &state)
{
    application();
    Typed typed(1000);
    RecoveryJournals journals(typed.journals());
    journals.attach(typed.document);
    const TextPiece piece(QString(state.range(0), u'a'));
    for (auto _ : state)
        typed.document.replace({}, 0, piece);
    journals.end(typed.document);
}
BENCHMARK(pasteOfManyMegabytes)->Range(1000000, 100000000)->Iterations(5);

} // namespace
