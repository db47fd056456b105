#include "search/frmsearchdialog.h"
#include "settings/moresettings.h"
#include "tests/messageboxes.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

QStringList itemsOf(const QComboBox *field)
{
    QStringList items;
    for (int i = 0; i < field->count(); ++i)
        items << field->itemText(i);
    return items;
}

/// Shows the panel as the main window does.
void showIn(frmSearchDialog &panel, int mode, const QString &findText = {})
{
    panel.searchMode = mode;
    panel.findText = findText;
    panel.hide();
    panel.show();
}

} // namespace

/// The panel by itself: controls, modes, histories, keys.
class FrmSearchDialogTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void isADialogThatBlocksNothing();
    void controls_data();
    void controls();
    void grid();
    void modeDecides_data();
    void modeDecides();
    void beginsAnewWithEachShow();
    void keepsWhatIsTypedWhenMinimised();
    void startsWithTheTextGiven();
    void startsEmptyWithEarlierTextsInItsList();
    void selectedTextIsLeftOutOfTheListOnly();
    void offersTheLastReplacement();
    void actions_data();
    void actions();
    void refusesEmptyText_data();
    void refusesEmptyText();
    void recordsBeforeItActs();
    void emptyReplacementIsNotRecorded();
    void keys_data();
    void keys();
    void knownKeys_data();
    void knownKeys();
    void closeHidesAndKeeps();
    void historyFileIsWrittenAtTheEnd();
    void historyFileIsWrittenWhenItChanges();
    void historiesOfTwoProcessesAreMerged();
};

void FrmSearchDialogTest::init()
{
    failOnWarnings();
    setScreenClass(false);
    QFile::remove(historyFileName());
}

void FrmSearchDialogTest::isADialogThatBlocksNothing()
{
    QWidget window;
    window.show();
    frmSearchDialog panel(&window);
    QVERIFY(!panel.isVisible());
    panel.show();
    QVERIFY(panel.isWindow());
    QCOMPARE(panel.windowType(), Qt::Dialog);
    QVERIFY(!panel.isModal());
    QCOMPARE(panel.pos(), QPoint(20, 40));
    panel.move(100, 50);
    showIn(panel, 1);
    QCOMPARE(panel.pos(), QPoint(100, 50)); // the place is the user's from then on
}

void FrmSearchDialogTest::controls_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<int>("fieldWidth");
    QTest::addColumn<int>("fieldHeight");
    QTest::addColumn<QSize>("button");
    QTest::addColumn<QSize>("close");
    QTest::newRow("small") << false << 180 << 19 << QSize(60, 17) << QSize(40, 17);
    QTest::newRow("VGA") << true << 320 << 28 << QSize(120, 28) << QSize(80, 28);
}

void FrmSearchDialogTest::controls()
{
    QFETCH(bool, vga);
    setScreenClass(vga);
    frmSearchDialog panel(nullptr);
    showIn(panel, 1);
    for (const QComboBox *field : { findField(panel), replaceField(panel) }) {
        QTEST(field->minimumWidth(), "fieldWidth");
        QTEST(field->minimumHeight(), "fieldHeight");
        QTEST(field->maximumHeight(), "fieldHeight");
        QTEST(field->height(), "fieldHeight");
        QVERIFY(field->isEditable());
    }
    for (const char16_t *text : { u"Replace Next", u"Search Prev", u"Replace ALL" }) {
        const QPushButton *const button = buttonOf(panel, QString::fromUtf16(text));
        QTEST(button->minimumSize(), "button");
        QTEST(button->maximumSize(), "button");
    }
    QTEST(buttonOf(panel, u"Close"_s)->minimumSize(), "close");
    QTEST(buttonOf(panel, u"Close"_s)->maximumSize(), "close");
    QCOMPARE(panel.findChild<QCheckBox *>()->text(), u"Case sensitive"_s);
    QVERIFY(!panel.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly)->pixmap().isNull());
}

void FrmSearchDialogTest::grid()
{
    const frmSearchDialog panel(nullptr);
    const auto *rows = qobject_cast<const QGridLayout *>(panel.layout());
    QVERIFY(rows);
    QCOMPARE(rows->rowCount(), 5);
    QCOMPARE(rows->columnCount(), 2);
    QCOMPARE(rows->contentsMargins(), QMargins(6, 6, 6, 6));
    QCOMPARE(rows->spacing(), 4);
    const QLabel *const arrow = panel.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    for (const int column : { 0, 1 }) {
        QCOMPARE(rows->itemAtPosition(0, column)->widget(), findField(panel));
        QCOMPARE(rows->itemAtPosition(1, column)->widget(), arrow);
        QCOMPARE(rows->itemAtPosition(2, column)->widget(), replaceField(panel));
    }
    QCOMPARE(rows->itemAtPosition(1, 0)->alignment(), Qt::AlignHCenter);
    QCOMPARE(rows->itemAtPosition(3, 0)->widget(), panel.findChild<QCheckBox *>());
    QVERIFY(!rows->itemAtPosition(3, 1));
    const QLayout *const buttons = rows->itemAtPosition(4, 0)->layout();
    QCOMPARE(rows->itemAtPosition(4, 1)->layout(), buttons);
    QCOMPARE(buttons->spacing(), 10);
    QCOMPARE(buttons->count(), 5);
    QVERIFY(buttons->itemAt(0)->spacerItem());
    const QList<QPushButton *> inOrder = panel.findChildren<QPushButton *>();
    for (int i = 0; i < 4; ++i)
        QCOMPARE(buttons->itemAt(i + 1)->widget(), inOrder.at(i));
}

void FrmSearchDialogTest::modeDecides_data()
{
    QTest::addColumn<QList<int>>("modes"); // shown one after the other; the last one counts
    QTest::newRow("search") << QList<int>{ 0 };
    QTest::newRow("replace") << QList<int>{ 1 };
    QTest::newRow("replace after search") << QList<int>{ 0, 1 };
    QTest::newRow("search after replace") << QList<int>{ 1, 0 };
}

void FrmSearchDialogTest::modeDecides()
{
    QFETCH(QList<int>, modes);
    frmSearchDialog panel(nullptr);
    for (const int mode : modes)
        showIn(panel, mode);
    const bool replaces = modes.constLast() == 1;
    QCOMPARE(panel.windowTitle(), replaces ? u"Replace"_s : u"Search"_s);
    QStringList buttons;
    for (const QPushButton *button : panel.findChildren<QPushButton *>()) {
        if (button->isVisible())
            buttons << button->text();
    }
    QCOMPARE(buttons,
        replaces ? (QStringList{ u"Replace Next"_s, u"Replace ALL"_s, u"Close"_s })
                 : (QStringList{ u"Search Next"_s, u"Search Prev"_s, u"Close"_s }));
    QCOMPARE(replaceField(panel)->isVisible(), replaces);
    QCOMPARE(panel.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly)->isVisible(), replaces);
    QCOMPARE(panel.size(), panel.sizeHint());
}

void FrmSearchDialogTest::beginsAnewWithEachShow()
{
    frmSearchDialog panel(nullptr);
    panel.caseSensitive = true;
    showIn(panel, 0, u"given"_s);
    QVERIFY(panel.findChild<QCheckBox *>()->isChecked());
    findField(panel)->setEditText(u"typed"_s);
    panel.findChild<QCheckBox *>()->setChecked(false);
    panel.resize(600, 400);
    showIn(panel, 0, u"given"_s);
    QCOMPARE(findField(panel)->currentText(), u"given"_s);
    QVERIFY(panel.findChild<QCheckBox *>()->isChecked());
    QCOMPARE(panel.size(), panel.sizeHint());
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    QVERIFY(findField(panel)->hasFocus());
}

// The window system hides and shows a minimised window by itself.
void FrmSearchDialogTest::keepsWhatIsTypedWhenMinimised()
{
    frmSearchDialog panel(nullptr);
    showIn(panel, 0);
    findField(panel)->setEditText(u"typed"_s);
    QHideEvent minimised;
    QSpontaneKeyEvent::setSpontaneous(&minimised);
    qApp->notify(&panel, &minimised);
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    qApp->notify(&panel, &restored);
    QCOMPARE(findField(panel)->currentText(), u"typed"_s);
}

void FrmSearchDialogTest::startsWithTheTextGiven()
{
    frmSearchDialog panel(nullptr);
    showIn(panel, 0, u" a b "_s);
    QCOMPARE(findField(panel)->lineEdit()->selectedText(), u" a b "_s);
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    QTest::keyClicks(findField(panel), u"x"_s);
    QCOMPARE(findField(panel)->currentText(), u"x"_s);
}

void FrmSearchDialogTest::startsEmptyWithEarlierTextsInItsList()
{
    writeHistoryFile("[history]\nSearch0 = new\nSearch1 = old\n");
    frmSearchDialog panel(nullptr);
    showIn(panel, 0);
    QCOMPARE(findField(panel)->currentText(), QString());
    QCOMPARE(itemsOf(findField(panel)), (QStringList{ u"new"_s, u"old"_s }));
}

void FrmSearchDialogTest::selectedTextIsLeftOutOfTheListOnly()
{
    writeHistoryFile("[history]\nSearch0 = a\nSearch1 = b\nSearch3 = c\n");
    frmSearchDialog panel(nullptr);
    showIn(panel, 0, u"b"_s);
    QCOMPARE(itemsOf(findField(panel)), (QStringList{ u"a"_s, u"c"_s }));
    QCOMPARE(panel.searchHistory.texts().at(1), u"b"_s);
    showIn(panel, 0, u"B"_s);
    QCOMPARE(itemsOf(findField(panel)), (QStringList{ u"a"_s, u"b"_s, u"c"_s }));
}

void FrmSearchDialogTest::offersTheLastReplacement()
{
    frmSearchDialog panel(nullptr);
    showIn(panel, 1);
    QCOMPARE(replaceField(panel)->currentText(), QString());
    for (const char16_t *text : { u"first", u"second" }) {
        findField(panel)->setEditText(u"x"_s);
        replaceField(panel)->setEditText(QString::fromUtf16(text));
        panel.slotBtnNext();
    }
    replaceField(panel)->setEditText(u"not used"_s);
    showIn(panel, 1, u"x"_s);
    QCOMPARE(replaceField(panel)->currentText(), u"second"_s);
    QCOMPARE(itemsOf(replaceField(panel)), (QStringList{ u"second"_s, u"first"_s }));
}

void FrmSearchDialogTest::actions_data()
{
    using Signal = void (frmSearchDialog::*)();
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("button");
    QTest::addColumn<Signal>("signal");
    QTest::newRow("Search Next") << 0 << u"Search Next"_s << Signal(&frmSearchDialog::nextClicked);
    QTest::newRow("Search Prev") << 0 << u"Search Prev"_s << Signal(&frmSearchDialog::befoClicked);
    QTest::newRow("Replace Next") << 1 << u"Replace Next"_s << Signal(&frmSearchDialog::nextClicked);
    QTest::newRow("Replace ALL") << 1 << u"Replace ALL"_s << Signal(&frmSearchDialog::allClicked);
}

void FrmSearchDialogTest::actions()
{
    QFETCH(int, mode);
    QFETCH(QString, button);
    using Signal = void (frmSearchDialog::*)();
    QFETCH(Signal, signal);
    frmSearchDialog panel(nullptr);
    showIn(panel, mode, u"before"_s);
    findField(panel)->setEditText(u"find"_s);
    replaceField(panel)->setEditText(u"replace"_s);
    panel.findChild<QCheckBox *>()->setChecked(true);
    QCOMPARE(panel.findText, u"before"_s);
    const QSignalSpy next(&panel, &frmSearchDialog::nextClicked);
    const QSignalSpy before(&panel, &frmSearchDialog::befoClicked);
    const QSignalSpy all(&panel, &frmSearchDialog::allClicked);
    const QSignalSpy wanted(&panel, signal);
    buttonOf(panel, button)->click();
    QCOMPARE(wanted.count(), 1);
    QCOMPARE(next.count() + before.count() + all.count(), 1);
    QCOMPARE(panel.findText, u"find"_s);
    QCOMPARE(panel.replaceText, u"replace"_s);
    QCOMPARE(panel.caseSensitive, true);
    QVERIFY(panel.isVisible());
}

void FrmSearchDialogTest::refusesEmptyText_data()
{
    actions_data();
}

void FrmSearchDialogTest::refusesEmptyText()
{
    QFETCH(int, mode);
    QFETCH(QString, button);
    frmSearchDialog panel(nullptr);
    panel.replaceText = u"kept"_s;
    showIn(panel, mode);
    replaceField(panel)->setEditText(u"replace"_s);
    const QSignalSpy next(&panel, &frmSearchDialog::nextClicked);
    const QSignalSpy before(&panel, &frmSearchDialog::befoClicked);
    const QSignalSpy all(&panel, &frmSearchDialog::allClicked);
    MessageBoxes boxes;
    buttonOf(panel, button)->click();
    QCOMPARE(boxes.texts(), QStringList{ u"Error|Input the characters."_s });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QCOMPARE(next.count() + before.count() + all.count(), 0);
    QCOMPARE(panel.replaceText, u"kept"_s);
    QCOMPARE(replaceField(panel)->currentText(), u"replace"_s);
    QCOMPARE(panel.replaceHistory.texts().front(), QString());
    QVERIFY(panel.isVisible());
    QVERIFY(!QFile::exists(historyFileName()));
}

// Who answers the signal may hide the panel, and so begin anew.
void FrmSearchDialogTest::recordsBeforeItActs()
{
    frmSearchDialog panel(nullptr);
    QString first;
    connect(
        &panel, &frmSearchDialog::nextClicked, this, [&] { first = panel.searchHistory.texts().front(); });
    showIn(panel, 0, u"text"_s);
    panel.slotBtnNext();
    QCOMPARE(first, u"text"_s);
}

void FrmSearchDialogTest::emptyReplacementIsNotRecorded()
{
    frmSearchDialog panel(nullptr);
    for (const char16_t *replacement : { u"r", u"" }) {
        showIn(panel, 1, u"x"_s);
        replaceField(panel)->setEditText(QString::fromUtf16(replacement));
        panel.slotBtnNext();
    }
    QCOMPARE(panel.replaceText, QString());
    QCOMPARE(panel.replaceHistory.texts().at(0), u"r"_s);
    QCOMPARE(panel.replaceHistory.texts().at(1), QString());
}

void FrmSearchDialogTest::keys_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("focus"); // class and text of the control
    for (const int mode : { 0, 1 }) {
        const auto row = [mode](const QString &focus) {
            QTest::addRow("%s, %s", mode == 0 ? "search" : "replace", qPrintable(focus)) << mode << focus;
        };
        row(u"find"_s);
        if (mode == 1)
            row(u"replace"_s);
        row(u"Case sensitive"_s);
        row(mode == 0 ? u"Search Next"_s : u"Replace Next"_s);
        row(mode == 0 ? u"Search Prev"_s : u"Replace ALL"_s);
        row(u"Close"_s);
    }
}

/// Wherever the focus is.
void FrmSearchDialogTest::keys()
{
    QFETCH(int, mode);
    QFETCH(QString, focus);
    QWidget window;
    window.show();
    frmSearchDialog panel(&window);
    showIn(panel, mode, u"x"_s);
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    QWidget *control = focus == u"find"_s ? findField(panel) : replaceField(panel);
    for (auto *button : panel.findChildren<QAbstractButton *>()) {
        if (button->text() == focus)
            control = button;
    }
    control->setFocus();
    QVERIFY(control->hasFocus());
    const QSignalSpy next(&panel, &frmSearchDialog::nextClicked);
    const QSignalSpy before(&panel, &frmSearchDialog::befoClicked);
    const QSignalSpy all(&panel, &frmSearchDialog::allClicked);
    QTest::keyClick(control, Qt::Key_Return);
    QTest::keyClick(control, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(next.count(), 2);
    QCOMPARE(before.count() + all.count(), 0);
    QVERIFY(panel.isVisible());
    QTest::keyClick(control, Qt::Key_Escape);
    QVERIFY(!panel.isVisible());
    QVERIFY(window.isVisible());
    QCOMPARE(next.count(), 2);
}

void FrmSearchDialogTest::knownKeys_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<int>("isOn");
    QTest::addColumn<int>("next");
    QTest::addColumn<int>("before");
    const auto row = [](const char *name, Qt::KeyboardModifiers modifiers, int isOn, int next, int before) {
        QTest::newRow(name) << modifiers << isOn << next << before;
    };
    row("F3", Qt::NoModifier, 1, 1, 0);
    row("Shift+F3", Qt::ShiftModifier, 1, 0, 1);
    row("Ctrl+F3", Qt::ControlModifier, 1, 0, 0);
    row("F3, switched off", Qt::NoModifier, 0, 0, 0);
    row("Shift+F3, switched off", Qt::ShiftModifier, 0, 0, 0);
}

void FrmSearchDialogTest::knownKeys()
{
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(int, isOn);
    const QScopedValueRollback setting(moreSettings().KnownKeys, isOn);
    for (const int mode : { 0, 1 }) {
        frmSearchDialog panel(nullptr);
        showIn(panel, mode, u"x"_s);
        const QSignalSpy next(&panel, &frmSearchDialog::nextClicked);
        const QSignalSpy before(&panel, &frmSearchDialog::befoClicked);
        QTest::keyClick(findField(panel)->lineEdit(), Qt::Key_F3, modifiers);
        QTEST(int(next.count()), "next");
        QTEST(int(before.count()), "before");
        QVERIFY(panel.isVisible());
    }
}

void FrmSearchDialogTest::closeHidesAndKeeps()
{
    frmSearchDialog panel(nullptr);
    showIn(panel, 0, u"x"_s);
    panel.slotBtnNext();
    findField(panel)->setEditText(u"typed"_s);
    buttonOf(panel, u"Close"_s)->click();
    QVERIFY(!panel.isVisible());
    QCOMPARE(findField(panel)->currentText(), u"typed"_s);
    QCOMPARE(panel.findText, u"x"_s);
    QCOMPARE(panel.searchHistory.texts().front(), u"x"_s);
}

void FrmSearchDialogTest::historyFileIsWrittenAtTheEnd()
{
    writeHistoryFile("[history]\nSearch0 = a\n\n[other]\nkey = value\n");
    {
        frmSearchDialog panel(nullptr);
        panel.replaceHistory.add(u"r"_s);
    }
    QByteArray expected = "[history]\nSearch0 = a\n";
    for (int i = 1; i < 20; ++i)
        expected += "Search" + QByteArray::number(i) + " = \n";
    expected += "Replace0 = r\n";
    for (int i = 1; i < 20; ++i)
        expected += "Replace" + QByteArray::number(i) + " = \n";
    QCOMPARE(historyFileContents(), expected + "\n[other]\nkey = value\n");
}

// A program that is killed has kept it.
void FrmSearchDialogTest::historyFileIsWrittenWhenItChanges()
{
    frmSearchDialog panel(nullptr);
    showIn(panel, 1, u"find"_s);
    replaceField(panel)->setEditText(u"replace"_s);
    QByteArray atSignal;
    connect(&panel, &frmSearchDialog::nextClicked, this, [&] { atSignal = historyFileContents(); });
    panel.slotBtnNext();
    QVERIFY(atSignal.contains("Search0 = find\n"));
    QVERIFY(atSignal.contains("Replace0 = replace\n"));
    // Nothing to write where nothing changed.
    QFile::remove(historyFileName());
    panel.slotBtnNext();
    QVERIFY(!QFile::exists(historyFileName()));
    findField(panel)->setEditText(u"other"_s);
    panel.slotBtnBefo();
    QVERIFY(historyFileContents().contains("Search0 = other\n"));
    QVERIFY(historyFileContents().contains("Search1 = find\n"));
}

/// Panels stand for processes: each has read the file once.
void FrmSearchDialogTest::historiesOfTwoProcessesAreMerged()
{
    writeHistoryFile("[history]\nSearch0 = old\n");
    frmSearchDialog one(nullptr), other(nullptr);
    showIn(one, 1, u"from one"_s);
    replaceField(one)->setEditText(u"replaced"_s);
    one.slotBtnNext();
    showIn(other, 0, u"from the other"_s);
    other.slotBtnNext();
    const QByteArray both = "Search0 = from the other\nSearch1 = from one\nSearch2 = old\nSearch3 = \n";
    QVERIFY2(historyFileContents().contains(both), historyFileContents().constData());
    QVERIFY(historyFileContents().contains("Replace0 = replaced\n"));
    QCOMPARE(other.searchHistory.texts()[1], u"from one"_s);
    QCOMPARE(other.replaceHistory.texts()[0], u"replaced"_s);
    findField(one)->setEditText(u"old"_s);
    one.slotBtnNext();
    QVERIFY(historyFileContents().contains(
        "Search0 = old\nSearch1 = from the other\nSearch2 = from one\nSearch3 = \n"));
}

REGISTER_TEST(runFormTest<FrmSearchDialogTest>)
#include "frmsearchdialog_test.moc"
