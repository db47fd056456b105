#pragma once

#include "platform/filerequest.h"

#include <QByteArray>
#include <QCoreApplication>

#include <functional>

/// What the words of a command line ask for. Needs no application, and shows nothing.
class CommandLine {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
public:
    enum class Action { Open, ShowHelp, ShowVersion, Refuse };
    /// Whether there is a file of that name, which may be relative.
    using Exists = std::function<bool(const QByteArray &name)>;

    /// The words behind the program's own name, in the bytes they came in. What comes first decides: a wrong
    /// word, or the wish for help or version.
    CommandLine(const QList<QByteArray> &words, Exists exists);

    Action action() const { return m_action; }
    /// In the order they were named.
    const FileRequests &requests() const { return m_requests; }
    /// Which of them is what can be read from standard input; nothing for none.
    std::optional<qsizetype> inputAt() const { return m_inputAt; }
    /// Whether the start is to last until all of these documents are closed.
    bool waits() const { return m_waits; }
    /// How many they are.
    qsizetype awaited() const;
    /// Words for the toolkit.
    const QList<QByteArray> &toolkitWords() const { return m_toolkitWords; }
    /// What is wrong, in a line of the installed language; empty if nothing is.
    QString error() const;

    /// What `--help` shows, in the installed language.
    static QString helpText();

private:
    void takeOption(const QByteArray &word);
    void takeOperand(const QByteArray &word);
    void takePlace(const QByteArray &word);
    void takeCharset(const QByteArray &name);
    bool takeToolkitOption(const QByteArray &word);
    void addInput();
    void addRecent();
    QByteArray nameIn(const QByteArray &word) const;
    void addFile(const QByteArray &name, std::optional<LineColumn> place);
    void finish();
    void decide(Action action);
    void refuse(const char *reason, const QByteArray &word = {});

    Exists m_exists;
    Action m_action = Action::Open;
    FileRequests m_requests;
    std::optional<qsizetype> m_inputAt;
    bool m_waits = false;
    std::optional<CharCode> m_charCode;
    QByteArray m_placeWord; ///< "+LINE" that no file has followed yet; empty for none
    std::optional<LineColumn> m_place; ///< of that
    QList<QByteArray> m_toolkitWords;
    bool m_isValueNext = false; ///< of the toolkit's option before
    const char *m_reason = nullptr; ///< untranslated
    QByteArray m_wrongWord;
};
