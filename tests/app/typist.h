#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "tests/app/testwindow.h"
#include "tests/app/told.h"

#include <QRandomGenerator>

#include <map>

class RecoveryJournals;

/// Types into the program's window for ever, into files of several codes and a document that was never saved,
/// and tells what becomes of their texts.
class Typist {
public:
    /// When the journals are written.
    enum class Writes {
        Unasked, ///< by the program's own clock, while keys come as from hands
        AtOnce, ///< when the typist lets them, while keys come as fast as they can
    };
    /// A document by its number, which is its place in the list.
    struct Document {
        QString name; ///< of its file; empty: never saved
        CharCode charCode;
        ReturnCode returnCode;
        QByteArray content;
        QString words; ///< that are pasted into it
    };
    static const QList<Document> &documents();

    /// The number of a document whose name is known, also when its text has come back without its file.
    static int numberOf(const QString &name);

    /// `window` is not shown yet.
    Typist(frmMain &window, Writes writes, quint32 seed, int pipe);
    /// Into the files in `folder`, which ends in "/".
    [[noreturn]] void type(const QString &folder);
    /// Into what was left behind, when it has been brought back.
    [[noreturn]] void restoreAndType();

private:
    void show();
    void open(const QString &folder);
    void restore();
    [[noreturn]] void typeOn();
    int current() const;
    void act();
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void save();
    void noteText(Told::Kind kind, const ctlEditer &editor);
    void letJournalsWrite();
    void rest();
    int below(int end) { return int(m_random.bounded(end)); }

    frmMain &m_window;
    RecoveryJournals &m_journals;
    const Writes m_writes;
    QRandomGenerator m_random;
    const int m_pipe;
    std::map<int, QString> m_texts; ///< as they were told, by document
};
