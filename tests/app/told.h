#pragma once

#include <QString>

#include <optional>

/// What a program that is going to be killed tells of itself, while it can.
struct Told {
    enum class Kind : quint8 {
        Opened, ///< a document has this text
        Changed, ///< a document has another text
        Saved, ///< the text that a document has is in its file
        Writing, ///< the journals begin to write what there is
        Restoring, ///< a step of bringing back what was left behind
        Written, ///< all that was told before is in the journals
    };

    /// That a document has a text; `document` is the number by which both sides know it.
    static Told ofText(Kind kind, int document, const QString &text);
    /// Something about a document, or none.
    static Told of(Kind kind, int document = -1);

    Kind kind = Kind::Opened;
    int document = -1;
    qint64 time = 0; ///< in ms of the clock of both processes
    QString text;

    /// Now, on the clock of both processes.
    static qint64 now();
};

/// Tells it to whoever reads the other end of a pipe. It arrives whole even if the program is killed next.
void tell(int pipe, const Told &told);

/// Hears what comes out of a pipe.
class Listener {
public:
    explicit Listener(int pipe)
        : m_pipe(pipe)
    {
    }

    /// Waits for the next; nothing when nobody is there any more to tell.
    std::optional<Told> next();

private:
    bool has(qsizetype bytes);

    const int m_pipe;
    QByteArray m_heard;
};
