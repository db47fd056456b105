#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// The program at its first start on a desktop of another language.
class FirstStartTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(reset());
        QFile::remove(settingsFile());
    }
    void cleanup() { QCOMPARE(end(), QByteArray()); }
    void speaksAndWritesAsTheDesktop();
    void localeNeedNotBeInstalled();
    void whoSaysNothingIsAskedNoMore();
    void whoHasSettingsIsNotAsked();

private:
    void speak(const QString &language)
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(u"LANGUAGE"_s, language);
        program().setProcessEnvironment(variables);
    }
    bool quit()
    {
        press({ u"ctrl+q"_s });
        return waitUntil([this] { return hasEnded(); });
    }
    /// The value of a key in the settings.
    static QString setting(const QString &key)
    {
        QFile file(settingsFile());
        const QString lines = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        for (const QString &line : lines.split(u'\n')) {
            if (line.section(u'=', 0, 0).trimmed() == key)
                return line.section(u'=', 1).trimmed();
        }
        return {};
    }
};

void FirstStartTest::speaksAndWritesAsTheDesktop()
{
    speak(u"fr"_s);
    QVERIFY(start());
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    press({ u"F6"_s, u"Right"_s, u"Return"_s });
    QVERIFY(takesKeys());
    press({ u"F6"_s, u"Return"_s });
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [UTF8][LF]"_s);
    QVERIFY(quit());
    QCOMPARE(setting(u"Lang"_s), u"2"_s);
    QCOMPARE(setting(u"DefCodec"_s), u"2"_s);
    QCOMPARE(setting(u"DefCRLF"_s), u"3"_s);
}

/// Its name says what the desktop speaks and writes.
void FirstStartTest::localeNeedNotBeInstalled()
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : { u"LANGUAGE"_s, u"LC_ALL"_s, u"LC_CTYPE"_s, u"LC_MESSAGES"_s })
        variables.remove(variable);
    variables.insert(u"LANG"_s, u"fr_BE.UTF-8"_s);
    program().setProcessEnvironment(variables);
    QVERIFY(start());
    press({ u"F6"_s, u"Right"_s, u"Return"_s });
    QVERIFY(takesKeys());
    press({ u"F6"_s, u"Return"_s });
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [UTF8][LF]"_s);
    QVERIFY(quit());
    QCOMPARE(setting(u"Lang"_s), u"2"_s);
}

void FirstStartTest::whoSaysNothingIsAskedNoMore()
{
    speak(u"en_GB:fr"_s);
    QVERIFY(start());
    QVERIFY(quit());
    QCOMPARE(setting(u"Lang"_s), u"1"_s);
    QCOMPARE(setting(u"LangOffered"_s), u"1"_s);
    QCOMPARE(setting(u"CodecOffered"_s), u"0"_s);
}

void FirstStartTest::whoHasSettingsIsNotAsked()
{
    QVERIFY(writeSettings());
    speak(u"fr"_s);
    QVERIFY(start());
    press({ u"F6"_s, u"Right"_s, u"Return"_s }); // into the text, as there is no strip
    QTRY_VERIFY(title().contains(u"[Shift-JIS]"_s));
    QVERIFY(takesKeys());
    press({ u"ctrl+z"_s });
    QVERIFY(takesKeys());
    QVERIFY(quit());
    QCOMPARE(setting(u"Lang"_s), u"0"_s);
}

REGISTER_TEST(runCoreTest<FirstStartTest>)
#include "firststart_test.moc"
