#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

/// "context|source" and its translation; where that depends on a number, all its forms.
using Entries = QMap<QString, QString>;

Entries entriesOf(const QString &fileName)
{
    Entries entries;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    QXmlStreamReader xml(&file);
    QString context;
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"name")
            context = xml.readElementText();
        else if (xml.name() == u"source")
            source = xml.readElementText();
        else if (xml.name() == u"translation")
            entries.insert(
                context + u'|' + source, xml.readElementText(QXmlStreamReader::IncludeChildElements));
    }
    return xml.hasError() ? Entries() : entries;
}

QString translationSource(const QString &language)
{
    return QStringLiteral(SOURCE_FOLDER "/i18n/") + language + u".ts"_s;
}

/// Of a file of the desktop's.
QString contentOf(const QString &name)
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/desktop/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList placesIn(const QString &text)
{
    static const QRegularExpression place(u"%\\d"_s);
    QStringList places;
    for (auto match = place.globalMatch(text); match.hasNext();)
        places << match.next().captured();
    places.sort();
    return places;
}

/// "(Fn+O)" and "(Cancel)": keys of the device, the same in every language.
QString keyIn(const QString &text)
{
    static const QRegularExpression key(u"  \\((Fn\\+.|Cancel)\\)$"_s);
    return key.match(text).captured();
}

int mnemonicsIn(const QString &text)
{
    static const QRegularExpression mnemonic(u"&\\w"_s);
    return int(text.count(mnemonic));
}

} // namespace

/// The translations are complete, and fit their source texts.
class TranslationsTest : public QObject {
    Q_OBJECT

private slots:
    void holdsEveryText_data() { addLanguages(); }
    void holdsEveryText();
    void keepsPlacesAndMnemonics_data() { addLanguages(); }
    void keepsPlacesAndMnemonics();
    void isWrittenAsUsual_data();
    void isWrittenAsUsual();
    void unfinishedEntryFailsTheBuild_data();
    void unfinishedEntryFailsTheBuild();
    void desktopFilesAreTranslated_data() { addLanguages(); }
    void desktopFilesAreTranslated();

private:
    static void addLanguages();
};

void TranslationsTest::addLanguages()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Japanese") << u"ja"_s;
    QTest::newRow("French") << u"fr"_s;
}

void TranslationsTest::holdsEveryText()
{
    QFETCH(QString, language);
    const QTemporaryDir folder;
    const QString fresh = folder.filePath(u"fresh.ts"_s);
    const QString product = QStringLiteral(SOURCE_FOLDER "/src");
    const QStringList arguments{ u"-silent"_s, u"-locations"_s, u"none"_s, u"-I"_s, product, product };
    QProcess lupdate;
    lupdate.start(QStringLiteral(LUPDATE), arguments + QStringList{ u"-ts"_s, fresh });
    QVERIFY(lupdate.waitForFinished(-1));
    QCOMPARE(lupdate.exitCode(), 0);

    const Entries wanted = entriesOf(fresh);
    const Entries present = entriesOf(translationSource(language));
    QVERIFY(wanted.contains(u"frmMain|&File"_s));
    for (const QString &text : wanted.keys())
        QVERIFY2(!present.value(text).isEmpty(), qPrintable(u"no translation: "_s + text));
    for (const QString &text : present.keys())
        QVERIFY2(wanted.contains(text), qPrintable(u"no longer used: "_s + text));
}

void TranslationsTest::keepsPlacesAndMnemonics()
{
    QFETCH(QString, language);
    const Entries entries = entriesOf(translationSource(language));
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        const QString source = entry.key().section(u'|', 1);
        QVERIFY2(placesIn(entry.value()) == placesIn(source), qPrintable(entry.value()));
        QVERIFY2(mnemonicsIn(entry.value()) == mnemonicsIn(source), qPrintable(entry.value()));
        QCOMPARE(keyIn(entry.value()), keyIn(source));
        QVERIFY2(entry.value().endsWith(u'\n') == source.endsWith(u'\n'), qPrintable(entry.value()));
    }
}

void TranslationsTest::isWrittenAsUsual_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("wrong");
    QTest::newRow("Japanese mnemonic is a letter in brackets") << u"ja"_s << u"&\\w(?!\\))|(?<!\\()&\\w"_s;
    QTest::newRow("French space before double punctuation")
        << u"fr"_s << u"[^\\x{a0}][?!;»]|[^\\x{a0}( ]:[ \\n]"_s;
    QTest::newRow("French space after opening quotation mark") << u"fr"_s << u"«[^\\x{a0}]"_s;
    QTest::newRow("French apostrophe and ellipsis") << u"fr"_s << u"\\w'\\w|\\.\\.\\."_s;
}

void TranslationsTest::isWrittenAsUsual()
{
    QFETCH(QString, language);
    QFETCH(QString, wrong);
    const QRegularExpression pattern(wrong, QRegularExpression::UseUnicodePropertiesOption);
    QVERIFY(pattern.isValid());
    const Entries entries = entriesOf(translationSource(language));
    QVERIFY(!entries.isEmpty());
    for (QString text : entries) {
        // The program's name, and lists of characters and of name endings, are no sentences.
        text.remove(u"Marlo!Pad"_s).remove(u"\\ / : , ; * ? \" < > |"_s);
        text.remove(QRegularExpression(u"\\(\\*[^)]*\\)"_s));
        QVERIFY2(!pattern.match(text).hasMatch(), qPrintable(text));
    }
}

void TranslationsTest::unfinishedEntryFailsTheBuild_data()
{
    QTest::addColumn<QByteArray>("translation");
    QTest::addColumn<bool>("passes");
    QTest::newRow("finished") << QByteArray("<translation>Oui</translation>") << true;
    QTest::newRow("unfinished") << QByteArray("<translation type=\"unfinished\">Oui</translation>") << false;
    QTest::newRow("unfinished and empty")
        << QByteArray("<translation type=\"unfinished\"></translation>") << false;
    QTest::newRow("empty") << QByteArray("<translation></translation>") << false;
    QTest::newRow("empty, in one") << QByteArray("<translation/>") << false;
    QTest::newRow("unfinished, in one") << QByteArray("<translation type=\"unfinished\"/>") << false;
    const QByteArray comments = "<comment>a</comment>\n<translatorcomment>b</translatorcomment>\n";
    QTest::newRow("finished, with comments") << comments + "<translation>Oui</translation>" << true;
    QTest::newRow("unfinished, with comments")
        << comments + "<translation type=\"unfinished\">Oui</translation>" << false;
    QTest::newRow("empty, with comments") << comments + "<translation></translation>" << false;
    const auto forms = [](const QByteArray &second) {
        return "<translation>\n<numerusform>un</numerusform>\n<numerusform>" + second
            + "</numerusform>\n</translation>";
    };
    QTest::newRow("forms by number") << forms("deux") << true;
    QTest::newRow("a form by number is empty") << forms("") << false;
    QTest::newRow("vanished") << QByteArray("<translation type=\"vanished\">Oui</translation>") << false;
}

void TranslationsTest::unfinishedEntryFailsTheBuild()
{
    QFETCH(QByteArray, translation);
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"some.ts"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "<TS version=\"2.1\" language=\"fr\"><context><name>c</name>\n<message>\n<source>Yes</source>\n"
        + translation + "\n</message>\n</context></TS>\n");
    file.close();
    QProcess check;
    check.start(QStringLiteral(CMAKE_PROGRAM),
        { u"-D"_s, u"TS="_s + file.fileName(), u"-P"_s,
            QStringLiteral(SOURCE_FOLDER "/i18n/checkfinished.cmake") });
    QVERIFY(check.waitForFinished(-1));
    QTEST(check.exitCode() == 0, "passes");
}

/// What the desktop shows of the program, and its manual page.
void TranslationsTest::desktopFilesAreTranslated()
{
    QFETCH(QString, language);
    const QString entry = contentOf(u"example.marlopad.marlopad.desktop"_s);
    for (const QString &key : { u"GenericName"_s, u"Comment"_s, u"Keywords"_s })
        QVERIFY2(entry.contains(u"\n%1[%2]="_s.arg(key, language)), qPrintable(key));

    const QString metainfo = contentOf(u"example.marlopad.marlopad.metainfo.xml"_s);
    for (const QString &tag : { u"summary"_s, u"developer_name"_s, u"p"_s, u"li"_s }) {
        const qsizetype texts = metainfo.count(u"<%1>"_s.arg(tag));
        QVERIFY2(texts > 0, qPrintable(tag));
        QCOMPARE(metainfo.count(u"<%1 xml:lang=\"%2\">"_s.arg(tag, language)), texts);
    }

    const QString manual = contentOf(u"marlopad.1"_s);
    const QString translated = contentOf(language + u"/marlopad.1"_s);
    for (const QString &part : { u"\n.SH "_s, u"\n.TP\n"_s, u"\t"_s }) {
        QVERIFY(manual.contains(part));
        QCOMPARE(translated.count(part), manual.count(part));
    }
}

REGISTER_TEST(runPlainTest<TranslationsTest>)
#include "translations_test.moc"
