#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

/// A program in another process: qpeapplication_test in one of its roles, which prints what it is asked to
/// do.
class Role : public QProcess {
public:
    explicit Role(const QStringList &arguments, const QString &folder = QDir::currentPath())
    {
        setProgram(QCoreApplication::applicationFilePath());
        setArguments(QStringList{ QStringLiteral("qpeapplication_test") } + arguments);
        setWorkingDirectory(folder);
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~Role() override
    {
        kill();
        waitForFinished();
    }
    Role(const Role &) = delete;
    Role &operator=(const Role &) = delete;

    bool prints(const QByteArray &line)
    {
        while (!m_output.contains('\n' + line + '\n') && state() != NotRunning && waitForReadyRead(20000))
            m_output += readAllStandardOutput();
        m_output += readAllStandardOutput();
        return m_output.contains('\n' + line + '\n');
    }
    bool startsAndPrints(const QByteArray &line)
    {
        start();
        return prints(line);
    }
    bool tells(const QByteArray &line) { return write(line) == line.size() && waitForBytesWritten(); }
    QByteArray output()
    {
        if (state() == NotRunning)
            start();
        waitForFinished();
        return readAllStandardOutput().trimmed();
    }
    int run()
    {
        start();
        return waitForFinished(20000) ? exitCode() : -1;
    }
    void setVariable(const QString &name, const QString &value)
    {
        QProcessEnvironment variables = processEnvironment();
        if (variables.isEmpty())
            variables = QProcessEnvironment::systemEnvironment();
        variables.insert(name, value);
        setProcessEnvironment(variables);
    }

private:
    QByteArray m_output = "\n";
};
