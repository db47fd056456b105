#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// Names that are the same in every language, and what is not the program's.
bool isName(const QString &text)
{
    static const QStringList names{ u"OK"_s, u"Marlo!Pad QT"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s,
        u"UTF-8"_s, u"CR"_s, u"LF"_s, u"CR+LF"_s, u"EOF(&E)"_s, u"Ctrl+1"_s, u"Ctrl+2"_s, u"Ctrl+3"_s };
    return names.contains(text) || text.startsWith(u"Marlo!Pad QT  [");
}

/// Words of the Latin alphabet alone.
bool isEnglish(const QString &text)
{
    static const QRegularExpression words(u"^[\\x{20}-\\x{7e}\\n]*[A-Za-z]{2}[\\x{20}-\\x{7e}\\n]*$"_s);
    return words.match(text).hasMatch();
}

QStringList itemsOf(const QComboBox &combo)
{
    QStringList texts;
    // An editable list holds names of fonts and folders, and numbers.
    for (int i = 0; i < combo.count() && !combo.isEditable(); ++i)
        texts << combo.itemText(i);
    return texts;
}

QStringList textsOf(const QWidget &widget)
{
    QStringList texts{ widget.toolTip(), widget.accessibleName(), widget.windowTitle() };
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        texts << label->text();
    else if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        texts << button->text();
    else if (const auto *group = qobject_cast<const QGroupBox *>(&widget))
        texts << group->title();
    else if (const auto *combo = qobject_cast<const QComboBox *>(&widget))
        texts << itemsOf(*combo);
    else if (const auto *menu = qobject_cast<const QMenu *>(&widget))
        texts << menu->title();
    else if (const auto *tabs = qobject_cast<const QTabBar *>(&widget))
        for (int i = 0; i < tabs->count(); ++i)
            texts << tabs->tabText(i);
    else if (const auto *tree = qobject_cast<const QTreeView *>(&widget))
        for (int i = 0; i < tree->model()->columnCount(); ++i)
            for (const int role : { Qt::DisplayRole, Qt::ToolTipRole })
                texts << tree->model()->headerData(i, Qt::Horizontal, role).toString();
    return texts;
}

/// The tool bar is English in every language.
bool isOnToolBar(const QWidget &widget)
{
    return qobject_cast<const QToolButton *>(&widget)
        && qobject_cast<const QToolBar *>(widget.parentWidget());
}

QStringList englishTextsIn(const QWidget &window)
{
    QList<const QWidget *> widgets{ &window };
    for (const QWidget *widget : window.findChildren<QWidget *>())
        widgets << widget;
    QStringList texts;
    for (const QWidget *widget : widgets) {
        if (!isOnToolBar(*widget))
            texts << textsOf(*widget);
    }
    for (const QAction *action : window.findChildren<QAction *>())
        texts << action->text();
    texts.removeIf([](const QString &text) { return isName(text) || !isEnglish(text); });
    return texts;
}

} // namespace

/// In Japanese nothing is left in English but names and the labels of the tool bar.
class UntranslatedTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void nothingIsEnglish_data();
    void nothingIsEnglish();
    void switchingReachesAllThatIsOpen();
    void englishIsFound();
};

void UntranslatedTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
}

void UntranslatedTest::nothingIsEnglish_data()
{
    QTest::addColumn<Form>("form");
    for (const auto &[form, name] : forms)
        QTest::newRow(name) << form;
}

void UntranslatedTest::nothingIsEnglish()
{
    QFETCH(Form, form);
    appSettings().Lang = 1;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    const std::unique_ptr<QWidget> dialog = dialogOf(form, &window);
    QCOMPARE(englishTextsIn(dialog ? *dialog : window).join(u'\n'), QString());
}

/// Documents, menus, both bars and the search panel; and back.
void UntranslatedTest::switchingReachesAllThatIsOpen()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    window.slotCmdViewReplace();
    const QStringList english = englishTextsIn(window);
    for (const QString &text :
        { u"Replace ALL"_s, u"Vertical scroll bar"_s, u"(no item)"_s, u"Recent Files"_s })
        QVERIFY2(english.contains(text), qPrintable(text));
    window.slotCmdViewLangJa();
    QTRY_COMPARE(englishTextsIn(window).join(u'\n'), QString());
    window.slotCmdViewLangEn();
    QTRY_COMPARE(englishTextsIn(window), english);
}

void UntranslatedTest::englishIsFound()
{
    TestWindow window;
    QVERIFY(window.open());
    const QStringList texts = englishTextsIn(window);
    for (const QString &text : { u"&File"_s, u"(new document)"_s, u"Tool bar"_s, u"&Undo  (Fn+Z)"_s })
        QVERIFY2(texts.contains(text), qPrintable(text));
    QVERIFY(!texts.contains(u"Search Next"_s));
    const QStringList inOptions = englishTextsIn(*dialogOf(Form::OptionsView1, &window));
    for (const QString &text : { u"Options"_s, u"Mark display"_s, u"&Tab character"_s, u"DarkYellow"_s })
        QVERIFY2(inOptions.contains(text), qPrintable(text));
}

REGISTER_TEST(runFormTest<UntranslatedTest>)
#include "untranslated_test.moc"
