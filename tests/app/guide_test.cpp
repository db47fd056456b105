#include "app/command.h"
#include "app/commandline.h"
#include "app/translation.h"
#include "codec/charcode.h"
#include "codec/returncode.h"
#include "filedialog/filechoices.h"
#include "options/frmoption.h"
#include "search/frmsearchdialog.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QCheckBox>
#include <QDirIterator>
#include <QGroupBox>
#include <QImageReader>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestPicture = 60 * 1024; // bytes

QString docs()
{
    return QDir(QStringLiteral(BUILT_QPE_DIR "/../doc/marlopad")).canonicalPath();
}

QString guidePageOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList guidePages()
{
    QStringList paths;
    for (QDirIterator found(docs(), { u"*.md"_s }, QDir::Files, QDirIterator::Subdirectories);
         found.hasNext();)
        paths << found.next();
    return paths;
}

/// What a page leads to or shows, as full names.
QStringList targetsOf(const QString &page)
{
    static const QRegularExpression link(u"\\]\\(([^)#:]+)(?:#[^)]*)?\\)"_s);
    QStringList targets;
    for (auto match = link.globalMatch(guidePageOf(page)); match.hasNext();)
        targets << QDir::cleanPath(QFileInfo(page).path() + u'/' + match.next().captured(1));
    return targets;
}

/// A label as the guide names it: without its letter, colon and dots.
QString plain(const QString &label)
{
    static const QRegularExpression beside(
        u"\\(&.\\)|&| *\\(Fn\\+.\\)| *\\((?:Cancel|Annuler)\\)|\\.\\.\\.$| *:$"_s);
    return QString(label).remove(beside).trimmed();
}

} // namespace

/// The guide names all there is, in both of its languages, and whatever it leads to exists.
class GuideTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("QPEDIR", BUILT_QPE_DIR); }
    void init();
    void cleanup() { m_translation.reset(); }

    void namesEverySetting_data() { addGuides(); }
    void namesEverySetting();
    void namesEverySwitch_data() { addGuides(); }
    void namesEverySwitch();
    void namesEveryOption_data() { addGuides(); }
    void namesEveryOption();
    void namesEverySign_data() { addGuides(); }
    void namesEverySign();
    void namesEveryCode_data() { addGuides(); }
    void namesEveryCode();
    void namesEveryWordOfTheShell_data() { addGuides(); }
    void namesEveryWordOfTheShell();
    void namesTheSearchPanel_data() { addGuides(); }
    void namesTheSearchPanel();
    void pagesAreInBothLanguages();
    void whatPagesLeadToIsThere();
    void everyPictureIsShown();
    void picturesAreSmall();

private:
    static void addGuides();
    void names(const QString &word) const
    {
        QVERIFY2(word.isEmpty() || m_guide.contains(word), qPrintable(word));
    }
    template <typename Control> void namesTextsOf(const QWidget &form) const
    {
        for (const Control *const control : form.findChildren<Control *>())
            names(plain(control->property(std::is_same_v<Control, QGroupBox> ? "title" : "text").toString()));
    }

    std::unique_ptr<Translation> m_translation;
    QString m_guide;
};

void GuideTest::addGuides()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("file");
    QTest::newRow("English") << int(English) << u"guide.en.md"_s;
    QTest::newRow("Japanese") << int(Japanese) << u"guide.ja.md"_s;
}

void GuideTest::init()
{
    resetSettings();
    if (!QTest::currentDataTag())
        return;
    QFETCH(int, language);
    QFETCH(QString, file);
    if (Translation::isNeeded(language)) {
        m_translation = Translation::load(language);
        QVERIFY(m_translation);
        m_translation->install();
    }
    m_guide = guidePageOf(docs() + u'/' + file);
}

/// As the file of a first start has them, but for the files that were opened and the window's size.
void GuideTest::namesEverySetting()
{
    static const QRegularExpression unnamed(
        u"^(File|Path|CurX|CurY|ScrX|ScrY|Name)\\d+$|^Window(Width|Height)$"_s);
    static const QRegularExpression key(u"^(\\w+) *="_s, QRegularExpression::MultilineOption);
    int count = 0;
    for (auto match = key.globalMatch(guidePageOf(settingsFile())); match.hasNext(); ++count) {
        const QString name = match.next().captured(1);
        if (!unnamed.match(name).hasMatch())
            names(name);
    }
    QVERIFY(count > 20);
}

void GuideTest::namesEverySwitch()
{
    for (const MoreSwitch &each : moreSwitches()) {
        names(plain(QCoreApplication::translate("frmMoreOptions", each.label)));
        names(QLatin1StringView(each.key));
    }
}

void GuideTest::namesEveryOption()
{
    const frmOption options(nullptr);
    namesTextsOf<QCheckBox>(options);
    namesTextsOf<QGroupBox>(options);
    for (const QLabel *const label : options.findChildren<QLabel *>()) {
        if (label->buddy())
            names(plain(label->text()));
    }
    for (const QString &page : { u"View&1"_s, u"View&2"_s, u"&Detail"_s })
        names(plain(QCoreApplication::translate("frmOption", page.toLatin1())));
}

/// One row for each that can be switched, by what switches it, and then one for what always shows.
void GuideTest::namesEverySign()
{
    QFETCH(int, language);
    static const QRegularExpression row(
        u"^\\| !\\[.+\\]\\(.*/sign-.*\\) \\| .+ \\| (.+) \\|$"_s, QRegularExpression::MultilineOption);
    QStringList named;
    for (auto match = row.globalMatch(m_guide); match.hasNext();)
        named << match.next().captured(1);
    const frmOption options(nullptr);
    QStringList switches;
    for (const QGroupBox *const group : options.findChildren<QGroupBox *>()) {
        if (group->title() != QCoreApplication::translate("frmOption", "Mark display"))
            continue;
        for (const QCheckBox *const check : group->findChildren<QCheckBox *>())
            switches << plain(check->text());
    }
    QVERIFY(!switches.isEmpty() && !named.isEmpty());
    named.sort();
    switches << (language == Japanese ? u"常に表示"_s : u"always shown"_s);
    switches.sort();
    QCOMPARE(named, switches);
}

void GuideTest::namesEveryCode()
{
    for (const CharCode code : charCodeChoices)
        names(infoOf(code).label);
    for (const CharCode code : { CharCode::Binary, CharCode::Unicode, CharCode::Utf8 })
        names(infoOf(code).name);
    for (const ReturnCode code : returnCodeChoices)
        names(infoOf(code).name);
}

/// As `--help` has them, in its first column.
void GuideTest::namesEveryWordOfTheShell()
{
    static const QRegularExpression word(
        u"^  (\\S+(?: \\S+)*)(?:  |$)"_s, QRegularExpression::MultilineOption);
    int count = 0;
    for (auto match = word.globalMatch(CommandLine::helpText()); match.hasNext(); ++count)
        names(u'`' + match.next().captured(1).section(u"  "_s, 0, 0) + u'`');
    QVERIFY(count > 8);
}

void GuideTest::namesTheSearchPanel()
{
    const frmSearchDialog panel(nullptr);
    namesTextsOf<QCheckBox>(panel);
    for (const char *const text : { "Search Next", "Search Prev", "Replace Next", "Replace ALL" })
        names(QCoreApplication::translate("frmSearchDialog", text));
    for (const char *const text : { "Speed up", "Stop" })
        names(QCoreApplication::translate("frmReplaceProgress", text));
}

void GuideTest::pagesAreInBothLanguages()
{
    int count = 0;
    for (const QString &page : guidePages()) {
        if (page.endsWith(u".en.md"))
            QVERIFY2(QFileInfo::exists(QString(page).replace(u".en.md"_s, u".ja.md"_s)), qPrintable(page));
        count += page.endsWith(u".en.md") ? 1 : page.endsWith(u".ja.md") ? -1 : 0;
    }
    QCOMPARE(count, 0);
}

void GuideTest::whatPagesLeadToIsThere()
{
    for (const QString &page : guidePages()) {
        for (const QString &target : targetsOf(page))
            QVERIFY2(QFileInfo::exists(target), qPrintable(page + u" leads to "_s + target));
    }
}

void GuideTest::everyPictureIsShown()
{
    QStringList shown;
    for (const QString &page : guidePages())
        shown << targetsOf(page);
    for (QDirIterator found(docs(), { u"*.png"_s }, QDir::Files, QDirIterator::Subdirectories);
         found.hasNext();) {
        const QString picture = found.next();
        QVERIFY2(shown.contains(picture), qPrintable(picture));
    }
}

void GuideTest::picturesAreSmall()
{
    int count = 0;
    for (QDirIterator found(docs(), { u"*.png"_s }, QDir::Files, QDirIterator::Subdirectories);
         found.hasNext(); ++count) {
        QImageReader picture(found.next());
        QVERIFY2(picture.canRead(), qPrintable(picture.fileName()));
        QVERIFY2(QFileInfo(picture.fileName()).size() <= largestPicture, qPrintable(picture.fileName()));
    }
    QVERIFY(count > 0);
}

REGISTER_TEST(runWindowTest<GuideTest>)
#include "guide_test.moc"
