#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/mnemonics.h"
#include "tests/testprogram.h"
#include "tests/textfit.h"

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QToolTip>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize smallScreen(240, 320);
constexpr QSize vgaScreen(480, 640);

/// With MARLOPAD_PICTURES a folder: a picture of the widget, named after the row.
void savePicture(QWidget &widget)
{
    const QString folder = qEnvironmentVariable("MARLOPAD_PICTURES");
    if (folder.isEmpty())
        return;
    const QString name = QString::fromLatin1(QTest::currentDataTag()).replace(u", "_s, u"-"_s);
    QVERIFY(widget.grab().save(folder + u'/' + name.simplified().replace(u' ', u'_') + u".png"_s));
}

QStringList mnemonicsOf(const QList<QAction *> &actions)
{
    QStringList texts;
    for (const QAction *action : actions)
        texts << action->text();
    return mnemonicsOf(texts);
}

/// The menu that the menu key opens there.
QMenu *contextMenuOf(QWidget *widget)
{
    const QPoint place = widget->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, widget->mapToGlobal(place));
    QApplication::sendEvent(widget, &event);
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

/// What an item shows left of its right border and of its keys.
QImage textOf(QMenu &menu, QAction *action, int width)
{
    const QString keys =
        action->text().section(u'\t', 1) + action->shortcut().toString(QKeySequence::NativeText);
    const int right = 20 + (keys.isEmpty() ? 0 : 20 + menu.fontMetrics().horizontalAdvance(keys));
    QRect place = menu.actionGeometry(action);
    place.setWidth(width - right);
    return menu.grab(place).toImage();
}

QList<QImage> textsOf(QMenu &menu, int width)
{
    QList<QImage> texts;
    for (QAction *action : menu.actions())
        texts << textOf(menu, action, width);
    return texts;
}

/// What is wrong with an open menu on a screen of this size; empty when nothing is. A text that has no room
/// is shown shortened, and whole as soon as the menu is wider.
QString faultsOf(QMenu &menu, QSize screen)
{
    const QSize size = menu.size();
    if (size.width() > screen.width() || size.height() > screen.height())
        return u"%1: %2 x %3"_s.arg(menu.title()).arg(size.width()).arg(size.height());
    const QList<QImage> texts = textsOf(menu, size.width());
    menu.setMinimumWidth(size.width() + 200);
    menu.resize(menu.sizeHint());
    const QList<QImage> wholeTexts = textsOf(menu, size.width());
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (texts[i] != wholeTexts[i])
            return menu.actions().at(i)->text();
    }
    return {};
}

} // namespace

/// The program's own translations in the program's own windows.
class LanguageTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void textsFit_data();
    void textsFit();
    void menusFit_data();
    void menusFit();
    void menusWorkByKeyboard_data();
    void menusWorkByKeyboard();
    void optionMnemonicsAreUnique_data();
    void optionMnemonicsAreUnique();
    void toolkitTextsFollow_data();
    void toolkitTextsFollow();
    void openDocumentsAreRenamed();
    void openSearchPanelFollows();
    void toolBarStaysEnglish();
    void labelsMakeRoomForTheMenus();
    void switchingStacksNothing();
    void properties_data();
    void properties();

private:
    static void addLanguages();
};

void LanguageTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    qunsetenv("QWS_DISPLAY");
}

void LanguageTest::cleanup()
{
    qunsetenv("QWS_DISPLAY");
}

void LanguageTest::addLanguages()
{
    QTest::addColumn<int>("language");
    for (const auto &[language, name] : languages)
        QTest::newRow(name) << language;
}

void LanguageTest::textsFit_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<bool>("vga");
    QTest::addColumn<Form>("form");
    for (const auto &[language, languageName] : languages) {
        for (const bool vga : { false, true }) {
            for (const auto &[form, formName] : forms)
                QTest::addRow("%s, %s, %s", languageName, vga ? "VGA" : "small", formName)
                    << language << vga << form;
        }
    }
}

void LanguageTest::textsFit()
{
    failOnWarnings();
    QFETCH(int, language);
    QFETCH(bool, vga);
    QFETCH(Form, form);
    appSettings().Lang = language;
    writeSettings();
    if (vga)
        qputenv("QWS_DISPLAY", "QVFb:Vga:0");
    const QSize screen = vga ? vgaScreen : smallScreen;
    setScreenClass(vga); // the row before had another font
    TestWindow window;
    window.resize(screen);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.slotEtcFirstNewDoc();
    const std::unique_ptr<QWidget> dialog = dialogOf(form, &window);
    QWidget &shown = dialog ? *dialog : window;
    shown.show();
    if (auto *files = qobject_cast<frmFileDialog *>(&shown))
        files->initTimer();
    QTRY_COMPARE(TextFit(shown).faults().join(u"; "), QString());
    savePicture(shown);
    for (const QWidget *widget : shown.findChildren<QWidget *>())
        QVERIFY2(QFontMetrics(QToolTip::font()).size(0, widget->toolTip()).width() < screen.width(),
            qPrintable(widget->toolTip()));
    QCOMPARE(window.tabTexts(), QStringList(window.currentEditor()->name())); // not shortened
    QVERIFY2(shown.width() <= screen.width() && shown.height() <= screen.height(),
        qPrintable(u"%1 x %2"_s.arg(shown.width()).arg(shown.height())));
}

void LanguageTest::menusFit_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<bool>("vga");
    for (const auto &[language, languageName] : languages) {
        for (const bool vga : { false, true })
            QTest::addRow("%s, %s, menus", languageName, vga ? "VGA" : "small") << language << vga;
    }
}

void LanguageTest::menusFit()
{
    QFETCH(int, language);
    QFETCH(bool, vga);
    appSettings().Lang = language;
    writeSettings();
    if (vga)
        qputenv("QWS_DISPLAY", "QVFb:Vga:0");
    const QSize screen = vga ? vgaScreen : smallScreen;
    TestWindow window;
    QVERIFY(window.open());
    QList<QMenu *> menus{ window.recentMenu() };
    for (const MenuId id : { MenuId::File, MenuId::Edit, MenuId::View, MenuId::Language })
        menus << window.menu(id);
    for (QMenu *menu : menus) {
        menu->popup({ 0, 0 });
        QCOMPARE(faultsOf(*menu, screen), QString());
        menu->hide();
    }
    QLineEdit field;
    for (QWidget *widget :
        { static_cast<QWidget *>(window.currentEditor()), static_cast<QWidget *>(&field) }) {
        QMenu *menu = contextMenuOf(widget);
        QVERIFY(menu);
        QCOMPARE(faultsOf(*menu, screen), QString());
        menu->close();
    }
}

void LanguageTest::menusWorkByKeyboard_data()
{
    addLanguages();
}

/// Every item has a letter; in the translations no letter leads to two items.
void LanguageTest::menusWorkByKeyboard()
{
    QFETCH(int, language);
    appSettings().Lang = language;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    for (const MenuId id : { MenuId::File, MenuId::Edit, MenuId::View, MenuId::Language }) {
        QStringList letters = mnemonicsOf(window.menu(id)->actions());
        QCOMPARE(letters.size(), qsizetype(commandsOf(id).size()));
        if (language != 0)
            QCOMPARE(letters.removeDuplicates(), 0);
    }
    QStringList titles = mnemonicsOf(window.findChild<QMenuBar *>()->actions());
    QCOMPARE(titles.size(), 3);
    QCOMPARE(titles.removeDuplicates(), 0);
    QMenu *const menu = contextMenuOf(window.currentEditor());
    QStringList letters = mnemonicsOf(menu->actions());
    QCOMPARE(letters.size(), 6);
    QCOMPARE(letters.removeDuplicates(), 0);
    menu->close();
}

void LanguageTest::optionMnemonicsAreUnique_data()
{
    addLanguages();
}

void LanguageTest::optionMnemonicsAreUnique()
{
    QFETCH(int, language);
    appSettings().Lang = language;
    writeSettings();
    TestWindow window;
    const frmOption dialog(&window);
    const auto *pages = dialog.findChild<QTabWidget *>();
    for (int i = 0; i < pages->count(); ++i) {
        const QStringList texts = textsWithPage(*pages, i);
        QVERIFY2(mnemonicsOf(texts).removeDuplicates() == 0, qPrintable(texts.join(u'|')));
    }
}

void LanguageTest::toolkitTextsFollow_data()
{
    QTest::addColumn<LanguageCommand>("item");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("Japanese") << LanguageCommand::Japanese
                              << QStringList{ u"元に戻す(&U)"_s, u"キャンセル"_s, u"Ctrl+Shift+Z"_s };
    QTest::newRow("English") << LanguageCommand::English
                             << QStringList{ u"&Undo"_s, u"Cancel"_s, u"Ctrl+Shift+Z"_s };
    QTest::newRow("French") << LanguageCommand::French
                            << QStringList{ u"&Annuler"_s, u"Annuler"_s, u"Ctrl+Maj+Z"_s };
}

/// The menu of a text field, the buttons of boxes and the names of keys are the toolkit's own.
void LanguageTest::toolkitTextsFollow()
{
    QFETCH(LanguageCommand, item);
    TestWindow window;
    for (const LanguageCommand before :
        { LanguageCommand::Japanese, LanguageCommand::English, LanguageCommand::French }) {
        window.item(before)->trigger();
        window.item(item)->trigger();
        QLineEdit field;
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        QMessageBox box(QMessageBox::NoIcon, {}, {}, QMessageBox::Cancel);
        QTEST(QStringList({ menu->actions().constFirst()->text().section(u'\t', 0, 0),
                  box.button(QMessageBox::Cancel)->text().remove(u'&'),
                  QKeySequence(u"Ctrl+Shift+Z"_s).toString(QKeySequence::NativeText) }),
            "texts");
    }
}

void LanguageTest::openDocumentsAreRenamed()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.setDocument(files.write(u"a.txt"_s, "text"));
    window.slotCmdViewLangJa();
    QCOMPARE(window.tabTexts(), QStringList({ u"(新規文書)"_s, u"* (新規文書)"_s, u"a.txt"_s }));
    QCOMPARE(window.editorAt(0)->name(), u"(新規文書)"_s);
    window.slotCmdViewLangFr();
    QCOMPARE(window.tabTexts(), QStringList({ u"(sans titre)"_s, u"* (sans titre)"_s, u"a.txt"_s }));
    window.slotCmdViewLangEn();
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"* (new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    window.editorAt(1)->setEdited(false);
}

void LanguageTest::openSearchPanelFollows()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdViewSearch();
    auto *panel = window.findChild<frmSearchDialog *>();
    QCOMPARE(panel->windowTitle(), u"Search"_s);
    auto *field = panel->findChild<QComboBox *>();
    field->setEditText(u"typed"_s);
    window.slotCmdViewLangFr();
    QTRY_COMPARE(panel->windowTitle(), u"Recherche"_s);
    QCOMPARE(field->currentText(), u"typed"_s);
}

void LanguageTest::toolBarStaysEnglish()
{
    TestWindow window;
    window.slotCmdViewLangJa();
    for (const ToolButton &button : toolButtons())
        QCOMPARE(window.item(button.command)->iconText(), QString::fromLatin1(button.label));
}

/// In a window that is just wide enough for both in English, the French menus are too wide.
void LanguageTest::labelsMakeRoomForTheMenus()
{
    TestWindow window;
    window.resize(1200, 400);
    window.show();
    const QToolBar *bar = window.toolBar();
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    const int menus = window.findChild<QMenuBar *>()->sizeHint().width();
    window.resize(menus + bar->sizeHint().width(), 400);
    QTRY_COMPARE(window.width(), menus + bar->sizeHint().width());
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    window.slotCmdViewLangFr();
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonIconOnly);
    window.slotCmdViewLangEn();
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
}

void LanguageTest::switchingStacksNothing()
{
    TestWindow window;
    for (int i = 0; i < 3; ++i) {
        window.slotCmdViewLangJa();
        window.slotCmdViewLangFr();
    }
    QCOMPARE(window.menu(MenuId::Edit)->title(), u"É&dition"_s);
    window.slotCmdViewLangEn();
    QCOMPARE(QCoreApplication::translate("frmMain", "&Edit"), u"&Edit"_s);
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Cancel"_s);
    QCOMPARE(window.menu(MenuId::Edit)->title(), u"&Edit"_s);
}

void LanguageTest::properties_data()
{
    QTest::addColumn<LanguageCommand>("item");
    QTest::addColumn<QString>("text");
    QTest::newRow("Japanese") << LanguageCommand::Japanese
                              << u"フォルダ: \n名前: (新規文書)\n\n文字コード: Shift-JIS\n改行コード: CR+LF\n"
                                 "サイズ: 1 KB (4 バイト)\n\n文字数: 2\n行数: 1"_s;
    QTest::newRow("French") << LanguageCommand::French
                            << u"Dossier\u00A0: \nNom\u00A0: (sans titre)\n\nCodage\u00A0: Shift-JIS\n"
                               "Fin de ligne\u00A0: CR+LF\nTaille\u00A0: 1\u00A0Ko (4\u00A0octets)\n\n"
                               "Caractères\u00A0: 2\nLignes\u00A0: 1"_s;
}

void LanguageTest::properties()
{
    QFETCH(LanguageCommand, item);
    TestWindow window;
    QVERIFY(window.open());
    window.item(item)->trigger();
    window.currentEditor()->insert(u"漢字"_s);
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QTEST(boxes.shown().at(0).text, "text");
    window.currentEditor()->setEdited(false);
}

REGISTER_TEST(runFormTest<LanguageTest>)
#include "language_test.moc"
