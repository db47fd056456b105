#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QAccessible>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// What holds controls, is read out by what it belongs to, or says nothing that words beside it do not.
bool isStructure(const QAccessibleInterface &item)
{
    switch (item.role()) {
    case QAccessible::Client:
    case QAccessible::Border:
    case QAccessible::Pane:
    case QAccessible::LayeredPane:
    case QAccessible::Grouping:
    case QAccessible::Splitter:
    case QAccessible::Separator:
    case QAccessible::Whitespace:
    case QAccessible::Indicator:
    case QAccessible::Graphic:
        return !item.state().focusable;
    case QAccessible::Window:
        return !item.object() || !item.object()->isWidgetType()
            || !static_cast<QWidget *>(item.object())->isWindow();
    default:
        return false;
    }
}

/// Everything visible in a window, in the order a screen reader finds it.
void collect(QAccessibleInterface *item, QList<QAccessibleInterface *> *items)
{
    if (!item || item->state().invisible)
        return;
    items->append(item);
    for (int i = 0; i < item->childCount(); ++i)
        collect(item->child(i), items);
}

QList<QAccessibleInterface *> itemsIn(QWidget &window)
{
    QList<QAccessibleInterface *> items;
    collect(QAccessible::queryAccessibleInterface(&window), &items);
    return items;
}

QString described(QAccessibleInterface &item)
{
    const QString kind =
        item.object() ? QString::fromLatin1(item.object()->metaObject()->className()) : u"item"_s;
    return u"%1 (role %2): %3"_s.arg(kind).arg(int(item.role()), 0, 16).arg(item.text(QAccessible::Name));
}

QStringList namesIn(QWidget &window)
{
    QStringList names;
    for (QAccessibleInterface *item : itemsIn(window))
        names << described(*item);
    return names;
}

QString namelessIn(QWidget &window)
{
    QStringList nameless;
    for (QAccessibleInterface *item : itemsIn(window)) {
        if (!isStructure(*item) && item->text(QAccessible::Name).trimmed().isEmpty())
            nameless << described(*item);
    }
    return nameless.join(u'\n');
}

/// Where the language menu has a language.
LanguageCommand itemOf(int language)
{
    return std::array{ LanguageCommand::English, LanguageCommand::Japanese, LanguageCommand::French }.at(
        size_t(language));
}

} // namespace

/// Every control has a name for those who cannot see it, in the present language.
class NamesTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void everyControlHasAName_data();
    void everyControlHasAName();
    void namesFollowTheLanguage_data();
    void namesFollowTheLanguage();
    void messageBoxesHaveNames_data();
    void messageBoxesHaveNames();

private:
    static void open(TestWindow &window);
};

void NamesTest::init()
{
    failOnWarnings();
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    qunsetenv("QWS_DISPLAY");
    setScreenClass(true);
}

/// With documents enough that scroll buttons stand beside the tabs, and a text that is scrolled both ways.
void NamesTest::open(TestWindow &window)
{
    window.resize(480, 640);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    for (int i = 0; i < 8; ++i)
        window.slotCmdFileNew();
    QString text;
    for (int i = 0; i < 200; ++i)
        text += u"long line "_s.repeated(20) + u'\n';
    window.currentEditor()->setText(text);
    window.currentEditor()->setEdited(false);
}

void NamesTest::everyControlHasAName_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<Form>("form");
    for (const auto &[language, languageName] : languages) {
        for (const auto &[form, formName] : forms)
            QTest::addRow("%s, %s", languageName, formName) << language << form;
    }
}

void NamesTest::everyControlHasAName()
{
    QFETCH(int, language);
    QFETCH(Form, form);
    TestWindow window;
    open(window);
    window.item(itemOf(language))->trigger();
    const std::unique_ptr<QWidget> dialog = dialogOf(form, &window);
    QWidget &shown = dialog ? *dialog : window;
    shown.show();
    if (auto *files = qobject_cast<frmFileDialog *>(&shown))
        files->initTimer();
    QCoreApplication::processEvents();
    QVERIFY(itemsIn(shown).size() > 3);
    QCOMPARE(namelessIn(shown), QString());
}

void NamesTest::namesFollowTheLanguage_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    for (const auto &[before, beforeName] : languages) {
        for (const auto &[after, afterName] : languages) {
            if (before != after)
                QTest::addRow("%s to %s", beforeName, afterName) << before << after;
        }
    }
}

/// The names in windows that are open are those that new ones would have.
void NamesTest::namesFollowTheLanguage()
{
    QFETCH(int, before);
    QFETCH(int, after);
    const auto namesNow = [](TestWindow &window) {
        QCoreApplication::processEvents();
        QStringList names = namesIn(window) + namesIn(*window.findChild<frmSearchDialog *>());
        for (const MenuId id : { MenuId::File, MenuId::Edit, MenuId::View, MenuId::Language })
            names << window.menu(id)->accessibleName();
        return names;
    };
    appSettings().Lang = before;
    writeSettings();
    QStringList first;
    QStringList switched;
    {
        TestWindow window;
        open(window);
        window.slotCmdViewSearch();
        first = namesNow(window);
        window.item(itemOf(after))->trigger();
        switched = namesNow(window);
    }
    QVERIFY(switched != first);
    appSettings().Lang = after;
    writeSettings();
    TestWindow window;
    open(window);
    window.slotCmdViewSearch();
    const QStringList fresh = namesNow(window);
    QCOMPARE(fresh.filter(u"ScrollBar (role"_s).size(), 2);
    for (qsizetype i = 0; i < qMin(switched.size(), fresh.size()); ++i)
        QCOMPARE(switched[i], fresh[i]);
    QCOMPARE(switched.size(), fresh.size());
}

void NamesTest::messageBoxesHaveNames_data()
{
    QTest::addColumn<int>("language");
    for (const auto &[language, name] : languages)
        QTest::newRow(name) << language;
}

/// A question as it stands before the user: title, text and buttons.
void NamesTest::messageBoxesHaveNames()
{
    QFETCH(int, language);
    TestWindow window;
    open(window);
    window.item(itemOf(language))->trigger();
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    const NoTimeToRead atOnce;
    qsizetype items = 0;
    QString nameless;
    QTimer::singleShot(0, &window, [&] {
        QWidget *const box = QApplication::activeModalWidget();
        items = itemsIn(*box).size();
        nameless = namelessIn(*box);
        QTest::keyClick(box, Qt::Key_Escape);
    });
    window.slotCmdFileCloseTab();
    QVERIFY(items > 4);
    QCOMPARE(nameless, QString());
    window.currentEditor()->setEdited(false);
}

REGISTER_TEST(runFormTest<NamesTest>)
#include "names_test.moc"
