#include "app/firstoffers.h"

#include "app/translation.h"
#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

const DesktopLocale french{ { u"fr-CH"_s, u"fr"_s }, true };
const DesktopLocale bare{ { u"C"_s }, false };

} // namespace

/// What a first start offers, without a main window.
class FirstOffersTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_parts = std::make_unique<DocumentParts>();
        appSettings() = {};
    }
    void cleanup() { m_parts.reset(); }

    void findsTheLanguage_data();
    void findsTheLanguage();
    void offers_data();
    void offers();
    void aLanguageIsChosen_data();
    void aLanguageIsChosen();
    void puttingItAwayBringsTheNext();
    void eachIsOfferedOnce();
    void oneThatNobodyHasSeenIsNoOffer();
    void newDocumentsAreAsOnTheDesktop();
    void whoSaysNothingKeepsAll();

private:
    QString shown() const
    {
        const Notice *const notice = m_parts->documents.notices().heaviest(nullptr);
        return notice ? notice->text() : QString();
    }
    QStringList offered() const
    {
        QStringList texts;
        for (const NoticeOffer &offer : m_parts->documents.notices().heaviest(nullptr)->offers)
            texts << offer.text();
        return texts;
    }
    void choose(qsizetype offer) const
    {
        const auto act = m_parts->documents.notices().heaviest(nullptr)->offers[size_t(offer)].act;
        act();
    }
    void putAway(NoticeKind kind) const { m_parts->documents.notices().dismiss(kind, nullptr); }

    static constexpr QStringView languages = u"Language / Langue / 言語";
    static constexpr QStringView codes = u"New documents are in Shift-JIS with CR+LF";
    std::unique_ptr<DocumentParts> m_parts;
};

void FirstOffersTest::findsTheLanguage_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("found");
    constexpr int none = -1;
    QTest::newRow("none is set") << QStringList{ u"C"_s } << none;
    QTest::newRow("nothing at all") << QStringList() << none;
    QTest::newRow("another one") << QStringList{ u"de-DE"_s, u"de"_s } << none;
    QTest::newRow("with a country") << QStringList{ u"fr-CH"_s } << int(French);
    QTest::newRow("another one first") << QStringList{ u"de"_s, u"ja"_s, u"fr"_s } << int(Japanese);
    QTest::newRow("English first") << QStringList{ u"en-GB"_s, u"fr"_s } << int(English);
    QTest::newRow("one that begins alike") << QStringList{ u"fry"_s, u"jam"_s } << none;
}

void FirstOffersTest::findsTheLanguage()
{
    QFETCH(QStringList, names);
    QTEST(int(languageAmong(names).value_or(Language(-1))), "found");
}

void FirstOffersTest::offers_data()
{
    QTest::addColumn<DesktopLocale>("desktop");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("expected");
    const DesktopLocale english{ { u"en-GB"_s }, false };
    const DesktopLocale japanese{ { u"ja-JP"_s }, true };
    const DesktopLocale japaneseInEuc{ { u"ja-JP"_s }, false };
    QTest::newRow("French desktop") << french << int(Japanese) << languages.toString();
    QTest::newRow("English desktop") << english << int(Japanese) << languages.toString();
    QTest::newRow("French desktop, French menus") << french << int(French) << codes.toString();
    QTest::newRow("Japanese desktop") << japanese << int(Japanese) << codes.toString();
    QTest::newRow("Japanese desktop in another code") << japaneseInEuc << int(Japanese) << QString();
    QTest::newRow("German desktop") << DesktopLocale{ { u"de"_s }, true } << int(Japanese)
                                    << codes.toString();
    QTest::newRow("no desktop") << bare << int(Japanese) << QString();
}

void FirstOffersTest::offers()
{
    QFETCH(DesktopLocale, desktop);
    QFETCH(int, language);
    appSettings().Lang = language;
    FirstOffers offers(m_parts->documents, desktop);
    offers.make();
    QTEST(shown(), "expected");
}

void FirstOffersTest::aLanguageIsChosen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("language");
    QTest::newRow("English") << u"English"_s << int(English);
    QTest::newRow("French") << u"Français"_s << int(French);
    QTest::newRow("Japanese") << u"日本語"_s << int(Japanese);
}

void FirstOffersTest::aLanguageIsChosen()
{
    QFETCH(QString, name);
    FirstOffers offers(m_parts->documents, french);
    const QSignalSpy chosen(&offers, &FirstOffers::languageChosen);
    connect(&offers, &FirstOffers::languageChosen, this, [](int language) { appSettings().Lang = language; });
    offers.make();
    QVERIFY(offered().contains(name));
    choose(offered().indexOf(name));
    QCOMPARE(chosen.size(), 1);
    QTEST(chosen.first().first().toInt(), "language");
    QCOMPARE(shown(), codes.toString());
    appSettings().Lang = -1;
    readSettings(); // as after a sudden end
    QTEST(appSettings().Lang, "language");
    QVERIFY(appSettings().LangOffered);
}

void FirstOffersTest::puttingItAwayBringsTheNext()
{
    FirstOffers offers(m_parts->documents, french);
    const QSignalSpy chosen(&offers, &FirstOffers::languageChosen);
    offers.make();
    putAway(NoticeKind::Languages);
    QCOMPARE(shown(), codes.toString());
    putAway(NoticeKind::CodesOfNew);
    QCOMPARE(shown(), QString());
    QCOMPARE(chosen.size(), 0);
}

/// The second one at the second start, where the first one was not answered.
void FirstOffersTest::eachIsOfferedOnce()
{
    for (const QString &expected : { languages.toString(), codes.toString(), QString() }) {
        DocumentArea documents(nullptr);
        FirstOffers offers(documents, french);
        offers.make();
        const Notice *const notice = documents.notices().heaviest(nullptr);
        QCOMPARE(notice ? notice->text() : QString(), expected);
        writeSettings();
        readSettings();
    }
}

void FirstOffersTest::oneThatNobodyHasSeenIsNoOffer()
{
    const Notice unsaved{ NoticeKind::Unsaved, nullptr, [] { return u"unsaved"_s; }, {} };
    NoticeQueue &notices = m_parts->documents.notices();
    FirstOffers offers(m_parts->documents, french);
    offers.make();
    notices.put(unsaved);
    QCOMPARE(shown(), u"unsaved"_s);
    QCOMPARE(appSettings().LangOffered, 0);
    notices.withdraw(NoticeKind::Unsaved);
    QCOMPARE(shown(), languages.toString());
    QCOMPARE(appSettings().LangOffered, 1);
    notices.put(unsaved);
    putAway(NoticeKind::Unsaved);
    putAway(NoticeKind::Languages);
    QCOMPARE(shown(), codes.toString());
    QCOMPARE(appSettings().LangOffered, 1);
    notices.put(unsaved);
    QCOMPARE(appSettings().CodecOffered, 0);
}

void FirstOffersTest::newDocumentsAreAsOnTheDesktop()
{
    const QString file = m_parts->files.write(u"a.txt"_s, "\x82\xa0\r\n");
    ctlEditer *const written = m_parts->documents.add();
    written->insert(u"text"_s);
    ctlEditer *const fresh = m_parts->documents.add();
    FirstOffers offers(m_parts->documents, { { u"ja"_s }, true });
    offers.make();
    QCOMPARE(offered(), QStringList{ u"UTF-8 with LF"_s });
    choose(0);
    QCOMPARE(shown(), QString());
    QCOMPARE(fresh->charCodeName() + fresh->returnCodeName(), u"UTF8LF"_s);
    QCOMPARE(written->charCodeName() + written->returnCodeName(), u"Shift-JISCR+LF"_s);
    const ctlEditer *const later = m_parts->documents.add();
    QCOMPARE(later->charCodeName() + later->returnCodeName(), u"UTF8LF"_s);
    const ctlEditer *const opened = m_parts->open(file);
    QCOMPARE(opened->charCodeName() + opened->returnCodeName(), u"Shift-JISCR+LF"_s);
    appSettings() = {};
    readSettings(); // as after a sudden end
    QVERIFY(appSettings().defaultCharCode() == CharCode::Utf8);
    QVERIFY(appSettings().defaultReturnCode() == ReturnCode::Lf);
}

void FirstOffersTest::whoSaysNothingKeepsAll()
{
    FirstOffers offers(m_parts->documents, french);
    offers.make();
    QCOMPARE(appSettings().Lang, AppSettings().Lang);
    QCOMPARE(appSettings().DefCodec, AppSettings().DefCodec);
    QCOMPARE(appSettings().DefCRLF, AppSettings().DefCRLF);
}

REGISTER_TEST(runWindowTest<FirstOffersTest>)
#include "firstoffers_test.moc"
